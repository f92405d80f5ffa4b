#include "systemstate.h"

#include "camera.h"
#include "icameralistobserver.h"
#include "iinterfacelistobserver.h"
#include "interface.h"
#include "sim/simmodule.h"
#ifdef ZEB_HAVE_ARAVIS
#include "aravis/aravismodule.h"
#endif
#include "transportlayer.h"

#include <algorithm>
#include <cstdlib>

namespace ZebCPP {

namespace {

template <typename Observer>
ZebErrorType addTo(std::vector<std::shared_ptr<Observer>>& list, const std::shared_ptr<Observer>& observer)
{
    if (!observer)
        return ZebErrorBadParameter;
    if (std::find(list.begin(), list.end(), observer) != list.end())
        return ZebErrorInvalidCall;
    list.push_back(observer);
    return ZebErrorSuccess;
}

template <typename Observer>
ZebErrorType removeFrom(std::vector<std::shared_ptr<Observer>>& list, const std::shared_ptr<Observer>& observer)
{
    if (!observer)
        return ZebErrorBadParameter;
    const auto it = std::find(list.begin(), list.end(), observer);
    if (it == list.end())
        return ZebErrorNotFound;
    list.erase(it);
    return ZebErrorSuccess;
}

} // namespace

ZebErrorType SystemState::startup()
{
    std::vector<std::unique_ptr<TransportModule>> modules;
    if (const char* simConfig = std::getenv("ZEB_SIM_CAMERAS")) {
        ZebErrorType err = ZebErrorSuccess;
        std::unique_ptr<TransportModule> sim = loadSimModule(simConfig, &err);
        if (!sim)
            return err;
        modules.push_back(std::move(sim));
    }
#ifdef ZEB_HAVE_ARAVIS
    if (std::unique_ptr<TransportModule> aravis = loadAravisModule())
        modules.push_back(std::move(aravis));
#endif

    std::vector<TransportLayerBackendPtr> layers;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (started_)
            return ZebErrorSuccess;
        started_ = true;
        notifier_ = std::make_unique<Notifier>();
        for (auto& module : modules) {
            for (const TransportLayerBackendPtr& tl : module->transportLayers()) {
                auto publicTl = std::make_shared<TransportLayer>(tl);
                transportLayers_[tl.get()] = publicTl;
                transportLayerOrder_.push_back(publicTl);
                layers.push_back(tl);
            }
            modules_.push_back(std::move(module));
        }
        for (const TransportLayerBackendPtr& tl : layers) {
            for (const InterfaceBackendPtr& interface : tl->interfaces())
                addInterface(tl.get(), interface);
            for (const DeviceBackendPtr& device : tl->devices())
                addDevice(tl.get(), device);
        }
    }
    // Events may come from here on; the lists above are complete.
    for (const TransportLayerBackendPtr& tl : layers)
        tl->setEvents(this);
    return ZebErrorSuccess;
}

ZebErrorType SystemState::shutdown()
{
    std::unique_ptr<Notifier> notifier;
    std::vector<std::unique_ptr<TransportModule>> modules;
    std::vector<DeviceBackendPtr> devices;
    std::map<TransportLayerBackend*, TransportLayerPtr> layers;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!started_)
            return ZebErrorApiNotStarted;
        if (notifier_->isOwnThread())
            return ZebErrorInvalidCall; // an observer cannot wait for itself
        started_ = false;
        notifier = std::move(notifier_);
        modules = std::move(modules_);
        devices = std::move(devicesSeen_);
        layers = std::move(transportLayers_);
        transportLayerOrder_.clear();
        interfaceOf_.clear();
        interfaces_.clear();
        cameras_.clear();
    }
    for (auto& entry : layers)
        entry.first->setEvents(nullptr);
    for (const DeviceBackendPtr& device : devices)
        device->detach();
    for (auto& module : modules)
        module->shutdown();
    notifier->stop();
    std::lock_guard<std::mutex> lock(mutex_);
    cameraObservers_.clear();
    interfaceObservers_.clear();
    return ZebErrorSuccess;
}

ZebErrorType SystemState::cameras(std::vector<CameraPtr>& list)
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!started_)
        return ZebErrorApiNotStarted;
    list.clear();
    for (const auto& entry : cameras_)
        list.push_back(entry.second);
    return ZebErrorSuccess;
}

ZebErrorType SystemState::cameraById(const std::string& id, CameraPtr& camera)
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!started_)
        return ZebErrorApiNotStarted;
    for (const auto& entry : cameras_) {
        const DeviceIdentity& identity = entry.first->identity();
        if (identity.extendedId == id || identity.id == id) {
            camera = entry.second;
            return ZebErrorSuccess;
        }
    }
    return ZebErrorNotFound;
}

ZebErrorType SystemState::interfaces(std::vector<InterfacePtr>& list)
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!started_)
        return ZebErrorApiNotStarted;
    list = interfaces_;
    return ZebErrorSuccess;
}

ZebErrorType SystemState::interfaceById(const std::string& id, InterfacePtr& interface)
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!started_)
        return ZebErrorApiNotStarted;
    for (const auto& entry : interfaceOf_) {
        if (entry.first->id() == id) {
            interface = entry.second;
            return ZebErrorSuccess;
        }
    }
    return ZebErrorNotFound;
}

ZebErrorType SystemState::transportLayers(std::vector<TransportLayerPtr>& list)
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!started_)
        return ZebErrorApiNotStarted;
    list = transportLayerOrder_;
    return ZebErrorSuccess;
}

ZebErrorType SystemState::addCameraObserver(const ICameraListObserverPtr& observer)
{
    std::lock_guard<std::mutex> lock(mutex_);
    return started_ ? addTo(cameraObservers_, observer) : ZebErrorApiNotStarted;
}

ZebErrorType SystemState::removeCameraObserver(const ICameraListObserverPtr& observer)
{
    std::lock_guard<std::mutex> lock(mutex_);
    return started_ ? removeFrom(cameraObservers_, observer) : ZebErrorApiNotStarted;
}

ZebErrorType SystemState::addInterfaceObserver(const IInterfaceListObserverPtr& observer)
{
    std::lock_guard<std::mutex> lock(mutex_);
    return started_ ? addTo(interfaceObservers_, observer) : ZebErrorApiNotStarted;
}

ZebErrorType SystemState::removeInterfaceObserver(const IInterfaceListObserverPtr& observer)
{
    std::lock_guard<std::mutex> lock(mutex_);
    return started_ ? removeFrom(interfaceObservers_, observer) : ZebErrorApiNotStarted;
}

void SystemState::devicePlugged(TransportLayerBackend* tl, const DeviceBackendPtr& device)
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!started_)
        return;
    addDevice(tl, device);
    notifyCamera(cameras_.back().second, UpdateTriggerPluggedIn);
}

void SystemState::deviceUnplugged(TransportLayerBackend*, const DeviceBackendPtr& device)
{
    std::lock_guard<std::mutex> lock(mutex_);
    const auto it = std::find_if(cameras_.begin(), cameras_.end(),
                                 [&](const auto& entry) { return entry.first == device; });
    if (!started_ || it == cameras_.end())
        return;
    const CameraPtr camera = it->second;
    cameras_.erase(it);
    notifyCamera(camera, UpdateTriggerPluggedOut);
}

void SystemState::deviceAccessChanged(TransportLayerBackend*, const DeviceBackendPtr& device)
{
    std::lock_guard<std::mutex> lock(mutex_);
    const auto it = std::find_if(cameras_.begin(), cameras_.end(),
                                 [&](const auto& entry) { return entry.first == device; });
    if (started_ && it != cameras_.end())
        notifyCamera(it->second, UpdateTriggerOpenStateChanged);
}

void SystemState::interfacePlugged(TransportLayerBackend* tl, const InterfaceBackendPtr& interface)
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!started_)
        return;
    addInterface(tl, interface);
    notifyInterface(interfaces_.back(), UpdateTriggerPluggedIn);
}

void SystemState::addInterface(TransportLayerBackend* tl, const InterfaceBackendPtr& interface)
{
    auto publicInterface = std::make_shared<Interface>(interface, transportLayers_[tl]);
    interfaceOf_[interface.get()] = publicInterface;
    interfaces_.push_back(publicInterface);
}

void SystemState::addDevice(TransportLayerBackend* tl, const DeviceBackendPtr& device)
{
    InterfacePtr interface;
    for (const auto& entry : interfaceOf_) {
        if (entry.first->id() == device->identity().interfaceId)
            interface = entry.second;
    }
    cameras_.emplace_back(device, std::make_shared<Camera>(device, interface, transportLayers_[tl]));
    devicesSeen_.push_back(device);
}

// Called with the lock held: the observer list is copied when the job runs, so
// an observer unregistered meanwhile is not called any more.
void SystemState::notifyCamera(const CameraPtr& camera, UpdateTriggerType reason)
{
    notifier_->post([this, camera, reason] {
        std::vector<ICameraListObserverPtr> observers;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            observers = cameraObservers_;
        }
        for (const ICameraListObserverPtr& observer : observers)
            observer->CameraListChanged(camera, reason);
    });
}

void SystemState::notifyInterface(const InterfacePtr& interface, UpdateTriggerType reason)
{
    notifier_->post([this, interface, reason] {
        std::vector<IInterfaceListObserverPtr> observers;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            observers = interfaceObservers_;
        }
        for (const IInterfaceListObserverPtr& observer : observers)
            observer->InterfaceListChanged(interface, reason);
    });
}

} // namespace ZebCPP
