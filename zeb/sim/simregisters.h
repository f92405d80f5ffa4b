#pragma once

#include "sim/simcamerastate.h"

#include <vector>

// The device registers of the defect map, as every simulated camera has them:
//   0x10004000 control, bit 0 = correction enabled
//   0x10004014 selected slot (the same value as DefectPixelCorrection_MapSelect)
//   0x10004018 write a slot number to clear that slot (slot 0 refuses)
//   0x1000401C entries in the selected slot (read only)
//   0x10004020 largest number of entries (read only)
//   0x10025000 entry words of the selected slot, 0xFFFFFFFF after the last one
// Word values here are host values; the camera applies its byte order.

namespace ZebCPP {

constexpr uint64_t kSimRegControl = 0x10004000;
constexpr uint64_t kSimRegSelectedSlot = 0x10004014;
constexpr uint64_t kSimRegClearSlot = 0x10004018;
constexpr uint64_t kSimRegMapSize = 0x1000401C;
constexpr uint64_t kSimRegMapMaxSize = 0x10004020;
constexpr uint64_t kSimRegEntries = 0x10025000;

ZebErrorType simReadRegisters(const SimCameraState& state, uint64_t address, uint32_t count,
                              std::vector<uint32_t>& words);
// An entry block write replaces the selected slot's map from the written index
// on: the words written at 0x10025000 become the whole map. Other registers are
// written one by one; `done` counts the words taken.
ZebErrorType simWriteRegisters(SimCameraState& state, uint64_t address,
                               const std::vector<uint32_t>& words, uint32_t& done);

} // namespace ZebCPP
