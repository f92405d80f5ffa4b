#include "sim/simcamerastate.h"

namespace ZebCPP {

SimCameraState::SimCameraState(const SimCameraDescription& d)
    : description(d), sensor(d.sensor),
      maps(d.mapSlots, d.mapRevision, d.mapMaxSize, d.sensor.width, d.sensor.width * d.sensor.height,
           d.slotChunkIds)
{
    std::vector<SimControl::SimMapEntry> factory;
    for (const SimControl::SimDefect& defect : sensor.defects()) {
        if (factory.size() >= d.factoryMapSize)
            break;
        // Revision 4 maps carry correction codes from 100 on; 100 is a lone pixel.
        factory.push_back({defect.x, defect.y, d.mapRevision == 4 ? 100u : 0u});
    }
    maps.loadFactoryMap(std::move(factory));
    if (d.fileAccessMaps)
        files = std::make_unique<SimFileStore>(maps, true, d.files, d.accessLengthWritable, d.fileBufferSize);
}

} // namespace ZebCPP
