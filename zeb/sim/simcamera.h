#pragma once

#include "sim/simcamerastate.h"
#include "sim/simfaults.h"
#include "sim/simfeature.h"
#include "transportbackend.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>

namespace ZebCPP {

enum class SimAccess { Query, Read, Write, Command };

// One simulated camera as a device: its state, its features, its memory and
// its connection. Each plug-in is a new connection; handles of an earlier one
// get ZebErrorBadHandle. All calls are serialised by one lock; events for the
// SDK are sent after the lock is released.
class SimCamera : public std::enable_shared_from_this<SimCamera> {
public:
    enum class Event { Unplugged, AccessChanged };
    using Listener = std::function<void(SimCamera&, Event)>;

    SimCamera(const SimCameraDescription& description, InterfaceType type);

    const SimCameraDescription& description() const { return description_; }
    void setListener(Listener listener);

    // Plugging in gives the number of the new connection.
    uint64_t plug();
    void unplug();

    ZebErrorType open(uint64_t connection, AccessModeType mode);
    ZebErrorType close(uint64_t connection);
    ZebErrorType permittedAccess(uint64_t connection, AccessModeType& access);
    ZebErrorType readMemory(uint64_t connection, uint64_t address, uint8_t* buffer, uint32_t size,
                            uint32_t& done);
    ZebErrorType writeMemory(uint64_t connection, uint64_t address, const uint8_t* buffer,
                             uint32_t size, uint32_t& done);
    ZebErrorType acquire(uint64_t connection, FramePtr& frame);
    ZebErrorType requireOpen(uint64_t connection);
    ZebErrorType feature(uint64_t connection, bool onStream, const std::string& name,
                         FeatureBackendPtr& feature);
    ZebErrorType features(uint64_t connection, bool onStream, std::vector<FeatureBackendPtr>& list);

    // For SimFeature: runs body after the checks of the access kind.
    ZebErrorType featureCall(uint64_t connection, const SimFeatureDef& def, SimAccess access,
                             const std::function<ZebErrorType()>& body);
    // The following run inside featureCall, with the lock held.
    bool writableLocked(const SimFeatureDef& def) const;
    bool isFileOperation(const SimFeatureDef& def) const;
    void commandStartedLocked(const SimFeatureDef& def);
    bool commandDoneLocked(const SimFeatureDef& def) const;
    bool transferLocked(uint64_t bytes);

    // Test control.
    ZebErrorType setPermittedAccess(AccessModeType access);
    ZebErrorType setStreaming(bool streaming);
    ZebErrorType setIllumination(double percent);
    ZebErrorType injectFault(SimControl::FaultKind kind, uint32_t nth, ZebErrorType code, uint32_t times);
    ZebErrorType disconnectAfterBytes(uint64_t bytes);
    ZebErrorType clearFaults();
    std::vector<SimControl::SimDefect> defects() const;
    ZebErrorType storedMap(uint32_t slot, std::vector<SimControl::SimMapEntry>& entries);
    ZebErrorType deviceFile(const std::string& name, std::vector<uint8_t>& content);

private:
    template <typename Body>
    ZebErrorType locked(Body&& body);
    ZebErrorType checkConnection(uint64_t connection) const;
    ZebErrorType checkOpen(uint64_t connection) const;
    void loseConnectionLocked(bool tellSdk);

    const SimCameraDescription description_;
    mutable std::mutex mutex_;
    SimCameraState state_;
    std::vector<std::unique_ptr<SimFeatureDef>> features_;
    SimFaults faults_;
    Listener listener_;
    std::vector<Event> pending_;
    uint64_t connection_ = 0;
    bool plugged_ = false;
    AccessModeType openMode_ = AccessModeNone;
    AccessModeType permitted_;
    std::map<const SimFeatureDef*, std::chrono::steady_clock::time_point> commandDoneAt_;
};

} // namespace ZebCPP
