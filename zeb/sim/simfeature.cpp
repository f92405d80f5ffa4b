#include "sim/simfeature.h"

#include "sim/simcamera.h"

#include <algorithm>
#include <cmath>

namespace ZebCPP {

SimFeature::SimFeature(std::shared_ptr<SimCamera> camera, uint64_t connection, const SimFeatureDef* def)
    : camera_(std::move(camera)), connection_(connection), def_(def)
{
}

std::string SimFeature::name() const
{
    return def_->name;
}

FeatureDataType SimFeature::dataType() const
{
    return def_->type;
}

ZebErrorType SimFeature::isReadable(bool& readable)
{
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        readable = def_->readable;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::isWritable(bool& writable)
{
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        writable = camera_->writableLocked(*def_);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::getInt(int64_t& value)
{
    if (!is(FeatureDataInt) && !is(FeatureDataEnum))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Read, [&] { return def_->getInt(value); });
}

ZebErrorType SimFeature::setInt(int64_t value)
{
    if (is(FeatureDataEnum)) {
        if (value < 0 || value >= static_cast<int64_t>(def_->entries.size()))
            return ZebErrorInvalidValue;
        return setString(def_->entries[static_cast<size_t>(value)]);
    }
    if (!is(FeatureDataInt))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Write, [&] {
        int64_t minimum = 0, maximum = 0;
        def_->intRange(minimum, maximum);
        if (value < minimum || value > maximum || (value - minimum) % def_->increment != 0)
            return ZebErrorInvalidValue;
        return def_->setInt(value);
    });
}

ZebErrorType SimFeature::intRange(int64_t& minimum, int64_t& maximum)
{
    if (!is(FeatureDataInt))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        def_->intRange(minimum, maximum);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::intIncrement(int64_t& increment)
{
    if (!is(FeatureDataInt))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        increment = def_->increment;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::getFloat(double& value)
{
    if (!is(FeatureDataFloat))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Read, [&] { return def_->getFloat(value); });
}

ZebErrorType SimFeature::setFloat(double value)
{
    if (!is(FeatureDataFloat))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Write, [&] {
        if (!std::isfinite(value) || value < def_->floatMin || value > def_->floatMax)
            return ZebErrorInvalidValue;
        return def_->setFloat(value);
    });
}

ZebErrorType SimFeature::floatRange(double& minimum, double& maximum)
{
    if (!is(FeatureDataFloat))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        minimum = def_->floatMin;
        maximum = def_->floatMax;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::floatIncrement(double& increment)
{
    if (!is(FeatureDataFloat))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        increment = 0;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::getBool(bool& value)
{
    if (!is(FeatureDataBool))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Read, [&] {
        int64_t v = 0;
        const ZebErrorType err = def_->getInt(v);
        if (err == ZebErrorSuccess)
            value = v != 0;
        return err;
    });
}

ZebErrorType SimFeature::setBool(bool value)
{
    if (!is(FeatureDataBool))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Write, [&] { return def_->setInt(value ? 1 : 0); });
}

ZebErrorType SimFeature::getString(std::string& value)
{
    if (is(FeatureDataString))
        return camera_->featureCall(connection_, *def_, SimAccess::Read, [&] { return def_->getString(value); });
    if (!is(FeatureDataEnum))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Read, [&] {
        int64_t index = 0;
        const ZebErrorType err = def_->getInt(index);
        if (err != ZebErrorSuccess)
            return err;
        value = def_->entries.at(static_cast<size_t>(index));
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::setString(const std::string& value)
{
    if (is(FeatureDataString))
        return camera_->featureCall(connection_, *def_, SimAccess::Write, [&] { return def_->setString(value); });
    if (!is(FeatureDataEnum))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Write, [&] {
        const int64_t index = entryIndex(value);
        if (index < 0)
            return ZebErrorInvalidValue;
        if (def_->entryAvailable && !def_->entryAvailable(index))
            return ZebErrorInvalidAccess;
        return def_->setInt(index);
    });
}

int64_t SimFeature::entryIndex(const std::string& name) const
{
    const auto it = std::find(def_->entries.begin(), def_->entries.end(), name);
    return it == def_->entries.end() ? -1 : it - def_->entries.begin();
}

ZebErrorType SimFeature::entries(std::vector<std::string>& names)
{
    if (!is(FeatureDataEnum))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        names = def_->entries;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::entryValue(const std::string& name, int64_t& value)
{
    if (!is(FeatureDataEnum))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        const int64_t index = entryIndex(name);
        if (index < 0)
            return ZebErrorNotFound;
        value = index;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::entryAvailable(const std::string& name, bool& available)
{
    if (!is(FeatureDataEnum))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        const int64_t index = entryIndex(name);
        if (index < 0)
            return ZebErrorNotFound;
        available = !def_->entryAvailable || def_->entryAvailable(index);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::runCommand()
{
    if (!is(FeatureDataCommand))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Command, [&] {
        const ZebErrorType err = def_->run();
        if (err == ZebErrorSuccess)
            camera_->commandStartedLocked(*def_);
        return err;
    });
}

ZebErrorType SimFeature::commandDone(bool& done)
{
    if (!is(FeatureDataCommand))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        done = camera_->commandDoneLocked(*def_);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::getRaw(uint8_t* buffer, uint32_t size, uint32_t& filled)
{
    if (!is(FeatureDataRaw))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Read, [&] {
        const uint32_t n = std::min(size, def_->rawLength);
        if (!camera_->transferLocked(n))
            return ZebErrorBadHandle;
        def_->getRaw(buffer, n);
        filled = n;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::setRaw(const uint8_t* buffer, uint32_t size)
{
    if (!is(FeatureDataRaw))
        return ZebErrorWrongType;
    if (size > def_->rawLength)
        return ZebErrorInvalidValue;
    return camera_->featureCall(connection_, *def_, SimAccess::Write, [&] {
        if (!camera_->transferLocked(size))
            return ZebErrorBadHandle;
        def_->setRaw(buffer, size);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimFeature::rawLength(uint32_t& length)
{
    if (!is(FeatureDataRaw))
        return ZebErrorWrongType;
    return camera_->featureCall(connection_, *def_, SimAccess::Query, [&] {
        length = def_->rawLength;
        return ZebErrorSuccess;
    });
}

} // namespace ZebCPP
