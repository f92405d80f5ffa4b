#include "defectmapcontainer.h"

#include <cstring>
#include <limits>
#include <new>

namespace {

constexpr size_t kChunkStart = 12;

enum HeaderWord { Magic, Size, Checksum, ChunkId, ChunkLength, ImageWidth, ImagePixelCount, Reserved };

uint32_t readWord(const unsigned char* data, size_t offset)
{
    uint32_t word;
    std::memcpy(&word, data + offset, sizeof word);
    return word;
}

void writeWord(unsigned char* data, size_t offset, uint32_t word)
{
    std::memcpy(data + offset, &word, sizeof word);
}

} // namespace

unsigned int defPixContainerEntrySize(unsigned int revision)
{
    return revision == unsigned(kTypedMapRevision) ? 12 : 8;
}

uint32_t defPixContainerWordSum(const unsigned char* data, size_t size)
{
    uint32_t sum = 0;
    size_t offset = 0;
    for (; offset + 4 <= size; offset += 4)
        sum += readWord(data, offset);
    const size_t rest = size - offset;
    if (rest >= 2) {
        uint16_t half;
        std::memcpy(&half, data + offset, sizeof half);
        sum += half;
        if (rest == 3)
            sum += uint32_t(data[offset + 2]) << 16;
    } else if (rest == 1) {
        sum += data[offset];
    }
    return sum;
}

std::vector<unsigned char> buildDefPixContainerBuffer(unsigned int revision, ge3_chunk_id_t chunkId,
                                                      unsigned long count, const t_defpix* map,
                                                      unsigned int imageWidth,
                                                      unsigned int imagePixelCount)
{
    const unsigned int entrySize = defPixContainerEntrySize(revision);
    const uint64_t maxCount = (std::numeric_limits<uint32_t>::max() - kDefPixContainerHeaderSize) / entrySize;
    if ((count != 0 && !map) || count > maxCount)
        return {};
    const uint32_t size = kDefPixContainerHeaderSize + uint32_t(count) * entrySize;

    std::vector<unsigned char> buffer;
    try {
        buffer.resize(size);
    } catch (const std::bad_alloc&) {
        return {};
    }
    unsigned char* data = buffer.data();
    writeWord(data, Magic * 4, kDefPixContainerMagic);
    writeWord(data, Size * 4, size);
    writeWord(data, ChunkId * 4, revision == 0 ? chunkId : kDefPixTypedChunkId);
    writeWord(data, ChunkLength * 4, size - uint32_t(kChunkStart));
    writeWord(data, ImageWidth * 4, imageWidth);
    writeWord(data, ImagePixelCount * 4, imagePixelCount);

    unsigned char* entry = data + kDefPixContainerHeaderSize;
    for (unsigned long i = 0; i < count; ++i, entry += entrySize)
        std::memcpy(entry, &map[i], entrySize);

    writeWord(data, Checksum * 4, 0u - defPixContainerWordSum(data, size));
    return buffer;
}

bool checkDefPixContainerBuffer(const unsigned char* data, size_t size, unsigned int revision,
                                DefPixContainer* container)
{
    if (!data || size < kDefPixContainerHeaderSize)
        return false;
    const unsigned int entrySize = defPixContainerEntrySize(revision);
    if (readWord(data, Magic * 4) != kDefPixContainerMagic || readWord(data, Size * 4) != size
        || readWord(data, ChunkLength * 4) != size - kChunkStart
        || (size - kDefPixContainerHeaderSize) % entrySize != 0
        || defPixContainerWordSum(data, size) != 0)
        return false;
    if (!container)
        return true;

    container->size = readWord(data, Size * 4);
    container->checksum = readWord(data, Checksum * 4);
    container->chunkId = readWord(data, ChunkId * 4);
    container->chunkLength = readWord(data, ChunkLength * 4);
    container->imageWidth = readWord(data, ImageWidth * 4);
    container->imagePixelCount = readWord(data, ImagePixelCount * 4);
    container->reserved = readWord(data, Reserved * 4);
    const size_t count = (size - kDefPixContainerHeaderSize) / entrySize;
    container->entries.assign(count, t_defpix{0, 0, 0});
    for (size_t i = 0; i < count; ++i)
        std::memcpy(&container->entries[i], data + kDefPixContainerHeaderSize + i * entrySize, entrySize);
    return true;
}
