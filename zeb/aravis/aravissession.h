#pragma once

#include "aravis/aravisglib.h"
#include "zebtypes.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace ZebCPP {

// One open of a camera: the libaravis device and the lock that serialises every
// use of it (its GenICam tree is not thread-safe). Features and streams of that
// open hold the session; after it ended they get DeviceNotOpen (closed) or
// BadHandle (camera gone, SDK shut down).
class AravisSession {
public:
    using Body = std::function<ZebErrorType(ArvDevice* device, GError** error)>;

    AravisSession(GObjectRef<ArvDevice> device, bool control);

    bool hasControl() const { return control_; }
    // Runs body with the lock held and maps what it left in *error. A timeout
    // or lost connection ends the session as lost: the device stopped
    // answering, and every further call would wait for the same timeout again.
    ZebErrorType run(const Body& body);
    // Acquisition needs libaravis's camera object over the device; made once.
    ZebErrorType camera(ArvDevice* device, ArvCamera*& camera, GError** error);

    bool isLost() const { return lost_; }
    // Ends the session; the device is handed back so that the caller releases it
    // (leaving the control channel of a vanished camera waits for its timeout).
    GObjectRef<ArvDevice> end(ZebErrorType reason);

private:
    std::mutex mutex_;
    GObjectRef<ArvDevice> device_;
    GObjectRef<ArvCamera> camera_;
    const bool control_;
    ZebErrorType endedWith_ = ZebErrorSuccess;
    std::atomic<bool> lost_{false};
};

} // namespace ZebCPP
