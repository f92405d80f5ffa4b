#include "defectmapgenerator.h"

#include <cstring>

namespace {

// A mask of mean can be walked over the whole geometry.
bool coversGeometry(const QImage& mean, const ImageGeometry& geometry)
{
    return uint64_t(mean.width()) * uint64_t(mean.height()) >= uint64_t(geometry.width) * geometry.height;
}

const unsigned char* readyMask(const QImage& mean, DefectPixelParams& params, bool absolute,
                               const ImageGeometry& geometry)
{
    if (mean.isNull() || !params.localThreshold(mean, absolute) || !coversGeometry(mean, geometry))
        return nullptr;
    return params.defectMask;
}

uint64_t eightBytes(const unsigned char* mask, size_t index)
{
    uint64_t bytes = 0;
    if (mask)
        std::memcpy(&bytes, mask + index, sizeof bytes);
    return bytes;
}

// Walks both masks in raster order; runs of eight good pixels are skipped at once.
// bright is only needed with a bright mask.
void collectDefects(const unsigned char* darkMask, const unsigned char* brightMask,
                    DefectPixelParams& dark, DefectPixelParams* bright,
                    const ImageGeometry& geometry, DefectMapWriter& writer)
{
    const uint32_t width = geometry.width;
    for (uint32_t y = 0; y < geometry.height; ++y) {
        const size_t row = size_t(y) * width;
        uint32_t x = 0;
        while (x < width) {
            if (x + 8 <= width && (eightBytes(darkMask, row + x) | eightBytes(brightMask, row + x)) == 0) {
                x += 8;
                continue;
            }
            const bool darkFlagged = darkMask && darkMask[row + x];
            if (darkFlagged) {
                ++dark.defectCount;
                writer.add(x, y, 0);
            }
            if (brightMask && brightMask[row + x]) {
                ++bright->defectCount;
                if (!darkFlagged)
                    writer.add(x, y, 0);
            }
            ++x;
        }
    }
}

} // namespace

MapGeneration create_defpix_map(const QImage& darkMean, const QImage& brightMean,
                                DefectPixelParams& dark, DefectPixelParams& bright,
                                const ImageGeometry& geometry, const DefectMapTarget& target)
{
    if (darkMean.isNull() && brightMean.isNull())
        return MapGeneration::MissingImages;
    target.reset();
    const unsigned char* darkMask = readyMask(darkMean, dark, true, geometry);
    const unsigned char* brightMask = readyMask(brightMean, bright, false, geometry);
    DefectMapWriter writer(target.map, target.capacity, target.count);
    collectDefects(darkMask, brightMask, dark, &bright, geometry, writer);
    return MapGeneration::Generated;
}

MapGeneration create_defpix_map_color(const QImage& darkMean, DefectPixelParams& dark,
                                      const ImageGeometry& geometry, const DefectMapTarget& target)
{
    if (darkMean.isNull())
        return MapGeneration::MissingImages;
    target.reset();
    const unsigned char* darkMask = readyMask(darkMean, dark, true, geometry);
    DefectMapWriter writer(target.map, target.capacity, target.count);
    collectDefects(darkMask, nullptr, dark, nullptr, geometry, writer);
    return MapGeneration::Generated;
}
