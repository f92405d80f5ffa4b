#include "defectclassification.h"
#include "defectmapcontainer.h"
#include "defectmapgenerator.h"
#include "defectmatch.h"
#include "imageseries.h"
#include "seriesfileloader.h"
#include "uxsettings.h"

#include <QDir>
#include <QImage>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int kWidth = 5472;
constexpr int kHeight = 3648;
constexpr int kImagesPerSeries = 16;
constexpr unsigned int kMaxMapSize = 10000;

// A grey scene with noise and a few hundred hot or dead pixels, as 8-bit bitmap.
QImage seriesImage(int level, unsigned int seed)
{
    QImage image(kWidth, kHeight, QImage::Format_Indexed8);
    QVector<QRgb> grey(256);
    for (int i = 0; i < 256; ++i)
        grey[i] = qRgb(i, i, i);
    image.setColorTable(grey);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> noise(-2, 2);
    for (int y = 0; y < kHeight; ++y) {
        uchar* line = image.scanLine(y);
        for (int x = 0; x < kWidth; ++x)
            line[x] = uchar(level + noise(random));
    }
    std::mt19937 defects(7);
    for (int i = 0; i < 400; ++i)
        image.scanLine(int(defects() % kHeight))[defects() % kWidth] = uchar(level > 100 ? 0 : 200);
    return image;
}

// The bitmaps are written once; every iteration loads them from disk.
struct SeriesFiles {
    QTemporaryDir dir;
    QStringList dark;
    QStringList bright;

    SeriesFiles()
    {
        for (int i = 0; i < kImagesPerSeries; ++i) {
            dark << dir.filePath(QString("dark%1.bmp").arg(i));
            bright << dir.filePath(QString("bright%1.bmp").arg(i));
            seriesImage(10, 100 + i).save(dark.last(), "BMP");
            seriesImage(160, 200 + i).save(bright.last(), "BMP");
        }
    }
};

// Both series through the file loader: each image's first file read whole,
// the others straight from disk into the mean in one batch.
void addSeriesInBatches(const SeriesFiles& files, ImageGeometry& geometry, DefectPixelParams& darkParams,
                        DefectPixelParams& brightParams, QImage& darkMean, QImage& brightMean)
{
    auto add = [&geometry](const QStringList& paths, int kind, DefectPixelParams& params, QImage& mean) {
        SeriesFileLoader loader(paths, kind);
        while (!loader.atEnd()) {
            loader.start(geometry, params, mean);
            loader.finish(geometry, params, mean);
        }
    };
    add(files.dark, DarkSeries, darkParams, darkMean);
    add(files.bright, BrightSeries, brightParams, brightMean);
}

// The straightforward way: each file loaded by the image reader, then accumulated.
void addSeriesOneByOne(const SeriesFiles& files, ImageGeometry& geometry, DefectPixelParams& darkParams,
                       DefectPixelParams& brightParams, QImage& darkMean, QImage& brightMean)
{
    for (const QString& path : files.dark)
        addImageToSeries(QImage(path), DarkSeries, geometry, darkParams, darkMean);
    for (const QString& path : files.bright)
        addImageToSeries(QImage(path), BrightSeries, geometry, brightParams, brightMean);
}

template <void (*addSeries)(const SeriesFiles&, ImageGeometry&, DefectPixelParams&, DefectPixelParams&, QImage&,
                            QImage&)>
void BM_Workflow(benchmark::State& state)
{
    QStandardPaths::setTestModeEnabled(true);
    static SeriesFiles files;
    DefectMatchPatterns patterns;
    patterns.setupDefMatchSettings(UXCSettings::getInstance()->GetDeffMatchSettings());
    size_t containerBytes = 0;
    for (auto _ : state) {
        ImageGeometry geometry;
        DefectPixelParams darkParams;
        DefectPixelParams brightParams;
        QImage darkMean;
        QImage brightMean;
        addSeries(files, geometry, darkParams, brightParams, darkMean, brightMean);
        if (darkParams.count != uint32_t(kImagesPerSeries) || brightParams.count != uint32_t(kImagesPerSeries)) {
            state.SkipWithError("not every image was added");
            break;
        }

        DefectMap map(kMaxMapSize);
        create_defpix_map(darkMean, brightMean, darkParams, brightParams, geometry, map);
        conv_defpix_map_990(map.data(), map.count(), patterns);
        const std::vector<unsigned char> container =
            buildDefPixContainerBuffer(4, 4100, map.count(), map.data(), geometry.width, geometry.pixelCount);
        containerBytes = container.size();
        benchmark::DoNotOptimize(container.data());
    }
    const double pixels = double(kWidth) * kHeight * 2 * kImagesPerSeries;
    state.counters["MPixel/s"] =
        benchmark::Counter(pixels / 1e6 * double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["containerBytes"] = double(containerBytes);
    state.SetLabel("2 series of 16 bitmaps 5472 x 3648: load, accumulate, generate, classify, container");
}

} // namespace

BENCHMARK_TEMPLATE(BM_Workflow, addSeriesInBatches)
    ->Name("Workflow")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK_TEMPLATE(BM_Workflow, addSeriesOneByOne)
    ->Name("WorkflowStraightforward")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

BENCHMARK_MAIN();
