#include "meanbatch.h"

#include "parallelrows.h"
#include "vectorclones.h"

#include <algorithm>
#include <atomic>
#include <new>

namespace {

// Below this many pixels per band a helper thread costs more than it saves.
constexpr uint64_t kMinPixelsPerBand = 1 << 17;
// Pixels per tile: its sums and one image's lines stay in the core's cache, and
// each image is read in a few hundred pieces.
constexpr size_t kTilePixels = 1 << 16;

struct LineShape {
    size_t bytesPerLine;
    size_t pixelsPerLine; // of the contiguous run: 8-bit padding counts as pixels
    size_t bytesPerPixel;
};

LineShape lineShape(bool rgb32, uint32_t width)
{
    if (rgb32)
        return {size_t(width) * 4, width, 4};
    const size_t padded = (size_t(width) + 3) / 4 * 4;
    return {padded, padded, 1};
}

DPC_VECTOR_CLONES void addBytes(uint16_t* sums, const unsigned char* bytes, size_t length)
{
    for (size_t j = 0; j < length; ++j)
        sums[j] = uint16_t(sums[j] + bytes[j]);
}

// The grey value truncated as the single-precision average of the first three
// bytes, as a single update takes it.
DPC_VECTOR_CLONES void addGreys(uint16_t* sums, const unsigned char* pixels, size_t length)
{
    for (size_t j = 0; j < length; ++j) {
        const unsigned char* px = pixels + 4 * j;
        sums[j] = uint16_t(sums[j] + uint16_t(int(float(px[0] + px[1] + px[2]) / 3.0f)));
    }
}

// mean = s / count and remainder = s % count. With s < 2^17 and count <= 256,
// the single-precision quotient is within 2^-6 of the true one, so truncated it
// is off by at most one, which the remainder's sign and size correct; unlike a
// 64-bit multiply this keeps eight lanes per vector.
struct SumDivider {
    int32_t divisor;
    float inverse;

    explicit SumDivider(uint32_t count)
        : divisor(int32_t(count))
        , inverse(1.0f / float(count))
    {
    }

    inline __attribute__((always_inline)) void divide(int32_t s, unsigned char& mean, unsigned char& remainder) const
    {
        int32_t quotient = int32_t(float(s) * inverse);
        int32_t rest = s - quotient * divisor;
        const int32_t up = rest >= divisor ? 1 : 0;
        const int32_t down = rest < 0 ? 1 : 0;
        quotient += up - down;
        rest += (down - up) * divisor;
        mean = static_cast<unsigned char>(quotient);
        remainder = static_cast<unsigned char>(rest);
    }
};

// s = remainder + mean * oldCount + sum, for a series already begun.
DPC_VECTOR_CLONES void divideSums(const MeanBatch& batch, const SumDivider& divider, const uint16_t* sums,
                                  size_t at, size_t length)
{
    const int32_t oldCount = int32_t(batch.oldCount);
    const unsigned char* mean = batch.mean + at;
    const unsigned char* remainder = batch.remainder + at;
    unsigned char* newMean = batch.newMean + at;
    unsigned char* newRemainder = batch.newRemainder + at;
    for (size_t j = 0; j < length; ++j)
        divider.divide(remainder[j] + mean[j] * oldCount + sums[j], newMean[j], newRemainder[j]);
}

// s = sum, for a series that starts with the batch.
DPC_VECTOR_CLONES void divideFirstSums(const MeanBatch& batch, const SumDivider& divider, const uint16_t* sums,
                                       size_t at, size_t length)
{
    unsigned char* newMean = batch.newMean + at;
    unsigned char* newRemainder = batch.newRemainder + at;
    for (size_t j = 0; j < length; ++j)
        divider.divide(sums[j], newMean[j], newRemainder[j]);
}

} // namespace

int applyMeanBatch(const MeanBatch& batch, const std::vector<BatchImage>& images, uint32_t width, uint32_t height)
{
    if (images.empty() || width == 0 || height == 0)
        return -1;
    const uint32_t count = batch.oldCount + uint32_t(images.size());
    const SumDivider divider(count);
    const size_t tileRows = std::max<size_t>(1, kTilePixels / width);
    size_t bufferBytes = 0;
    for (const BatchImage& image : images) {
        const LineShape shape = lineShape(image.rgb32, width);
        // A tile's run may start and end inside lines of an image whose lines are longer.
        const size_t lines = (tileRows * width + shape.pixelsPerLine - 1) / shape.pixelsPerLine + 1;
        bufferBytes = std::max(bufferBytes, lines * shape.bytesPerLine);
    }

    std::atomic<int> failed{int(images.size())};
    auto fail = [&failed](int image) {
        int seen = failed.load();
        while (image < seen && !failed.compare_exchange_weak(seen, image)) {
        }
    };
    auto work = [&](uint32_t firstRow, uint32_t endRow) {
        std::vector<uint16_t> sums;
        std::vector<unsigned char> lines;
        try {
            sums.resize(tileRows * width);
            lines.resize(bufferBytes);
        } catch (const std::bad_alloc&) {
            fail(0);
            return;
        }
        for (size_t begin = size_t(firstRow) * width, end = size_t(endRow) * width; begin < end;
             begin += sums.size()) {
            const size_t length = std::min(sums.size(), end - begin);
            std::fill_n(sums.begin(), length, uint16_t(0));
            for (size_t i = 0; i < images.size(); ++i) {
                if (failed.load(std::memory_order_relaxed) <= int(i))
                    return;
                const LineShape shape = lineShape(images[i].rgb32, width);
                const size_t firstLine = begin / shape.pixelsPerLine;
                const size_t endLine = (begin + length - 1) / shape.pixelsPerLine + 1;
                if (!images[i].readLines(int(firstLine), int(endLine - firstLine), lines.data())) {
                    fail(int(i));
                    return;
                }
                for (size_t line = firstLine; line < endLine; ++line) {
                    const size_t from = std::max(begin, line * shape.pixelsPerLine);
                    const size_t to = std::min(begin + length, (line + 1) * shape.pixelsPerLine);
                    const unsigned char* pixels = lines.data() + (line - firstLine) * shape.bytesPerLine
                                                  + (from - line * shape.pixelsPerLine) * shape.bytesPerPixel;
                    if (images[i].rgb32)
                        addGreys(sums.data() + (from - begin), pixels, to - from);
                    else
                        addBytes(sums.data() + (from - begin), pixels, to - from);
                }
            }
            if (batch.oldCount)
                divideSums(batch, divider, sums.data(), begin, length);
            else
                divideFirstSums(batch, divider, sums.data(), begin, length);
        }
    };
    forEachRowBand(height, width, kMinPixelsPerBand, work);
    const int first = failed.load();
    return first < int(images.size()) ? first : -1;
}
