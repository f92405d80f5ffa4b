#include "defectmapcontainer.h"
#include "uxcamera.h"

#include <ZebCPP.h>
#include <sim/simcontrol.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <vector>

// Upload and download of a 10000-entry revision-4 map container (120032 bytes,
// two transfer blocks) through a simulated camera whose file commands complete
// at once, so that what is measured is the access layer and the SDK. The
// "SdkOnly" runs do the same protocol with the SDK's features directly, fetched
// once, and write the download with stdio: the difference is the cost of the layer.

using namespace ZebCPP;

namespace {

constexpr unsigned int kEntries = 10000;
constexpr uint32_t kBlock = 0x10000;
constexpr const char* kCameraId = "DEV_BENCH0001";
constexpr const char* kSlot = "DefPixMap1";

const char* const kCameraJson = R"({ "id": "DEV_BENCH0001", "model": "kvd123MXGE", "serial": "BENCH0001",
    "interface": "sim-usb0", "mapAccess": "file", "mapRevision": 4, "mapSlots": 2, "mapMaxSize": 20000,
    "fileOperationDelayMs": 0, "sensor": { "width": 1280, "height": 1024, "seed": 3 } })";

struct Setup {
    CameraPtr camera;
    std::unique_ptr<UxCamera> uxCamera;
    std::vector<unsigned char> container;
    QTemporaryDir dir;
};

Setup* g_setup = nullptr;

std::vector<unsigned char> mapContainer()
{
    std::vector<t_defpix> map(kEntries);
    for (unsigned int i = 0; i < kEntries; ++i)
        map[i] = t_defpix{i % 1280, i / 1280, 101 + i % 13};
    return buildDefPixContainerBuffer(4, kDefPixTypedChunkId, kEntries, map.data(), 1280, 1280 * 1024);
}

FeaturePtr feature(const char* name)
{
    FeaturePtr f;
    g_setup->camera->GetFeatureByName(name, f);
    return f;
}

// One file command, completion checked once: the simulated camera is done at once.
bool execute(Feature& selector, Feature& execute, const char* operation)
{
    bool done = false;
    return selector.SetValue(operation) == ZebErrorSuccess && execute.RunCommand() == ZebErrorSuccess
        && execute.IsCommandDone(done) == ZebErrorSuccess && done;
}

void setBytes(benchmark::State& state)
{
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(g_setup->container.size()));
}

void BM_UploadMap(benchmark::State& state)
{
    for (auto _ : state) {
        long written = 0;
        if (!g_setup->uxCamera->UploadBuffer(g_setup->container, kSlot, kSlot, &written)
            || written != long(g_setup->container.size())) {
            state.SkipWithError("upload failed");
            return;
        }
    }
    setBytes(state);
}

void BM_DownloadMap(benchmark::State& state)
{
    const QString path = g_setup->dir.filePath("map.bin");
    for (auto _ : state) {
        long read = 0;
        if (!g_setup->uxCamera->DownloadDeviceFile(path, kSlot, kSlot, &read)
            || read != long(g_setup->container.size())) {
            state.SkipWithError("download failed");
            return;
        }
    }
    setBytes(state);
}

void BM_UploadMapSdkOnly(benchmark::State& state)
{
    const FeaturePtr selector = feature("FileSelector"), mode = feature("FileOpenMode"),
                     operation = feature("FileOperationSelector"), run = feature("FileOperationExecute"),
                     offset = feature("FileAccessOffset"), length = feature("FileAccessLength"),
                     buffer = feature("FileAccessBuffer");
    const std::vector<unsigned char>& data = g_setup->container;
    for (auto _ : state) {
        bool ok = selector->SetValue(kSlot) == ZebErrorSuccess && mode->SetValue("Write") == ZebErrorSuccess
            && execute(*operation, *run, "Open");
        for (uint32_t at = 0; ok && at < data.size(); at += kBlock) {
            const uint32_t n = std::min<uint32_t>(kBlock, uint32_t(data.size()) - at);
            ok = offset->SetValue(int64_t(at)) == ZebErrorSuccess && length->SetValue(int64_t(n)) == ZebErrorSuccess
                && buffer->SetRawData(data.data() + at, n) == ZebErrorSuccess && execute(*operation, *run, "Write");
        }
        if (!ok || !execute(*operation, *run, "Close")) {
            state.SkipWithError("upload failed");
            return;
        }
    }
    setBytes(state);
}

void BM_DownloadMapSdkOnly(benchmark::State& state)
{
    const FeaturePtr selector = feature("FileSelector"), mode = feature("FileOpenMode"),
                     operation = feature("FileOperationSelector"), run = feature("FileOperationExecute"),
                     offset = feature("FileAccessOffset"), length = feature("FileAccessLength"),
                     buffer = feature("FileAccessBuffer"), size = feature("FileSize");
    const QByteArray path = QFile::encodeName(g_setup->dir.filePath("sdk.bin"));
    std::vector<unsigned char> data;
    for (auto _ : state) {
        int64_t fileSize = 0;
        bool ok = selector->SetValue(kSlot) == ZebErrorSuccess && mode->SetValue("Read") == ZebErrorSuccess
            && execute(*operation, *run, "Open") && size->GetValue(fileSize) == ZebErrorSuccess;
        data.resize(size_t(fileSize));
        for (uint32_t at = 0; ok && at < data.size(); at += kBlock) {
            const uint32_t n = std::min<uint32_t>(kBlock, uint32_t(data.size()) - at);
            uint32_t filled = 0;
            ok = offset->SetValue(int64_t(at)) == ZebErrorSuccess && length->SetValue(int64_t(n)) == ZebErrorSuccess
                && execute(*operation, *run, "Read")
                && buffer->GetRawData(data.data() + at, n, filled) == ZebErrorSuccess && filled == n;
        }
        FILE* file = ok ? std::fopen(path.constData(), "wb") : nullptr;
        ok = file && std::fwrite(data.data(), 1, data.size(), file) == data.size();
        if (file)
            ok = std::fclose(file) == 0 && ok;
        if (!ok || !execute(*operation, *run, "Close") || data != g_setup->container) {
            state.SkipWithError("download failed");
            return;
        }
    }
    setBytes(state);
}

BENCHMARK(BM_UploadMap)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_UploadMapSdkOnly)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DownloadMap)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DownloadMapSdkOnly)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    qputenv("ZEB_SIM_CAMERAS", "default");
    if (ZebSystem::GetInstance().Startup() != ZebErrorSuccess || SimControl::PlugCamera(kCameraJson) != ZebErrorSuccess)
        return 1;
    Setup setup;
    if (ZebSystem::GetInstance().GetCameraByID(kCameraId, setup.camera) != ZebErrorSuccess
        || setup.camera->Open(AccessModeFull) != ZebErrorSuccess || !setup.dir.isValid())
        return 1;
    setup.uxCamera = std::make_unique<UxCamera>(setup.camera);
    setup.container = mapContainer();
    g_setup = &setup;

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    setup.uxCamera.reset();
    setup.camera.reset();
    ZebSystem::GetInstance().Shutdown();
    return 0;
}
