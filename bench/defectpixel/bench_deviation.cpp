#include "deviationstatistics.h"
#include "localthreshold.h"

#include <QImage>

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int kWidth = 5472;
constexpr int kHeight = 3648;

QImage sensorMean()
{
    QImage image(kWidth, kHeight, QImage::Format_Grayscale8);
    std::mt19937 random(5);
    std::uniform_int_distribution<int> noise(100, 140);
    for (qsizetype i = 0; i < image.sizeInBytes(); ++i)
        image.bits()[i] = uchar(noise(random));
    return image;
}

// A new mean: local averages and the (average, deviation) histogram.
void BM_DeviationStatistics(benchmark::State& state)
{
    const QImage mean = sensorMean();
    DeviationStatistics stats;
    for (auto _ : state)
        benchmark::DoNotOptimize(stats.compute(mean));
    state.counters["MPixel/s"] = benchmark::Counter(double(state.iterations()) * kWidth * kHeight / 1e6,
                                                    benchmark::Counter::kIsRate);
    state.SetLabel("5472 x 3648");
}

// The straightforward way for comparison: the averages in one pass, then the
// histogram in a second pass over the whole image on one thread.
void BM_DeviationStatisticsTwoPass(benchmark::State& state)
{
    const QImage mean = sensorMean();
    const size_t size = size_t(kWidth) * kHeight;
    for (auto _ : state) {
        std::unique_ptr<unsigned char[]> averages(new unsigned char[size]);
        computeLocalAverages(mean.constBits(), kWidth, kHeight, averages.get());
        std::vector<uint32_t> counts(size_t(256) * DeviationStatistics::kDeviationBins, 0);
        const unsigned char* values = mean.constBits();
        for (size_t i = 0; i < size; ++i)
            ++counts[size_t(averages[i]) * DeviationStatistics::kDeviationBins + values[i] - averages[i]
                     + DeviationStatistics::kMaxDeviation];
        benchmark::DoNotOptimize(counts.data());
    }
    state.SetLabel("5472 x 3648");
}

// A threshold typed in the panel: the count and the histogram drawn with it.
void BM_DeviationFlaggedCount(benchmark::State& state)
{
    DeviationStatistics stats;
    stats.compute(sensorMean());
    int threshold = 0;
    for (auto _ : state) {
        threshold = (threshold + 1) % 100;
        benchmark::DoNotOptimize(stats.flaggedCount(false, threshold));
        benchmark::DoNotOptimize(stats.percentHistogram());
    }
    state.SetLabel("5472 x 3648, relative threshold 0 ... 99 %");
}

} // namespace

BENCHMARK(BM_DeviationStatistics)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_DeviationStatisticsTwoPass)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_DeviationFlaggedCount)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_MAIN();
