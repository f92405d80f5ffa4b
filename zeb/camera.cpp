#include "camera.h"

#include "stream.h"
#include "transportbackend.h"
#include "zebboundary.h"

namespace ZebCPP {

Camera::Camera(std::shared_ptr<DeviceBackend> backend, InterfacePtr interface,
               TransportLayerPtr transportLayer)
    : FeatureContainer(backend), backend_(std::move(backend)), interface_(std::move(interface)),
      transportLayer_(std::move(transportLayer))
{
}

Camera::~Camera() = default;

ZebErrorType Camera::Open(AccessModeType accessMode)
{
    return guarded([&] { return backend_->open(accessMode); });
}

ZebErrorType Camera::Close()
{
    return guarded([&] { return backend_->close(); });
}

ZebErrorType Camera::GetID(char* id, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->identity().id, id, length); });
}

ZebErrorType Camera::GetExtendedID(char* id, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->identity().extendedId, id, length); });
}

ZebErrorType Camera::GetName(char* name, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->identity().name, name, length); });
}

ZebErrorType Camera::GetModel(char* model, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->identity().model, model, length); });
}

ZebErrorType Camera::GetSerialNumber(char* serial, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->identity().serial, serial, length); });
}

ZebErrorType Camera::GetInterfaceID(char* id, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->identity().interfaceId, id, length); });
}

ZebErrorType Camera::GetInterface(InterfacePtr& interface) const
{
    if (!interface_)
        return ZebErrorNotFound;
    interface = interface_;
    return ZebErrorSuccess;
}

ZebErrorType Camera::GetTransportLayer(TransportLayerPtr& transportLayer) const
{
    if (!transportLayer_)
        return ZebErrorNotFound;
    transportLayer = transportLayer_;
    return ZebErrorSuccess;
}

ZebErrorType Camera::GetInterfaceType(InterfaceType& type) const
{
    return guarded([&] {
        type = backend_->identity().type;
        return ZebErrorSuccess;
    });
}

ZebErrorType Camera::GetPermittedAccess(AccessModeType& access) const
{
    return guarded([&] { return backend_->permittedAccess(access); });
}

namespace {

// Register space is addressed in whole 32-bit words on every transport.
bool isWordAccess(const void* buffer, uint64_t address, uint32_t size)
{
    return buffer != nullptr && size != 0 && address % 4 == 0 && size % 4 == 0;
}

} // namespace

ZebErrorType Camera::ReadMemory(uint64_t address, uint8_t* buffer, uint32_t size,
                                uint32_t& sizeComplete) const
{
    sizeComplete = 0;
    if (!isWordAccess(buffer, address, size))
        return ZebErrorBadParameter;
    return guarded([&] { return backend_->readMemory(address, buffer, size, sizeComplete); });
}

ZebErrorType Camera::WriteMemory(uint64_t address, const uint8_t* buffer, uint32_t size,
                                 uint32_t& sizeComplete)
{
    sizeComplete = 0;
    if (!isWordAccess(buffer, address, size))
        return ZebErrorBadParameter;
    return guarded([&] { return backend_->writeMemory(address, buffer, size, sizeComplete); });
}

ZebErrorType Camera::GetStreams(StreamPtr* streams, uint32_t& size)
{
    return guarded([&] {
        std::vector<StreamPtr> list;
        const ZebErrorType err = GetStreams(list);
        return err == ZebErrorSuccess ? copyList(list, streams, size) : err;
    });
}

ZebErrorType Camera::GetStreams(std::vector<StreamPtr>& streams)
{
    return guarded([&] {
        std::vector<StreamBackendPtr> backends;
        const ZebErrorType err = backend_->streams(backends);
        if (err != ZebErrorSuccess)
            return err;
        std::lock_guard<std::mutex> lock(streamsMutex_);
        if (backends != streamBackends_) {
            streams_.clear();
            for (const StreamBackendPtr& backend : backends)
                streams_.push_back(std::make_shared<Stream>(backend));
            streamBackends_ = std::move(backends);
        }
        streams = streams_;
        return ZebErrorSuccess;
    });
}

ZebErrorType Camera::AcquireSingleImage(FramePtr& frame, uint32_t timeoutMs,
                                        FrameAllocationMode allocationMode)
{
    if (allocationMode != FrameAllocationModeSdk
        && allocationMode != FrameAllocationModeTransportLayer)
        return ZebErrorBadParameter;
    return guarded([&] { return backend_->acquireSingleImage(frame, timeoutMs); });
}

ZebErrorType Camera::GetID(std::string& id) const
{
    return fetchString(id, [this](char* b, uint32_t& l) { return GetID(b, l); });
}

ZebErrorType Camera::GetExtendedID(std::string& id) const
{
    return fetchString(id, [this](char* b, uint32_t& l) { return GetExtendedID(b, l); });
}

ZebErrorType Camera::GetName(std::string& name) const
{
    return fetchString(name, [this](char* b, uint32_t& l) { return GetName(b, l); });
}

ZebErrorType Camera::GetModel(std::string& model) const
{
    return fetchString(model, [this](char* b, uint32_t& l) { return GetModel(b, l); });
}

ZebErrorType Camera::GetSerialNumber(std::string& serial) const
{
    return fetchString(serial, [this](char* b, uint32_t& l) { return GetSerialNumber(b, l); });
}

ZebErrorType Camera::GetInterfaceID(std::string& id) const
{
    return fetchString(id, [this](char* b, uint32_t& l) { return GetInterfaceID(b, l); });
}

} // namespace ZebCPP
