#pragma once

#include "uxcamerafeatureutil.h"

#include <QObject>

// One SDK feature container (camera, interface, stream) for Qt code: the
// functions of UxFeatureContainerUtil bound to that container.
class UxFeatureContainer : public QObject {
    Q_OBJECT

public:
    explicit UxFeatureContainer(std::shared_ptr<ZebCPP::FeatureContainer> container, QObject* parent = nullptr);

    std::shared_ptr<ZebCPP::FeatureContainer> GetContainer() const { return m_container; }

    bool GetValue(const char* name, QVariant& value) const;
    bool GetFeatureValueEnum(const char* name, QVariant& value) const;
    bool SetValue(const char* name, const QVariant& value);
    bool SetFeatureValueEnum(const char* name, const QVariant& value);
    bool SetCommand(const char* name, unsigned long timeoutMs);
    bool SetRegisterValue(const char* name, const std::vector<unsigned char>& data, int length);
    bool GetRegisterValue(const char* name, std::vector<unsigned char>& data, int length) const;
    bool GetFeatureRange(const char* name, QVariant& minimum, QVariant& maximum, QVariant& increment) const;
    // Bytes of a raw register feature.
    bool GetRegisterLength(const char* name, long long& length) const;
    bool HasFeature(const char* name, bool& has) const;
    bool IsWritable(const char* name, bool& writable) const;
    bool IsReadable(const char* name, bool& readable) const;
    bool GetSubFeatures(const char* name, QStringList& entries) const;

private:
    std::shared_ptr<ZebCPP::FeatureContainer> m_container;
};

// The feature container of one camera.
class UxCameraFeature : public UxFeatureContainer {
    Q_OBJECT

public:
    explicit UxCameraFeature(std::shared_ptr<ZebCPP::Camera> camera, QObject* parent = nullptr);
};
