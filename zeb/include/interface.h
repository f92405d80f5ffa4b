#pragma once

#include "featurecontainer.h"

#include <string>

namespace ZebCPP {

class InterfaceBackend;

// A link of a transport layer that cameras are attached to (a network card, a
// USB host controller).
class Interface : public FeatureContainer {
public:
    Interface(std::shared_ptr<InterfaceBackend> backend, TransportLayerPtr transportLayer);
    ~Interface() override;

    ZebErrorType GetID(char* id, uint32_t& length) const;
    ZebErrorType GetName(char* name, uint32_t& length) const;
    ZebErrorType GetType(InterfaceType& type) const;
    ZebErrorType GetTransportLayer(TransportLayerPtr& transportLayer) const;

    ZebErrorType GetID(std::string& id) const;
    ZebErrorType GetName(std::string& name) const;

private:
    std::shared_ptr<InterfaceBackend> backend_;
    TransportLayerPtr transportLayer_;
};

} // namespace ZebCPP
