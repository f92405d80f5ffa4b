#include "zebsystem.h"

#include "systemstate.h"
#include "zebboundary.h"

namespace ZebCPP {

namespace {
constexpr ZebVersionInfo kVersion{1, 0, 0};
}

ZebSystem& ZebSystem::GetInstance()
{
    static ZebSystem instance;
    return instance;
}

ZebSystem::ZebSystem() : state_(std::make_unique<SystemState>()) {}

// The singleton dies at exit; a caller that forgot Shutdown still gets its
// threads joined.
ZebSystem::~ZebSystem()
{
    state_->shutdown();
}

ZebErrorType ZebSystem::Startup()
{
    return guarded([&] { return state_->startup(); });
}

ZebErrorType ZebSystem::Shutdown()
{
    return guarded([&] { return state_->shutdown(); });
}

ZebErrorType ZebSystem::QueryVersion(ZebVersionInfo& version) const
{
    version = kVersion;
    return ZebErrorSuccess;
}

ZebErrorType ZebSystem::GetCameras(CameraPtr* cameras, uint32_t& size)
{
    return guarded([&] {
        std::vector<CameraPtr> list;
        const ZebErrorType err = state_->cameras(list);
        return err == ZebErrorSuccess ? copyList(list, cameras, size) : err;
    });
}

ZebErrorType ZebSystem::GetCameras(std::vector<CameraPtr>& cameras)
{
    return guarded([&] { return state_->cameras(cameras); });
}

ZebErrorType ZebSystem::GetCameraByID(const char* id, CameraPtr& camera)
{
    if (id == nullptr)
        return ZebErrorBadParameter;
    return guarded([&] { return state_->cameraById(id, camera); });
}

ZebErrorType ZebSystem::GetInterfaces(InterfacePtr* interfaces, uint32_t& size)
{
    return guarded([&] {
        std::vector<InterfacePtr> list;
        const ZebErrorType err = state_->interfaces(list);
        return err == ZebErrorSuccess ? copyList(list, interfaces, size) : err;
    });
}

ZebErrorType ZebSystem::GetInterfaces(std::vector<InterfacePtr>& interfaces)
{
    return guarded([&] { return state_->interfaces(interfaces); });
}

ZebErrorType ZebSystem::GetInterfaceByID(const char* id, InterfacePtr& interface)
{
    if (id == nullptr)
        return ZebErrorBadParameter;
    return guarded([&] { return state_->interfaceById(id, interface); });
}

ZebErrorType ZebSystem::GetTransportLayers(TransportLayerPtr* transportLayers, uint32_t& size)
{
    return guarded([&] {
        std::vector<TransportLayerPtr> list;
        const ZebErrorType err = state_->transportLayers(list);
        return err == ZebErrorSuccess ? copyList(list, transportLayers, size) : err;
    });
}

ZebErrorType ZebSystem::GetTransportLayers(std::vector<TransportLayerPtr>& transportLayers)
{
    return guarded([&] { return state_->transportLayers(transportLayers); });
}

ZebErrorType ZebSystem::RegisterCameraListObserver(const ICameraListObserverPtr& observer)
{
    return guarded([&] { return state_->addCameraObserver(observer); });
}

ZebErrorType ZebSystem::UnregisterCameraListObserver(const ICameraListObserverPtr& observer)
{
    return guarded([&] { return state_->removeCameraObserver(observer); });
}

ZebErrorType ZebSystem::RegisterInterfaceListObserver(const IInterfaceListObserverPtr& observer)
{
    return guarded([&] { return state_->addInterfaceObserver(observer); });
}

ZebErrorType ZebSystem::UnregisterInterfaceListObserver(const IInterfaceListObserverPtr& observer)
{
    return guarded([&] { return state_->removeInterfaceObserver(observer); });
}

} // namespace ZebCPP
