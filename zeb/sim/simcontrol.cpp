#include "sim/simcontrol.h"

namespace ZebCPP {
namespace SimControl {

const char* DefaultCameraSet() { return "{}"; }
ZebErrorType PlugCamera(const std::string&) { return ZebErrorNotImplemented; }
ZebErrorType UnplugCamera(const std::string&) { return ZebErrorNotImplemented; }
ZebErrorType ReplugCamera(const std::string&) { return ZebErrorNotImplemented; }
ZebErrorType SetPermittedAccess(const std::string&, AccessModeType) { return ZebErrorNotImplemented; }
ZebErrorType SetStreaming(const std::string&, bool) { return ZebErrorNotImplemented; }
ZebErrorType InjectFault(const std::string&, FaultKind, uint32_t, ZebErrorType) { return ZebErrorNotImplemented; }
ZebErrorType DisconnectAfterBytes(const std::string&, uint64_t) { return ZebErrorNotImplemented; }
ZebErrorType ClearFaults(const std::string&) { return ZebErrorNotImplemented; }
const char* DefectKindName(DefectKind) { return ""; }
ZebErrorType GetDefects(const std::string&, std::vector<SimDefect>&) { return ZebErrorNotImplemented; }
ZebErrorType GetStoredMap(const std::string&, uint32_t, std::vector<SimMapEntry>&) { return ZebErrorNotImplemented; }
ZebErrorType GetDeviceFile(const std::string&, const std::string&, std::vector<uint8_t>&) { return ZebErrorNotImplemented; }

} // namespace SimControl
} // namespace ZebCPP
