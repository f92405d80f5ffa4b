#pragma once

// Internal: what a transport layer implements for one feature. The public
// Feature checks arguments, handles the (buffer, length) strings and catches
// exceptions; a backend only implements the calls of its type, the others
// report ZebErrorWrongType.

#include "zebtypes.h"

#include <string>
#include <vector>

namespace ZebCPP {

class FeatureBackend {
public:
    virtual ~FeatureBackend() = default;

    virtual std::string name() const = 0;
    virtual FeatureDataType dataType() const = 0;
    virtual ZebErrorType isReadable(bool& readable) = 0;
    virtual ZebErrorType isWritable(bool& writable) = 0;

    virtual ZebErrorType getInt(int64_t& value);
    virtual ZebErrorType setInt(int64_t value);
    virtual ZebErrorType intRange(int64_t& minimum, int64_t& maximum);
    virtual ZebErrorType intIncrement(int64_t& increment);
    virtual ZebErrorType getFloat(double& value);
    virtual ZebErrorType setFloat(double value);
    virtual ZebErrorType floatRange(double& minimum, double& maximum);
    virtual ZebErrorType floatIncrement(double& increment);
    virtual ZebErrorType getBool(bool& value);
    virtual ZebErrorType setBool(bool value);
    virtual ZebErrorType getString(std::string& value);
    virtual ZebErrorType setString(const std::string& value);
    virtual ZebErrorType entries(std::vector<std::string>& names);
    virtual ZebErrorType entryValue(const std::string& name, int64_t& value);
    virtual ZebErrorType entryAvailable(const std::string& name, bool& available);
    virtual ZebErrorType runCommand();
    virtual ZebErrorType commandDone(bool& done);
    virtual ZebErrorType getRaw(uint8_t* buffer, uint32_t size, uint32_t& filled);
    virtual ZebErrorType setRaw(const uint8_t* buffer, uint32_t size);
    virtual ZebErrorType rawLength(uint32_t& length);
};

using FeatureBackendPtr = std::shared_ptr<FeatureBackend>;

class FeatureContainerBackend {
public:
    virtual ~FeatureContainerBackend() = default;
    virtual ZebErrorType feature(const std::string& name, FeatureBackendPtr& feature) = 0;
    virtual ZebErrorType features(std::vector<FeatureBackendPtr>& features) = 0;
};

} // namespace ZebCPP
