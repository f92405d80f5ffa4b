#pragma once

// Internal: the one interface every transport layer implements (the simulated
// cameras in sim/, real links in further folders). ZebSystem only speaks to
// these classes; the public objects wrap them.

#include "featurebackend.h"

#include <string>
#include <vector>

namespace ZebCPP {

class StreamBackend : public FeatureContainerBackend {
public:
    virtual std::string id() const = 0;
};

using StreamBackendPtr = std::shared_ptr<StreamBackend>;

class InterfaceBackend : public FeatureContainerBackend {
public:
    virtual std::string id() const = 0;
    virtual std::string name() const = 0;
    virtual InterfaceType type() const = 0;
};

using InterfaceBackendPtr = std::shared_ptr<InterfaceBackend>;

// What stays known of a camera after it is gone.
struct DeviceIdentity {
    std::string id;          // plain camera ID, unique within its transport layer
    std::string extendedId;  // "<transport layer ID>::<camera ID>"
    std::string name;
    std::string model;
    std::string serial;
    std::string interfaceId;
    InterfaceType type = InterfaceTypeUnknown;
};

// One camera. Calls after the camera is gone return ZebErrorBadHandle; calls that
// need an opened camera return ZebErrorDeviceNotOpen while it is closed.
class DeviceBackend : public FeatureContainerBackend {
public:
    virtual const DeviceIdentity& identity() const = 0;
    virtual ZebErrorType open(AccessModeType mode) = 0;
    virtual ZebErrorType close() = 0;
    virtual ZebErrorType permittedAccess(AccessModeType& access) = 0;
    virtual ZebErrorType readMemory(uint64_t address, uint8_t* buffer, uint32_t size,
                                    uint32_t& done) = 0;
    virtual ZebErrorType writeMemory(uint64_t address, const uint8_t* buffer, uint32_t size,
                                     uint32_t& done) = 0;
    virtual ZebErrorType streams(std::vector<StreamBackendPtr>& streams) = 0;
    virtual ZebErrorType acquireSingleImage(FramePtr& frame, uint32_t timeoutMs) = 0;
    // Called when the SDK shuts down: the device closes and answers
    // ZebErrorBadHandle from then on.
    virtual void detach() = 0;
};

using DeviceBackendPtr = std::shared_ptr<DeviceBackend>;

class TransportLayerBackend;

// How a transport layer reports changes; called on any thread, never with a lock
// of the transport layer held.
class TransportEvents {
public:
    virtual ~TransportEvents() = default;
    virtual void devicePlugged(TransportLayerBackend* tl, const DeviceBackendPtr& device) = 0;
    virtual void deviceUnplugged(TransportLayerBackend* tl, const DeviceBackendPtr& device) = 0;
    virtual void deviceAccessChanged(TransportLayerBackend* tl, const DeviceBackendPtr& device) = 0;
    virtual void interfacePlugged(TransportLayerBackend* tl, const InterfaceBackendPtr& interface) = 0;
};

class TransportLayerBackend {
public:
    virtual ~TransportLayerBackend() = default;
    virtual std::string id() const = 0;
    virtual std::string name() const = 0;
    virtual std::string path() const = 0;
    virtual InterfaceType type() const = 0;
    virtual std::vector<InterfaceBackendPtr> interfaces() = 0;
    virtual std::vector<DeviceBackendPtr> devices() = 0;
    // Events go to `events` until it is replaced by null (before shut down).
    virtual void setEvents(TransportEvents* events) = 0;
};

using TransportLayerBackendPtr = std::shared_ptr<TransportLayerBackend>;

} // namespace ZebCPP
