#include "interface.h"

#include "transportbackend.h"
#include "zebboundary.h"

namespace ZebCPP {

Interface::Interface(std::shared_ptr<InterfaceBackend> backend, TransportLayerPtr transportLayer)
    : FeatureContainer(backend), backend_(std::move(backend)),
      transportLayer_(std::move(transportLayer))
{
}

Interface::~Interface() = default;

ZebErrorType Interface::GetID(char* id, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->id(), id, length); });
}

ZebErrorType Interface::GetName(char* name, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->name(), name, length); });
}

ZebErrorType Interface::GetType(InterfaceType& type) const
{
    return guarded([&] {
        type = backend_->type();
        return ZebErrorSuccess;
    });
}

ZebErrorType Interface::GetTransportLayer(TransportLayerPtr& transportLayer) const
{
    if (!transportLayer_)
        return ZebErrorNotFound;
    transportLayer = transportLayer_;
    return ZebErrorSuccess;
}

ZebErrorType Interface::GetID(std::string& id) const
{
    return fetchString(id, [this](char* b, uint32_t& l) { return GetID(b, l); });
}

ZebErrorType Interface::GetName(std::string& name) const
{
    return fetchString(name, [this](char* b, uint32_t& l) { return GetName(b, l); });
}

} // namespace ZebCPP
