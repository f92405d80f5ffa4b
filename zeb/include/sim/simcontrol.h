#pragma once

#include "zebtypes.h"

#include <cstdint>
#include <string>
#include <vector>

// Control of the simulated cameras for tests and demos: what a person at the
// bench would do to real cameras (plug, unplug, start streaming, hand one to
// another application) plus faults and the ground truth of the sensors.
//
// Cameras are named by serial number, plain camera ID or extended ID. Every
// call needs a started system with the simulated cameras loaded: otherwise
// ZebErrorApiNotStarted or ZebErrorNoTransportLayer; an unknown camera gives
// ZebErrorNotFound. Observers hear of every change on the SDK's thread.

namespace ZebCPP {
namespace SimControl {

// The built-in camera set (the JSON text that ZEB_SIM_CAMERAS=default loads).
const char* DefaultCameraSet();

// Adds a camera described by one JSON camera object (the format of an entry of
// "cameras" in a camera set). Observers are told with UpdateTriggerPluggedIn.
ZebErrorType PlugCamera(const std::string& cameraJson);
// Unplugs a camera (UpdateTriggerPluggedOut); it keeps its state (maps, files)
// and comes back with ReplugCamera as a new camera object.
ZebErrorType UnplugCamera(const std::string& camera);
ZebErrorType ReplugCamera(const std::string& camera);

// What another application leaves to us; tells UpdateTriggerOpenStateChanged.
ZebErrorType SetPermittedAccess(const std::string& camera, AccessModeType access);
// Starts or stops streaming as AcquisitionStart / AcquisitionStop would.
ZebErrorType SetStreaming(const std::string& camera, bool streaming);

// The operations a fault can hit.
enum class FaultKind {
    FeatureRead,  // any feature value read (GetValue, GetRawData)
    FeatureWrite, // any feature value write (SetValue, SetRawData)
    Command,      // RunCommand
    MemoryRead,   // ReadMemory
    MemoryWrite,  // WriteMemory
    Open,
    Close,
    FileStatus,   // a file operation: its command completes, FileOperationStatus says Failure
    ShortWrite,   // a file Write: only half of the bytes are taken, as FileOperationResult says
    Acquisition   // AcquireSingleImage
};

// The n-th (1 = the next) operation of this kind, and the times - 1 after it,
// fail with the given code and change nothing. Faults of different kinds may be
// armed together.
ZebErrorType InjectFault(const std::string& camera, FaultKind kind, uint32_t nth, ZebErrorType code,
                         uint32_t times = 1);
// The camera disappears once `bytes` more bytes moved through FileAccessBuffer or
// device memory: the transfer that crosses the limit fails, every later call on
// the camera fails with ZebErrorBadHandle and the observers hear of the unplug.
ZebErrorType DisconnectAfterBytes(const std::string& camera, uint64_t bytes);
ZebErrorType ClearFaults(const std::string& camera);

// The light falling on a camera's sensor, in percent of full light (0 = dark,
// a covered lens); the same value as the camera's "SimLightLevel" feature.
ZebErrorType SetIllumination(const std::string& camera, double percent);

enum class DefectKind { Hot, Dead, Stuck, Cluster, Weak, Border };

// One seeded defect pixel of a sensor. Cluster pixels are hot pixels that lie
// next to each other; weak pixels take 10 % less light than their neighbours and
// look normal in the dark; border pixels are hot pixels in the outermost rows
// and columns.
struct SimDefect {
    uint32_t x = 0;
    uint32_t y = 0;
    DefectKind kind = DefectKind::Hot;
};

// "hot", "dead", "stuck", "cluster", "weak", "border".
const char* DefectKindName(DefectKind kind);

ZebErrorType GetDefects(const std::string& camera, std::vector<SimDefect>& defects);

// One entry of a stored map; type is 0 unless the map revision carries types.
struct SimMapEntry {
    uint32_t x = 0;
    uint32_t y = 0;
    uint32_t type = 0;
};

// The map a slot holds now (slot 0 is the factory map).
ZebErrorType GetStoredMap(const std::string& camera, uint32_t slot, std::vector<SimMapEntry>& entries);
// The bytes of a device file (a map slot "DefPixMap<n>" or another file) of a
// file-access camera.
ZebErrorType GetDeviceFile(const std::string& camera, const std::string& fileName,
                           std::vector<uint8_t>& content);

} // namespace SimControl
} // namespace ZebCPP
