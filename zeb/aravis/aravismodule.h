#pragma once

#include "transportmodule.h"

#include <memory>

namespace ZebCPP {

// GigE Vision and USB3 Vision cameras through libaravis. Configured by the
// environment, as transport layers are:
// - ZEB_GEV_ADDRESSES (comma-separated IPv4 addresses): GigE Vision cameras
//   are looked for at these addresses only, never by broadcast;
// - else, with ZEB_SIM_CAMERAS set, the module is not loaded (null): a
//   simulated set stays offline;
// - else GigE Vision cameras are found by libaravis's broadcast discovery.
// USB3 Vision cameras are always enumerated on the local USB host.
std::unique_ptr<TransportModule> loadAravisModule();

} // namespace ZebCPP
