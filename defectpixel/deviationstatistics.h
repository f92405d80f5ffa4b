#pragma once

#include <QImage>

#include <cstdint>
#include <memory>
#include <vector>

// How far each pixel of a mean image lies from its 21 x 21 local average, the
// same average and the same margins the map generation tests against, so that
// what is shown and counted here is exactly what "Generate Map" flags. Pixels
// are addressed as the detection does: one run of width * height bytes.
class DeviationStatistics {
public:
    static constexpr int kMaxDeviation = 255;
    static constexpr int kDeviationBins = 2 * kMaxDeviation + 1; // -255 ... 255
    static constexpr int kPercentRange = 100;                   // relative bins -100 ... 100 %

    // Local averages and the joint histogram of (average, deviation). False, and
    // empty, for a null mean, one too small for the contiguous run, or without memory.
    bool compute(const QImage& mean);
    void clear();

    bool isEmpty() const { return !m_averages; }
    uint32_t width() const { return m_width; }
    uint32_t height() const { return m_height; }

    // Valid for 0 <= x < width, 0 <= y < height of a computed mean.
    uint8_t value(uint32_t x, uint32_t y) const { return m_values[size_t(y) * m_width + x]; }
    uint8_t localAverage(uint32_t x, uint32_t y) const { return m_averages[size_t(y) * m_width + x]; }
    int deviation(uint32_t x, uint32_t y) const { return int(value(x, y)) - int(localAverage(x, y)); }
    // Whether the test of the series flags the pixel at this threshold.
    bool isFlagged(uint32_t x, uint32_t y, bool absolute, int32_t threshold) const;

    // Pixels with local average m and deviation d (v - m).
    uint32_t count(int average, int deviation) const
    {
        return m_counts[size_t(average) * kDeviationBins + size_t(deviation + kMaxDeviation)];
    }
    // Pixels the test would flag at this threshold, from the histogram alone.
    uint64_t flaggedCount(bool absolute, int32_t threshold) const;
    // Pixels per deviation in grey levels, index d + 255.
    std::vector<uint64_t> deviationHistogram() const;
    // Pixels per deviation in whole percent of the local average, truncated toward
    // zero, index p + 100; deviations beyond +-100 % (or of a zero average) are
    // counted in the outermost bins.
    std::vector<uint64_t> percentHistogram() const;

private:
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    QImage m_mean; // keeps the values alive
    const unsigned char* m_values = nullptr;
    std::unique_ptr<unsigned char[]> m_averages;
    std::vector<uint32_t> m_counts; // [average][deviation + 255]
};
