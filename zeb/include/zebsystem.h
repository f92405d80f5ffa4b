#pragma once

#include "zebtypes.h"

#include <vector>

namespace ZebCPP {

class SystemState;

// The process-wide entry of the SDK.
//
// Startup() loads the transport layers: the simulated cameras when the
// environment variable ZEB_SIM_CAMERAS is set ("default" for the built-in set, or
// the path of a JSON description). Startup() of a started system does nothing and
// succeeds. Shutdown() closes every camera, stops the observer thread (after the
// last notification was delivered) and forgets the observers; camera objects the
// caller still holds then return ZebErrorBadHandle. Shutdown() called from inside
// an observer returns ZebErrorInvalidCall (the observer thread cannot wait for
// itself). Every other call of a system that is not started returns
// ZebErrorApiNotStarted.
class ZebSystem {
public:
    static ZebSystem& GetInstance();

    ZebSystem(const ZebSystem&) = delete;
    ZebSystem& operator=(const ZebSystem&) = delete;

    ZebErrorType Startup();
    ZebErrorType Shutdown();
    // Works whether or not the system is started.
    ZebErrorType QueryVersion(ZebVersionInfo& version) const;

    // A null array asks for the count; a short array gives ZebErrorMoreData and the
    // count. The same camera is always the same object.
    ZebErrorType GetCameras(CameraPtr* cameras, uint32_t& size);
    // Accepts the plain ID of a camera as well as its extended ID.
    ZebErrorType GetCameraByID(const char* id, CameraPtr& camera);
    ZebErrorType GetInterfaces(InterfacePtr* interfaces, uint32_t& size);
    ZebErrorType GetInterfaceByID(const char* id, InterfacePtr& interface);
    ZebErrorType GetTransportLayers(TransportLayerPtr* transportLayers, uint32_t& size);

    // Registering the same observer twice gives ZebErrorInvalidCall, removing one
    // that is not registered ZebErrorNotFound.
    ZebErrorType RegisterCameraListObserver(const ICameraListObserverPtr& observer);
    ZebErrorType UnregisterCameraListObserver(const ICameraListObserverPtr& observer);
    ZebErrorType RegisterInterfaceListObserver(const IInterfaceListObserverPtr& observer);
    ZebErrorType UnregisterInterfaceListObserver(const IInterfaceListObserverPtr& observer);

    ZebErrorType GetCameras(std::vector<CameraPtr>& cameras);
    ZebErrorType GetInterfaces(std::vector<InterfacePtr>& interfaces);
    ZebErrorType GetTransportLayers(std::vector<TransportLayerPtr>& transportLayers);

private:
    ZebSystem();
    ~ZebSystem();

    std::unique_ptr<SystemState> state_;
};

} // namespace ZebCPP
