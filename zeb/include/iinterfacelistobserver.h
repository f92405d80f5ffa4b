#pragma once

#include "zebtypes.h"

namespace ZebCPP {

// Told about interfaces appearing and disappearing; called like the camera list
// observer, on an SDK thread.
class IInterfaceListObserver {
public:
    virtual ~IInterfaceListObserver() = default;
    virtual void InterfaceListChanged(InterfacePtr interface, UpdateTriggerType reason) = 0;
};

} // namespace ZebCPP
