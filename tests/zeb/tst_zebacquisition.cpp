#include "sim/simcontrol.h"
#include "zebtestsupport.h"

#include <algorithm>
#include <set>

using namespace ZebCPP;

namespace {

using Pixel = std::pair<uint32_t, uint32_t>;

struct Image {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<double> values;
};

Image meanOf(const CameraPtr& camera, int frames)
{
    Image mean;
    for (int i = 0; i < frames; ++i) {
        FramePtr frame;
        if (camera->AcquireSingleImage(frame, 2000) != ZebErrorSuccess)
            return {};
        const uint8_t* data = nullptr;
        frame->GetWidth(mean.width);
        frame->GetHeight(mean.height);
        frame->GetBuffer(data);
        mean.values.resize(size_t(mean.width) * mean.height);
        for (size_t p = 0; p < mean.values.size(); ++p)
            mean.values[p] += data[p] / double(frames);
    }
    return mean;
}

// Pixels that stand out of their 21 x 21 neighbourhood (cut at the borders):
// by more than `absolute` grey levels, or by more than `relative` of the average.
std::set<Pixel> outliers(const Image& image, double absolute, double relative)
{
    const uint32_t w = image.width, h = image.height;
    // Summed-area table: window sums in constant time.
    std::vector<double> sat(size_t(w + 1) * (h + 1), 0);
    for (uint32_t y = 0; y < h; ++y) {
        for (uint32_t x = 0; x < w; ++x)
            sat[size_t(y + 1) * (w + 1) + x + 1] = image.values[size_t(y) * w + x] + sat[size_t(y) * (w + 1) + x + 1]
                                                   + sat[size_t(y + 1) * (w + 1) + x] - sat[size_t(y) * (w + 1) + x];
    }
    std::set<Pixel> found;
    for (uint32_t y = 0; y < h; ++y) {
        for (uint32_t x = 0; x < w; ++x) {
            const uint32_t x0 = x > 10 ? x - 10 : 0, x1 = std::min(w, x + 11);
            const uint32_t y0 = y > 10 ? y - 10 : 0, y1 = std::min(h, y + 11);
            const double sum = sat[size_t(y1) * (w + 1) + x1] - sat[size_t(y0) * (w + 1) + x1]
                               - sat[size_t(y1) * (w + 1) + x0] + sat[size_t(y0) * (w + 1) + x0];
            const double average = sum / double((x1 - x0) * (y1 - y0));
            const double margin = absolute > 0 ? absolute : average * relative;
            if (std::abs(image.values[size_t(y) * w + x] - average) > margin)
                found.insert({x, y});
        }
    }
    return found;
}

std::set<Pixel> seeded(const std::string& camera, std::initializer_list<SimControl::DefectKind> kinds)
{
    std::vector<SimControl::SimDefect> defects;
    SimControl::GetDefects(camera, defects);
    std::set<Pixel> pixels;
    for (const SimControl::SimDefect& d : defects) {
        if (std::find(kinds.begin(), kinds.end(), d.kind) != kinds.end())
            pixels.insert({d.x, d.y});
    }
    return pixels;
}

} // namespace

class TestZebAcquisition : public QObject {
    Q_OBJECT

private slots:
    void init() { QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); }
    void cleanup() { ZebTest::stopSdk(); }

    void framesDescribeThemselves_data();
    void framesDescribeThemselves();
    void framesRepeatPerIndex();
    void seededDefectsAreApartAndOfEveryKind();
    void darkFramesShowHotAndStuckPixels();
    void brightFramesShowEveryDefect();
    void exposureAndLightSetTheLevel();
    void deepSensorsScaleTheirFrames();
};

void TestZebAcquisition::framesDescribeThemselves_data()
{
    QTest::addColumn<QString>("serial");
    QTest::addColumn<uint>("width");
    QTest::addColumn<uint>("height");
    QTest::addColumn<uint>("format");
    QTest::newRow("mono") << ZebTest::kMonoFile << 640u << 480u << uint(PixelFormatMono8);
    QTest::newRow("colour") << ZebTest::kColorFile << 640u << 480u << uint(PixelFormatBayerRG8);
    QTest::newRow("register camera") << ZebTest::kRegister << 1280u << 1024u << uint(PixelFormatMono8);
}

void TestZebAcquisition::framesDescribeThemselves()
{
    QFETCH(QString, serial);
    QFETCH(uint, width);
    QFETCH(uint, height);
    QFETCH(uint, format);
    CameraPtr camera = ZebTest::openCamera(serial.toStdString());
    FramePtr frame;
    QCOMPARE(camera->AcquireSingleImage(frame, 1000, FrameAllocationModeTransportLayer), ZebErrorSuccess);
    FrameStatusType status = FrameStatusInvalid;
    uint32_t w = 0, h = 0, size = 0;
    PixelFormatType pixelFormat = PixelFormatMono8;
    frame->GetReceiveStatus(status);
    frame->GetWidth(w);
    frame->GetHeight(h);
    frame->GetBufferSize(size);
    frame->GetPixelFormat(pixelFormat);
    QCOMPARE(status, FrameStatusComplete);
    QCOMPARE(w, width);
    QCOMPARE(h, height);
    QCOMPARE(size, width * height);
    QCOMPARE(uint(pixelFormat), format);
    QCOMPARE(camera->AcquireSingleImage(frame, 1000, FrameAllocationMode(7)), ZebErrorBadParameter);
}

void TestZebAcquisition::framesRepeatPerIndex()
{
    auto firstTwo = [] {
        CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
        std::vector<std::vector<uint8_t>> frames;
        for (int i = 0; i < 2; ++i) {
            FramePtr frame;
            camera->AcquireSingleImage(frame, 1000);
            const uint8_t* data = nullptr;
            uint32_t size = 0;
            frame->GetBuffer(data);
            frame->GetBufferSize(size);
            frames.emplace_back(data, data + size);
        }
        return frames;
    };
    const auto first = firstTwo();
    ZebTest::stopSdk();
    QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess);
    const auto second = firstTwo();
    QVERIFY(first[0] == second[0]);
    QVERIFY(first[1] == second[1]);
    QVERIFY(first[0] != first[1]); // temporal noise
}

void TestZebAcquisition::seededDefectsAreApartAndOfEveryKind()
{
    std::vector<SimControl::SimDefect> defects;
    QCOMPARE(SimControl::GetDefects(ZebTest::kRegister, defects), ZebErrorSuccess);
    std::set<QString> kinds;
    for (const SimControl::SimDefect& d : defects) {
        kinds.insert(SimControl::DefectKindName(d.kind));
        QVERIFY(d.x < 1280 && d.y < 1024);
        for (const SimControl::SimDefect& other : defects) {
            const bool neighbours = std::abs(int(d.x) - int(other.x)) < 16 && std::abs(int(d.y) - int(other.y)) < 16;
            if (&d != &other && neighbours)
                QVERIFY(d.kind == SimControl::DefectKind::Cluster && other.kind == d.kind && d.y == other.y);
        }
    }
    QCOMPARE(kinds, (std::set<QString>{"hot", "dead", "stuck", "cluster", "weak", "border"}));
    // The factory map lists real defects.
    std::vector<SimControl::SimMapEntry> factory;
    SimControl::GetStoredMap(ZebTest::kRegister, 0, factory);
    QCOMPARE(factory[0].x, defects[0].x);
    QCOMPARE(factory[0].y, defects[0].y);
}

void TestZebAcquisition::darkFramesShowHotAndStuckPixels()
{
    using K = SimControl::DefectKind;
    for (const char* serial : {ZebTest::kMonoFile, ZebTest::kColorFile}) {
        const Image dark = meanOf(ZebTest::openCamera(serial), 4);
        QVERIFY(!dark.values.empty());
        QCOMPARE(outliers(dark, 16, 0), seeded(serial, {K::Hot, K::Stuck, K::Cluster, K::Border}));
    }
}

void TestZebAcquisition::brightFramesShowEveryDefect()
{
    using K = SimControl::DefectKind;
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    QCOMPARE(ZebTest::feature(camera, "SimLightLevel")->SetValue(100.0), ZebErrorSuccess);
    const Image bright = meanOf(camera, 4);
    QCOMPARE(outliers(bright, 0, 0.12), seeded(ZebTest::kMonoFile, {K::Hot, K::Dead, K::Stuck, K::Cluster, K::Border}));
    // Weak pixels take 10 % less light: below a 12 % margin, above a 6 % one.
    const std::set<Pixel> weak = seeded(ZebTest::kMonoFile, {K::Weak});
    QCOMPARE(weak.size(), size_t(3));
    const std::set<Pixel> finer = outliers(bright, 0, 0.06);
    QVERIFY(std::includes(finer.begin(), finer.end(), weak.begin(), weak.end()));
}

void TestZebAcquisition::exposureAndLightSetTheLevel()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    auto level = [&] {
        const Image image = meanOf(camera, 1);
        return image.values[size_t(image.width) * 7 + 3]; // defects keep off the border
    };
    const double dark = level();
    ZebTest::feature(camera, "SimLightLevel")->SetValue(50.0);
    const double half = level();
    ZebTest::feature(camera, "ExposureTime")->SetValue(20000.0);
    const double full = level();
    QVERIFY(dark < 15);
    QVERIFY(half > 70 && half < 100);
    QVERIFY(full > 150 && full < 180);
    ZebTest::feature(camera, "Gain")->SetValue(6.0);
    QVERIFY(level() > 250); // twice the signal clips
    ZebTest::feature(camera, "Gain")->SetValue(0.0);
    QCOMPARE(SimControl::SetIllumination(ZebTest::kMonoFile, 0), ZebErrorSuccess);
    QVERIFY(level() < 15);
}

void TestZebAcquisition::deepSensorsScaleTheirFrames()
{
    QCOMPARE(SimControl::PlugCamera(R"({ "id": "DEV_D12", "model": "m", "serial": "D12", "interface": "sim-eth0",
        "sensor": { "width": 64, "height": 32, "bitDepth": 12, "hot": 0, "dead": 0, "stuck": 0, "clusters": 0 } })"),
             ZebErrorSuccess);
    CameraPtr camera = ZebTest::openCamera("D12");
    std::string format;
    ZebTest::feature(camera, "PixelFormat")->GetValue(format);
    QCOMPARE(format, std::string("Mono12"));
    FramePtr frame;
    QCOMPARE(camera->AcquireSingleImage(frame, 1000), ZebErrorSuccess);
    uint32_t size = 0;
    PixelFormatType pixelFormat = PixelFormatMono8;
    const uint8_t* data = nullptr;
    frame->GetBufferSize(size);
    frame->GetPixelFormat(pixelFormat);
    frame->GetBuffer(data);
    QCOMPARE(size, 64u * 32u * 2u);
    QCOMPARE(pixelFormat, PixelFormatMono12);
    const unsigned value = data[0] | data[1] << 8;
    QVERIFY(value >= 6 * 16 && value <= 10 * 16); // the dark level of 8, in 12 bits
}

QTEST_GUILESS_MAIN(TestZebAcquisition)
#include "tst_zebacquisition.moc"
