#include "transportlayer.h"

#include "transportbackend.h"
#include "zebboundary.h"

namespace ZebCPP {

TransportLayer::TransportLayer(std::shared_ptr<TransportLayerBackend> backend)
    : backend_(std::move(backend))
{
}

TransportLayer::~TransportLayer() = default;

ZebErrorType TransportLayer::GetID(char* id, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->id(), id, length); });
}

ZebErrorType TransportLayer::GetName(char* name, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->name(), name, length); });
}

ZebErrorType TransportLayer::GetPath(char* path, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->path(), path, length); });
}

ZebErrorType TransportLayer::GetType(InterfaceType& type) const
{
    return guarded([&] {
        type = backend_->type();
        return ZebErrorSuccess;
    });
}

ZebErrorType TransportLayer::GetID(std::string& id) const
{
    return fetchString(id, [this](char* b, uint32_t& l) { return GetID(b, l); });
}

ZebErrorType TransportLayer::GetName(std::string& name) const
{
    return fetchString(name, [this](char* b, uint32_t& l) { return GetName(b, l); });
}

ZebErrorType TransportLayer::GetPath(std::string& path) const
{
    return fetchString(path, [this](char* b, uint32_t& l) { return GetPath(b, l); });
}

} // namespace ZebCPP
