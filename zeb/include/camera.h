#pragma once

#include "featurecontainer.h"

#include <mutex>
#include <string>
#include <vector>

namespace ZebCPP {

class DeviceBackend;
class StreamBackend;

// One camera found by a transport layer.
//
// The identity (IDs, name, model, serial number, interface ID) stays readable after
// the camera was unplugged, so that a removal can still be shown. Everything that
// needs the device (features, memory, streams, acquisition, Open) returns
// ZebErrorBadHandle once the camera is unplugged or the SDK was shut down, and
// ZebErrorDeviceNotOpen while the camera is closed.
//
// The extended ID is unique across transport layers: "<transport layer ID>::<camera ID>".
class Camera : public FeatureContainer {
public:
    Camera(std::shared_ptr<DeviceBackend> backend, InterfacePtr interface,
           TransportLayerPtr transportLayer);
    ~Camera() override;

    // Full access needs bit 1 or 8 of the permitted access, read access any of
    // 1, 2, 8; a refused mode gives ZebErrorInvalidAccess. Opening an opened
    // camera gives ZebErrorInvalidCall.
    ZebErrorType Open(AccessModeType accessMode);
    ZebErrorType Close();

    ZebErrorType GetID(char* id, uint32_t& length) const;
    ZebErrorType GetExtendedID(char* id, uint32_t& length) const;
    ZebErrorType GetName(char* name, uint32_t& length) const;
    ZebErrorType GetModel(char* model, uint32_t& length) const;
    ZebErrorType GetSerialNumber(char* serial, uint32_t& length) const;
    ZebErrorType GetInterfaceID(char* id, uint32_t& length) const;
    ZebErrorType GetInterface(InterfacePtr& interface) const;
    ZebErrorType GetTransportLayer(TransportLayerPtr& transportLayer) const;
    ZebErrorType GetInterfaceType(InterfaceType& type) const;
    // Access another open could get now; opening the camera in this process
    // with full access leaves read access for others.
    ZebErrorType GetPermittedAccess(AccessModeType& access) const;

    // Device memory in the device's own byte order. sizeComplete is the number of
    // bytes moved, also when the call fails part way. Register space is addressed
    // in 32-bit words: an address or size that is not a multiple of 4 gives
    // ZebErrorBadParameter, an address the device does not map
    // ZebErrorInvalidAccess.
    ZebErrorType ReadMemory(uint64_t address, uint8_t* buffer, uint32_t size,
                            uint32_t& sizeComplete) const;
    ZebErrorType WriteMemory(uint64_t address, const uint8_t* buffer, uint32_t size,
                             uint32_t& sizeComplete);

    // A null array asks for the count.
    ZebErrorType GetStreams(StreamPtr* streams, uint32_t& size);
    // Waits at most timeoutMs for one frame; ZebErrorInvalidCall while streaming.
    ZebErrorType AcquireSingleImage(FramePtr& frame, uint32_t timeoutMs,
                                    FrameAllocationMode allocationMode = FrameAllocationModeSdk);

    // std::string and std::vector forms of the calls above.
    ZebErrorType GetID(std::string& id) const;
    ZebErrorType GetExtendedID(std::string& id) const;
    ZebErrorType GetName(std::string& name) const;
    ZebErrorType GetModel(std::string& model) const;
    ZebErrorType GetSerialNumber(std::string& serial) const;
    ZebErrorType GetInterfaceID(std::string& id) const;
    ZebErrorType GetStreams(std::vector<StreamPtr>& streams);

private:
    std::shared_ptr<DeviceBackend> backend_;
    InterfacePtr interface_;
    TransportLayerPtr transportLayer_;
    std::mutex streamsMutex_;
    // The same objects as long as the transport hands out the same streams
    // (it makes new ones for each session).
    std::vector<StreamPtr> streams_;
    std::vector<std::shared_ptr<StreamBackend>> streamBackends_;
};

} // namespace ZebCPP
