#include "ApiController.h"
#include "fakegvcamera.h"
#include "framecapture.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"
#include "uxcameramanager.h"

#include <memory>

using namespace ZebCPP;

// The application's camera layer on a GigE Vision camera with map slots: the
// camera is opened by its extended ID and its map features are read by name.
class TestAravisApiController : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void cameraInfoDescribesTheGigEVisionCamera();
    void mapFeaturesAreReadThroughTheCameraLayer();
    void fileAccessRunsOverTheWire();
    void captureTakesFramesOverTheWire();

private:
    FakeGv::Camera fake_;
    std::shared_ptr<ApiController> controller_;
};

void TestAravisApiController::initTestCase()
{
    const QString problem = fake_.start();
    if (!problem.isEmpty())
        QSKIP(qPrintable(problem));
    // A list with a silent loopback address in front: each is asked on its own.
    qputenv("ZEB_GEV_ADDRESSES", " 127.0.0.2 ,127.0.0.1");
    QCOMPARE(ZebSystem::GetInstance().Startup(), ZebErrorSuccess);
    QVERIFY2(FakeGv::waitForCamera(), "discovery did not list the fake camera");
    controller_ = std::make_shared<ApiController>();
    QCOMPARE(controller_->UpdateCamerasList(), ZebErrorSuccess);
}

void TestAravisApiController::cleanupTestCase()
{
    controller_.reset();
    ZebSystem::GetInstance().Shutdown();
    fake_.stop();
}

void TestAravisApiController::cameraInfoDescribesTheGigEVisionCamera()
{
    const CameraPtr camera = controller_->GetCameraPtr(FakeGv::kExtendedId);
    QVERIFY(camera);
    const CameraInfoMap info = controller_->GetCameraInfo(camera);
    QCOMPARE(info.value(CameraInfoKey::ExtendedId).toString(), QString(FakeGv::kExtendedId));
    QCOMPARE(info.value(CameraInfoKey::SerialNumber).toString(), QString(FakeGv::kSerial));
    QCOMPARE(info.value(CameraInfoKey::TransportLayer).toString(), QString("GigE Vision"));
    QCOMPARE(info.value(CameraInfoKey::Interface).toString(), QString("AravisGEV::lo"));
    QVERIFY(!info.value(CameraInfoKey::TlPath).toString().isEmpty());
    QVERIFY(info.value(CameraInfoKey::FullAccess).toBool());
}

void TestAravisApiController::mapFeaturesAreReadThroughTheCameraLayer()
{
    UxCameraManager manager(controller_);
    std::unique_ptr<UxCamera> camera(manager.Open(FakeGv::kExtendedId));
    QVERIFY(camera);
    QVERIFY(camera->IsBigEndian());
    // The camera's factory state, written as the map registers hold it.
    QVERIFY(camera->WriteRegister(FakeGv::kFileChunkId, 4096));
    QVERIFY(camera->WriteRegister(FakeGv::kMapRevision, 3));
    QVERIFY(camera->WriteRegister(FakeGv::kMapMaxSize, 1000));
    uint32_t raw = 0;
    QVERIFY(camera->ReadRegister(FakeGv::kMapRevision, &raw));
    QCOMPARE(raw, 3u);

    UxCameraFeature* features = camera->GetFeatureContainer();
    QStringList files;
    QVERIFY(features->GetSubFeatures("FileSelector", files));
    QCOMPARE(files, QStringList({"DefPixMap0", "DefPixMap1"}));
    QVERIFY(features->SetValue("FileSelector", QString("DefPixMap1")));
    QVariant value;
    QVERIFY(features->GetValue("FileSelector", value));
    QCOMPARE(value.toString(), QString("DefPixMap1"));
    QVERIFY(features->GetValue("FileChunkId", value));
    QCOMPARE(value.toLongLong(), 4096LL);
    QVERIFY(features->GetValue("DefectPixelCorrection_Revision", value));
    QCOMPARE(value.toLongLong(), 3LL);
    QVERIFY(features->GetValue("DefectPixelCorrection_MapMaxSize", value));
    QCOMPARE(value.toLongLong(), 1000LL);
    QVariant locked = 7;
    QVERIFY(features->GetValue("TLParamsLocked", locked));
    QCOMPARE(locked.toLongLong(), 0LL);
    QCOMPARE(camera->GetCameraManufacturerInfo(), QString("none"));

    bool writable = true;
    QVERIFY(features->IsWritable("FileSize", writable));
    QVERIFY(!writable);
    std::vector<unsigned char> block(64, 0x5a);
    QVERIFY(features->SetRegisterValue("FileAccessBuffer", block, 64));
    std::vector<unsigned char> back;
    QVERIFY(features->GetRegisterValue("FileAccessBuffer", back, 64));
    QCOMPARE(back, block);

    QVERIFY(manager.Close(FakeGv::kExtendedId));
}

// The fake camera keeps no files: its registers show what the protocol
// moved, and a download reads back whatever the buffer register holds.
void TestAravisApiController::fileAccessRunsOverTheWire()
{
    UxCameraManager manager(controller_);
    std::unique_ptr<UxCamera> camera(manager.Open(FakeGv::kExtendedId));
    QVERIFY(camera);
    std::vector<unsigned char> map(300);
    for (size_t i = 0; i < map.size(); ++i)
        map[i] = static_cast<unsigned char>(i * 13 + 1);
    long written = 0;
    QVERIFY(camera->UploadBuffer(map, "DefPixMap1", "DefPixMap1", &written));
    QCOMPARE(written, 300L);
    uint32_t value = 0;
    QVERIFY(camera->ReadRegister(0x4000, &value)); // FileSelector
    QCOMPARE(value, 1u);
    QVERIFY(camera->ReadRegister(0x4008, &value)); // FileOperationSelector: the final close
    QCOMPARE(value, 1u);
    QVERIFY(camera->ReadRegister(0x4014, &value)); // FileAccessLength of the only block
    QCOMPARE(value, 300u);
    std::vector<unsigned char> stored(300);
    unsigned int count = 300;
    QVERIFY(camera->Read(FakeGv::kFileAccessBuffer, stored.data(), &count));
    QCOMPARE(stored, map);

    QVERIFY(camera->WriteRegister(FakeGv::kFileSize, 300));
    QTemporaryDir dir;
    const QString path = dir.filePath("slot1.bin");
    long read = 0;
    QVERIFY(camera->DownloadDeviceFile(path, "DefPixMap1", "DefPixMap1", &read));
    QCOMPARE(read, 300L);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(std::vector<unsigned char>(bytes.begin(), bytes.end()), map);
    QVERIFY(manager.Close(FakeGv::kExtendedId));
}

void TestAravisApiController::captureTakesFramesOverTheWire()
{
    UxCameraManager manager(controller_);
    std::unique_ptr<UxCamera> camera(manager.Open(FakeGv::kExtendedId));
    QVERIFY(camera);
    UxCameraFeature* features = camera->GetFeatureContainer();
    QVERIFY(features->SetValue("Width", 64));
    QVERIFY(features->SetValue("Height", 48));
    FrameCapture capture(camera->GetCameraPtr());
    QCOMPARE(capture.unavailableReason(), QString());
    const std::optional<double> exposure = capture.exposureTime();
    QVERIFY(exposure);
    FrameCaptureSettings settings;
    settings.frames = 3;
    settings.exposureTime = *exposure + 1000;
    std::vector<uint32_t> sizes;
    const CaptureOutcome outcome = capture.run(settings, [&](const CapturedFrame& frame, int) {
        sizes.push_back(frame.width * frame.height);
        return frame.pixels.size() == size_t(frame.width) * frame.height;
    });
    QCOMPARE(outcome.end, CaptureEnd::Completed);
    QCOMPARE(sizes, std::vector<uint32_t>(3, 64u * 48u));
    QCOMPARE(capture.exposureTime(), exposure);
    QVERIFY(manager.Close(FakeGv::kExtendedId));
}

QTEST_GUILESS_MAIN(TestAravisApiController)
#include "tst_aravisapicontroller.moc"
