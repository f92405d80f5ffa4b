#pragma once

// Internal: the started state of ZebSystem, and the receiver of the transport
// layers' events.

#include "notifier.h"
#include "transportmodule.h"
#include "zebtypes.h"

#include <map>
#include <mutex>
#include <vector>

namespace ZebCPP {

class SystemState : public TransportEvents {
public:
    ZebErrorType startup();
    ZebErrorType shutdown();

    ZebErrorType cameras(std::vector<CameraPtr>& list);
    ZebErrorType cameraById(const std::string& id, CameraPtr& camera);
    ZebErrorType interfaces(std::vector<InterfacePtr>& list);
    ZebErrorType interfaceById(const std::string& id, InterfacePtr& interface);
    ZebErrorType transportLayers(std::vector<TransportLayerPtr>& list);

    ZebErrorType addCameraObserver(const ICameraListObserverPtr& observer);
    ZebErrorType removeCameraObserver(const ICameraListObserverPtr& observer);
    ZebErrorType addInterfaceObserver(const IInterfaceListObserverPtr& observer);
    ZebErrorType removeInterfaceObserver(const IInterfaceListObserverPtr& observer);

    void devicePlugged(TransportLayerBackend* tl, const DeviceBackendPtr& device) override;
    void deviceUnplugged(TransportLayerBackend* tl, const DeviceBackendPtr& device) override;
    void deviceAccessChanged(TransportLayerBackend* tl, const DeviceBackendPtr& device) override;
    void interfacePlugged(TransportLayerBackend* tl, const InterfaceBackendPtr& interface) override;

private:
    void addInterface(TransportLayerBackend* tl, const InterfaceBackendPtr& interface);
    void addDevice(TransportLayerBackend* tl, const DeviceBackendPtr& device);
    void notifyCamera(const CameraPtr& camera, UpdateTriggerType reason);
    void notifyInterface(const InterfacePtr& interface, UpdateTriggerType reason);

    std::mutex mutex_;
    bool started_ = false;
    std::unique_ptr<Notifier> notifier_;
    std::vector<std::unique_ptr<TransportModule>> modules_;
    std::map<TransportLayerBackend*, TransportLayerPtr> transportLayers_;
    std::vector<TransportLayerPtr> transportLayerOrder_;
    std::map<InterfaceBackend*, InterfacePtr> interfaceOf_;
    std::vector<InterfacePtr> interfaces_;
    std::vector<std::pair<DeviceBackendPtr, CameraPtr>> cameras_; // present cameras in plug order
    std::vector<DeviceBackendPtr> devicesSeen_;                   // detached at shut down
    std::vector<ICameraListObserverPtr> cameraObservers_;
    std::vector<IInterfaceListObserverPtr> interfaceObservers_;
};

} // namespace ZebCPP
