#include "capturedimage.h"
#include "defectmapgenerator.h"
#include "framecapture.h"
#include "imageseries.h"
#include "sim/simcontrol.h"
#include "simcameras.h"

#include <QtTest>

#include <set>

using namespace ZebCPP;
using Kind = SimControl::DefectKind;
using Pixel = std::pair<uint32_t, uint32_t>;

namespace {

// A series taken from the camera, fed into the accumulation as added bitmaps are.
struct Series {
    DefectPixelParams params;
    QImage mean;
};

CaptureOutcome capture(FrameCapture& capture, const std::string& camera, double light, int frames,
                       Series& series, ImageGeometry& geometry, int kind)
{
    SimControl::SetIllumination(camera, light);
    FrameCaptureSettings settings;
    settings.frames = frames;
    return capture.run(settings, [&](const CapturedFrame& frame, int) {
        const QImage image = imageOfFrame(frame.pixels.data(), frame.width, frame.height);
        return addImageToSeries(image, kind, geometry, series.params, series.mean) == SeriesChange::Accepted;
    });
}

// Opened for one test and closed after it, so that the next can open it again.
struct OpenCamera {
    explicit OpenCamera(const std::string& id) : camera(SimCameras::openCamera(id)) {}
    ~OpenCamera()
    {
        if (camera)
            camera->Close();
    }
    CameraPtr camera;
};

std::set<Pixel> seeded(const std::string& camera, const std::set<Kind>& kinds)
{
    std::vector<SimControl::SimDefect> defects;
    SimControl::GetDefects(camera, defects);
    std::set<Pixel> pixels;
    for (const SimControl::SimDefect& d : defects) {
        if (kinds.count(d.kind))
            pixels.insert({d.x, d.y});
    }
    return pixels;
}

} // namespace

// Capture from simulated cameras through the SDK into the series accumulation.
class TestFrameCapture : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(SimCameras::startup()); }
    void cleanupTestCase() { ZebSystem::GetInstance().Shutdown(); }

    void capturedSeriesFindTheSeededDefects_data();
    void capturedSeriesFindTheSeededDefects();
    void settingsApplyAndAreRestored();
    void earlyEndsKeepTheFramesTaken();
    void deepFormatsAreShiftedTo8Bits();
    void camerasThatCannotCaptureSayWhy();
};

void TestFrameCapture::capturedSeriesFindTheSeededDefects_data()
{
    QTest::addColumn<QString>("camera");
    QTest::addColumn<bool>("colour");
    QTest::newRow("mono") << SimCameras::kMonoFile << false;
    // Dark frames alone: dead and weak pixels look like their neighbours there.
    QTest::newRow("colour") << SimCameras::kColourFile << true;
    QTest::newRow("register mode") << SimCameras::kRegisterMono << false;
}

void TestFrameCapture::capturedSeriesFindTheSeededDefects()
{
    QFETCH(QString, camera);
    QFETCH(bool, colour);
    const std::string id = camera.toStdString();
    OpenCamera opened(id);
    FrameCapture run(opened.camera);
    Series dark, bright;
    ImageGeometry geometry;
    QCOMPARE(capture(run, id, 0, 8, dark, geometry, DarkSeries).end, CaptureEnd::Completed);
    QCOMPARE(dark.params.count, 8u);
    if (!colour)
        QCOMPARE(capture(run, id, 50, 8, bright, geometry, BrightSeries).frames, 8);

    DefectMap map(10000);
    if (colour)
        create_defpix_map_color(dark.mean, dark.params, geometry, map);
    else
        create_defpix_map(dark.mean, bright.mean, dark.params, bright.params, geometry, map);
    std::set<Pixel> found;
    for (const t_defpix& entry : map.entries())
        found.insert({entry.x, entry.y});
    std::set<Kind> visible = {Kind::Hot, Kind::Stuck, Kind::Cluster, Kind::Border};
    if (!colour)
        visible.insert(Kind::Dead);
    QCOMPARE(found, seeded(id, visible));
    SimControl::SetIllumination(id, 0);
}

void TestFrameCapture::settingsApplyAndAreRestored()
{
    const std::string id = SimCameras::kMonoFile;
    OpenCamera opened(id);
    FrameCapture run(opened.camera);
    QCOMPARE(run.exposureTime().value_or(0), 10000.0);
    QCOMPARE(run.gain().value_or(-1), 0.0);
    SimControl::SetIllumination(id, 50);
    FrameCaptureSettings settings;
    FrameLevel half, full;
    QVERIFY(run.measureLevel(settings, half, nullptr));
    settings.exposureTime = 20000;
    settings.gain = 1.0;
    QVERIFY(run.measureLevel(settings, full, nullptr));
    QVERIFY2(half.mean > 80 && half.mean < 100, qPrintable(QString::number(half.mean)));
    QVERIFY(full.mean > 2 * half.mean);
    QVERIFY(half.spread > 0.5 && half.spread < 5);
    QVERIFY(FrameCapture::levelWarning(half, true).isEmpty());
    QVERIFY(!FrameCapture::levelWarning(half, false).isEmpty()); // far from black
    QVERIFY(!FrameCapture::levelWarning({240, 1}, true).isEmpty());
    QVERIFY(FrameCapture::levelWarning({8, 1}, false).isEmpty());
    QCOMPARE(run.exposureTime().value_or(0), 10000.0);
    QCOMPARE(run.gain().value_or(-1), 0.0);

    settings.gain = 99; // beyond the camera's range: nothing stays changed
    QVERIFY(!run.measureLevel(settings, full, nullptr));
    QCOMPARE(run.exposureTime().value_or(0), 10000.0);
    SimControl::SetIllumination(id, 0);
}

void TestFrameCapture::earlyEndsKeepTheFramesTaken()
{
    const std::string id = SimCameras::kMonoFile;
    OpenCamera opened(id);
    FrameCapture run(opened.camera);
    FrameCaptureSettings settings;
    settings.frames = 6;
    settings.exposureTime = 5000;
    std::atomic<bool> cancel{false};
    int taken = 0;
    CaptureOutcome outcome = run.run(settings, [&](const CapturedFrame&, int index) {
        ++taken;
        cancel = index == 2;
        return true;
    }, &cancel);
    QCOMPARE(outcome.end, CaptureEnd::Cancelled);
    QCOMPARE(outcome.frames, 3);
    QCOMPARE(run.exposureTime().value_or(0), 10000.0);

    // One timeout is tried again; two in a row end the capture.
    QCOMPARE(SimControl::InjectFault(id, SimControl::FaultKind::Acquisition, 2, ZebErrorTimeout), ZebErrorSuccess);
    QCOMPARE(run.run(settings, [](const CapturedFrame&, int) { return true; }).frames, 6);
    QCOMPARE(SimControl::InjectFault(id, SimControl::FaultKind::Acquisition, 3, ZebErrorTimeout, 2),
             ZebErrorSuccess);
    outcome = run.run(settings, [](const CapturedFrame&, int) { return true; });
    QCOMPARE(outcome.end, CaptureEnd::TimedOut);
    QCOMPARE(outcome.frames, 2);
    QVERIFY(outcome.message.contains("timed out"));
    QCOMPARE(run.exposureTime().value_or(0), 10000.0);

    // Unplugged after two frames.
    outcome = run.run(settings, [&](const CapturedFrame&, int index) {
        if (index == 1)
            SimControl::UnplugCamera(id);
        return true;
    });
    QCOMPARE(outcome.end, CaptureEnd::CameraLost);
    QCOMPARE(outcome.frames, 2);
    QVERIFY(outcome.message.contains("disconnected"));
    QVERIFY(outcome.message.contains("2 frame(s) were kept"));
    QCOMPARE(SimControl::ReplugCamera(id), ZebErrorSuccess);
}

void TestFrameCapture::deepFormatsAreShiftedTo8Bits()
{
    auto reduce = [](PixelFormatType format, std::vector<uint8_t> bytes, CapturedFrame& out) {
        return FrameCapture::reduceTo8Bits(Frame(FrameStatusComplete, 2, 1, format, std::move(bytes), 0), out);
    };
    CapturedFrame out;
    QVERIFY(reduce(PixelFormatMono10, {0xFF, 0x03, 0x04, 0x00}, out));
    QCOMPARE(out.pixels, (std::vector<uint8_t>{0xFF, 0x01}));
    QVERIFY(reduce(PixelFormatBayerRG12, {0xF0, 0x0A, 0xFF, 0xFF}, out)); // stray high bits saturate
    QCOMPARE(out.pixels, (std::vector<uint8_t>{0xAF, 0xFF}));
    QVERIFY(out.bayer);
    QVERIFY(reduce(PixelFormatMono16, {0xCD, 0xAB, 0x00, 0x01}, out));
    QCOMPARE(out.pixels, (std::vector<uint8_t>{0xAB, 0x01}));
    QVERIFY(!out.bayer);
    QVERIFY(!reduce(PixelFormatMono16, {0xCD, 0xAB}, out));                    // short buffer
    QVERIFY(!reduce(PixelFormatType(0x010C0006), {0x00, 0x00, 0x00}, out)); // packed 12 bits

    QCOMPARE(SimControl::PlugCamera(R"({ "id": "DEV_D16", "model": "m", "serial": "D16", "interface": "sim-eth0",
        "sensor": { "width": 64, "height": 32, "bitDepth": 16 } })"), ZebErrorSuccess);
    OpenCamera opened("DEV_D16");
    FrameCapture run(opened.camera);
    FrameLevel level;
    QVERIFY(run.measureLevel({}, level, nullptr));
    QVERIFY2(level.mean > 6 && level.mean < 12, qPrintable(QString::number(level.mean)));
}

void TestFrameCapture::camerasThatCannotCaptureSayWhy()
{
    QCOMPARE(SimControl::PlugCamera(R"({ "id": "DEV_NS1", "model": "m", "serial": "NS1", "interface": "sim-eth0",
        "streams": false })"), ZebErrorSuccess);
    OpenCamera opened("DEV_NS1");
    FrameCapture run(opened.camera);
    QVERIFY(run.unavailableReason().contains("no image stream"));
    const CaptureOutcome outcome = run.run({}, [](const CapturedFrame&, int) { return true; });
    QCOMPARE(outcome.end, CaptureEnd::Failed);
    QCOMPARE(outcome.frames, 0);
    QVERIFY(FrameCapture(nullptr).unavailableReason().contains("No camera"));
    QCOMPARE(capturedImageName("KV/123", BrightSeries, QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7, 89)), 12),
             QString("KV_123_bright_20260304-050607-089_012.bmp"));
}

QTEST_GUILESS_MAIN(TestFrameCapture)
#include "tst_framecapture.moc"
