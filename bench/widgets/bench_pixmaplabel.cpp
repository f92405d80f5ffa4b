#include "uxcustomwidgets.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

// A mean image of a 20 MPixel sensor, as the correction panel shows it.
QImage sensorMean()
{
    QImage image(5472, 3648, QImage::Format_Grayscale8);
    image.fill(100);
    return image;
}

void setMPixelRate(benchmark::State& state, const QImage& image)
{
    state.counters["MPixel/s"] = benchmark::Counter(double(state.iterations()) * image.width() * image.height() / 1e6,
                                                    benchmark::Counter::kIsRate);
}

// Showing a new mean: the conversion to a pixmap and the first scaling.
void BM_PixmapLabelSetImage(benchmark::State& state)
{
    const QImage image = sensorMean();
    UXCPixmapLabel label;
    label.resize(400, 300);
    for (auto _ : state)
        label.setImage(image);
    setMPixelRate(state, image);
    state.SetLabel("5472 x 3648 Grayscale8 into 400 x 300");
}

// Resizing the window: the label scales again from what it kept.
void BM_PixmapLabelResize(benchmark::State& state)
{
    const QImage image = sensorMean();
    UXCPixmapLabel label;
    label.resize(400, 300);
    label.setImage(image);
    // Only a shown widget is resized at once.
    label.show();
    int step = 0;
    for (auto _ : state)
        label.resize(400 + (++step % 2), 300);
    setMPixelRate(state, image);
    state.SetLabel("5472 x 3648 Grayscale8, 400 / 401 x 300");
}

} // namespace

BENCHMARK(BM_PixmapLabelSetImage)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PixmapLabelResize)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
