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
    // answering, and every further call would wait for the same timeout again
    // (libaravis 0.8 has no setting for its acknowledge timeout and retries).
    ZebErrorType run(const Body& body);
    // Acquisition needs libaravis's camera object over the device; made once.
    ZebErrorType camera(ArvDevice* device, ArvCamera*& camera, GError** error);

    bool isLost() const { return lost_; }
    // Ends the session: later calls get `reason`. Waits for a call in progress.
    void end(ZebErrorType reason);

private:
    std::mutex mutex_;
    GObjectRef<ArvDevice> device_;
    GObjectRef<ArvCamera> camera_;
    const bool control_;
    ZebErrorType endedWith_ = ZebErrorSuccess;
    std::atomic<bool> lost_{false};
};

} // namespace ZebCPP
