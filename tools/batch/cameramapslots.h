#pragma once

#include "batchmapslots.h"

#include <QCoreApplication>

class UxCamera;

// The batch's view of a camera's map slots, through the map-slot core: this
// class only words the outcomes.
class CameraMapSlots : public BatchMapSlots {
    Q_DECLARE_TR_FUNCTIONS(CameraMapSlots)

public:
    explicit CameraMapSlots(UxCamera& camera) : m_camera(camera) {}

    bool readProfile(BatchMapProfile& profile, QString& error) override;
    bool isStreaming() override;
    bool upload(const BatchMapProfile& profile, const BatchMapSlot& slot, const t_defpix* map, unsigned int count,
                unsigned int imageWidth, unsigned int imagePixelCount, qint64& bytes, QString& error) override;
    bool readBack(const BatchMapProfile& profile, const BatchMapSlot& slot, std::vector<t_defpix>& entries,
                  QString& error) override;
    std::vector<t_defpix> expectedEntries(const BatchMapProfile& profile, const BatchMapSlot& slot,
                                          const t_defpix* map, unsigned int count) const override;

private:
    bool selectRegisterSlot(const BatchMapSlot& slot, QString& error);

    UxCamera& m_camera;
};
