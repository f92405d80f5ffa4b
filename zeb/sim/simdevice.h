#pragma once

#include "sim/simcamera.h"
#include "transportbackend.h"

#include <atomic>

namespace ZebCPP {

// The SDK's handle of one connection to a simulated camera.
class SimDevice : public DeviceBackend {
public:
    SimDevice(std::shared_ptr<SimCamera> camera, uint64_t connection, DeviceIdentity identity);

    const DeviceIdentity& identity() const override { return identity_; }
    ZebErrorType open(AccessModeType mode) override;
    ZebErrorType close() override;
    ZebErrorType permittedAccess(AccessModeType& access) override;
    ZebErrorType readMemory(uint64_t address, uint8_t* buffer, uint32_t size, uint32_t& done) override;
    ZebErrorType writeMemory(uint64_t address, const uint8_t* buffer, uint32_t size,
                             uint32_t& done) override;
    ZebErrorType streams(std::vector<StreamBackendPtr>& streams) override;
    ZebErrorType acquireSingleImage(FramePtr& frame, uint32_t timeoutMs) override;
    ZebErrorType feature(const std::string& name, FeatureBackendPtr& feature) override;
    ZebErrorType features(std::vector<FeatureBackendPtr>& features) override;
    void detach() override;

private:
    // The SDK's session ended: the connection number no longer matches.
    uint64_t connection() const { return detached_ ? 0 : connection_; }

    std::shared_ptr<SimCamera> camera_;
    uint64_t connection_;
    DeviceIdentity identity_;
    std::atomic<bool> detached_{false};
};

} // namespace ZebCPP
