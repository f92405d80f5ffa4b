#include "batchrun.h"

#include <ZebCPP.h>

#include <QDir>
#include <QImage>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>

// A whole batch run (16 dark + 16 bright 5-MPixel bitmaps per camera, map
// generation, upload into a file-access slot and read-back) for one camera and
// for eight cameras at once, one worker each. Two camera sets: file commands
// that complete at once (all work is computing), and file commands that take
// 250 ms each, as a camera's flash does (waiting that the workers overlap).
// All cameras read the same series, so the run measures the tool, not the disk.

namespace {

constexpr int kWidth = 2592;
constexpr int kHeight = 1944; // 5.04 MPixel
constexpr int kImages = 16;
constexpr int kCameras = 8;

QString cameraSetJson()
{
    QString cameras;
    for (int delay : {0, 250}) {
        for (int i = 0; i < kCameras; ++i) {
            if (!cameras.isEmpty())
                cameras += ",";
            cameras += QString(R"({ "id": "DEV_D%1C%2", "model": "kvd123MXGE", "serial": "D%1C%2",
                "interface": "bench-eth0", "mapAccess": "file", "mapRevision": 3, "mapSlots": 3,
                "mapMaxSize": 20000, "fileOperationDelayMs": %1,
                "sensor": { "width": 64, "height": 64, "seed": %2 } })")
                           .arg(delay)
                           .arg(i + 1);
        }
    }
    return QString(R"({ "transportLayers": [ { "id": "BenchGEV", "name": "GigE Vision", "type": "GigEVision",
        "path": "builtin:Bench", "interfaces": [ { "id": "bench-eth0", "name": "Bench network card" } ] } ],
        "cameras": [ %1 ] })")
        .arg(cameras);
}

// Dark frames near grey 12, bright frames near 160, both with temporal noise
// and the same 400 hot and 400 dead pixels.
void writeSeries(const QString& dir)
{
    QVector<QRgb> grey(256);
    for (int i = 0; i < 256; ++i)
        grey[i] = qRgb(i, i, i);
    uint32_t state = 12345;
    auto noise = [&state] {
        state = state * 1664525u + 1013904223u;
        return int(state >> 29); // 0 ... 7
    };
    for (int bright = 0; bright < 2; ++bright) {
        for (int n = 0; n < kImages; ++n) {
            QImage image(kWidth, kHeight, QImage::Format_Indexed8);
            image.setColorTable(grey);
            for (int y = 0; y < kHeight; ++y) {
                uchar* line = image.scanLine(y);
                for (int x = 0; x < kWidth; ++x)
                    line[x] = uchar((bright ? 156 : 8) + noise());
            }
            for (int d = 0; d < 800; ++d) {
                const int x = (d * 7919) % kWidth;
                const int y = (d * 104729) % kHeight;
                image.scanLine(y)[x] = d < 400 ? 250 : 0;
            }
            image.save(QDir(dir).filePath(QString("%1_%2.bmp").arg(bright ? "bright" : "dark").arg(n, 3, 10, QChar('0'))),
                       "BMP");
        }
    }
}

struct Setup {
    QTemporaryDir dir;
    bool ready = false;

    Setup()
    {
        QStandardPaths::setTestModeEnabled(true);
        QFile set(dir.filePath("cameras.json"));
        if (!set.open(QIODevice::WriteOnly) || set.write(cameraSetJson().toUtf8()) < 0)
            return;
        set.close();
        setenv("ZEB_SIM_CAMERAS", qPrintable(set.fileName()), 1);
        setenv("ZEB_GEV_ADDRESSES", "127.0.0.1", 1);
        writeSeries(dir.path());
        ready = ZebCPP::ZebSystem::GetInstance().Startup() == ZebCPP::ZebErrorSuccess;
    }
    ~Setup() { ZebCPP::ZebSystem::GetInstance().Shutdown(); }
};

Setup& setup()
{
    static Setup instance;
    return instance;
}

// state.range(0): file command delay in ms; state.range(1): cameras.
void BM_BatchRun(benchmark::State& state)
{
    Setup& s = setup();
    if (!s.ready) {
        state.SkipWithError("the simulated cameras did not start");
        return;
    }
    BatchOptions options;
    for (int i = 0; i < state.range(1); ++i)
        options.cameras << QString("D%1C%2").arg(state.range(0)).arg(i + 1);
    options.darkDir = s.dir.filePath("dark_*.bmp");
    options.brightDir = s.dir.filePath("bright_*.bmp");
    options.slot = "DefPixMap1";
    options.confirmed = true;
    options.quiet = true;
    options.jobs = int(state.range(1));
    QString text;
    QTextStream out(&text);
    for (auto _ : state) {
        text.clear();
        if (BatchRun::run(options, out, out) != 0) {
            state.SkipWithError(qPrintable("a camera failed: " + text));
            return;
        }
    }
    const double pixels = double(kWidth) * kHeight * 2 * kImages * double(state.range(1));
    state.counters["MPixel/s"] = benchmark::Counter(pixels / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

BENCHMARK(BM_BatchRun)
    ->ArgNames({"delayMs", "cameras"})
    ->Args({0, 1})
    ->Args({0, kCameras})
    ->Args({250, 1})
    ->Args({250, kCameras})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(2);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
