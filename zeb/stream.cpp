#include "stream.h"

#include "transportbackend.h"
#include "zebboundary.h"

namespace ZebCPP {

Stream::Stream(std::shared_ptr<StreamBackend> backend)
    : FeatureContainer(backend), backend_(std::move(backend))
{
}

Stream::~Stream() = default;

ZebErrorType Stream::GetID(char* id, uint32_t& length) const
{
    return guarded([&] { return copyOut(backend_->id(), id, length); });
}

ZebErrorType Stream::GetID(std::string& id) const
{
    return fetchString(id, [this](char* b, uint32_t& l) { return GetID(b, l); });
}

} // namespace ZebCPP
