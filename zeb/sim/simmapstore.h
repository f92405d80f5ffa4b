#pragma once

#include "sim/simmapcontainer.h"
#include "zebtypes.h"

#include <vector>

namespace ZebCPP {

// The defect maps in the slots of a simulated camera. Slot 0 is the factory map
// and refuses every change. A slot of a file-access camera also keeps the
// container bytes it was written with, which is what reading the file returns.
class SimMapStore {
public:
    SimMapStore(uint32_t slots, uint32_t revision, uint32_t maxSize, uint32_t imageWidth,
                uint32_t imagePixelCount, std::vector<uint32_t> chunkIds);

    uint32_t slotCount() const { return static_cast<uint32_t>(slots_.size()); }
    uint32_t revision() const { return revision_; }
    uint32_t maxSize() const { return maxSize_; }
    uint32_t chunkId(uint32_t slot) const { return slots_[slot].chunkId; }
    const std::vector<SimControl::SimMapEntry>& entries(uint32_t slot) const { return slots_[slot].entries; }
    const std::vector<uint8_t>& container(uint32_t slot) const { return slots_[slot].container; }

    void loadFactoryMap(std::vector<SimControl::SimMapEntry> entries);
    ZebErrorType clear(uint32_t slot);
    // Takes a written container; false (slot unchanged) unless it is well formed.
    bool store(uint32_t slot, const std::vector<uint8_t>& container);

    // Entry access as the X/Y features give it: index == size appends.
    ZebErrorType setX(uint32_t slot, uint32_t index, uint32_t x);
    ZebErrorType setY(uint32_t slot, uint32_t index, uint32_t y);

    // Entry words of register mode: X | Y << 16, or X | Y << 14 | (type - 100) << 28
    // for revision 4. 0xFFFFFFFF marks the end of the map.
    uint32_t word(uint32_t slot, uint32_t index) const;
    // A write that starts at index 0 makes the written words the whole map; a
    // later index changes that entry or, right after the last one, appends.
    ZebErrorType writeWords(uint32_t slot, uint32_t firstIndex, const std::vector<uint32_t>& words);

private:
    struct Slot {
        uint32_t chunkId = 0;
        std::vector<SimControl::SimMapEntry> entries;
        std::vector<uint8_t> container;
    };

    ZebErrorType changeable(uint32_t slot) const;
    ZebErrorType setCoordinate(uint32_t slot, uint32_t index, uint32_t SimControl::SimMapEntry::*field,
                               uint32_t value);
    void rebuildContainer(Slot& slot);
    SimControl::SimMapEntry decode(uint32_t word) const;

    uint32_t revision_;
    uint32_t maxSize_;
    uint32_t imageWidth_;
    uint32_t imagePixelCount_;
    std::vector<Slot> slots_;
};

} // namespace ZebCPP
