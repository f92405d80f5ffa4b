#pragma once

#include "sim/siminterface.h"
#include "transportbackend.h"

#include <functional>
#include <mutex>

namespace ZebCPP {

// One simulated transport layer. The cameras live in the SimWorld, which asks
// the transport layer to pass its events on.
class SimTransportLayer : public TransportLayerBackend {
public:
    using DeviceLister = std::function<std::vector<DeviceBackendPtr>(const SimTransportLayer*)>;

    SimTransportLayer(const SimTransportLayerDescription& description, DeviceLister lister);

    std::string id() const override { return description_.id; }
    std::string name() const override { return description_.name; }
    std::string path() const override { return description_.path; }
    InterfaceType type() const override { return description_.type; }
    std::vector<InterfaceBackendPtr> interfaces() override;
    std::vector<DeviceBackendPtr> devices() override;
    void setEvents(TransportEvents* events) override;

    bool hasInterface(const std::string& id) const;
    void addInterface(const SimInterfaceDescription& description);
    void tellPlugged(const DeviceBackendPtr& device);
    void tellUnplugged(const DeviceBackendPtr& device);
    void tellAccessChanged(const DeviceBackendPtr& device);

private:
    TransportEvents* events() const;

    SimTransportLayerDescription description_;
    DeviceLister lister_;
    mutable std::mutex mutex_;
    std::vector<InterfaceBackendPtr> interfaces_;
    TransportEvents* events_ = nullptr;
};

} // namespace ZebCPP
