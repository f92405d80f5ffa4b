#include "featurebackend.h"

namespace ZebCPP {

ZebErrorType FeatureBackend::getInt(int64_t&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::setInt(int64_t) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::intRange(int64_t&, int64_t&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::intIncrement(int64_t&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::getFloat(double&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::setFloat(double) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::floatRange(double&, double&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::floatIncrement(double&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::getBool(bool&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::setBool(bool) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::getString(std::string&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::setString(const std::string&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::entries(std::vector<std::string>&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::entryValue(const std::string&, int64_t&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::entryAvailable(const std::string&, bool&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::runCommand() { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::commandDone(bool&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::getRaw(uint8_t*, uint32_t, uint32_t&) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::setRaw(const uint8_t*, uint32_t) { return ZebErrorWrongType; }
ZebErrorType FeatureBackend::rawLength(uint32_t&) { return ZebErrorWrongType; }

} // namespace ZebCPP
