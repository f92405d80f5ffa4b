// Capture of a 16-frame series of 20 MPixel from a simulated camera into the
// accumulation, the way the capture control and the panel share it: a worker
// acquires each frame and writes it as a bitmap into the images folder, the
// calling thread reads that bitmap back into the series while the next frame comes.
// BM_CaptureIntoSeries is the whole chain; BM_CaptureFrameGeneration is what the
// simulated camera alone costs for the same frames (the sensor model, not the
// assistant); BM_CapturedFramesIntoSeries starts from frames already acquired,
// i.e. the assistant's own share.

#include "capturedimage.h"
#include "framecapture.h"
#include "imageseries.h"
#include "sim/simcontrol.h"

#include <ZebCPP.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

using namespace ZebCPP;

namespace {

constexpr int kWidth = 5472;
constexpr int kHeight = 3648;
constexpr int kFrames = 16;
const char* const kSerial = "CAP20M001";

struct Setup {
    QTemporaryDir dir;
    CameraPtr camera;

    Setup()
    {
        QFile set(dir.filePath("cameras.json"));
        const QString json = QString(R"({ "transportLayers": [ { "id": "BenchGEV", "name": "GigE Vision",
            "type": "GigEVision", "path": "builtin:Bench", "interfaces": [ { "id": "bench-eth0",
            "name": "Bench network card" } ] } ],
            "cameras": [ { "id": "DEV_CAP20M", "model": "kvd123MXGE", "serial": "%1", "interface": "bench-eth0",
            "sensor": { "width": %2, "height": %3, "seed": 20 } } ] })")
                                 .arg(kSerial)
                                 .arg(kWidth)
                                 .arg(kHeight);
        if (!set.open(QIODevice::WriteOnly) || set.write(json.toUtf8()) < 0)
            return;
        set.close();
        setenv("ZEB_SIM_CAMERAS", qPrintable(set.fileName()), 1);
        if (ZebSystem::GetInstance().Startup() != ZebErrorSuccess)
            return;
        std::vector<CameraPtr> cameras;
        ZebSystem::GetInstance().GetCameras(cameras);
        for (const CameraPtr& candidate : cameras) {
            std::string serial;
            candidate->GetSerialNumber(serial);
            if (serial == kSerial && candidate->Open(AccessModeFull) == ZebErrorSuccess)
                camera = candidate;
        }
        SimControl::SetIllumination(kSerial, 50);
        QDir(dir.path()).mkpath("images");
    }
    ~Setup()
    {
        if (camera)
            camera->Close();
        ZebSystem::GetInstance().Shutdown();
    }
    QString imagesFolder() const { return dir.filePath("images"); }
};

Setup& setup()
{
    static Setup instance;
    return instance;
}

// The bitmaps a worker has written and the calling thread has not yet added.
class PathQueue {
public:
    void push(const QString& path)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_paths.push_back(path);
        m_ready.notify_one();
    }
    void close()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
        m_ready.notify_one();
    }
    // Empty once closed and drained.
    QString pop()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_ready.wait(lock, [this] { return !m_paths.empty() || m_closed; });
        if (m_paths.empty())
            return QString();
        QString path = m_paths.front();
        m_paths.pop_front();
        return path;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_ready;
    std::deque<QString> m_paths;
    bool m_closed = false;
};

// Adds every bitmap the producer announces, as the panel does on its thread.
int addAll(PathQueue& queue, ImageGeometry& geometry, DefectPixelParams& params, QImage& mean)
{
    int added = 0;
    for (QString path = queue.pop(); !path.isEmpty(); path = queue.pop()) {
        if (addImageToSeries(path, BrightSeries, geometry, params, mean) == SeriesChange::Accepted)
            ++added;
        QFile::remove(path);
    }
    return added;
}

void setCounters(benchmark::State& state)
{
    state.counters["frames/s"] = benchmark::Counter(double(kFrames), benchmark::Counter::kIsIterationInvariantRate);
    state.SetLabel("16 frames of 5472 x 3648");
}

// The set-up, or null once the benchmark is told why it cannot run.
Setup* openedSetup(benchmark::State& state)
{
    Setup& s = setup();
    if (!s.camera) {
        state.SkipWithError("the simulated camera did not open");
        return nullptr;
    }
    return &s;
}

// produce hands frames to its writer on a worker thread, which writes each as
// a captured bitmap, while this thread adds them to a series as the panel does.
int writeIntoSeries(const QDir& folder, const std::function<void(const FrameCapture::Sink&)>& produce)
{
    ImageGeometry geometry;
    DefectPixelParams params;
    QImage mean;
    PathQueue queue;
    const QDateTime start = QDateTime::currentDateTime();
    std::thread worker([&] {
        produce([&](const CapturedFrame& frame, int index) {
            const QString path = folder.filePath(capturedImageName(kSerial, BrightSeries, start, index));
            if (!writeFrameBitmap(path, frame.pixels.data(), frame.width, frame.height))
                return false;
            queue.push(path);
            return true;
        });
        queue.close();
    });
    const int frames = addAll(queue, geometry, params, mean);
    worker.join();
    return frames;
}

void captureFrames(const CameraPtr& camera, const FrameCapture::Sink& sink)
{
    FrameCapture capture(camera);
    FrameCaptureSettings settings;
    settings.frames = kFrames;
    capture.run(settings, sink);
}

void BM_CaptureIntoSeries(benchmark::State& state)
{
    Setup* s = openedSetup(state);
    if (!s)
        return;
    const QDir folder(s->imagesFolder());
    int frames = 0;
    for (auto _ : state)
        frames = writeIntoSeries(folder, [s](const FrameCapture::Sink& write) { captureFrames(s->camera, write); });
    if (frames != kFrames)
        state.SkipWithError("not every frame reached the series");
    setCounters(state);
}

void BM_CaptureFrameGeneration(benchmark::State& state)
{
    Setup* s = openedSetup(state);
    if (!s)
        return;
    for (auto _ : state)
        captureFrames(s->camera, [](const CapturedFrame&, int) { return true; });
    setCounters(state);
}

void BM_CapturedFramesIntoSeries(benchmark::State& state)
{
    Setup* s = openedSetup(state);
    if (!s)
        return;
    std::vector<CapturedFrame> acquired;
    captureFrames(s->camera, [&](const CapturedFrame& frame, int) {
        acquired.push_back(frame);
        return true;
    });
    const QDir folder(s->imagesFolder());
    int frames = 0;
    for (auto _ : state) {
        frames = writeIntoSeries(folder, [&acquired](const FrameCapture::Sink& write) {
            for (int index = 0; index < int(acquired.size()); ++index)
                write(acquired[size_t(index)], index);
        });
    }
    if (frames != kFrames)
        state.SkipWithError("not every frame reached the series");
    setCounters(state);
}

} // namespace

// The simulated sensor takes seconds per 20 MPixel frame: one run of the live captures.
BENCHMARK(BM_CaptureIntoSeries)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(BM_CaptureFrameGeneration)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(BM_CapturedFramesIntoSeries)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
