#include "aravis/aravistransportlayer.h"

#include <arv.h>
#include <dlfcn.h>

#include <algorithm>

namespace ZebCPP {

struct AravisTransportLayer::Changes {
    std::vector<InterfaceBackendPtr> interfaces;
    std::vector<std::shared_ptr<AravisDevice>> plugged;
    std::vector<std::shared_ptr<AravisDevice>> unplugged;
    std::vector<std::shared_ptr<AravisDevice>> accessChanged;
};

AravisTransportLayer::AravisTransportLayer(InterfaceType type) : type_(type) {}

std::string AravisTransportLayer::id() const
{
    return type_ == InterfaceTypeGigEVision ? "AravisGEV" : "AravisU3V";
}

std::string AravisTransportLayer::name() const
{
    return type_ == InterfaceTypeGigEVision ? "GigE Vision" : "USB3 Vision";
}

// The file that drives the link: the libaravis library this process loaded.
std::string AravisTransportLayer::path() const
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&arv_get_major_version), &info) != 0 && info.dli_fname != nullptr)
        return info.dli_fname;
    return "libaravis-0.8";
}

std::vector<InterfaceBackendPtr> AravisTransportLayer::interfaces()
{
    std::lock_guard<std::mutex> lock(mutex_);
    return {interfaces_.begin(), interfaces_.end()};
}

std::vector<DeviceBackendPtr> AravisTransportLayer::devices()
{
    std::lock_guard<std::mutex> lock(mutex_);
    return {devices_.begin(), devices_.end()};
}

void AravisTransportLayer::setEvents(TransportEvents* events)
{
    std::lock_guard<std::mutex> lock(mutex_);
    events_ = events;
}

bool AravisTransportLayer::hasEvents() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    return events_ != nullptr;
}

std::shared_ptr<AravisDevice> AravisTransportLayer::makeDevice(const AravisDeviceInfo& info, Changes& changes)
{
    const std::string interfaceId = id() + "::" + info.interfaceName;
    const auto known = std::find_if(interfaces_.begin(), interfaces_.end(),
                                    [&](const auto& interface) { return interface->id() == interfaceId; });
    if (known == interfaces_.end()) {
        std::string label = type_ == InterfaceTypeGigEVision
            ? "Network interface " + info.interfaceName + " (" + info.interfaceAddress + ")"
            : "USB host";
        interfaces_.push_back(std::make_shared<AravisInterface>(interfaceId, label, type_));
        changes.interfaces.push_back(interfaces_.back());
    }
    DeviceIdentity identity;
    identity.id = info.id;
    identity.extendedId = id() + "::" + info.id;
    identity.name = info.name;
    identity.model = info.model;
    identity.serial = info.serial;
    identity.interfaceId = interfaceId;
    identity.type = type_;
    std::weak_ptr<AravisTransportLayer> self = shared_from_this();
    return std::make_shared<AravisDevice>(info, identity, [self](const std::shared_ptr<AravisDevice>& device) {
        if (auto tl = self.lock())
            tl->tellAccessChanged(device);
    });
}

void AravisTransportLayer::update(const std::vector<AravisDeviceInfo>& found,
                                  std::chrono::steady_clock::time_point roundStarted)
{
    Changes changes;
    TransportEvents* sink = nullptr;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        sink = events_;
        std::vector<std::shared_ptr<AravisDevice>> kept;
        for (const auto& device : devices_) {
            const auto seen = std::find_if(found.begin(), found.end(), [&](const AravisDeviceInfo& info) {
                return info.id == device->info().id && info.deviceAddress == device->info().deviceAddress;
            });
            // A lost session of a camera that still answers comes back as a new
            // camera, so that it can be opened again.
            if (device->isLost() || (seen == found.end() && !device->keepAfterMissedDiscovery())) {
                changes.unplugged.push_back(device);
                continue;
            }
            if (seen == found.end()) {
                kept.push_back(device);
                continue;
            }
            device->answeredDiscovery();
            if (device->updateHeldElsewhere(seen->heldElsewhere, roundStarted))
                changes.accessChanged.push_back(device);
            kept.push_back(device);
        }
        for (const AravisDeviceInfo& info : found) {
            const bool present = std::any_of(kept.begin(), kept.end(),
                                             [&](const auto& device) { return device->info().id == info.id; });
            if (!present) {
                kept.push_back(makeDevice(info, changes));
                changes.plugged.push_back(kept.back());
            }
        }
        devices_ = std::move(kept);
    }
    for (const auto& device : changes.unplugged) {
        device->markLost();
        if (sink)
            sink->deviceUnplugged(this, device);
    }
    if (sink) {
        for (const auto& interface : changes.interfaces)
            sink->interfacePlugged(this, interface);
        for (const auto& device : changes.plugged)
            sink->devicePlugged(this, device);
        for (const auto& device : changes.accessChanged)
            sink->deviceAccessChanged(this, device);
    }
    for (const auto& device : changes.unplugged)
        device->releaseLost();
}

void AravisTransportLayer::tellAccessChanged(const std::shared_ptr<AravisDevice>& device)
{
    TransportEvents* sink = nullptr;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        sink = events_;
    }
    if (sink)
        sink->deviceAccessChanged(this, device);
}

} // namespace ZebCPP
