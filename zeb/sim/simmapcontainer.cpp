#include "sim/simmapcontainer.h"

namespace ZebCPP {

namespace {

constexpr uint32_t kMagic = 0x1F56ADFC;
constexpr size_t kHeaderSize = 32;

uint32_t entrySize(uint32_t revision)
{
    return revision == 4 ? 12 : 8;
}

uint32_t wordAt(const std::vector<uint8_t>& bytes, size_t offset)
{
    return uint32_t(bytes[offset]) | uint32_t(bytes[offset + 1]) << 8
           | uint32_t(bytes[offset + 2]) << 16 | uint32_t(bytes[offset + 3]) << 24;
}

void putWord(std::vector<uint8_t>& bytes, size_t offset, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
}

uint32_t wordSum(const std::vector<uint8_t>& bytes)
{
    uint32_t sum = 0;
    for (size_t offset = 0; offset + 4 <= bytes.size(); offset += 4)
        sum += wordAt(bytes, offset);
    return sum;
}

} // namespace

bool simParseMapContainer(const std::vector<uint8_t>& bytes, uint32_t revision, SimMapContainer& out)
{
    const uint32_t size = entrySize(revision);
    if (bytes.size() < kHeaderSize || bytes.size() % 4 != 0)
        return false;
    if (wordAt(bytes, 0) != kMagic || wordAt(bytes, 4) != bytes.size()
        || wordAt(bytes, 16) != bytes.size() - 12 || wordSum(bytes) != 0
        || (bytes.size() - kHeaderSize) % size != 0)
        return false;
    SimMapContainer map;
    map.chunkId = wordAt(bytes, 12);
    map.imageWidth = wordAt(bytes, 20);
    map.imagePixelCount = wordAt(bytes, 24);
    for (size_t offset = kHeaderSize; offset < bytes.size(); offset += size) {
        SimControl::SimMapEntry entry;
        entry.x = wordAt(bytes, offset);
        entry.y = wordAt(bytes, offset + 4);
        entry.type = revision == 4 ? wordAt(bytes, offset + 8) : 0;
        map.entries.push_back(entry);
    }
    out = std::move(map);
    return true;
}

std::vector<uint8_t> simBuildMapContainer(const SimMapContainer& map, uint32_t revision)
{
    const uint32_t size = entrySize(revision);
    std::vector<uint8_t> bytes(kHeaderSize + map.entries.size() * size, 0);
    putWord(bytes, 0, kMagic);
    putWord(bytes, 4, static_cast<uint32_t>(bytes.size()));
    putWord(bytes, 12, map.chunkId);
    putWord(bytes, 16, static_cast<uint32_t>(bytes.size() - 12));
    putWord(bytes, 20, map.imageWidth);
    putWord(bytes, 24, map.imagePixelCount);
    size_t offset = kHeaderSize;
    for (const SimControl::SimMapEntry& entry : map.entries) {
        putWord(bytes, offset, entry.x);
        putWord(bytes, offset + 4, entry.y);
        if (revision == 4)
            putWord(bytes, offset + 8, entry.type);
        offset += size;
    }
    putWord(bytes, 8, 0u - wordSum(bytes));
    return bytes;
}

} // namespace ZebCPP
