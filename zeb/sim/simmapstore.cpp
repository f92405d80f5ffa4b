#include "sim/simmapstore.h"

namespace ZebCPP {

namespace {
constexpr uint32_t kEndMarker = 0xFFFFFFFF;
}

SimMapStore::SimMapStore(uint32_t slots, uint32_t revision, uint32_t maxSize, uint32_t imageWidth,
                         uint32_t imagePixelCount, std::vector<uint32_t> chunkIds)
    : revision_(revision), maxSize_(maxSize), imageWidth_(imageWidth),
      imagePixelCount_(imagePixelCount), slots_(slots)
{
    for (uint32_t i = 0; i < slots; ++i)
        slots_[i].chunkId = i < chunkIds.size() ? chunkIds[i] : (revision == 4 ? 4100 : 4096);
}

void SimMapStore::loadFactoryMap(std::vector<SimControl::SimMapEntry> entries)
{
    slots_[0].entries = std::move(entries);
    rebuildContainer(slots_[0]);
}

ZebErrorType SimMapStore::changeable(uint32_t slot) const
{
    if (slot >= slots_.size())
        return ZebErrorInvalidValue;
    return slot == 0 ? ZebErrorInvalidAccess : ZebErrorSuccess;
}

// An empty slot is an empty file: FileSize 0.
void SimMapStore::rebuildContainer(Slot& slot)
{
    if (slot.entries.empty()) {
        slot.container.clear();
        return;
    }
    SimMapContainer map{slot.chunkId, imageWidth_, imagePixelCount_, slot.entries};
    slot.container = simBuildMapContainer(map, revision_);
}

ZebErrorType SimMapStore::clear(uint32_t slot)
{
    const ZebErrorType err = changeable(slot);
    if (err != ZebErrorSuccess)
        return err;
    slots_[slot].entries.clear();
    slots_[slot].container.clear();
    return ZebErrorSuccess;
}

bool SimMapStore::store(uint32_t slot, const std::vector<uint8_t>& container)
{
    SimMapContainer map;
    if (changeable(slot) != ZebErrorSuccess || !simParseMapContainer(container, revision_, map)
        || map.entries.size() > maxSize_)
        return false;
    slots_[slot].entries = std::move(map.entries);
    slots_[slot].container = container;
    return true;
}

ZebErrorType SimMapStore::setX(uint32_t slot, uint32_t index, uint32_t x)
{
    return setCoordinate(slot, index, &SimControl::SimMapEntry::x, x);
}

ZebErrorType SimMapStore::setY(uint32_t slot, uint32_t index, uint32_t y)
{
    return setCoordinate(slot, index, &SimControl::SimMapEntry::y, y);
}

// Writing the entry just past the end appends one, as the device's X/Y features do.
ZebErrorType SimMapStore::setCoordinate(uint32_t slot, uint32_t index, uint32_t SimControl::SimMapEntry::*field,
                                        uint32_t value)
{
    ZebErrorType err = changeable(slot);
    if (err != ZebErrorSuccess)
        return err;
    Slot& s = slots_[slot];
    if (index > s.entries.size() || index >= maxSize_)
        return ZebErrorInvalidValue;
    if (index == s.entries.size())
        s.entries.push_back({});
    s.entries[index].*field = value;
    rebuildContainer(s);
    return ZebErrorSuccess;
}

uint32_t SimMapStore::word(uint32_t slot, uint32_t index) const
{
    const std::vector<SimControl::SimMapEntry>& list = slots_[slot].entries;
    if (index >= list.size())
        return kEndMarker;
    const SimControl::SimMapEntry& e = list[index];
    if (revision_ == 4)
        return (e.x & 0x3FFF) | (e.y & 0x3FFF) << 14 | ((e.type - 100) & 0xF) << 28;
    return (e.x & 0xFFFF) | (e.y & 0xFFFF) << 16;
}

SimControl::SimMapEntry SimMapStore::decode(uint32_t word) const
{
    if (revision_ == 4)
        return {word & 0x3FFF, (word >> 14) & 0x3FFF, (word >> 28) + 100};
    return {word & 0xFFFF, word >> 16, 0};
}

ZebErrorType SimMapStore::writeWords(uint32_t slot, uint32_t firstIndex, const std::vector<uint32_t>& words)
{
    ZebErrorType err = changeable(slot);
    if (err != ZebErrorSuccess)
        return err;
    Slot& s = slots_[slot];
    std::vector<SimControl::SimMapEntry> list = firstIndex == 0 ? std::vector<SimControl::SimMapEntry>() : s.entries;
    if (firstIndex > list.size())
        return ZebErrorInvalidValue;
    list.resize(firstIndex);
    bool ended = false;
    for (uint32_t w : words) {
        ended = ended || w == kEndMarker;
        if (!ended)
            list.push_back(decode(w));
    }
    if (firstIndex > 0 && firstIndex + words.size() < s.entries.size() && !ended)
        list.insert(list.end(), s.entries.begin() + firstIndex + words.size(), s.entries.end());
    if (list.size() > maxSize_)
        return ZebErrorInvalidValue;
    s.entries = std::move(list);
    rebuildContainer(s);
    return ZebErrorSuccess;
}

} // namespace ZebCPP
