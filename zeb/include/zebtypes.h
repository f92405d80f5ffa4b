#pragma once

#include <cstdint>
#include <memory>

// Status codes, enumerations and handle types shared by every object of the SDK.
//
// Strings cross the SDK as (buffer, length) pairs: pass a null buffer to learn the
// length, then a buffer of that length. The length always counts the terminating
// NUL. A buffer shorter than that gives ZebErrorMoreData and the needed length.

namespace ZebCPP {

// Result of every SDK call. Nothing throws across the SDK border: an unexpected
// failure inside the SDK is reported as ZebErrorInternalFault.
enum ZebErrorType : int32_t {
    ZebErrorSuccess = 0,
    ZebErrorInternalFault = -1,     // unexpected fault in the SDK or the driver
    ZebErrorApiNotStarted = -2,     // ZebSystem::Startup() has not run
    ZebErrorNotFound = -3,          // unknown camera, interface or feature
    ZebErrorBadHandle = -4,         // the object is gone (camera unplugged, SDK shut down)
    ZebErrorDeviceNotOpen = -5,     // the call needs an opened camera
    ZebErrorInvalidAccess = -6,     // not readable / writable now, or access mode refused
    ZebErrorBadParameter = -7,      // null pointer or argument out of its domain
    ZebErrorStructSize = -8,        // wrong library version or record size
    ZebErrorMoreData = -9,          // the caller's buffer is too small
    ZebErrorWrongType = -10,        // the feature has another data type
    ZebErrorInvalidValue = -11,     // value outside the range or not an entry
    ZebErrorTimeout = -12,          // the operation did not complete in time
    ZebErrorTransportLayer = -13,   // the transport layer reported an error
    ZebErrorResources = -14,        // resource not available
    ZebErrorInvalidCall = -15,      // call not allowed in the current state
    ZebErrorNoTransportLayer = -16, // no transport layer is loaded
    ZebErrorNotImplemented = -17,
    ZebErrorNotSupported = -18
};

// Reason passed to the camera and interface list observers.
enum UpdateTriggerType : int32_t {
    UpdateTriggerPluggedIn = 0,
    UpdateTriggerPluggedOut = 1,
    UpdateTriggerOpenStateChanged = 3
};

// Access modes; a camera's permitted access is a bit set of these values.
enum AccessModeType : uint32_t {
    AccessModeNone = 0,
    AccessModeFull = 1,
    AccessModeRead = 2,
    AccessModeConfig = 4,
    AccessModeExclusive = 8
};

enum FeatureDataType : int32_t {
    FeatureDataUnknown = 0,
    FeatureDataInt = 1,
    FeatureDataFloat = 2,
    FeatureDataEnum = 3,
    FeatureDataString = 4,
    FeatureDataBool = 5,
    FeatureDataCommand = 6,
    FeatureDataRaw = 7,
    FeatureDataNone = 8
};

// Kind of link a camera is attached by.
enum InterfaceType : int32_t {
    InterfaceTypeUnknown = 0,
    InterfaceTypeGigEVision = 1,
    InterfaceTypeUsb3Vision = 2,
    InterfaceTypeCameraLink = 3,
    InterfaceTypeCoaXPress = 4,
    InterfaceTypeCustom = 5
};

// Who allocates the buffer of an acquired frame. The SDK owns frame buffers in
// both modes; the mode is kept for callers written against transport layers that
// distinguish the two.
enum FrameAllocationMode : int32_t {
    FrameAllocationModeSdk = 0,
    FrameAllocationModeTransportLayer = 1
};

enum FrameStatusType : int32_t {
    FrameStatusComplete = 0,
    FrameStatusIncomplete = -1,
    FrameStatusTooSmall = -2,
    FrameStatusInvalid = -3
};

// Pixel formats of frames, with their GenICam pixel format codes. Bits 16 to 23
// of a code are the bits a pixel occupies (16 for the 10- and 12-bit formats).
enum PixelFormatType : uint32_t {
    PixelFormatMono8 = 0x01080001,
    PixelFormatBayerGR8 = 0x01080008,
    PixelFormatBayerRG8 = 0x01080009,
    PixelFormatBayerGB8 = 0x0108000A,
    PixelFormatBayerBG8 = 0x0108000B,
    PixelFormatMono10 = 0x01100003,
    PixelFormatMono12 = 0x01100005,
    PixelFormatMono16 = 0x01100007,
    PixelFormatBayerGR10 = 0x0110000C,
    PixelFormatBayerRG10 = 0x0110000D,
    PixelFormatBayerGB10 = 0x0110000E,
    PixelFormatBayerBG10 = 0x0110000F,
    PixelFormatBayerGR12 = 0x01100010,
    PixelFormatBayerRG12 = 0x01100011,
    PixelFormatBayerGB12 = 0x01100012,
    PixelFormatBayerBG12 = 0x01100013,
    PixelFormatBayerGR16 = 0x0110002E,
    PixelFormatBayerRG16 = 0x0110002F,
    PixelFormatBayerGB16 = 0x01100030,
    PixelFormatBayerBG16 = 0x01100031
};

struct ZebVersionInfo {
    uint32_t major = 0;
    uint32_t minor = 0;
    uint32_t patch = 0;
};

class ZebSystem;
class TransportLayer;
class Interface;
class Camera;
class Stream;
class Frame;
class Feature;
class FeatureContainer;
class ICameraListObserver;
class IInterfaceListObserver;

using TransportLayerPtr = std::shared_ptr<TransportLayer>;
using InterfacePtr = std::shared_ptr<Interface>;
using CameraPtr = std::shared_ptr<Camera>;
using StreamPtr = std::shared_ptr<Stream>;
using FramePtr = std::shared_ptr<Frame>;
using FeaturePtr = std::shared_ptr<Feature>;
using FeatureContainerPtr = std::shared_ptr<FeatureContainer>;
using ICameraListObserverPtr = std::shared_ptr<ICameraListObserver>;
using IInterfaceListObserverPtr = std::shared_ptr<IInterfaceListObserver>;

} // namespace ZebCPP
