#include "sim/simtransportlayer.h"

namespace ZebCPP {

SimTransportLayer::SimTransportLayer(const SimTransportLayerDescription& description, DeviceLister lister)
    : description_(description), lister_(std::move(lister))
{
    for (const SimInterfaceDescription& interface : description.interfaces)
        interfaces_.push_back(std::make_shared<SimInterface>(interface, description.type));
}

std::vector<InterfaceBackendPtr> SimTransportLayer::interfaces()
{
    std::lock_guard<std::mutex> lock(mutex_);
    return interfaces_;
}

std::vector<DeviceBackendPtr> SimTransportLayer::devices()
{
    return lister_(this);
}

void SimTransportLayer::setEvents(TransportEvents* events)
{
    std::lock_guard<std::mutex> lock(mutex_);
    events_ = events;
}

TransportEvents* SimTransportLayer::events() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    return events_;
}

bool SimTransportLayer::hasInterface(const std::string& id) const
{
    std::lock_guard<std::mutex> lock(mutex_);
    for (const InterfaceBackendPtr& interface : interfaces_) {
        if (interface->id() == id)
            return true;
    }
    return false;
}

void SimTransportLayer::addInterface(const SimInterfaceDescription& description)
{
    auto interface = std::make_shared<SimInterface>(description, description_.type);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        interfaces_.push_back(interface);
    }
    if (TransportEvents* sink = events())
        sink->interfacePlugged(this, interface);
}

void SimTransportLayer::tellPlugged(const DeviceBackendPtr& device)
{
    if (TransportEvents* sink = events())
        sink->devicePlugged(this, device);
}

void SimTransportLayer::tellUnplugged(const DeviceBackendPtr& device)
{
    if (TransportEvents* sink = events())
        sink->deviceUnplugged(this, device);
}

void SimTransportLayer::tellAccessChanged(const DeviceBackendPtr& device)
{
    if (TransportEvents* sink = events())
        sink->deviceAccessChanged(this, device);
}

} // namespace ZebCPP
