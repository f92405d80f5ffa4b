#pragma once

#include "sim/simcontrol.h"

#include <cstdint>
#include <vector>

// The map container as the simulated camera's firmware reads and writes it:
// 32-byte header (magic, size, checksum, chunk id, chunk length, image width,
// image pixel count, reserved), then entries of X, Y (8 bytes) or, for map
// revision 4, X, Y, type (12 bytes). Little-endian words; the word sum of a
// valid container is 0.

namespace ZebCPP {

struct SimMapContainer {
    uint32_t chunkId = 0;
    uint32_t imageWidth = 0;
    uint32_t imagePixelCount = 0;
    std::vector<SimControl::SimMapEntry> entries;
};

// False when the bytes are not a well-formed container of this revision.
bool simParseMapContainer(const std::vector<uint8_t>& bytes, uint32_t revision, SimMapContainer& out);
std::vector<uint8_t> simBuildMapContainer(const SimMapContainer& map, uint32_t revision);

} // namespace ZebCPP
