#pragma once

#include "zebtypes.h"

namespace ZebCPP {

// Told about cameras plugged in, unplugged, or opened and closed by any
// application. Called on an SDK thread, never on a thread of the caller; the
// calls of one observer come one at a time, in the order of the events.
class ICameraListObserver {
public:
    virtual ~ICameraListObserver() = default;
    virtual void CameraListChanged(CameraPtr camera, UpdateTriggerType reason) = 0;
};

} // namespace ZebCPP
