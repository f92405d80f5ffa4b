#include "maptransfer.h"

#include <QtEndian>

#include <algorithm>

namespace {

constexpr uint32_t kTypeBase = 100;

uint32_t deviceOrder(uint32_t word, bool bigEndian)
{
    return bigEndian ? qbswap(word) : word;
}

} // namespace

unsigned long mapEntryRegister(unsigned int index)
{
    return kMapRegEntries + 4ul * index;
}

uint32_t packMapWord(const t_defpix& entry, bool typed)
{
    if (typed)
        return entry.x | (entry.y << 14) | ((entry.type - kTypeBase) << 28);
    return entry.x | (entry.y << 16);
}

t_defpix unpackMapWord(uint32_t word, bool typed)
{
    if (typed)
        return t_defpix{word & 0x3FFF, (word >> 14) & 0x3FFF, (word >> 28) + kTypeBase};
    return t_defpix{word & 0xFFFF, word >> 16, 0};
}

std::vector<uint32_t> packRegisterMap(const t_defpix* map, unsigned int count, bool typed, bool bigEndian,
                                      unsigned int capacity, const std::function<void(double)>& progress)
{
    std::vector<uint32_t> words;
    if (!map)
        return words;
    words.reserve(std::min(count, capacity));
    for (unsigned int i = 0; i < count && words.size() < capacity; ++i) {
        if (progress)
            progress(i * 100.0 / count);
        const t_defpix& entry = map[i];
        const bool sent = typed ? entry.type >= kTypeBase : entry.type < 4;
        if (sent)
            words.push_back(deviceOrder(packMapWord(entry, typed), bigEndian));
    }
    return words;
}

void unpackRegisterMap(const uint32_t* words, size_t wordCount, bool typed, bool bigEndian, t_defpix* map,
                       unsigned int capacity, unsigned int& count)
{
    if (!words || !map)
        return;
    DefectMapWriter writer(map, capacity, count);
    for (size_t i = 0; i < wordCount; ++i) {
        const uint32_t word = deviceOrder(words[i], bigEndian);
        if (word == kMapWordEnd)
            break;
        const t_defpix entry = unpackMapWord(word, typed);
        writer.add(entry.x, entry.y, entry.type);
    }
}
