#pragma once

#include "aravis/aravisdeviceinfo.h"

#include <mutex>
#include <vector>

namespace ZebCPP {

// GigE Vision cameras at exactly these IPv4 addresses, asked one by one.
std::vector<AravisDeviceInfo> discoverGigEVisionAt(const std::vector<std::string>& addresses);
// GigE Vision cameras found by libaravis's broadcast on every network interface.
std::vector<AravisDeviceInfo> discoverGigEVisionByBroadcast();
// USB3 Vision cameras on the local USB host (libusb).
std::vector<AravisDeviceInfo> discoverUsb3Vision();

// libaravis's USB interface keeps one device list for enumeration and opening:
// both hold this lock.
std::mutex& usbInterfaceMutex();

} // namespace ZebCPP
