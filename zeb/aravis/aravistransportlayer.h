#pragma once

#include "aravis/aravisdevice.h"
#include "aravis/aravisinterface.h"
#include "transportbackend.h"

#include <mutex>

namespace ZebCPP {

// The cameras of one link (GigE Vision or USB3 Vision) as the last discovery
// round saw them. libaravis has no hot-plug callbacks: the module's discovery
// thread hands each round to update(), which reports the differences.
class AravisTransportLayer : public TransportLayerBackend,
                             public std::enable_shared_from_this<AravisTransportLayer> {
public:
    explicit AravisTransportLayer(InterfaceType type);

    std::string id() const override;
    std::string name() const override;
    std::string path() const override;
    InterfaceType type() const override { return type_; }
    std::vector<InterfaceBackendPtr> interfaces() override;
    std::vector<DeviceBackendPtr> devices() override;
    void setEvents(TransportEvents* events) override;

    bool hasEvents() const;
    void update(const std::vector<AravisDeviceInfo>& found, std::chrono::steady_clock::time_point roundStarted);

private:
    struct Changes;

    std::shared_ptr<AravisDevice> makeDevice(const AravisDeviceInfo& info, Changes& changes);
    void tellAccessChanged(const std::shared_ptr<AravisDevice>& device);

    const InterfaceType type_;
    mutable std::mutex mutex_;
    std::vector<std::shared_ptr<AravisInterface>> interfaces_;
    std::vector<std::shared_ptr<AravisDevice>> devices_;
    TransportEvents* events_ = nullptr;
};

} // namespace ZebCPP
