#include "meanaccumulation.h"

#include "exactdivider.h"
#include "parallelrows.h"
#include "vectorclones.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

// Below this many pixels per band a helper thread costs more than it saves.
constexpr uint64_t kMinPixelsPerBand = 1 << 17;

bool overlaps(const unsigned char* a, size_t aSize, const unsigned char* b, size_t bSize)
{
    const uintptr_t first = reinterpret_cast<uintptr_t>(a), second = reinterpret_cast<uintptr_t>(b);
    return first < second + bSize && second < first + aSize;
}

// Grey value of a 4-byte pixel times weight, truncated as the single-precision
// average of the first three bytes; Wide converts through 64 bits for weights
// whose product leaves the int range, and wraps into 32 bits like the sum does.
template <typename Wide>
void rgb32Contributions(const unsigned char* pixels, size_t length, int weight, uint32_t* out)
{
    const float factor = float(weight);
    for (size_t j = 0; j < length; ++j) {
        const unsigned char* px = pixels + 4 * j;
        const float grey = float(px[0] + px[1] + px[2]) / 3.0f;
        out[j] = uint32_t(Wide(grey * factor));
    }
}

constexpr size_t kChunk = 2048;

// Any weight, any count: 32-bit sums as they are.
DPC_VECTOR_CLONES void updateChunkWide(const MeanUpdate& run, const ExactDivider& divider, size_t chunk,
                                       size_t length)
{
    uint32_t contribution[kChunk];
    if (!run.rgb32) {
        const unsigned char* bytes = run.image + chunk;
        const uint32_t weight = uint32_t(run.weight);
        for (size_t j = 0; j < length; ++j)
            contribution[j] = bytes[j] * weight;
    } else if (std::abs(int64_t(run.weight)) > (1 << 23)) {
        rgb32Contributions<int64_t>(run.image + 4 * chunk, length, run.weight, contribution);
    } else {
        rgb32Contributions<int32_t>(run.image + 4 * chunk, length, run.weight, contribution);
    }
    unsigned char* mean = run.mean + chunk;
    unsigned char* remainder = run.remainder + chunk;
    for (size_t j = 0; j < length; ++j) {
        const uint32_t s = remainder[j] + mean[j] * run.oldCount + contribution[j];
        const uint32_t quotient = divider.divide(s);
        mean[j] = static_cast<unsigned char>(quotient);
        remainder[j] = static_cast<unsigned char>(s - quotient * run.count);
    }
}

// Weight +-1 with at most kNarrowCount images: the sum is mean * count + e with
// e = remainder +- (contribution - mean) in -255 ... 510, so the quotient is
// mean + floor(e / count). Shifted by a multiple of count to be non-negative,
// e fits 16 bits, and so does every step. A sum that would be negative (an image
// taken out that was never in) wraps in 32 bits; such a chunk is redone wide.
// Negating the average before truncation toward zero equals negating after it,
// so the 32-bit contribution of weight -1 is the negated one of weight 1.
constexpr uint32_t kNarrowCount = 64000;

DPC_VECTOR_CLONES bool updateChunkNarrow(const MeanUpdate& run, const ExactDivider16& divider, size_t chunk,
                                         size_t length)
{
    const uint16_t count = uint16_t(run.count);
    const uint16_t shiftQuotient = uint16_t((510 + count - 1) / count);
    const uint16_t shift = uint16_t(shiftQuotient * count);
    const int direction = run.weight;

    uint16_t contribution[kChunk];
    if (run.rgb32) {
        const unsigned char* pixels = run.image + 4 * chunk;
        for (size_t j = 0; j < length; ++j) {
            const unsigned char* px = pixels + 4 * j;
            contribution[j] = uint16_t(int(float(px[0] + px[1] + px[2]) / 3.0f));
        }
    } else {
        const unsigned char* bytes = run.image + chunk;
        for (size_t j = 0; j < length; ++j)
            contribution[j] = bytes[j];
    }
    unsigned char newMean[kChunk];
    unsigned char newRemainder[kChunk];
    const unsigned char* mean = run.mean + chunk;
    const unsigned char* remainder = run.remainder + chunk;
    uint16_t wrapped = 0;
    for (size_t j = 0; j < length; ++j) {
        const uint16_t e = uint16_t(remainder[j] + shift + direction * (contribution[j] - mean[j]));
        const uint16_t quotient = divider.divide(e);
        const uint16_t total = uint16_t(mean[j] + quotient);
        wrapped |= uint16_t(total < shiftQuotient);
        newMean[j] = static_cast<unsigned char>(total - shiftQuotient);
        newRemainder[j] = static_cast<unsigned char>(e - quotient * count);
    }
    if (wrapped)
        return false;
    std::memcpy(run.mean + chunk, newMean, length);
    std::memcpy(run.remainder + chunk, newRemainder, length);
    return true;
}

void updateRange(const MeanUpdate& run, size_t begin, size_t end)
{
    const ExactDivider divider(run.count);
    const bool narrow = (run.weight == 1 || run.weight == -1) && run.count <= kNarrowCount;
    const ExactDivider16 narrowDivider(uint16_t(narrow ? run.count : 1));
    // Each chunk reads all its contributions before it writes a mean byte, which
    // keeps a mean that shares its bytes with the image exact.
    for (size_t chunk = begin; chunk < end; chunk += kChunk) {
        const size_t length = std::min(kChunk, end - chunk);
        if (!narrow || !updateChunkNarrow(run, narrowDivider, chunk, length))
            updateChunkWide(run, divider, chunk, length);
    }
}

} // namespace

void applyMeanUpdate(const MeanUpdate& update, uint32_t width, uint32_t height)
{
    const size_t size = size_t(width) * height;
    auto work = [&update, width](uint32_t firstRow, uint32_t endRow) {
        updateRange(update, size_t(firstRow) * width, size_t(endRow) * width);
    };
    // A mean that shares bytes with the image must be walked in order.
    if (overlaps(update.mean, size, update.image, size * (update.rgb32 ? 4 : 1)))
        work(0, height);
    else
        forEachRowBand(height, width, kMinPixelsPerBand, work);
}
