#include "sim/simregisters.h"

namespace ZebCPP {

namespace {

uint64_t entryAreaEnd(const SimCameraState& state)
{
    // Room for a full map and its end marker.
    return kSimRegEntries + 4ull * (state.maps.maxSize() + 1);
}

bool inEntryArea(const SimCameraState& state, uint64_t address)
{
    return address >= kSimRegEntries && address < entryAreaEnd(state);
}

ZebErrorType readWord(const SimCameraState& state, uint64_t address, uint32_t& value)
{
    if (inEntryArea(state, address)) {
        value = state.maps.word(state.selectedSlot, static_cast<uint32_t>((address - kSimRegEntries) / 4));
        return ZebErrorSuccess;
    }
    switch (address) {
    case kSimRegControl:
        value = state.correctionEnabled ? 1 : 0;
        return ZebErrorSuccess;
    case kSimRegSelectedSlot:
        value = state.selectedSlot;
        return ZebErrorSuccess;
    case kSimRegClearSlot:
        value = 0;
        return ZebErrorSuccess;
    case kSimRegMapSize:
        value = static_cast<uint32_t>(state.maps.entries(state.selectedSlot).size());
        return ZebErrorSuccess;
    case kSimRegMapMaxSize:
        value = state.reportedMapMaxSize();
        return ZebErrorSuccess;
    default:
        return ZebErrorInvalidAccess;
    }
}

ZebErrorType writeWord(SimCameraState& state, uint64_t address, uint32_t value)
{
    switch (address) {
    case kSimRegControl:
        state.correctionEnabled = (value & 1) != 0;
        return ZebErrorSuccess;
    case kSimRegSelectedSlot:
        if (state.streaming)
            return ZebErrorInvalidAccess;
        if (value >= state.maps.slotCount())
            return ZebErrorInvalidValue;
        state.selectedSlot = value;
        return ZebErrorSuccess;
    case kSimRegClearSlot:
        return state.streaming ? ZebErrorInvalidAccess : state.maps.clear(value);
    default:
        return ZebErrorInvalidAccess;
    }
}

} // namespace

ZebErrorType simReadRegisters(const SimCameraState& state, uint64_t address, uint32_t count,
                              std::vector<uint32_t>& words)
{
    words.clear();
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t value = 0;
        const ZebErrorType err = readWord(state, address + 4ull * i, value);
        if (err != ZebErrorSuccess)
            return err;
        words.push_back(value);
    }
    return ZebErrorSuccess;
}

ZebErrorType simWriteRegisters(SimCameraState& state, uint64_t address,
                               const std::vector<uint32_t>& words, uint32_t& done)
{
    done = 0;
    if (inEntryArea(state, address)) {
        if (address + 4ull * words.size() > entryAreaEnd(state))
            return ZebErrorInvalidValue;
        if (state.streaming)
            return ZebErrorInvalidAccess;
        const ZebErrorType err = state.maps.writeWords(
            state.selectedSlot, static_cast<uint32_t>((address - kSimRegEntries) / 4), words);
        if (err == ZebErrorSuccess)
            done = static_cast<uint32_t>(words.size());
        return err;
    }
    for (uint32_t value : words) {
        const ZebErrorType err = writeWord(state, address + 4ull * done, value);
        if (err != ZebErrorSuccess)
            return err;
        ++done;
    }
    return ZebErrorSuccess;
}

} // namespace ZebCPP
