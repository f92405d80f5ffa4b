#pragma once

#include "zebtypes.h"

#include <string>

namespace ZebCPP {

class TransportLayerBackend;

// One kind of camera link the SDK drives (GigE Vision, USB3 Vision, ...).
class TransportLayer {
public:
    explicit TransportLayer(std::shared_ptr<TransportLayerBackend> backend);
    TransportLayer(const TransportLayer&) = delete;
    TransportLayer& operator=(const TransportLayer&) = delete;
    ~TransportLayer();

    ZebErrorType GetID(char* id, uint32_t& length) const;
    ZebErrorType GetName(char* name, uint32_t& length) const;
    // File path of the module behind the transport layer.
    ZebErrorType GetPath(char* path, uint32_t& length) const;
    ZebErrorType GetType(InterfaceType& type) const;

    ZebErrorType GetID(std::string& id) const;
    ZebErrorType GetName(std::string& name) const;
    ZebErrorType GetPath(std::string& path) const;

private:
    std::shared_ptr<TransportLayerBackend> backend_;
};

} // namespace ZebCPP
