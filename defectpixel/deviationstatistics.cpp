#include "deviationstatistics.h"

#include "localthreshold.h"
#include "parallelrows.h"

#include <QMutex>

#include <algorithm>
#include <atomic>
#include <functional>

#include <new>

namespace {

// Bands smaller than this cost more in histogram merging than they save.
constexpr uint64_t kMinPixelsPerBand = 1 << 18;

// Counts per (average m, value v), index m * 256 + v: 256 KB, small enough to
// stay in a core's cache while a band is counted.
using ValueCounts = std::vector<uint32_t>;

void countRow(const unsigned char* values, const unsigned char* averages, uint32_t width,
                uint32_t* counts)
{
    for (uint32_t x = 0; x < width; ++x)
        ++counts[(uint32_t(averages[x]) << 8) | values[x]];
}

} // namespace

bool DeviationStatistics::compute(const QImage& mean)
{
    std::unique_ptr<unsigned char[]> averages = std::move(m_averages);
    const size_t previousSize = size_t(m_width) * m_height;
    clear();
    if (mean.isNull() || mean.depth() != 8)
        return false;
    const uint32_t width = uint32_t(mean.width());
    const uint32_t height = uint32_t(mean.height());
    const size_t size = size_t(width) * height;
    if (size_t(mean.sizeInBytes()) < size)
        return false;
    // A new mean of the same size (the usual case) reuses the buffer instead
    // of touching fresh pages.
    if (!averages || previousSize != size)
        averages.reset(new (std::nothrow) unsigned char[size]);
    std::vector<uint32_t> counts;
    try {
        counts.assign(size_t(256) * kDeviationBins, 0);
    } catch (const std::bad_alloc&) {
        return false;
    }
    if (!averages)
        return false;

    // Each row is counted right after its averages are written, while both are
    // still in the cache: one pass over the image instead of two.
    const unsigned char* values = mean.constBits();
    unsigned char* out = averages.get();
    QMutex merge;
    std::atomic<bool> complete{true};
    forEachRowBand(height, width, kMinPixelsPerBand, [&](uint32_t firstRow, uint32_t endRow) {
        ValueCounts band;
        try {
            band.assign(size_t(256) * 256, 0);
        } catch (const std::bad_alloc&) {
            complete = false;
            return;
        }
        const std::function<void(uint32_t)> countAverages = [&](uint32_t y) {
            const size_t offset = size_t(y) * width;
            countRow(values + offset, out + offset, width, band.data());
        };
        if (!computeLocalAverageRows(values, width, height, firstRow, endRow, out, countAverages)) {
            complete = false;
            return;
        }
        QMutexLocker lock(&merge);
        for (size_t m = 0; m < 256; ++m) {
            // v = m + d: row m of the value counts lands at deviation -m ... 255 - m.
            uint32_t* row = &counts[m * kDeviationBins + kMaxDeviation - m];
            for (size_t v = 0; v < 256; ++v)
                row[v] += band[m * 256 + v];
        }
    });
    if (!complete)
        return false;

    m_width = width;
    m_height = height;
    m_mean = mean;
    m_values = m_mean.constBits();
    m_averages = std::move(averages);
    m_counts = std::move(counts);
    return true;
}

void DeviationStatistics::clear()
{
    m_width = m_height = 0;
    m_mean = QImage();
    m_values = nullptr;
    m_averages.reset();
    m_counts.clear();
}

bool DeviationStatistics::isFlagged(uint32_t x, uint32_t y, bool absolute, int32_t threshold) const
{
    int16_t margins[256];
    defectMargins(absolute, threshold, margins);
    const int d = deviation(x, y);
    return (d < 0 ? -d : d) > margins[localAverage(x, y)];
}

uint64_t DeviationStatistics::flaggedCount(bool absolute, int32_t threshold) const
{
    if (isEmpty())
        return 0;
    int16_t margins[256];
    defectMargins(absolute, threshold, margins);
    uint64_t flagged = 0;
    for (int m = 0; m < 256; ++m) {
        const uint32_t* row = &m_counts[size_t(m) * kDeviationBins];
        // |d| > margin: the two tails of the row.
        const int first = margins[m] + 1;
        for (int d = first; d <= kMaxDeviation; ++d)
            flagged += row[kMaxDeviation + d] + (d > 0 ? row[kMaxDeviation - d] : 0);
    }
    return flagged;
}

std::vector<uint64_t> DeviationStatistics::deviationHistogram() const
{
    std::vector<uint64_t> bins(kDeviationBins, 0);
    for (size_t k = 0; k < m_counts.size(); ++k)
        bins[k % kDeviationBins] += m_counts[k];
    return bins;
}

std::vector<uint64_t> DeviationStatistics::percentHistogram() const
{
    std::vector<uint64_t> bins(2 * kPercentRange + 1, 0);
    for (size_t k = 0; k < m_counts.size(); ++k) {
        if (!m_counts[k])
            continue;
        const int m = int(k / kDeviationBins);
        const int d = int(k % kDeviationBins) - kMaxDeviation;
        int percent = m ? d * 100 / m : (d > 0 ? kPercentRange : d < 0 ? -kPercentRange : 0);
        percent = std::max(-kPercentRange, std::min(kPercentRange, percent));
        bins[size_t(percent + kPercentRange)] += m_counts[k];
    }
    return bins;
}
