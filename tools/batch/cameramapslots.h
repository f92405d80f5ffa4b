#pragma once

#include "batchmapslots.h"

#include <QCoreApplication>

class UxCamera;

// The map slots of an opened camera through the camera layer: file-access
// slots as device files holding a map container, otherwise the map registers.
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
    bool detectColor();
    void readFileSlots(BatchMapProfile& profile, const QStringList& files);
    bool readMaxMapSize(bool registerMode, unsigned int& size);
    bool uploadFile(const BatchMapProfile& profile, const BatchMapSlot& slot, const t_defpix* map,
                    unsigned int count, unsigned int imageWidth, unsigned int imagePixelCount, qint64& bytes,
                    QString& error);
    bool uploadRegisters(const BatchMapProfile& profile, const BatchMapSlot& slot, const t_defpix* map,
                         unsigned int count, qint64& bytes, QString& error);
    bool selectRegisterSlot(const BatchMapSlot& slot, uint32_t& number, QString& error);
    void closeDeviceFile();

    UxCamera& m_camera;
};
