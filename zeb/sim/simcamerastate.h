#pragma once

#include "sim/simdescription.h"
#include "sim/simfilestore.h"
#include "sim/simmapstore.h"
#include "sim/simsensor.h"

#include <memory>

namespace ZebCPP {

// Everything a simulated camera remembers; guarded by the camera's lock. Maps
// and files survive unplugging, the rest is as after power-up.
struct SimCameraState {
    explicit SimCameraState(const SimCameraDescription& description);

    uint32_t reportedMapMaxSize() const { return description.mapMaxSizeReported.value_or(maps.maxSize()); }

    SimCameraDescription description;
    SimSensor sensor;
    SimMapStore maps;
    std::unique_ptr<SimFileStore> files; // null for register-mode cameras

    bool streaming = false;
    double exposureUs = 10000;
    double lightPercent = 0;
    double gainDb = 0;
    int64_t pixelFormat = 0;
    int64_t userSet = 0;
    bool correctionEnabled = true;
    int64_t correctionMark = 0;
    uint32_t selectedSlot = 0;
    int64_t mapIndex = 0;
    int64_t gvspProtocol = 0;
    int64_t packetSize = 1500;
    int64_t streamBufferCount = 4;
    uint64_t frameIndex = 0;
};

} // namespace ZebCPP
