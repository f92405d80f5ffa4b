#include "sim/simworld.h"

namespace ZebCPP {

namespace {

std::mutex registryMutex;
std::weak_ptr<SimWorld> registered;

} // namespace

std::shared_ptr<SimWorld> SimWorld::create(const SimCameraSet& set)
{
    std::shared_ptr<SimWorld> world(new SimWorld);
    std::weak_ptr<SimWorld> weak = world;
    for (const SimTransportLayerDescription& tl : set.transportLayers) {
        world->transportLayers_.push_back(std::make_shared<SimTransportLayer>(
            tl, [weak](const SimTransportLayer* layer) {
                const std::shared_ptr<SimWorld> w = weak.lock();
                return w ? w->devicesOf(layer) : std::vector<DeviceBackendPtr>();
            }));
    }
    for (const SimCameraDescription& camera : set.cameras) {
        if (world->plug(camera) != ZebErrorSuccess)
            return nullptr;
    }
    std::lock_guard<std::mutex> lock(registryMutex);
    registered = world;
    return world;
}

std::shared_ptr<SimWorld> SimWorld::current()
{
    std::lock_guard<std::mutex> lock(registryMutex);
    return registered.lock();
}

std::vector<TransportLayerBackendPtr> SimWorld::transportLayers() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    return {transportLayers_.begin(), transportLayers_.end()};
}

void SimWorld::shutdown()
{
    {
        std::lock_guard<std::mutex> lock(registryMutex);
        if (registered.lock().get() == this)
            registered.reset();
    }
    std::lock_guard<std::mutex> lock(mutex_);
    for (Entry& entry : entries_) {
        entry.camera->setListener(nullptr);
        entry.camera->unplug();
        entry.device.reset();
    }
}

std::vector<DeviceBackendPtr> SimWorld::devicesOf(const SimTransportLayer* tl) const
{
    std::lock_guard<std::mutex> lock(mutex_);
    std::vector<DeviceBackendPtr> devices;
    for (const Entry& entry : entries_) {
        if (entry.transportLayer.get() == tl && entry.device)
            devices.push_back(entry.device);
    }
    return devices;
}

std::shared_ptr<SimTransportLayer> SimWorld::transportLayerFor(const SimCameraDescription& d,
                                                               bool& newInterface) const
{
    newInterface = false;
    for (const auto& tl : transportLayers_) {
        if (tl->hasInterface(d.interfaceId))
            return tl;
    }
    for (const auto& tl : transportLayers_) {
        if (tl->id() == d.transportLayerId) {
            newInterface = true;
            return tl;
        }
    }
    return nullptr;
}

SimWorld::Entry* SimWorld::entryOf(const std::string& name)
{
    for (Entry& entry : entries_) {
        const SimCameraDescription& d = entry.camera->description();
        if (d.serial == name || d.id == name || entry.transportLayer->id() + "::" + d.id == name)
            return &entry;
    }
    return nullptr;
}

const SimWorld::Entry* SimWorld::entryOf(const std::string& name) const
{
    return const_cast<SimWorld*>(this)->entryOf(name);
}

std::shared_ptr<SimCamera> SimWorld::find(const std::string& name) const
{
    std::lock_guard<std::mutex> lock(mutex_);
    const Entry* entry = entryOf(name);
    return entry ? entry->camera : nullptr;
}

std::shared_ptr<SimDevice> SimWorld::connect(Entry& entry)
{
    const SimCameraDescription& d = entry.camera->description();
    DeviceIdentity identity;
    identity.id = d.id;
    identity.extendedId = entry.transportLayer->id() + "::" + d.id;
    identity.name = d.name;
    identity.model = d.model;
    identity.serial = d.serial;
    identity.interfaceId = d.interfaceId;
    identity.type = entry.transportLayer->type();
    const uint64_t connection = entry.camera->plug();
    entry.device = std::make_shared<SimDevice>(entry.camera, connection, identity);
    return entry.device;
}

ZebErrorType SimWorld::plug(const SimCameraDescription& description)
{
    std::shared_ptr<SimTransportLayer> tl;
    std::shared_ptr<SimDevice> device;
    bool newInterface = false;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (entryOf(description.serial) || entryOf(description.id))
            return ZebErrorInvalidValue;
        tl = transportLayerFor(description, newInterface);
        if (!tl)
            return ZebErrorBadParameter;
        Entry entry{std::make_shared<SimCamera>(description, tl->type()), tl, nullptr};
        std::weak_ptr<SimWorld> weak = weak_from_this();
        entry.camera->setListener([weak](SimCamera& camera, SimCamera::Event event) {
            if (const std::shared_ptr<SimWorld> world = weak.lock())
                world->onCameraEvent(camera, event);
        });
        device = connect(entry);
        entries_.push_back(std::move(entry));
    }
    // The SDK must know the interface before the camera on it.
    if (newInterface)
        tl->addInterface({description.interfaceId, description.interfaceId});
    tl->tellPlugged(device);
    return ZebErrorSuccess;
}

ZebErrorType SimWorld::unplug(const std::string& name)
{
    std::shared_ptr<SimTransportLayer> tl;
    std::shared_ptr<SimDevice> device;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        Entry* entry = entryOf(name);
        if (!entry)
            return ZebErrorNotFound;
        if (!entry->device)
            return ZebErrorInvalidCall;
        entry->camera->unplug();
        tl = entry->transportLayer;
        device = std::move(entry->device);
        entry->device.reset();
    }
    tl->tellUnplugged(device);
    return ZebErrorSuccess;
}

ZebErrorType SimWorld::replug(const std::string& name)
{
    std::shared_ptr<SimTransportLayer> tl;
    std::shared_ptr<SimDevice> device;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        Entry* entry = entryOf(name);
        if (!entry)
            return ZebErrorNotFound;
        if (entry->device)
            return ZebErrorInvalidCall;
        tl = entry->transportLayer;
        device = connect(*entry);
    }
    tl->tellPlugged(device);
    return ZebErrorSuccess;
}

void SimWorld::onCameraEvent(SimCamera& camera, SimCamera::Event event)
{
    std::shared_ptr<SimTransportLayer> tl;
    std::shared_ptr<SimDevice> device;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        for (Entry& entry : entries_) {
            if (entry.camera.get() == &camera && entry.device) {
                tl = entry.transportLayer;
                device = entry.device;
                if (event == SimCamera::Event::Unplugged)
                    entry.device.reset();
            }
        }
    }
    if (!device)
        return;
    if (event == SimCamera::Event::Unplugged)
        tl->tellUnplugged(device);
    else
        tl->tellAccessChanged(device);
}

} // namespace ZebCPP
