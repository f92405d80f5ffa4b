#include "aravis/aravisdiscovery.h"

#include "aravis/aravisgvcp.h"

#include <arv.h>

namespace ZebCPP {

namespace {

// Control channel privilege register of the GigE Vision bootstrap map.
constexpr uint32_t kControlChannelPrivilege = 0x0a00;

std::string text(const char* value)
{
    return value != nullptr ? value : "";
}

// Asks the camera at `address` itself; false when it does not answer.
bool probeGigEVision(const std::string& address, AravisDeviceInfo& info)
{
    GvcpChannel channel(address);
    GvcpIdentity identity;
    if (!channel.discover(identity))
        return false;
    uint32_t privilege = 0;
    info.heldElsewhere = channel.readRegister(kControlChannelPrivilege, privilege) && privilege != 0;
    info.type = InterfaceTypeGigEVision;
    info.vendor = identity.vendor;
    info.model = identity.model;
    info.serial = identity.serial;
    info.name = identity.userName.empty() ? identity.model : identity.userName;
    std::string unique = identity.serial;
    if (unique.empty())
        unique = identity.mac != "00:00:00:00:00:00" ? identity.mac : address;
    info.id = identity.vendor + "-" + unique;
    info.deviceAddress = address;
    info.interfaceAddress = channel.localAddress();
    info.interfaceName = networkInterfaceOf(info.interfaceAddress);
    if (info.interfaceName.empty())
        info.interfaceName = info.interfaceAddress;
    return true;
}

} // namespace

std::vector<AravisDeviceInfo> discoverGigEVisionAt(const std::vector<std::string>& addresses)
{
    std::vector<AravisDeviceInfo> found;
    for (const std::string& address : addresses) {
        AravisDeviceInfo info;
        if (probeGigEVision(address, info))
            found.push_back(std::move(info));
    }
    return found;
}

std::vector<AravisDeviceInfo> discoverGigEVisionByBroadcast()
{
    ArvInterface* gige = arv_gv_interface_get_instance();
    arv_interface_update_device_list(gige);
    std::vector<std::string> addresses;
    for (unsigned int i = 0; i < arv_interface_get_n_devices(gige); ++i)
        addresses.push_back(text(arv_interface_get_device_address(gige, i)));
    // The broadcast found them; identity and control state come from each one.
    return discoverGigEVisionAt(addresses);
}

std::mutex& usbInterfaceMutex()
{
    static std::mutex mutex;
    return mutex;
}

std::vector<AravisDeviceInfo> discoverUsb3Vision()
{
    std::lock_guard<std::mutex> lock(usbInterfaceMutex());
    ArvInterface* usb = arv_uv_interface_get_instance();
    arv_interface_update_device_list(usb);
    std::vector<AravisDeviceInfo> found;
    for (unsigned int i = 0; i < arv_interface_get_n_devices(usb); ++i) {
        AravisDeviceInfo info;
        info.type = InterfaceTypeUsb3Vision;
        info.id = text(arv_interface_get_device_id(usb, i));
        info.vendor = text(arv_interface_get_device_vendor(usb, i));
        info.model = text(arv_interface_get_device_model(usb, i));
        info.serial = text(arv_interface_get_device_serial_nbr(usb, i));
        info.name = info.model;
        info.interfaceName = "USB";
        if (!info.id.empty())
            found.push_back(std::move(info));
    }
    return found;
}

} // namespace ZebCPP
