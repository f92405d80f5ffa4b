#include "aravis/aravissession.h"

#include "aravis/araviserror.h"

namespace ZebCPP {

AravisSession::AravisSession(GObjectRef<ArvDevice> device, bool control)
    : device_(std::move(device)), control_(control)
{
}

ZebErrorType AravisSession::run(const Body& body)
{
    if (lost_)
        return ZebErrorBadHandle;
    std::lock_guard<std::mutex> lock(mutex_);
    if (!device_)
        return endedWith_;
    GErrorHolder error;
    const ZebErrorType result = body(device_.get(), error.out());
    if (!error)
        return result;
    if (isConnectionLost(error.get())) {
        lost_ = true;
        return ZebErrorBadHandle;
    }
    return zebErrorOf(error.get());
}

ZebErrorType AravisSession::camera(ArvDevice* device, ArvCamera*& camera, GError** error)
{
    if (!camera_) {
        // The camera object takes its own reference to the device.
        camera_.reset(arv_camera_new_with_device(device, error));
        if (!camera_)
            return ZebErrorTransportLayer;
    }
    camera = camera_.get();
    return ZebErrorSuccess;
}

void AravisSession::end(ZebErrorType reason)
{
    if (reason == ZebErrorBadHandle)
        lost_ = true;
    std::lock_guard<std::mutex> lock(mutex_);
    endedWith_ = reason;
    camera_.reset();
    device_.reset();
}

} // namespace ZebCPP
