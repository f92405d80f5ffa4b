#pragma once

#include "defectmap.h"
#include "mapformat.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// Identifies the kind of chunk inside a map container.
typedef uint32_t ge3_chunk_id_t;

constexpr uint32_t kDefPixContainerMagic = 0x1F56ADFC;
constexpr uint32_t kDefPixContainerHeaderSize = 32;
// Written for every nonzero revision, whatever chunk id the caller passes.
constexpr ge3_chunk_id_t kDefPixTypedChunkId = kTypedChunkId;

// Bytes per entry: X, Y and the type for revision 4; X and Y for the others.
unsigned int defPixContainerEntrySize(unsigned int revision);

// The 32-bit wrap-around sum of the buffer's words in host byte order; a trailing
// 1, 2 or 3 bytes are added as an 8-, 16- or 24-bit value.
uint32_t defPixContainerWordSum(const unsigned char* data, size_t size);

// Packs a map into the container a camera map slot holds: header, one chunk
// header, the entries, with a checksum that makes the word sum 0. Host byte order.
// Empty when the map is null while count is not 0, when the container would
// not fit its 32-bit size field or when there is no memory for it.
std::vector<unsigned char> buildDefPixContainerBuffer(unsigned int revision, ge3_chunk_id_t chunkId,
                                                      unsigned long count, const t_defpix* map,
                                                      unsigned int imageWidth,
                                                      unsigned int imagePixelCount);

// The fields of a container; entries have type 0 unless the revision carries types.
struct DefPixContainer {
    uint32_t size = 0;             // whole container in bytes
    uint32_t checksum = 0;         // makes the word sum of the container 0
    ge3_chunk_id_t chunkId = 0;    // kind of the chunk
    uint32_t chunkLength = 0;      // from the chunk id to the end
    uint32_t imageWidth = 0;       // width of the images the map was made from
    uint32_t imagePixelCount = 0;  // width times height of those images
    uint32_t reserved = 0;         // written as 0
    std::vector<t_defpix> entries; // in container order
};

// True when the bytes are a well-formed container for this revision: the magic,
// a size field equal to the length, a chunk length of size - 12, an entry area of
// whole entries and a word sum of 0. Fills *container (when given) only then.
bool checkDefPixContainerBuffer(const unsigned char* data, size_t size, unsigned int revision,
                                DefPixContainer* container);
