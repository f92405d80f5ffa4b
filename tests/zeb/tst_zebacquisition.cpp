#include "sim/simcontrol.h"
#include "zebtestsupport.h"

#include <set>

using namespace ZebCPP;

namespace {

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

} // namespace

class TestZebAcquisition : public QObject {
    Q_OBJECT

private slots:
    void init() { QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); }
    void cleanup() { ZebTest::stopSdk(); }

    void framesRepeatPerIndex();
    void seededDefectsAreApartAndOfEveryKind();
    void exposureAndLightSetTheLevel();
    void deepSensorsScaleTheirFrames();
};

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

    FramePtr frame;
    CameraPtr camera = ZebTest::cameraBySerial(ZebTest::kMonoFile);
    QCOMPARE(camera->AcquireSingleImage(frame, 1000, FrameAllocationMode(7)), ZebErrorBadParameter);
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
