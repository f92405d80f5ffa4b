#include "feature.h"

#include "featurebackend.h"
#include "zebboundary.h"

namespace ZebCPP {

Feature::Feature(std::shared_ptr<FeatureBackend> backend) : backend_(std::move(backend)) {}

Feature::~Feature() = default;

ZebErrorType Feature::GetName(char* name, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->name(), name, length); });
}

ZebErrorType Feature::GetDataType(FeatureDataType& type) const
{
    return guarded([&] {
        type = backend_->dataType();
        return ZebErrorSuccess;
    });
}

ZebErrorType Feature::IsReadable(bool& readable) const
{
    return guarded([&] { return backend_->isReadable(readable); });
}

ZebErrorType Feature::IsWritable(bool& writable) const
{
    return guarded([&] { return backend_->isWritable(writable); });
}

ZebErrorType Feature::GetValue(int64_t& value) const
{
    return guarded([&] { return backend_->getInt(value); });
}

ZebErrorType Feature::SetValue(int64_t value)
{
    return guarded([&] { return backend_->setInt(value); });
}

ZebErrorType Feature::GetRange(int64_t& minimum, int64_t& maximum) const
{
    return guarded([&] { return backend_->intRange(minimum, maximum); });
}

ZebErrorType Feature::GetIncrement(int64_t& increment) const
{
    return guarded([&] { return backend_->intIncrement(increment); });
}

ZebErrorType Feature::GetValue(double& value) const
{
    return guarded([&] { return backend_->getFloat(value); });
}

ZebErrorType Feature::SetValue(double value)
{
    return guarded([&] { return backend_->setFloat(value); });
}

ZebErrorType Feature::GetRange(double& minimum, double& maximum) const
{
    return guarded([&] { return backend_->floatRange(minimum, maximum); });
}

ZebErrorType Feature::GetIncrement(double& increment) const
{
    return guarded([&] { return backend_->floatIncrement(increment); });
}

ZebErrorType Feature::GetValue(bool& value) const
{
    return guarded([&] { return backend_->getBool(value); });
}

ZebErrorType Feature::SetValue(bool value)
{
    return guarded([&] { return backend_->setBool(value); });
}

ZebErrorType Feature::GetValue(char* value, uint32_t& length) const
{
    return guarded([&] {
        std::string text;
        const ZebErrorType err = backend_->getString(text);
        return err == ZebErrorSuccess ? copyOut(text, value, length) : err;
    });
}

ZebErrorType Feature::SetValue(const char* value)
{
    if (value == nullptr)
        return ZebErrorBadParameter;
    return guarded([&] { return backend_->setString(value); });
}

ZebErrorType Feature::GetEntries(const char** names, uint32_t& size) const
{
    return guarded([&] {
        std::vector<std::string> list;
        const ZebErrorType err = backend_->entries(list);
        if (err != ZebErrorSuccess)
            return err;
        std::vector<const char*> pointers;
        {
            std::lock_guard<std::mutex> lock(namesMutex_);
            for (const std::string& entry : list)
                pointers.push_back(names_.insert(entry).first->c_str());
        }
        return copyList(pointers, names, size);
    });
}

ZebErrorType Feature::GetEntryValue(const char* name, int64_t& value) const
{
    if (name == nullptr)
        return ZebErrorBadParameter;
    return guarded([&] { return backend_->entryValue(name, value); });
}

ZebErrorType Feature::IsEntryAvailable(const char* name, bool& available) const
{
    if (name == nullptr)
        return ZebErrorBadParameter;
    return guarded([&] { return backend_->entryAvailable(name, available); });
}

ZebErrorType Feature::RunCommand()
{
    return guarded([&] { return backend_->runCommand(); });
}

ZebErrorType Feature::IsCommandDone(bool& done) const
{
    return guarded([&] { return backend_->commandDone(done); });
}

ZebErrorType Feature::GetRawData(uint8_t* buffer, uint32_t size, uint32_t& sizeFilled) const
{
    sizeFilled = 0;
    if (buffer == nullptr && size > 0)
        return ZebErrorBadParameter;
    return guarded([&] { return backend_->getRaw(buffer, size, sizeFilled); });
}

ZebErrorType Feature::SetRawData(const uint8_t* buffer, uint32_t size)
{
    if (buffer == nullptr && size > 0)
        return ZebErrorBadParameter;
    return guarded([&] { return backend_->setRaw(buffer, size); });
}

ZebErrorType Feature::GetRawLength(uint32_t& length) const
{
    return guarded([&] { return backend_->rawLength(length); });
}

ZebErrorType Feature::GetName(std::string& name) const
{
    return fetchString(name, [this](char* b, uint32_t& l) { return GetName(b, l); });
}

ZebErrorType Feature::GetValue(std::string& value) const
{
    return fetchString(value, [this](char* b, uint32_t& l) { return GetValue(b, l); });
}

ZebErrorType Feature::GetEntries(std::vector<std::string>& names) const
{
    return guarded([&] {
        std::vector<std::string> list;
        const ZebErrorType err = backend_->entries(list);
        if (err == ZebErrorSuccess)
            names = std::move(list);
        return err;
    });
}

} // namespace ZebCPP
