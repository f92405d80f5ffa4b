#include "deviationstatistics.h"

#include <QImage>

#include <benchmark/benchmark.h>

#include <random>

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
BENCHMARK(BM_DeviationFlaggedCount)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_MAIN();
