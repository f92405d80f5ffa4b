#pragma once

#include "sim/simcamera.h"
#include "sim/simdescription.h"
#include "sim/simdevice.h"
#include "sim/simtransportlayer.h"

#include <mutex>

namespace ZebCPP {

// The bench of simulated cameras: which transport layer each camera hangs on,
// whether it is plugged in, and the handle the SDK knows it by. The test control
// reaches the world of the running SDK through current().
class SimWorld : public std::enable_shared_from_this<SimWorld> {
public:
    static std::shared_ptr<SimWorld> create(const SimCameraSet& set);
    static std::shared_ptr<SimWorld> current();

    std::vector<TransportLayerBackendPtr> transportLayers() const;
    // Unplugs everything silently and leaves current().
    void shutdown();

    ZebErrorType plug(const SimCameraDescription& description);
    ZebErrorType unplug(const std::string& name);
    ZebErrorType replug(const std::string& name);
    // By serial number, plain or extended camera ID; null if unknown.
    std::shared_ptr<SimCamera> find(const std::string& name) const;

private:
    struct Entry {
        std::shared_ptr<SimCamera> camera;
        std::shared_ptr<SimTransportLayer> transportLayer;
        std::shared_ptr<SimDevice> device; // null while unplugged
    };

    SimWorld() = default;
    std::vector<DeviceBackendPtr> devicesOf(const SimTransportLayer* tl) const;
    // newInterface: the camera brings an interface the transport layer must add.
    std::shared_ptr<SimTransportLayer> transportLayerFor(const SimCameraDescription& description,
                                                         bool& newInterface) const;
    Entry* entryOf(const std::string& name);
    const Entry* entryOf(const std::string& name) const;
    std::shared_ptr<SimDevice> connect(Entry& entry);
    void onCameraEvent(SimCamera& camera, SimCamera::Event event);

    mutable std::mutex mutex_;
    std::vector<std::shared_ptr<SimTransportLayer>> transportLayers_;
    std::vector<Entry> entries_;
};

} // namespace ZebCPP
