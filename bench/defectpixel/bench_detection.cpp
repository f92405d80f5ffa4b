#include "defectmapgenerator.h"
#include "defectpixelparams.h"

#include <QImage>

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kWidth = 5472;
constexpr int kHeight = 3648;
constexpr int64_t kPixels = int64_t(kWidth) * kHeight;

QImage noiseImage(QImage::Format format, unsigned int seed)
{
    QImage image(kWidth, kHeight, format);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> noise(100, 140);
    unsigned char* bytes = image.bits();
    for (qsizetype i = 0; i < image.sizeInBytes(); ++i)
        bytes[i] = static_cast<unsigned char>(noise(random));
    return image;
}

// A series of 16 images behind the mean; each iteration adds or removes one more
// image in turn, so the series stays the same.
void benchUpdate(benchmark::State& state, QImage::Format format)
{
    DefectPixelParams params;
    QImage mean(kWidth, kHeight, QImage::Format_Grayscale8);
    mean.fill(0);
    QImage image = noiseImage(format, 1);
    for (int i = 0; i < 16; ++i)
        params.update(mean, image, 1);
    int weight = 1;
    for (auto _ : state) {
        params.update(mean, image, weight);
        weight = -weight;
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kPixels);
}

void BM_UpdateIndexed8(benchmark::State& state)
{
    benchUpdate(state, QImage::Format_Indexed8);
}

void BM_UpdateRGB32(benchmark::State& state)
{
    benchUpdate(state, QImage::Format_RGB32);
}

void BM_LocalThreshold(benchmark::State& state)
{
    const bool absolute = state.range(0) != 0;
    DefectPixelParams params;
    const QImage mean = noiseImage(QImage::Format_Grayscale8, 2);
    // The mask is allocated once and then reused, as between generations.
    params.localThreshold(mean, absolute);
    for (auto _ : state)
        benchmark::DoNotOptimize(params.localThreshold(mean, absolute));
    state.SetItemsProcessed(int64_t(state.iterations()) * kPixels);
    state.SetLabel(absolute ? "absolute" : "relative");
}

// Flat means with the given number of spikes, each far outside both margins.
QImage spikedMean(int spikes, unsigned int seed)
{
    QImage mean(kWidth, kHeight, QImage::Format_Grayscale8);
    mean.fill(120);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> position(0, int(kPixels - 1));
    unsigned char* bytes = mean.bits();
    for (int i = 0; i < spikes; ++i)
        bytes[position(random)] = 255;
    return mean;
}

void BM_GenerateMono(benchmark::State& state)
{
    const int spikes = int(state.range(0));
    const QImage darkMean = spikedMean(spikes / 2, 3);
    const QImage brightMean = spikedMean(spikes - spikes / 2, 4);
    DefectPixelParams dark;
    DefectPixelParams bright;
    const ImageGeometry geometry{kWidth, kHeight, uint32_t(kPixels)};
    DefectMap map(10000);
    // The masks are allocated by the first generation and reused by the next.
    create_defpix_map(darkMean, brightMean, dark, bright, geometry, map);
    const uint32_t flagged = dark.defectCount + bright.defectCount;
    for (auto _ : state)
        create_defpix_map(darkMean, brightMean, dark, bright, geometry, map);
    state.SetItemsProcessed(int64_t(state.iterations()) * kPixels);
    state.counters["entries"] = map.count();
    state.counters["flagged"] = flagged;
}

} // namespace

BENCHMARK(BM_UpdateIndexed8)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_UpdateRGB32)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LocalThreshold)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_GenerateMono)->Arg(0)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
