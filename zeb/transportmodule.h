#pragma once

// Internal: a loaded set of transport layers (one per kind of link a module
// drives) that ZebSystem starts and stops as a whole.

#include "transportbackend.h"

namespace ZebCPP {

class TransportModule {
public:
    virtual ~TransportModule() = default;
    virtual std::vector<TransportLayerBackendPtr> transportLayers() = 0;
    // Detaches every device; after this the module sends no events.
    virtual void shutdown() = 0;
};

} // namespace ZebCPP
