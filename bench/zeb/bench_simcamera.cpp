// Cost of the simulated cameras as the application meets it: single-image
// acquisition (MPixel/s) and map-slot writes through file access (MB/s).

#include "ZebCPP.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace ZebCPP;

namespace {

CameraPtr openBySerial(const char* serial)
{
    setenv("ZEB_SIM_CAMERAS", "default", 1);
    ZebSystem::GetInstance().Startup();
    std::vector<CameraPtr> cameras;
    ZebSystem::GetInstance().GetCameras(cameras);
    for (const CameraPtr& camera : cameras) {
        std::string s;
        camera->GetSerialNumber(s);
        if (s == serial && camera->Open(AccessModeFull) == ZebErrorSuccess)
            return camera;
    }
    return nullptr;
}

FeaturePtr feature(const CameraPtr& camera, const char* name)
{
    FeaturePtr f;
    camera->GetFeatureByName(name, f);
    return f;
}

// 1280 x 1024 mono frames of the register-mode camera.
void bench_acquireSingleImage(benchmark::State& state)
{
    CameraPtr camera = openBySerial("RY1300003");
    if (!camera) {
        state.SkipWithError("camera not available");
        return;
    }
    for (auto _ : state) {
        FramePtr frame;
        camera->AcquireSingleImage(frame, 1000);
        benchmark::DoNotOptimize(frame);
    }
    state.counters["MPixel/s"] = benchmark::Counter(1280.0 * 1024 * state.iterations() / 1e6,
                                                    benchmark::Counter::kIsRate);
    camera->Close();
    ZebSystem::GetInstance().Shutdown();
}
BENCHMARK(bench_acquireSingleImage)->Unit(benchmark::kMillisecond);

// One 64 KiB block per iteration into the UserData file of the mono camera:
// offset, length, buffer and the Write operation, as an upload moves it.
void bench_fileAccessBlockWrite(benchmark::State& state)
{
    CameraPtr camera = openBySerial("KV1230001");
    if (!camera) {
        state.SkipWithError("camera not available");
        return;
    }
    feature(camera, "FileSelector")->SetValue("UserData");
    feature(camera, "FileOpenMode")->SetValue("Write");
    FeaturePtr operation = feature(camera, "FileOperationSelector");
    FeaturePtr execute = feature(camera, "FileOperationExecute");
    FeaturePtr offset = feature(camera, "FileAccessOffset");
    FeaturePtr length = feature(camera, "FileAccessLength");
    FeaturePtr buffer = feature(camera, "FileAccessBuffer");
    operation->SetValue("Open");
    execute->RunCommand();
    const std::vector<uint8_t> block(0x10000, 0x5A);
    for (auto _ : state) {
        offset->SetValue(int64_t(0));
        length->SetValue(int64_t(block.size()));
        buffer->SetRawData(block.data(), uint32_t(block.size()));
        operation->SetValue("Write");
        execute->RunCommand();
    }
    operation->SetValue("Close");
    execute->RunCommand();
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(block.size()));
    camera->Close();
    ZebSystem::GetInstance().Shutdown();
}
BENCHMARK(bench_fileAccessBlockWrite);

} // namespace

BENCHMARK_MAIN();
