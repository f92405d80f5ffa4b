#include "uxcamerafeature.h"

using Util = UxFeatureContainerUtil;

UxFeatureContainer::UxFeatureContainer(std::shared_ptr<ZebCPP::FeatureContainer> container, QObject* parent)
    : QObject(parent)
    , m_container(std::move(container))
{
}

bool UxFeatureContainer::GetValue(const char* name, QVariant& value) const
{
    return Util::GetFeatureValue(m_container, name, value);
}

bool UxFeatureContainer::GetFeatureValueEnum(const char* name, QVariant& value) const
{
    return Util::GetFeatureValueEnum(m_container, name, value);
}

bool UxFeatureContainer::SetValue(const char* name, const QVariant& value)
{
    return Util::SetFeatureValue(m_container, name, value);
}

bool UxFeatureContainer::SetFeatureValueEnum(const char* name, const QVariant& value)
{
    return Util::SetFeatureValueEnum(m_container, name, value);
}

bool UxFeatureContainer::SetCommand(const char* name, unsigned long timeoutMs)
{
    return Util::SetFeatureCommand(m_container, name, timeoutMs);
}

bool UxFeatureContainer::SetRegisterValue(const char* name, const std::vector<unsigned char>& data, int length)
{
    return Util::SetFeatureRegister(m_container, name, data, length);
}

bool UxFeatureContainer::GetRegisterValue(const char* name, std::vector<unsigned char>& data, int length) const
{
    return Util::GetFeatureRegister(m_container, name, data, length);
}

bool UxFeatureContainer::GetFeatureRange(const char* name, QVariant& minimum, QVariant& maximum,
                                         QVariant& increment) const
{
    return Util::GetFeatureRange(m_container, name, minimum, maximum, increment);
}

bool UxFeatureContainer::GetRegisterLength(const char* name, long long& length) const
{
    return Util::GetFeatureRegisterLength(m_container, name, length);
}

bool UxFeatureContainer::HasFeature(const char* name, bool& has) const
{
    return Util::HasFeature(m_container, name, has);
}

bool UxFeatureContainer::IsWritable(const char* name, bool& writable) const
{
    return Util::IsWritable(m_container, name, writable);
}

bool UxFeatureContainer::IsReadable(const char* name, bool& readable) const
{
    return Util::IsReadable(m_container, name, readable);
}

bool UxFeatureContainer::GetSubFeatures(const char* name, QStringList& entries) const
{
    return Util::GetSubFeatures(m_container, name, entries);
}

UxCameraFeature::UxCameraFeature(std::shared_ptr<ZebCPP::Camera> camera, QObject* parent)
    : UxFeatureContainer(std::move(camera), parent)
{
}
