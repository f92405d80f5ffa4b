#include "ApiController.h"
#include "fakegvcamera.h"
#include "framecapture.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"
#include "uxcameramanager.h"
#include "zebtestsupport.h"

using namespace ZebCPP;

namespace {

using Recorder = ZebTest::ListRecorder;

} // namespace

class TestAravisInterop : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void discoveryListsCameraWithIdentity();
    void openAndCloseReportOpenState();
    void cameraHeldByAnotherApplicationIsReadOnly();
    void valueFeaturesRoundTripOverTheWire();
    void rawRegisterRoundTrip();
    void cameraLayerMovesFilesAndFrames();
    void killedCameraIsPluggedOutOnSdkThread();

private:
    FakeGv::Camera fake_;
    CameraPtr camera_;
};

void TestAravisInterop::initTestCase()
{
    const QString problem = fake_.start();
    if (!problem.isEmpty())
        QSKIP(qPrintable(problem));
    // A list with a silent loopback address in front: each is asked on its own.
    qputenv("ZEB_GEV_ADDRESSES", " 127.0.0.2 ,127.0.0.1");
    QCOMPARE(ZebSystem::GetInstance().Startup(), ZebErrorSuccess);
    camera_ = FakeGv::waitForCamera();
    QVERIFY2(camera_, "discovery did not list the fake camera");
}

void TestAravisInterop::cleanupTestCase()
{
    camera_.reset();
    ZebSystem::GetInstance().Shutdown();
    fake_.stop();
}

void TestAravisInterop::init()
{
    // The others work on the camera opened with full access.
    static const QStringList onClosedCamera = {"discoveryListsCameraWithIdentity", "openAndCloseReportOpenState",
                                               "cameraHeldByAnotherApplicationIsReadOnly",
                                               "cameraLayerMovesFilesAndFrames"};
    if (!onClosedCamera.contains(QTest::currentTestFunction()))
        QCOMPARE(int(camera_->Open(AccessModeFull)), int(ZebErrorSuccess));
}

void TestAravisInterop::cleanup()
{
    if (camera_)
        camera_->Close();
}

void TestAravisInterop::discoveryListsCameraWithIdentity()
{
    std::string text;
    QCOMPARE(camera_->GetID(text), ZebErrorSuccess);
    QCOMPARE(text, std::string("Aravis-ZEBGV01"));
    camera_->GetSerialNumber(text);
    QCOMPARE(text, std::string(FakeGv::kSerial));
    camera_->GetModel(text);
    QCOMPARE(text, std::string("Fake"));
    camera_->GetName(text);
    QCOMPARE(text, std::string("Fake")); // no user-defined name: the model
}

void TestAravisInterop::openAndCloseReportOpenState()
{
    auto recorder = std::make_shared<Recorder>(FakeGv::kSerial);
    QCOMPARE(ZebSystem::GetInstance().RegisterCameraListObserver(recorder), ZebErrorSuccess);
    FeaturePtr width;
    QCOMPARE(camera_->GetFeatureByName("Width", width), ZebErrorDeviceNotOpen);

    QCOMPARE(camera_->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(camera_->Open(AccessModeFull), ZebErrorInvalidCall);
    QVERIFY(recorder->waitFor(UpdateTriggerOpenStateChanged, 3000));
    AccessModeType access = AccessModeNone;
    camera_->GetPermittedAccess(access);
    QCOMPARE(access, AccessModeRead); // we hold the control channel now
    width = ZebTest::feature(camera_, "Width");
    QVERIFY(width);

    QCOMPARE(camera_->Close(), ZebErrorSuccess);
    QVERIFY(recorder->waitFor(UpdateTriggerOpenStateChanged, 3000));
    QCOMPARE(camera_->Close(), ZebErrorDeviceNotOpen);
    int64_t value = 0;
    QCOMPARE(width->GetValue(value), ZebErrorDeviceNotOpen); // a feature of the ended session

    // Read access leaves the control channel to others: nothing is writable.
    QCOMPARE(camera_->Open(AccessModeRead), ZebErrorSuccess);
    camera_->GetPermittedAccess(access);
    QVERIFY(access & AccessModeFull);
    width = ZebTest::feature(camera_, "Width");
    QCOMPARE(width->GetValue(value), ZebErrorSuccess);
    QCOMPARE(width->SetValue(value), ZebErrorInvalidAccess);
    QCOMPARE(camera_->Close(), ZebErrorSuccess);
    ZebSystem::GetInstance().UnregisterCameraListObserver(recorder);
}

void TestAravisInterop::cameraHeldByAnotherApplicationIsReadOnly()
{
    auto recorder = std::make_shared<Recorder>(FakeGv::kSerial);
    ZebSystem::GetInstance().RegisterCameraListObserver(recorder);
    {
        FakeGv::OtherController other;
        QVERIFY(other.take());
        QVERIFY(FakeGv::waitForFullAccess(camera_, false));
        QVERIFY(recorder->waitFor(UpdateTriggerOpenStateChanged, 1000));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(int(camera_->Open(AccessModeFull)), int(ZebErrorInvalidAccess));
        QVERIFY(timer.elapsed() < 500); // refused from what discovery knows
    }
    QVERIFY(FakeGv::waitForFullAccess(camera_, true));
    QVERIFY(recorder->waitFor(UpdateTriggerOpenStateChanged, 1000));
    ZebSystem::GetInstance().UnregisterCameraListObserver(recorder);
}

// Each kind of value through the fake camera's GenICam description and back.
void TestAravisInterop::valueFeaturesRoundTripOverTheWire()
{
    FeaturePtr width = ZebTest::feature(camera_, "Width");
    int64_t minimum = 0, maximum = 0, value = 0;
    QCOMPARE(width->GetRange(minimum, maximum), ZebErrorSuccess);
    QCOMPARE(maximum, int64_t(2048)); // the sensor width register
    QCOMPARE(width->SetValue(int64_t(320)), ZebErrorSuccess);
    QCOMPARE(width->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, int64_t(320));
    QCOMPARE(width->SetValue(int64_t(5000)), ZebErrorInvalidValue);

    double seconds = 0;
    QCOMPARE(ZebTest::feature(camera_, "ExposureTime")->SetValue(2500.0), ZebErrorSuccess);
    QCOMPARE(ZebTest::feature(camera_, "ExposureTime")->GetValue(seconds), ZebErrorSuccess);
    QCOMPARE(seconds, 2500.0);

    FeaturePtr format = ZebTest::feature(camera_, "PixelFormat");
    std::vector<std::string> entries;
    QCOMPARE(format->GetEntries(entries), ZebErrorSuccess);
    QCOMPARE(entries, (std::vector<std::string>{"Mono8", "BayerRG8"})); // in the description's order
    QCOMPARE(format->SetValue("BayerRG8"), ZebErrorSuccess);
    std::string text;
    QCOMPARE(format->GetValue(text), ZebErrorSuccess);
    QCOMPARE(text, std::string("BayerRG8"));
    QCOMPARE(format->SetValue("RGB8"), ZebErrorInvalidValue);
    int64_t code = 0;
    QCOMPARE(format->GetEntryValue("Mono8", code), ZebErrorSuccess);
    QCOMPARE(code, int64_t(0x01080001));
    format->SetValue("Mono8");

    FeaturePtr enable = ZebTest::feature(camera_, "DefectPixelCorrectionEnable_Control");
    bool on = false;
    QCOMPARE(enable->SetValue(true), ZebErrorSuccess);
    QCOMPARE(enable->GetValue(on), ZebErrorSuccess);
    QVERIFY(on);

    FeaturePtr execute = ZebTest::feature(camera_, "FileOperationExecute");
    QCOMPARE(execute->RunCommand(), ZebErrorSuccess);
    bool done = false;
    QCOMPARE(execute->IsCommandDone(done), ZebErrorSuccess);
    QVERIFY(done);
    uint8_t bytes[4] = {};
    uint32_t read = 0;
    QCOMPARE(camera_->ReadMemory(FakeGv::kFileOperationExecute, bytes, 4, read), ZebErrorSuccess);
    QCOMPARE(int(bytes[3]), 1); // the command value, big-endian
    QCOMPARE(ZebTest::feature(camera_, "FileSize")->SetValue(int64_t(1)), ZebErrorInvalidAccess);
}

void TestAravisInterop::rawRegisterRoundTrip()
{
    FeaturePtr buffer = ZebTest::feature(camera_, "FileAccessBuffer");
    uint32_t length = 0;
    QCOMPARE(buffer->GetRawLength(length), ZebErrorSuccess);
    QCOMPARE(length, FakeGv::kFileAccessBufferLength);

    std::vector<uint8_t> data(length);
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = uint8_t(i * 7 + 3);
    QCOMPARE(buffer->SetRawData(data.data(), length), ZebErrorSuccess);
    std::vector<uint8_t> back(length);
    uint32_t filled = 0;
    QCOMPARE(buffer->GetRawData(back.data(), length, filled), ZebErrorSuccess);
    QCOMPARE(filled, length);
    QVERIFY(back == data);

    // A short last block replaces only its own bytes.
    const uint8_t tail[5] = {0xde, 0xad, 0xbe, 0xef, 0x42};
    QCOMPARE(buffer->SetRawData(tail, sizeof tail), ZebErrorSuccess);
    std::vector<uint8_t> head(16);
    QCOMPARE(buffer->GetRawData(head.data(), 16, filled), ZebErrorSuccess);
    QCOMPARE(filled, 16u);
    QVERIFY(std::equal(tail, tail + 5, head.begin()));
    QVERIFY(std::equal(head.begin() + 5, head.end(), data.begin() + 5));

    std::vector<uint8_t> tooLong(length + 1);
    QCOMPARE(buffer->SetRawData(tooLong.data(), length + 1), ZebErrorInvalidValue);

    uint8_t memory[8] = {};
    uint32_t read = 0;
    QCOMPARE(camera_->ReadMemory(FakeGv::kFileAccessBuffer, memory, 8, read), ZebErrorSuccess);
    QVERIFY(std::equal(tail, tail + 5, memory));
    // Whole words only: a stray byte write would overwrite the neighbouring register.
    QCOMPARE(camera_->WriteMemory(FakeGv::kFileAccessBuffer + 1, memory, 4, read), ZebErrorBadParameter);
    QCOMPARE(camera_->ReadMemory(FakeGv::kFileAccessBuffer, memory, 6, read), ZebErrorBadParameter);
}

// The application's camera layer on this camera: information by extended ID,
// a map upload and download, and a captured series. The fake camera keeps no
// files: its registers show what the protocol moved, and a download reads back
// whatever the buffer register holds.
void TestAravisInterop::cameraLayerMovesFilesAndFrames()
{
    auto controller = std::make_shared<ApiController>();
    QCOMPARE(controller->UpdateCamerasList(), ZebErrorSuccess);
    const CameraInfoMap info = controller->GetCameraInfo(controller->GetCameraPtr(FakeGv::kExtendedId));
    QCOMPARE(info.value(CameraInfoKey::ExtendedId).toString(), QString(FakeGv::kExtendedId));
    QCOMPARE(info.value(CameraInfoKey::SerialNumber).toString(), QString(FakeGv::kSerial));
    QCOMPARE(info.value(CameraInfoKey::TransportLayer).toString(), QString("GigE Vision"));
    QCOMPARE(info.value(CameraInfoKey::Interface).toString(), QString("AravisGEV::lo"));
    QVERIFY(QFileInfo::exists(info.value(CameraInfoKey::TlPath).toString()));
    QVERIFY(info.value(CameraInfoKey::FullAccess).toBool());

    UxCameraManager manager(controller);
    std::unique_ptr<UxCamera> camera(manager.Open(FakeGv::kExtendedId));
    QVERIFY(camera);
    QVERIFY(camera->IsBigEndian());
    QStringList files;
    QVERIFY(camera->GetFeatureContainer()->GetSubFeatures("FileSelector", files));
    QCOMPARE(files, QStringList({"DefPixMap0", "DefPixMap1"}));

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

void TestAravisInterop::killedCameraIsPluggedOutOnSdkThread()
{
    auto recorder = std::make_shared<Recorder>(FakeGv::kSerial);
    ZebSystem::GetInstance().RegisterCameraListObserver(recorder);
    fake_.kill();
    std::thread::id thread;
    QVERIFY(recorder->waitFor(UpdateTriggerPluggedOut, 10000, &thread));
    QVERIFY(thread != std::this_thread::get_id());
    CameraPtr gone;
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID(FakeGv::kExtendedId, gone), ZebErrorNotFound);

    QElapsedTimer timer;
    timer.start();
    FeaturePtr width;
    QCOMPARE(camera_->GetFeatureByName("Width", width), ZebErrorBadHandle);
    uint8_t word[4] = {};
    uint32_t read = 0;
    QCOMPARE(camera_->ReadMemory(0x100, word, 4, read), ZebErrorBadHandle);
    QCOMPARE(camera_->Open(AccessModeFull), ZebErrorBadHandle);
    QVERIFY(timer.elapsed() < 200);
    std::string id;
    QCOMPARE(camera_->GetExtendedID(id), ZebErrorSuccess); // the identity stays

    // Back again: a new camera object; the old one stays gone. The application's
    // side of this (transfers cut off, the camera listed again) is the soak's.
    QCOMPARE(fake_.start(), QString());
    QVERIFY(recorder->waitFor(UpdateTriggerPluggedIn, 5000));
    CameraPtr again = FakeGv::waitForCamera(1000);
    QVERIFY(again && again != camera_);
    ZebSystem::GetInstance().UnregisterCameraListObserver(recorder);
}

QTEST_GUILESS_MAIN(TestAravisInterop)
#include "tst_aravisinterop.moc"
