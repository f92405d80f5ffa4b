#include "defectmapgenerator.h"

#include "vectorclones.h"

#include <QtGlobal>

#include <cstring>

namespace {

// A mask of mean can be walked over the whole geometry.
bool coversGeometry(const QImage& mean, const ImageGeometry& geometry)
{
    return uint64_t(mean.width()) * uint64_t(mean.height()) >= uint64_t(geometry.width) * geometry.height;
}

// Null for a series without mask; false when its threshold step found no memory.
bool readyMask(const QImage& mean, DefectPixelParams& params, bool absolute, const ImageGeometry& geometry,
               const unsigned char*& mask)
{
    mask = nullptr;
    if (mean.isNull())
        return true;
    if (!params.localThreshold(mean, absolute))
        return false;
    if (coversGeometry(mean, geometry))
        mask = params.defectMask;
    return true;
}

uint64_t eightBytes(const unsigned char* mask, size_t index)
{
    uint64_t bytes = 0;
    if (mask)
        std::memcpy(&bytes, mask + index, sizeof bytes);
    return bytes;
}

// The lowest bit of every byte of the result says whether that byte was non-zero;
// bit 8 * i belongs to the pixel at i, as the bytes were loaded little-endian.
static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "mask bytes are located by bit position");
uint64_t nonZeroBytes(uint64_t bytes)
{
    bytes |= bytes >> 4;
    bytes |= bytes >> 2;
    bytes |= bytes >> 1;
    return bytes & 0x0101010101010101ull;
}

DPC_VECTOR_CLONES uint32_t countFlagged(const unsigned char* mask, size_t begin, size_t end)
{
    uint32_t flagged = 0;
    for (size_t i = begin; i < end; ++i)
        flagged += mask[i] != 0 ? 1 : 0;
    return flagged;
}

struct DefectCollector {
    DefectPixelParams& dark;
    DefectPixelParams* bright; // only needed with a bright mask
    DefectMapWriter& writer;

    void visit(uint32_t x, uint32_t y, bool darkFlagged, bool brightFlagged)
    {
        if (darkFlagged) {
            ++dark.defectCount;
            writer.add(x, y, 0);
        }
        if (brightFlagged) {
            ++bright->defectCount;
            if (!darkFlagged)
                writer.add(x, y, 0);
        }
    }
};

// Walks both masks in raster order, eight pixels at a time: good runs are
// skipped and flagged pixels visited one by one. Once the map is full the rest
// is only counted.
void collectDefects(const unsigned char* darkMask, const unsigned char* brightMask,
                    const ImageGeometry& geometry, const DefectMap& map, DefectCollector collector)
{
    const uint32_t width = geometry.width;
    const size_t end = size_t(width) * geometry.height;
    for (uint32_t y = 0; y < geometry.height; ++y) {
        const size_t row = size_t(y) * width;
        if (map.count() >= map.capacity()) {
            if (darkMask)
                collector.dark.defectCount += countFlagged(darkMask, row, end);
            if (brightMask)
                collector.bright->defectCount += countFlagged(brightMask, row, end);
            return;
        }
        uint32_t x = 0;
        for (; x + 8 <= width; x += 8) {
            const uint64_t darkBits = nonZeroBytes(eightBytes(darkMask, row + x));
            const uint64_t brightBits = nonZeroBytes(eightBytes(brightMask, row + x));
            for (uint64_t bits = darkBits | brightBits; bits; bits &= bits - 1) {
                const int shift = __builtin_ctzll(bits);
                collector.visit(x + uint32_t(shift / 8), y, (darkBits >> shift) & 1, (brightBits >> shift) & 1);
            }
        }
        for (; x < width; ++x)
            collector.visit(x, y, darkMask && darkMask[row + x], brightMask && brightMask[row + x]);
    }
}

} // namespace

MapGeneration create_defpix_map(const QImage& darkMean, const QImage& brightMean,
                                DefectPixelParams& dark, DefectPixelParams& bright,
                                const ImageGeometry& geometry, DefectMap& map)
{
    if (darkMean.isNull() && brightMean.isNull())
        return MapGeneration::MissingImages;
    const unsigned char* darkMask = nullptr;
    const unsigned char* brightMask = nullptr;
    if (!readyMask(darkMean, dark, true, geometry, darkMask)
        || !readyMask(brightMean, bright, false, geometry, brightMask))
        return MapGeneration::NoMemory;
    map.clear();
    DefectMapWriter writer(map);
    collectDefects(darkMask, brightMask, geometry, map, {dark, &bright, writer});
    return MapGeneration::Generated;
}

MapGeneration create_defpix_map_color(const QImage& darkMean, DefectPixelParams& dark,
                                      const ImageGeometry& geometry, DefectMap& map)
{
    if (darkMean.isNull())
        return MapGeneration::MissingImages;
    const unsigned char* darkMask = nullptr;
    if (!readyMask(darkMean, dark, true, geometry, darkMask))
        return MapGeneration::NoMemory;
    map.clear();
    DefectMapWriter writer(map);
    collectDefects(darkMask, nullptr, geometry, map, {dark, nullptr, writer});
    return MapGeneration::Generated;
}
