#include "aravis/aravisdevice.h"

#include "aravis/araviserror.h"
#include "aravis/aravisdiscovery.h"
#include "aravis/aravisfeaturelist.h"
#include "aravis/aravisstream.h"
#include "frame.h"

#include <cstring>

namespace ZebCPP {

namespace {

bool wantsControl(AccessModeType mode)
{
    return mode != AccessModeRead;
}

bool isDeviceFeature(const std::string& name)
{
    return name.rfind("Arv", 0) != 0; // libaravis's own helper nodes
}

// Frames carry 8-bit pixels and unpacked 10-, 12- and 16-bit pixels (two bytes
// each); packed and colour formats are refused.
bool frameFormatOf(ArvPixelFormat format, PixelFormatType& type)
{
    static const std::pair<ArvPixelFormat, PixelFormatType> kFormats[] = {
        {ARV_PIXEL_FORMAT_MONO_8, PixelFormatMono8},
        {ARV_PIXEL_FORMAT_BAYER_GR_8, PixelFormatBayerGR8},
        {ARV_PIXEL_FORMAT_BAYER_RG_8, PixelFormatBayerRG8},
        {ARV_PIXEL_FORMAT_BAYER_GB_8, PixelFormatBayerGB8},
        {ARV_PIXEL_FORMAT_BAYER_BG_8, PixelFormatBayerBG8},
        {ARV_PIXEL_FORMAT_MONO_10, PixelFormatMono10},
        {ARV_PIXEL_FORMAT_MONO_12, PixelFormatMono12},
        {ARV_PIXEL_FORMAT_MONO_16, PixelFormatMono16},
        {ARV_PIXEL_FORMAT_BAYER_GR_10, PixelFormatBayerGR10},
        {ARV_PIXEL_FORMAT_BAYER_RG_10, PixelFormatBayerRG10},
        {ARV_PIXEL_FORMAT_BAYER_GB_10, PixelFormatBayerGB10},
        {ARV_PIXEL_FORMAT_BAYER_BG_10, PixelFormatBayerBG10},
        {ARV_PIXEL_FORMAT_BAYER_GR_12, PixelFormatBayerGR12},
        {ARV_PIXEL_FORMAT_BAYER_RG_12, PixelFormatBayerRG12},
        {ARV_PIXEL_FORMAT_BAYER_GB_12, PixelFormatBayerGB12},
        {ARV_PIXEL_FORMAT_BAYER_BG_12, PixelFormatBayerBG12},
        {ARV_PIXEL_FORMAT_BAYER_GR_16, PixelFormatBayerGR16},
        {ARV_PIXEL_FORMAT_BAYER_RG_16, PixelFormatBayerRG16},
        {ARV_PIXEL_FORMAT_BAYER_GB_16, PixelFormatBayerGB16},
        {ARV_PIXEL_FORMAT_BAYER_BG_16, PixelFormatBayerBG16},
    };
    for (const auto& entry : kFormats) {
        if (entry.first == format) {
            type = entry.second;
            return true;
        }
    }
    return false;
}

FrameStatusType frameStatusOf(ArvBufferStatus status)
{
    switch (status) {
    case ARV_BUFFER_STATUS_SUCCESS:
        return FrameStatusComplete;
    case ARV_BUFFER_STATUS_MISSING_PACKETS:
    case ARV_BUFFER_STATUS_TIMEOUT:
    case ARV_BUFFER_STATUS_ABORTED:
        return FrameStatusIncomplete;
    case ARV_BUFFER_STATUS_SIZE_MISMATCH:
        return FrameStatusTooSmall;
    default:
        return FrameStatusInvalid;
    }
}

} // namespace

AravisDevice::AravisDevice(AravisDeviceInfo info, DeviceIdentity identity, AccessListener listener)
    : info_(std::move(info)), identity_(std::move(identity)), listener_(std::move(listener)),
      heldElsewhere_(info_.heldElsewhere)
{
}

AravisDevice::~AravisDevice()
{
    endSession(ZebErrorBadHandle);
}

bool AravisDevice::isLost() const
{
    if (lost_)
        return true;
    std::lock_guard<std::mutex> lock(mutex_);
    return session_ && session_->isLost();
}

bool AravisDevice::updateHeldElsewhere(bool held, std::chrono::steady_clock::time_point roundStarted)
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (session_ || held == heldElsewhere_ || (held && (ending_ || roundStarted <= sessionEnded_)))
        return false;
    heldElsewhere_ = held;
    return true;
}

bool AravisDevice::keepAfterMissedDiscovery()
{
    constexpr int kMissedDiscoveriesTolerated = 2;
    std::lock_guard<std::mutex> lock(mutex_);
    return session_ && ++missedDiscoveries_ <= kMissedDiscoveriesTolerated;
}

void AravisDevice::answeredDiscovery()
{
    std::lock_guard<std::mutex> lock(mutex_);
    missedDiscoveries_ = 0;
}

void AravisDevice::markLost()
{
    lost_ = true;
}

void AravisDevice::releaseLost()
{
    endSession(ZebErrorBadHandle);
}

void AravisDevice::endSession(ZebErrorType reason)
{
    std::shared_ptr<AravisSession> session;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        session = std::move(session_);
        ending_ = session != nullptr;
    }
    if (!session)
        return;
    session->end(reason); // releasing the device leaves the control channel
    std::lock_guard<std::mutex> lock(mutex_);
    ending_ = false;
    sessionEnded_ = std::chrono::steady_clock::now();
}

std::shared_ptr<AravisSession> AravisDevice::openSession(ZebErrorType& err) const
{
    if (lost_ || detached_) {
        err = ZebErrorBadHandle;
        return nullptr;
    }
    std::lock_guard<std::mutex> lock(mutex_);
    err = session_ ? ZebErrorSuccess : ZebErrorDeviceNotOpen;
    return session_;
}

GObjectRef<ArvDevice> AravisDevice::connect(bool control, ZebErrorType& err) const
{
    GErrorHolder error;
    GObjectRef<ArvDevice> device;
    if (info_.type == InterfaceTypeGigEVision) {
        GObjectRef<GInetAddress> local(g_inet_address_new_from_string(info_.interfaceAddress.c_str()));
        GObjectRef<GInetAddress> remote(g_inet_address_new_from_string(info_.deviceAddress.c_str()));
        if (!local || !remote) {
            err = ZebErrorNotFound;
            return device;
        }
        // Connecting asks for the control channel; a camera held elsewhere
        // still connects, without it.
        device.reset(arv_gv_device_new(local.get(), remote.get(), error.out()));
        if (device && control != (arv_gv_device_is_controller(ARV_GV_DEVICE(device.get())) != FALSE)) {
            if (control) {
                err = ZebErrorInvalidAccess;
                device.reset();
                return device;
            }
            arv_gv_device_leave_control(ARV_GV_DEVICE(device.get()), nullptr);
        }
    } else {
        std::lock_guard<std::mutex> lock(usbInterfaceMutex());
        device.reset(arv_interface_open_device(arv_uv_interface_get_instance(), info_.id.c_str(), error.out()));
    }
    if (!device) {
        err = error ? zebErrorOf(error.get()) : ZebErrorNotFound;
        return device;
    }
    arv_device_set_range_check_policy(device.get(), ARV_RANGE_CHECK_POLICY_ENABLE);
    err = ZebErrorSuccess;
    return device;
}

ZebErrorType AravisDevice::open(AccessModeType mode)
{
    if (mode != AccessModeFull && mode != AccessModeRead && mode != AccessModeConfig
        && mode != AccessModeExclusive)
        return ZebErrorBadParameter;
    std::lock_guard<std::mutex> openLock(openMutex_);
    if (lost_ || detached_)
        return ZebErrorBadHandle;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (session_)
            return ZebErrorInvalidCall;
        // Known from discovery: refused at once rather than after the camera
        // turned the control request down.
        if (wantsControl(mode) && heldElsewhere_)
            return ZebErrorInvalidAccess;
    }
    ZebErrorType err = ZebErrorSuccess;
    GObjectRef<ArvDevice> device = connect(wantsControl(mode), err);
    if (!device)
        return err;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        session_ = std::make_shared<AravisSession>(std::move(device), wantsControl(mode));
    }
    if (listener_)
        listener_(shared_from_this());
    return ZebErrorSuccess;
}

ZebErrorType AravisDevice::close()
{
    std::lock_guard<std::mutex> openLock(openMutex_);
    ZebErrorType err = ZebErrorSuccess;
    if (!openSession(err))
        return err;
    endSession(ZebErrorDeviceNotOpen);
    if (listener_)
        listener_(shared_from_this());
    return ZebErrorSuccess;
}

ZebErrorType AravisDevice::permittedAccess(AccessModeType& access)
{
    if (lost_ || detached_)
        return ZebErrorBadHandle;
    std::lock_guard<std::mutex> lock(mutex_);
    const bool heldHere = session_ && session_->hasControl();
    access = heldHere || heldElsewhere_ ? AccessModeRead
                                        : static_cast<AccessModeType>(AccessModeFull | AccessModeExclusive);
    return ZebErrorSuccess;
}

ZebErrorType AravisDevice::readMemory(uint64_t address, uint8_t* buffer, uint32_t size, uint32_t& done)
{
    ZebErrorType err = ZebErrorSuccess;
    const std::shared_ptr<AravisSession> session = openSession(err);
    if (!session)
        return err;
    return session->run([&](ArvDevice* device, GError** error) {
        if (arv_device_read_memory(device, address, size, buffer, error))
            done = size;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisDevice::writeMemory(uint64_t address, const uint8_t* buffer, uint32_t size, uint32_t& done)
{
    ZebErrorType err = ZebErrorSuccess;
    const std::shared_ptr<AravisSession> session = openSession(err);
    if (!session)
        return err;
    if (!session->hasControl())
        return ZebErrorInvalidAccess;
    return session->run([&](ArvDevice* device, GError** error) {
        if (arv_device_write_memory(device, address, size, const_cast<uint8_t*>(buffer), error))
            done = size;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisDevice::streams(std::vector<StreamBackendPtr>& streams)
{
    ZebErrorType err = ZebErrorSuccess;
    const std::shared_ptr<AravisSession> session = openSession(err);
    if (!session)
        return err;
    // One stream object per session, so that callers keep seeing the same one.
    std::lock_guard<std::mutex> lock(mutex_);
    if (!stream_ || streamSession_.lock() != session) {
        stream_ = std::make_shared<AravisStream>(session, identity_.id + "-stream0");
        streamSession_ = session;
    }
    streams = {stream_};
    return err;
}

ZebErrorType AravisDevice::acquireSingleImage(FramePtr& frame, uint32_t timeoutMs)
{
    ZebErrorType err = ZebErrorSuccess;
    const std::shared_ptr<AravisSession> session = openSession(err);
    if (!session)
        return err;
    if (!session->hasControl())
        return ZebErrorInvalidAccess;
    return session->run([&](ArvDevice* device, GError** error) {
        ArvCamera* camera = nullptr;
        const ZebErrorType made = session->camera(device, camera, error);
        if (made != ZebErrorSuccess)
            return made;
        GObjectRef<ArvBuffer> buffer(arv_camera_acquisition(camera, guint64(timeoutMs) * 1000, error));
        if (*error != nullptr)
            return ZebErrorSuccess;
        if (!buffer || arv_buffer_get_status(buffer.get()) == ARV_BUFFER_STATUS_TIMEOUT)
            return ZebErrorTimeout;
        PixelFormatType format = PixelFormatMono8;
        if (!frameFormatOf(arv_buffer_get_image_pixel_format(buffer.get()), format))
            return ZebErrorNotSupported;
        const gint width = arv_buffer_get_image_width(buffer.get());
        const gint height = arv_buffer_get_image_height(buffer.get());
        // A frame header claiming more pixels than the payload buffer holds is broken;
        // its figures must not size an allocation.
        size_t capacity = 0;
        arv_buffer_get_data(buffer.get(), &capacity);
        const uint64_t bytesPerPixel = (uint32_t(format) >> 16 & 0xFF) > 8 ? 2 : 1;
        if (width < 0 || height < 0 || uint64_t(width) * uint64_t(height) * bytesPerPixel > capacity)
            return ZebErrorInvalidValue;
        size_t size = 0;
        const auto* data = static_cast<const uint8_t*>(arv_buffer_get_image_data(buffer.get(), &size));
        std::vector<uint8_t> pixels(size_t(width) * height * bytesPerPixel, 0);
        if (data != nullptr)
            std::memcpy(pixels.data(), data, std::min(size, pixels.size()));
        FrameStatusType status = frameStatusOf(arv_buffer_get_status(buffer.get()));
        if (status == FrameStatusComplete && size < pixels.size())
            status = FrameStatusTooSmall;
        frame = std::make_shared<Frame>(status, uint32_t(width), uint32_t(height), format, std::move(pixels),
                                        arv_buffer_get_frame_id(buffer.get()));
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisDevice::feature(const std::string& name, FeatureBackendPtr& feature)
{
    ZebErrorType err = ZebErrorSuccess;
    const std::shared_ptr<AravisSession> session = openSession(err);
    if (!session)
        return err;
    if (!isDeviceFeature(name))
        return ZebErrorNotFound;
    return aravisFeatureByName(session, name, feature);
}

ZebErrorType AravisDevice::features(std::vector<FeatureBackendPtr>& features)
{
    ZebErrorType err = ZebErrorSuccess;
    const std::shared_ptr<AravisSession> session = openSession(err);
    return session ? aravisFeatureList(session, features, &isDeviceFeature) : err;
}

void AravisDevice::detach()
{
    detached_ = true;
    std::lock_guard<std::mutex> openLock(openMutex_);
    endSession(ZebErrorBadHandle);
}

} // namespace ZebCPP
