#include "uxcimageviewer.h"

#include <QApplication>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <random>

namespace {

constexpr int kWidth = 5472;
constexpr int kHeight = 3648;
constexpr int kMarkers = 10000;

// A 20 MPixel dark mean with 10 000 marked pixels, in a 1920 x 1080 view.
struct ViewerScene {
    ViewerScene()
    {
        QImage image(kWidth, kHeight, QImage::Format_Grayscale8);
        std::mt19937 random(3);
        std::uniform_int_distribution<int> noise(8, 14);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                image.scanLine(y)[x] = uchar(noise(random));
        std::uniform_int_distribution<int> column(0, kWidth - 1), row(0, kHeight - 1);
        QVector<UXCViewerMarker> markers;
        for (int i = 0; i < kMarkers; ++i)
            markers.push_back({column(random), row(random), i % 2 ? 0xffff4040u : 0xff30c0ffu});
        view.resize(1920, 1080);
        view.setImage(image);
        view.setMarkers(0, markers);
    }
    UXCImageViewer view;
    QImage target{1920, 1080, QImage::Format_ARGB32_Premultiplied};
};

void redraw(benchmark::State& state, ViewerScene& scene)
{
    for (auto _ : state) {
        scene.view.render(&scene.target);
        benchmark::DoNotOptimize(scene.target.constBits());
    }
    state.counters["markers drawn"] = scene.view.markersDrawn(0);
}

void BM_ViewerRedrawFit(benchmark::State& state)
{
    ViewerScene scene;
    scene.view.fitToWindow();
    redraw(state, scene);
    state.SetLabel("5472 x 3648, 10000 markers, 1920 x 1080 view at fit");
}

void BM_ViewerRedraw8x(benchmark::State& state)
{
    ViewerScene scene;
    scene.view.setZoom(8);
    scene.view.centerOn(QPointF(kWidth / 2.0, kHeight / 2.0));
    redraw(state, scene);
    state.SetLabel("5472 x 3648, 10000 markers, 1920 x 1080 view at 8x");
}

// A new mean (or contrast switch): the display copy is made once.
void BM_ViewerSetImage(benchmark::State& state)
{
    ViewerScene scene;
    const QImage image = scene.view.image();
    bool stretch = false;
    for (auto _ : state) {
        scene.view.setContrastStretch(stretch);
        stretch = !stretch;
    }
    state.counters["MPixel/s"] = benchmark::Counter(double(state.iterations()) * kWidth * kHeight / 1e6,
                                                    benchmark::Counter::kIsRate);
    state.SetLabel("5472 x 3648 contrast stretch on / off");
}

} // namespace

BENCHMARK(BM_ViewerRedrawFit)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ViewerRedraw8x)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ViewerSetImage)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
