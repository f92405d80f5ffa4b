#pragma once

#include "featurebackend.h"

#include <functional>
#include <limits>
#include <memory>

namespace ZebCPP {

class SimCamera;

// How one feature of a simulated camera behaves. The hooks run with the camera
// locked, after the camera checked connection, open state, access and faults.
struct SimFeatureDef {
    std::string name;
    FeatureDataType type = FeatureDataUnknown;
    bool onStream = false;  // a feature of the camera's stream
    bool readable = true;
    bool writable = true;
    bool lockable = false;  // not writable while streaming
    std::function<bool()> writableNow; // further condition, when set

    std::function<ZebErrorType(int64_t&)> getInt;   // integers, enumerations (entry index), bools (0/1)
    std::function<ZebErrorType(int64_t)> setInt;
    std::function<void(int64_t&, int64_t&)> intRange;
    int64_t increment = 1;

    std::function<ZebErrorType(double&)> getFloat;
    std::function<ZebErrorType(double)> setFloat;
    double floatMin = 0;
    double floatMax = std::numeric_limits<double>::max();

    std::function<ZebErrorType(std::string&)> getString;
    std::function<ZebErrorType(const std::string&)> setString;

    std::vector<std::string> entries;
    std::function<bool(int64_t)> entryAvailable;

    std::function<ZebErrorType()> run;
    uint32_t commandDelayMs = 0;

    std::function<void(uint8_t*, uint32_t)> getRaw;
    std::function<void(const uint8_t*, uint32_t)> setRaw;
    uint32_t rawLength = 0;
};

// A feature handed out to the SDK: every call goes through the camera, which
// keeps the device consistent between threads.
class SimFeature : public FeatureBackend {
public:
    SimFeature(std::shared_ptr<SimCamera> camera, uint64_t connection, const SimFeatureDef* def);

    std::string name() const override;
    FeatureDataType dataType() const override;
    ZebErrorType isReadable(bool& readable) override;
    ZebErrorType isWritable(bool& writable) override;
    ZebErrorType getInt(int64_t& value) override;
    ZebErrorType setInt(int64_t value) override;
    ZebErrorType intRange(int64_t& minimum, int64_t& maximum) override;
    ZebErrorType intIncrement(int64_t& increment) override;
    ZebErrorType getFloat(double& value) override;
    ZebErrorType setFloat(double value) override;
    ZebErrorType floatRange(double& minimum, double& maximum) override;
    ZebErrorType floatIncrement(double& increment) override;
    ZebErrorType getBool(bool& value) override;
    ZebErrorType setBool(bool value) override;
    ZebErrorType getString(std::string& value) override;
    ZebErrorType setString(const std::string& value) override;
    ZebErrorType entries(std::vector<std::string>& names) override;
    ZebErrorType entryValue(const std::string& name, int64_t& value) override;
    ZebErrorType entryAvailable(const std::string& name, bool& available) override;
    ZebErrorType runCommand() override;
    ZebErrorType commandDone(bool& done) override;
    ZebErrorType getRaw(uint8_t* buffer, uint32_t size, uint32_t& filled) override;
    ZebErrorType setRaw(const uint8_t* buffer, uint32_t size) override;
    ZebErrorType rawLength(uint32_t& length) override;

private:
    bool is(FeatureDataType type) const { return def_->type == type; }
    int64_t entryIndex(const std::string& name) const;

    std::shared_ptr<SimCamera> camera_;
    uint64_t connection_;
    const SimFeatureDef* def_;
};

} // namespace ZebCPP
