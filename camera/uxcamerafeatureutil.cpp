#include "uxcamerafeatureutil.h"

#include <QElapsedTimer>
#include <QLocale>

#include <chrono>
#include <thread>

using namespace ZebCPP;

namespace {

// A command not done at the first check is polled this coarsely: the devices
// that take long take seconds, and asking more often only loads their link.
constexpr std::chrono::seconds kCommandPollInterval(2);

FeaturePtr findFeature(const UxFeatureContainerUtil::ContainerPtr& container, const char* name)
{
    FeaturePtr feature;
    if (!container || name == nullptr)
        return feature;
    if (container->GetFeatureByName(name, feature) != ZebErrorSuccess)
        feature.reset();
    return feature;
}

bool dataTypeOf(const Feature& feature, FeatureDataType& type)
{
    return feature.GetDataType(type) == ZebErrorSuccess;
}

bool readText(const Feature& feature, QVariant& value)
{
    std::string text;
    if (feature.GetValue(text) != ZebErrorSuccess)
        return false;
    value = QString::fromStdString(text);
    return true;
}

bool writeText(Feature& feature, const QVariant& value)
{
    return feature.SetValue(value.toString().toUtf8().constData()) == ZebErrorSuccess;
}

bool isIntegerVariant(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return true;
    default:
        return false;
    }
}

} // namespace

bool UxFeatureContainerUtil::GetFeatureValue(const ContainerPtr& container, const char* name, QVariant& value)
{
    const FeaturePtr feature = findFeature(container, name);
    FeatureDataType type = FeatureDataUnknown;
    if (!feature || !dataTypeOf(*feature, type))
        return false;
    switch (type) {
    case FeatureDataInt: {
        int64_t v = 0;
        if (feature->GetValue(v) != ZebErrorSuccess)
            return false;
        value = static_cast<qlonglong>(v);
        return true;
    }
    case FeatureDataFloat: {
        double v = 0;
        if (feature->GetValue(v) != ZebErrorSuccess)
            return false;
        value = v;
        return true;
    }
    case FeatureDataBool: {
        bool v = false;
        if (feature->GetValue(v) != ZebErrorSuccess)
            return false;
        value = v;
        return true;
    }
    case FeatureDataEnum:
    case FeatureDataString:
        return readText(*feature, value);
    default:
        return false;
    }
}

bool UxFeatureContainerUtil::GetFeatureValueEnum(const ContainerPtr& container, const char* name, QVariant& value)
{
    const FeaturePtr feature = findFeature(container, name);
    FeatureDataType type = FeatureDataUnknown;
    if (!feature || !dataTypeOf(*feature, type) || type != FeatureDataEnum)
        return false;
    return readText(*feature, value);
}

bool UxFeatureContainerUtil::SetFeatureValue(const ContainerPtr& container, const char* name, const QVariant& value)
{
    const FeaturePtr feature = findFeature(container, name);
    FeatureDataType type = FeatureDataUnknown;
    if (!feature || !dataTypeOf(*feature, type))
        return false;
    switch (type) {
    case FeatureDataInt:
        return feature->SetValue(static_cast<int64_t>(value.toLongLong())) == ZebErrorSuccess;
    case FeatureDataFloat:
        return feature->SetValue(value.toDouble()) == ZebErrorSuccess;
    case FeatureDataBool:
        return feature->SetValue(value.toBool()) == ZebErrorSuccess;
    case FeatureDataEnum:
    case FeatureDataString:
        return writeText(*feature, value);
    default:
        return false;
    }
}

bool UxFeatureContainerUtil::SetFeatureValueEnum(const ContainerPtr& container, const char* name, const QVariant& value)
{
    const FeaturePtr feature = findFeature(container, name);
    FeatureDataType type = FeatureDataUnknown;
    if (!feature || !dataTypeOf(*feature, type) || type != FeatureDataEnum)
        return false;
    if (isIntegerVariant(value))
        return feature->SetValue(static_cast<int64_t>(value.toLongLong())) == ZebErrorSuccess;
    return writeText(*feature, value);
}

bool UxFeatureContainerUtil::SetFeatureCommand(const ContainerPtr& container, const char* name, unsigned long timeoutMs)
{
    const FeaturePtr feature = findFeature(container, name);
    if (!feature || feature->RunCommand() != ZebErrorSuccess)
        return false;
    if (timeoutMs == 0)
        return true;

    QElapsedTimer clock; // monotonic
    clock.start();
    for (;;) {
        bool done = false;
        if (feature->IsCommandDone(done) != ZebErrorSuccess)
            return false;
        if (done)
            return true;
        if (static_cast<unsigned long long>(clock.elapsed()) >= timeoutMs)
            return false;
        // sleep_for resumes by itself after an interrupting signal.
        std::this_thread::sleep_for(kCommandPollInterval);
    }
}

bool UxFeatureContainerUtil::SetFeatureRegister(const ContainerPtr& container, const char* name,
                                                const std::vector<unsigned char>& data, int length)
{
    if (length <= 0 || static_cast<size_t>(length) > data.size())
        return false;
    const FeaturePtr feature = findFeature(container, name);
    FeatureDataType type = FeatureDataUnknown;
    if (!feature || !dataTypeOf(*feature, type) || type != FeatureDataRaw)
        return false;
    return feature->SetRawData(data.data(), static_cast<uint32_t>(length)) == ZebErrorSuccess;
}

bool UxFeatureContainerUtil::GetFeatureRegister(const ContainerPtr& container, const char* name,
                                                std::vector<unsigned char>& data, int length)
{
    if (length <= 0)
        return false;
    const FeaturePtr feature = findFeature(container, name);
    FeatureDataType type = FeatureDataUnknown;
    if (!feature || !dataTypeOf(*feature, type) || type != FeatureDataRaw)
        return false;
    std::vector<unsigned char> bytes(static_cast<size_t>(length));
    uint32_t filled = 0;
    if (feature->GetRawData(bytes.data(), static_cast<uint32_t>(length), filled) != ZebErrorSuccess
        || filled != static_cast<uint32_t>(length))
        return false;
    data = std::move(bytes);
    return true;
}

bool UxFeatureContainerUtil::GetFeatureRegisterLength(const ContainerPtr& container, const char* name,
                                                      long long& length)
{
    const FeaturePtr feature = findFeature(container, name);
    FeatureDataType type = FeatureDataUnknown;
    uint32_t bytes = 0;
    if (!feature || !dataTypeOf(*feature, type) || type != FeatureDataRaw
        || feature->GetRawLength(bytes) != ZebErrorSuccess)
        return false;
    length = bytes;
    return true;
}

bool UxFeatureContainerUtil::GetFeatureRange(const ContainerPtr& container, const char* name, QVariant& minimum,
                                             QVariant& maximum, QVariant& increment)
{
    const FeaturePtr feature = findFeature(container, name);
    FeatureDataType type = FeatureDataUnknown;
    if (!feature || !dataTypeOf(*feature, type))
        return false;
    if (type == FeatureDataInt) {
        int64_t lo = 0, hi = 0, step = 0;
        if (feature->GetRange(lo, hi) != ZebErrorSuccess || feature->GetIncrement(step) != ZebErrorSuccess)
            return false;
        minimum = static_cast<qlonglong>(lo);
        maximum = static_cast<qlonglong>(hi);
        increment = static_cast<qlonglong>(step);
        return true;
    }
    if (type == FeatureDataFloat) {
        double lo = 0, hi = 0, step = 0;
        if (feature->GetRange(lo, hi) != ZebErrorSuccess || feature->GetIncrement(step) != ZebErrorSuccess)
            return false;
        minimum = lo;
        maximum = hi;
        increment = step;
        return true;
    }
    return false;
}

bool UxFeatureContainerUtil::HasFeature(const ContainerPtr& container, const char* name, bool& has)
{
    if (!container || name == nullptr)
        return false;
    has = static_cast<bool>(findFeature(container, name));
    return has;
}

bool UxFeatureContainerUtil::IsWritable(const ContainerPtr& container, const char* name, bool& writable)
{
    const FeaturePtr feature = findFeature(container, name);
    bool answer = false;
    if (!feature || feature->IsWritable(answer) != ZebErrorSuccess)
        return false;
    writable = answer;
    return true;
}

bool UxFeatureContainerUtil::IsReadable(const ContainerPtr& container, const char* name, bool& readable)
{
    const FeaturePtr feature = findFeature(container, name);
    bool answer = false;
    if (!feature || feature->IsReadable(answer) != ZebErrorSuccess)
        return false;
    readable = answer;
    return true;
}

bool UxFeatureContainerUtil::GetSubFeatures(const ContainerPtr& container, const char* name, QStringList& entries)
{
    const FeaturePtr feature = findFeature(container, name);
    std::vector<std::string> names;
    if (!feature || feature->GetEntries(names) != ZebErrorSuccess)
        return false;
    QStringList result;
    result.reserve(static_cast<int>(names.size()));
    for (const std::string& entry : names)
        result.append(QString::fromStdString(entry));
    entries = result;
    return true;
}

double UxFeatureContainerUtil::StringToDouble(const QString& text, bool* ok)
{
    bool parsed = false;
    double value = QLocale(QLocale::German).toDouble(text, &parsed);
    if (!parsed)
        value = QLocale(QLocale::English).toDouble(text, &parsed);
    if (ok != nullptr)
        *ok = parsed;
    return parsed ? value : 0.0;
}

double StringToDouble(const QString& text, bool* ok)
{
    return UxFeatureContainerUtil::StringToDouble(text, ok);
}
