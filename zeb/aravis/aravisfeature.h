#pragma once

#include "aravis/aravissession.h"
#include "featurebackend.h"

#include <memory>

namespace ZebCPP {

// Data type of a GenICam node; FeatureDataUnknown for nodes that are no feature.
FeatureDataType aravisDataTypeOf(ArvGcNode* node);

// One GenICam feature of an opened camera, found again by name on every call
// so that it never outlives the session's node tree.
class AravisFeature : public FeatureBackend {
public:
    AravisFeature(std::shared_ptr<AravisSession> session, std::string name, FeatureDataType type);

    std::string name() const override { return name_; }
    FeatureDataType dataType() const override { return type_; }
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
    enum class Use { Query, Read, Write };
    using NodeBody = std::function<ZebErrorType(ArvDevice*, ArvGcNode*, GError**)>;

    // Runs body on the node after the type and access checks of `use`.
    ZebErrorType call(std::initializer_list<FeatureDataType> types, Use use, const NodeBody& body);

    std::shared_ptr<AravisSession> session_;
    std::string name_;
    FeatureDataType type_;
};

} // namespace ZebCPP
