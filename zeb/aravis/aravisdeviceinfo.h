#pragma once

#include "zebtypes.h"

#include <string>

namespace ZebCPP {

// What one discovery round learnt about a camera.
struct AravisDeviceInfo {
    InterfaceType type = InterfaceTypeUnknown;
    std::string id; // plain camera ID: "<vendor>-<serial>" on GigE Vision, libaravis's ID on USB
    std::string vendor;
    std::string model;
    std::string serial;
    std::string name;             // user-defined name, else the model
    std::string interfaceName;    // network interface ("lo", "eth0") or "USB"
    std::string deviceAddress;    // GigE Vision: IPv4 of the camera
    std::string interfaceAddress; // GigE Vision: local IPv4 that reaches it
    bool heldElsewhere = false;   // GigE Vision: some application holds the control channel
};

} // namespace ZebCPP
