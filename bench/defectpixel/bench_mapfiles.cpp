#include "defectclassification.h"
#include "defectmapcontainer.h"
#include "defectmapfile.h"
#include "defectmatch.h"
#include "uxsettings.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

constexpr unsigned int kEntries = 10000;

// A generated map: distinct positions on a 1280 x 1024 sensor in raster order.
std::vector<t_defpix> generatedMap()
{
    std::mt19937 random(5);
    std::vector<t_defpix> map(kEntries);
    unsigned int count = 0;
    DefectMapWriter writer(map.data(), kEntries, count);
    while (count < kEntries)
        writer.add(random() % 1280, random() % 1024, 0);
    std::sort(map.begin(), map.end(), [](const t_defpix& a, const t_defpix& b) {
        return a.y != b.y ? a.y < b.y : a.x < b.x;
    });
    return map;
}

// The settings store's default pattern table (main() gives the store a throw-away home).
const DefectMatchPatterns& defaultPatterns()
{
    static DefectMatchPatterns patterns = [] {
        DefectMatchPatterns p;
        p.setupDefMatchSettings(UXCSettings::getInstance()->GetDeffMatchSettings());
        return p;
    }();
    return patterns;
}

void setEntriesProcessed(benchmark::State& state)
{
    state.SetItemsProcessed(int64_t(state.iterations()) * kEntries);
}

void BM_Classify(benchmark::State& state)
{
    const DefectMatchPatterns& patterns = defaultPatterns();
    if (patterns.isEmpty()) {
        state.SkipWithError("no pattern table");
        return;
    }
    const std::vector<t_defpix> original = generatedMap();
    std::vector<t_defpix> map = original;
    for (auto _ : state) {
        conv_defpix_map_990(map.data(), kEntries, patterns);
        benchmark::DoNotOptimize(map.data());
    }
    setEntriesProcessed(state);
}

void BM_TextWrite(benchmark::State& state)
{
    QTemporaryDir dir;
    const std::vector<t_defpix> map = generatedMap();
    DefectMapFilePanelState panel;
    panel.registerMode = true;
    QString remembered = dir.path();
    for (auto _ : state) {
        if (!saveDefectMapFile(dir.filePath("map.txt"), map.data(), kEntries, panel, remembered))
            state.SkipWithError("write failed");
    }
    setEntriesProcessed(state);
}

void BM_TextRead(benchmark::State& state)
{
    QTemporaryDir dir;
    const std::vector<t_defpix> original = generatedMap();
    DefectMapFilePanelState panel;
    panel.registerMode = true;
    QString remembered = dir.path();
    if (!saveDefectMapFile(dir.filePath("map.txt"), original.data(), kEntries, panel, remembered)) {
        state.SkipWithError("write failed");
        return;
    }
    const DefectMatchPatterns noPatterns;
    std::vector<t_defpix> map(kEntries);
    for (auto _ : state) {
        unsigned int count = 0;
        if (!loadDefectMapFile(dir.filePath("map.txt"), map.data(), kEntries, count, 0, 4096, noPatterns,
                               remembered)
            || count != kEntries)
            state.SkipWithError("read failed");
    }
    setEntriesProcessed(state);
}

void BM_Container(benchmark::State& state)
{
    const std::vector<t_defpix> map = generatedMap();
    for (auto _ : state) {
        std::vector<unsigned char> buffer = buildDefPixContainerBuffer(4, 4100, kEntries, map.data(), 1280, 1280 * 1024);
        benchmark::DoNotOptimize(buffer.data());
    }
    setEntriesProcessed(state);
    state.SetBytesProcessed(int64_t(state.iterations()) * (32 + kEntries * 12));
}

} // namespace

BENCHMARK(BM_Classify)->Name("Classify/10000")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TextWrite)->Name("TextWrite/10000")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TextRead)->Name("TextRead/10000")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Container)->Name("Container/10000")->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    QStandardPaths::setTestModeEnabled(true);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
