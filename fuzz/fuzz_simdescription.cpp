// A camera set description is a file the user points the simulated cameras
// at: any text is refused with a reason or gives cameras that can be built.
#include "fuzzsupport.h"

#include "sim/simcamera.h"
#include "sim/simdescription.h"

#include <memory>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    ZebCPP::SimCameraSet set;
    std::string error;
    if (!ZebCPP::parseSimCameraSet(text, set, &error)) {
        FUZZ_CHECK(!error.empty());
        ZebCPP::SimCameraDescription single;
        if (!ZebCPP::parseSimCamera(text, single, &error))
            return 0;
        set.cameras.push_back(single);
    }
    for (const ZebCPP::SimCameraDescription& camera : set.cameras) {
        FUZZ_CHECK(camera.mapSlots >= 1 && camera.mapSlots <= 16);
        FUZZ_CHECK(camera.fileBufferSize >= 1 && camera.fileBufferSize <= 0x10000);
        FUZZ_CHECK(camera.slotChunkIds.empty() || camera.slotChunkIds.size() == camera.mapSlots);
        // Building the camera seeds its sensor and lays out its slots and files.
        const auto built = std::make_shared<ZebCPP::SimCamera>(camera, ZebCPP::InterfaceTypeGigEVision);
        FUZZ_CHECK(built != nullptr);
    }
    return 0;
}
