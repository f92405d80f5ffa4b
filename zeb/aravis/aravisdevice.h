#pragma once

#include "aravis/aravisdeviceinfo.h"
#include "aravis/aravissession.h"
#include "transportbackend.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>

namespace ZebCPP {

class AravisStream;

// One camera as found by discovery. Opening connects through libaravis and
// starts a session; the discovery thread marks the camera lost when it stops
// answering, and every call from then on returns ZebErrorBadHandle at once.
class AravisDevice : public DeviceBackend, public std::enable_shared_from_this<AravisDevice> {
public:
    // Told after an open or close of this process changed the camera's access.
    using AccessListener = std::function<void(const std::shared_ptr<AravisDevice>&)>;

    AravisDevice(AravisDeviceInfo info, DeviceIdentity identity, AccessListener listener);
    ~AravisDevice() override;

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

    // For the discovery thread.
    const AravisDeviceInfo& info() const { return info_; }
    // Gone, or its session stopped answering.
    bool isLost() const;
    // True when the value changed and the camera is not opened here. A round
    // that started before a session of this process ended may have read that
    // session's own hold: it cannot tell that someone else holds the camera.
    bool updateHeldElsewhere(bool held, std::chrono::steady_clock::time_point roundStarted);
    // Whether a camera missing from a discovery round stays listed: one opened
    // here rides out a few missed rounds (a lost reply, a camera busy writing
    // flash), while its session's own errors still end it at once.
    bool keepAfterMissedDiscovery();
    void answeredDiscovery();
    // From here on every call answers ZebErrorBadHandle at once.
    void markLost();
    // Ends the open session of a lost camera; leaving the control channel of a
    // vanished camera waits for the protocol's timeout, so this runs after the
    // unplug was reported.
    void releaseLost();

private:
    std::shared_ptr<AravisSession> openSession(ZebErrorType& err) const;
    GObjectRef<ArvDevice> connect(bool control, ZebErrorType& err) const;
    void endSession(ZebErrorType reason);

    const AravisDeviceInfo info_;
    const DeviceIdentity identity_;
    const AccessListener listener_;
    std::mutex openMutex_;      // one open or close at a time; they talk to the camera
    mutable std::mutex mutex_;  // guards the members below
    std::shared_ptr<AravisSession> session_;
    bool heldElsewhere_;
    bool ending_ = false;                                // a session is leaving the control channel
    std::chrono::steady_clock::time_point sessionEnded_; // when the last one had left it
    int missedDiscoveries_ = 0;
    std::shared_ptr<AravisStream> stream_;
    std::weak_ptr<AravisSession> streamSession_;
    std::atomic<bool> lost_{false};
    std::atomic<bool> detached_{false};
};

} // namespace ZebCPP
