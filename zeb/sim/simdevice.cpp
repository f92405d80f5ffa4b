#include "sim/simdevice.h"

#include "sim/simstream.h"

namespace ZebCPP {

SimDevice::SimDevice(std::shared_ptr<SimCamera> camera, uint64_t connection, DeviceIdentity identity)
    : camera_(std::move(camera)), connection_(connection), identity_(std::move(identity))
{
}

ZebErrorType SimDevice::open(AccessModeType mode)
{
    return camera_->open(connection(), mode);
}

ZebErrorType SimDevice::close()
{
    return camera_->close(connection());
}

ZebErrorType SimDevice::permittedAccess(AccessModeType& access)
{
    return camera_->permittedAccess(connection(), access);
}

ZebErrorType SimDevice::readMemory(uint64_t address, uint8_t* buffer, uint32_t size, uint32_t& done)
{
    return camera_->readMemory(connection(), address, buffer, size, done);
}

ZebErrorType SimDevice::writeMemory(uint64_t address, const uint8_t* buffer, uint32_t size, uint32_t& done)
{
    return camera_->writeMemory(connection(), address, buffer, size, done);
}

ZebErrorType SimDevice::streams(std::vector<StreamBackendPtr>& streams)
{
    const ZebErrorType err = camera_->requireOpen(connection());
    if (err != ZebErrorSuccess)
        return err;
    streams.clear();
    if (camera_->description().hasStreams)
        streams = {std::make_shared<SimStream>(camera_, connection_, identity_.id + "-stream0")};
    return err;
}

ZebErrorType SimDevice::acquireSingleImage(FramePtr& frame, uint32_t)
{
    return camera_->acquire(connection(), frame);
}

ZebErrorType SimDevice::feature(const std::string& name, FeatureBackendPtr& feature)
{
    return camera_->feature(connection(), false, name, feature);
}

ZebErrorType SimDevice::features(std::vector<FeatureBackendPtr>& features)
{
    return camera_->features(connection(), false, features);
}

void SimDevice::detach()
{
    detached_ = true;
}

} // namespace ZebCPP
