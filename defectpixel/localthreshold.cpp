#include "localthreshold.h"

#include "exactdivider.h"
#include "parallelrows.h"
#include "vectorclones.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <memory>
#include <new>

namespace {

// Below this many pixels per band a helper thread costs more than it saves.
constexpr uint64_t kMinPixelsPerBand = 1 << 17;

constexpr int kRadius = 10;
constexpr uint32_t kWindow = 2 * kRadius + 1;
// Rows y - 11 ... y + 10 of row averages are alive while the column window moves.
constexpr uint32_t kRingRows = kWindow + 1;

struct WindowDividers {
    WindowDividers()
    {
        for (uint32_t size = 1; size <= kWindow; ++size)
            bySize[size] = WindowDivider(size);
    }
    WindowDivider bySize[kWindow + 1];
};

const WindowDividers& windowDividers()
{
    static const WindowDividers dividers;
    return dividers;
}

// Average of row[x - 10 ... x + 10] clipped to the row, for x in [from, to).
void clippedRowAverages(const unsigned char* row, uint32_t width, uint32_t from, uint32_t to,
                        unsigned char* out)
{
    const WindowDividers& dividers = windowDividers();
    for (uint32_t x = from; x < to; ++x) {
        const uint32_t first = x >= uint32_t(kRadius) ? x - kRadius : 0;
        const uint32_t last = std::min(width - 1, x + kRadius);
        uint16_t sum = 0;
        for (uint32_t k = first; k <= last; ++k)
            sum = uint16_t(sum + row[k]);
        out[x] = uint8_t(dividers.bySize[last - first + 1].divide(sum));
    }
}

// Pairwise sums doubled four times give every whole 21-wide window as
// 16 + 4 + 1 bytes; each step is one vectorisable pass over the row.
DPC_VECTOR_CLONES void rowAverages(const unsigned char* row, uint32_t width, unsigned char* out,
                                   uint16_t* scratch)
{
    if (width < kWindow) {
        clippedRowAverages(row, width, 0, width, out);
        return;
    }
    uint16_t* sum2 = scratch;
    uint16_t* sum4 = scratch + width;
    uint16_t* sum8 = scratch + 2 * width;
    uint16_t* sum16 = sum2;
    for (uint32_t x = 0; x + 1 < width; ++x)
        sum2[x] = uint16_t(row[x] + row[x + 1]);
    for (uint32_t x = 0; x + 3 < width; ++x)
        sum4[x] = uint16_t(sum2[x] + sum2[x + 2]);
    for (uint32_t x = 0; x + 7 < width; ++x)
        sum8[x] = uint16_t(sum4[x] + sum4[x + 4]);
    for (uint32_t x = 0; x + 15 < width; ++x)
        sum16[x] = uint16_t(sum8[x] + sum8[x + 8]);
    const WindowDivider full = windowDividers().bySize[kWindow];
    unsigned char* interior = out + kRadius;
    for (uint32_t x = 0; x + kWindow <= width; ++x)
        interior[x] = uint8_t(full.divide(uint16_t(sum16[x] + sum4[x + 16] + row[x + 20])));
    clippedRowAverages(row, width, 0, kRadius, out);
    clippedRowAverages(row, width, width - kRadius, width, out);
}

// The margin t per local average m, clipped to -1 (every pixel flagged) ... 255
// (none flagged): for 8-bit values v < m - t || v > m + t then gives the same
// answer, and it is |v - m| > t.
struct Margins {
    int16_t byAverage[256];
    bool uniform = false; // absolute test: the same margin for every average
    // Relative test with a percentage p in 0 ... 100: the truncated product is
    // floor(p * m / 100), one less where the double product of an exact
    // multiple of 100 rounded down (roundedDown[m]). |v - m| > t is then
    // 100 * |v - m| > p * m, or equal there, which vectorises.
    bool byPercent = false;
    uint16_t percent = 0;
    bool anyRoundedDown = false;
    bool roundedDown[256] = {};
};

int16_t clipMargin(int64_t margin)
{
    return int16_t(std::clamp<int64_t>(margin, -1, 255));
}

Margins absoluteMargins(int32_t threshold)
{
    Margins margins;
    std::fill(std::begin(margins.byAverage), std::end(margins.byAverage), clipMargin(threshold));
    margins.uniform = true;
    return margins;
}

Margins relativeMargins(int32_t percent)
{
    Margins margins;
    const double fraction = double(percent) * 0.01;
    for (int m = 0; m < 256; ++m) {
        // Truncation toward zero; clamped first so that it stays defined.
        const double margin = std::clamp(fraction * m, -1024.0, 1024.0);
        margins.byAverage[m] = clipMargin(int64_t(margin));
    }
    if (percent < 0 || percent > 100)
        return margins;
    margins.byPercent = true;
    margins.percent = uint16_t(percent);
    for (int m = 0; m < 256; ++m) {
        const int product = percent * m;
        const int drop = product / 100 - margins.byAverage[m];
        margins.roundedDown[m] = drop == 1;
        margins.anyRoundedDown |= drop == 1;
        if (drop < 0 || drop > 1 || (drop == 1 && product % 100 != 0))
            margins.byPercent = false;
    }
    return margins;
}

struct ThresholdRun {
    const unsigned char* mean;
    unsigned char* mask;
    uint32_t width;
    uint32_t height;
    const Margins* margins;
    unsigned char* averages = nullptr; // when set, the local averages are written instead of the mask
};

DPC_VECTOR_CLONES void writeAverages(const uint16_t* columnSums, WindowDivider divider, uint32_t width,
                                     unsigned char* out)
{
    for (uint32_t x = 0; x < width; ++x)
        out[x] = uint8_t(divider.divide(columnSums[x]));
}

DPC_VECTOR_CLONES void testRowUniform(const unsigned char* values, const uint16_t* columnSums,
                                      WindowDivider divider, uint8_t limit, uint32_t width,
                                      unsigned char* mask)
{
    for (uint32_t x = 0; x < width; ++x) {
        const uint8_t m = uint8_t(divider.divide(columnSums[x]));
        const uint8_t v = values[x];
        const uint8_t distance = uint8_t(v > m ? v - m : m - v);
        mask[x] = distance > limit ? 255 : 0;
    }
}

// Returns whether any pixel sits exactly on 100 * |v - m| == p * m; those are
// marked in onMargin.
DPC_VECTOR_CLONES bool testRowByPercent(const unsigned char* values, const uint16_t* columnSums,
                                        WindowDivider divider, uint16_t percent, uint32_t width,
                                        unsigned char* mask, unsigned char* onMargin)
{
    unsigned char any = 0;
    for (uint32_t x = 0; x < width; ++x) {
        const uint8_t m = uint8_t(divider.divide(columnSums[x]));
        const uint8_t v = values[x];
        const uint16_t distance = uint16_t(uint8_t(v > m ? v - m : m - v) * 100);
        const uint16_t margin = uint16_t(m * percent);
        mask[x] = distance > margin ? 255 : 0;
        onMargin[x] = distance == margin ? 1 : 0;
        any |= onMargin[x];
    }
    return any != 0;
}

void testRowByTable(const unsigned char* values, const uint16_t* columnSums, WindowDivider divider,
                    const int16_t* margins, uint32_t width, unsigned char* mask)
{
    for (uint32_t x = 0; x < width; ++x) {
        const uint8_t m = uint8_t(divider.divide(columnSums[x]));
        const uint8_t v = values[x];
        const int16_t distance = int16_t(v > m ? v - m : m - v);
        mask[x] = distance > margins[m] ? 255 : 0;
    }
}

void testRow(const unsigned char* values, const uint16_t* columnSums, WindowDivider divider,
             const ThresholdRun& run, unsigned char* mask, unsigned char* onMargin)
{
    const uint32_t width = run.width;
    const Margins& margins = *run.margins;
    if (margins.uniform) {
        const int16_t margin = margins.byAverage[0];
        if (margin < 0 || margin > 254)
            std::memset(mask, margin < 0 ? 255 : 0, width);
        else
            testRowUniform(values, columnSums, divider, uint8_t(margin), width, mask);
        return;
    }
    if (!margins.byPercent) {
        testRowByTable(values, columnSums, divider, margins.byAverage, width, mask);
        return;
    }
    if (!testRowByPercent(values, columnSums, divider, margins.percent, width, mask, onMargin)
        || !margins.anyRoundedDown)
        return;
    // Pixels on the margin are rare; look at them alone, eight at a time skipped.
    for (uint32_t x = 0; x < width; ++x) {
        uint64_t eight = 0;
        if (x + 8 <= width && (std::memcpy(&eight, onMargin + x, 8), eight == 0)) {
            x += 7;
            continue;
        }
        if (onMargin[x] && margins.roundedDown[uint8_t(divider.divide(columnSums[x]))])
            mask[x] = 255;
    }
}

// Moves the column window one row down: entering row in, leaving row out.
DPC_VECTOR_CLONES void moveColumnWindow(uint16_t* sums, const unsigned char* entering,
                                        const unsigned char* leaving, uint32_t width)
{
    for (uint32_t x = 0; x < width; ++x)
        sums[x] = uint16_t(sums[x] + entering[x] - leaving[x]);
}

// Row averages of rows y - 10 ... y + 10 summed per column in a running sum,
// so the image is walked row by row; each band of rows keeps its own window.
// rowDone, when set, sees each row of averages while it is still in the cache.
bool thresholdBand(const ThresholdRun& run, uint32_t firstRow, uint32_t endRow,
                   const std::function<void(uint32_t)>* rowDone = nullptr)
{
    const uint32_t width = run.width;
    const uint32_t height = run.height;
    std::unique_ptr<unsigned char[]> ring(new (std::nothrow) unsigned char[size_t(kRingRows + 1) * width]);
    std::unique_ptr<uint16_t[]> columnSums(new (std::nothrow) uint16_t[width]);
    std::unique_ptr<uint16_t[]> scratch(new (std::nothrow) uint16_t[size_t(3) * width]);
    std::unique_ptr<unsigned char[]> onMargin(new (std::nothrow) unsigned char[width]);
    if (!ring || !columnSums || !scratch || !onMargin)
        return false;
    unsigned char* noRow = ring.get() + size_t(kRingRows) * width;
    std::memset(noRow, 0, width);
    std::memset(columnSums.get(), 0, width * sizeof(uint16_t));

    auto averagesOf = [&](uint32_t y) { return ring.get() + size_t(y % kRingRows) * width; };
    auto enterRow = [&](uint32_t y) {
        rowAverages(run.mean + size_t(y) * width, width, averagesOf(y), scratch.get());
        return averagesOf(y);
    };

    const uint32_t windowTop = firstRow >= uint32_t(kRadius) ? firstRow - kRadius : 0;
    const uint32_t windowBottom = std::min(height - 1, firstRow + kRadius);
    uint16_t* sums = columnSums.get();
    for (uint32_t y = windowTop; y <= windowBottom; ++y)
        moveColumnWindow(sums, enterRow(y), noRow, width);

    const WindowDividers& dividers = windowDividers();
    for (uint32_t y = firstRow; y < endRow; ++y) {
        if (y > firstRow) {
            const unsigned char* entering = y + kRadius < height ? enterRow(y + kRadius) : noRow;
            const unsigned char* leaving = y > uint32_t(kRadius) ? averagesOf(y - kRadius - 1) : noRow;
            moveColumnWindow(sums, entering, leaving, width);
        }
        const uint32_t top = y >= uint32_t(kRadius) ? y - kRadius : 0;
        const uint32_t bottom = std::min(height - 1, y + kRadius);
        if (run.averages) {
            writeAverages(sums, dividers.bySize[bottom - top + 1], width, run.averages + size_t(y) * width);
            if (rowDone)
                (*rowDone)(y);
            continue;
        }
        testRow(run.mean + size_t(y) * width, sums, dividers.bySize[bottom - top + 1], run,
                run.mask + size_t(y) * width, onMargin.get());
    }
    return true;
}

} // namespace

bool computeDefectMask(const unsigned char* image, uint32_t width, uint32_t height, bool absolute,
                       int32_t threshold, unsigned char* mask)
{
    const Margins margins = absolute ? absoluteMargins(threshold) : relativeMargins(threshold);
    const ThresholdRun run{image, mask, width, height, &margins};
    std::atomic<bool> complete{true};
    forEachRowBand(height, width, kMinPixelsPerBand, [&run, &complete](uint32_t firstRow, uint32_t endRow) {
        if (!thresholdBand(run, firstRow, endRow))
            complete = false;
    });
    return complete;
}

bool computeLocalAverages(const unsigned char* image, uint32_t width, uint32_t height, unsigned char* averages)
{
    const Margins unused = absoluteMargins(0);
    ThresholdRun run{image, nullptr, width, height, &unused};
    run.averages = averages;
    std::atomic<bool> complete{true};
    forEachRowBand(height, width, kMinPixelsPerBand, [&run, &complete](uint32_t firstRow, uint32_t endRow) {
        if (!thresholdBand(run, firstRow, endRow))
            complete = false;
    });
    return complete;
}

bool computeLocalAverageRows(const unsigned char* image, uint32_t width, uint32_t height, uint32_t firstRow,
                             uint32_t endRow, unsigned char* averages, const std::function<void(uint32_t)>& rowDone)
{
    const Margins unused = absoluteMargins(0);
    ThresholdRun run{image, nullptr, width, height, &unused};
    run.averages = averages;
    return thresholdBand(run, firstRow, std::min(endRow, height), rowDone ? &rowDone : nullptr);
}

void defectMargins(bool absolute, int32_t threshold, int16_t margins[256])
{
    const Margins table = absolute ? absoluteMargins(threshold) : relativeMargins(threshold);
    std::copy(std::begin(table.byAverage), std::end(table.byAverage), margins);
}
