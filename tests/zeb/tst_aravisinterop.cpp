#include "ApiController.h"
#include "fakegvcamera.h"
#include "framecapture.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"
#include "uxcameramanager.h"

#include <condition_variable>
#include <mutex>
#include <thread>

using namespace ZebCPP;

namespace {

// Records what the SDK reported about the fake camera, and on which thread.
class Recorder : public ICameraListObserver {
public:
    void CameraListChanged(CameraPtr camera, UpdateTriggerType reason) override
    {
        std::string id;
        camera->GetExtendedID(id);
        if (id != FakeGv::kExtendedId)
            return;
        std::lock_guard<std::mutex> lock(mutex_);
        reasons_.push_back(reason);
        threads_.push_back(std::this_thread::get_id());
        changed_.notify_all();
    }

    // Waits for the next report of this reason; false after the timeout.
    bool waitFor(UpdateTriggerType reason, int timeoutMs, std::thread::id* thread = nullptr)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        const bool seen = changed_.wait_for(lock, std::chrono::milliseconds(timeoutMs), [&] {
            for (size_t i = consumed_; i < reasons_.size(); ++i) {
                if (reasons_[i] == reason) {
                    consumed_ = i + 1;
                    if (thread != nullptr)
                        *thread = threads_[i];
                    return true;
                }
            }
            return false;
        });
        return seen;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<UpdateTriggerType> reasons_;
    std::vector<std::thread::id> threads_;
    size_t consumed_ = 0;
};

FeaturePtr featureOf(const CameraPtr& camera, const char* name)
{
    FeaturePtr feature;
    camera->GetFeatureByName(name, feature);
    return feature;
}

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
    void memoryReachesRegistersOfFeatures();
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

    // Both links are offered, the USB one possibly without cameras.
    std::vector<TransportLayerPtr> layers;
    ZebSystem::GetInstance().GetTransportLayers(layers);
    QStringList names;
    for (const TransportLayerPtr& layer : layers) {
        layer->GetID(text);
        names << QString::fromStdString(text);
    }
    QVERIFY(names.contains("AravisGEV") && names.contains("AravisU3V"));
}

void TestAravisInterop::openAndCloseReportOpenState()
{
    auto recorder = std::make_shared<Recorder>();
    QCOMPARE(ZebSystem::GetInstance().RegisterCameraListObserver(recorder), ZebErrorSuccess);
    FeaturePtr width;
    QCOMPARE(camera_->GetFeatureByName("Width", width), ZebErrorDeviceNotOpen);

    QCOMPARE(camera_->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(camera_->Open(AccessModeFull), ZebErrorInvalidCall);
    QVERIFY(recorder->waitFor(UpdateTriggerOpenStateChanged, 3000));
    AccessModeType access = AccessModeNone;
    camera_->GetPermittedAccess(access);
    QCOMPARE(access, AccessModeRead); // we hold the control channel now
    width = featureOf(camera_, "Width");
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
    width = featureOf(camera_, "Width");
    QCOMPARE(width->GetValue(value), ZebErrorSuccess);
    QCOMPARE(width->SetValue(value), ZebErrorInvalidAccess);
    QCOMPARE(camera_->Close(), ZebErrorSuccess);
    ZebSystem::GetInstance().UnregisterCameraListObserver(recorder);
}

void TestAravisInterop::cameraHeldByAnotherApplicationIsReadOnly()
{
    auto recorder = std::make_shared<Recorder>();
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

void TestAravisInterop::valueFeaturesRoundTripOverTheWire()
{
    FeaturePtr width = featureOf(camera_, "Width");
    FeatureDataType type = FeatureDataUnknown;
    width->GetDataType(type);
    QCOMPARE(type, FeatureDataInt);
    int64_t minimum = 0, maximum = 0, increment = 0, value = 0;
    QCOMPARE(width->GetRange(minimum, maximum), ZebErrorSuccess);
    QCOMPARE(minimum, int64_t(1));
    QCOMPARE(maximum, int64_t(2048)); // the sensor width register
    QCOMPARE(width->GetIncrement(increment), ZebErrorSuccess);
    QCOMPARE(width->SetValue(int64_t(320)), ZebErrorSuccess);
    QCOMPARE(width->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, int64_t(320));
    QCOMPARE(width->SetValue(int64_t(5000)), ZebErrorInvalidValue);

    FeaturePtr exposure = featureOf(camera_, "ExposureTime");
    exposure->GetDataType(type);
    QCOMPARE(type, FeatureDataFloat);
    double seconds = 0;
    QCOMPARE(exposure->SetValue(2500.0), ZebErrorSuccess);
    QCOMPARE(exposure->GetValue(seconds), ZebErrorSuccess);
    QCOMPARE(seconds, 2500.0);

    FeaturePtr format = featureOf(camera_, "PixelFormat");
    format->GetDataType(type);
    QCOMPARE(type, FeatureDataEnum);
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

    FeaturePtr enable = featureOf(camera_, "DefectPixelCorrectionEnable_Control");
    bool on = false;
    QCOMPARE(enable->SetValue(true), ZebErrorSuccess);
    QCOMPARE(enable->GetValue(on), ZebErrorSuccess);
    QVERIFY(on);

    FeaturePtr execute = featureOf(camera_, "FileOperationExecute");
    execute->GetDataType(type);
    QCOMPARE(type, FeatureDataCommand);
    QCOMPARE(execute->RunCommand(), ZebErrorSuccess);
    bool done = false;
    QCOMPARE(execute->IsCommandDone(done), ZebErrorSuccess);
    QVERIFY(done);
    uint8_t bytes[4] = {};
    uint32_t read = 0;
    QCOMPARE(camera_->ReadMemory(FakeGv::kFileOperationExecute, bytes, 4, read), ZebErrorSuccess);
    QCOMPARE(int(bytes[3]), 1); // the command value, big-endian

    FeaturePtr size = featureOf(camera_, "FileSize");
    bool readable = false, writable = true;
    QCOMPARE(size->IsReadable(readable), ZebErrorSuccess);
    QCOMPARE(size->IsWritable(writable), ZebErrorSuccess);
    QVERIFY(readable && !writable);
    QCOMPARE(size->SetValue(int64_t(1)), ZebErrorInvalidAccess);
    QCOMPARE(size->GetValue(seconds), ZebErrorWrongType);
    std::vector<FeaturePtr> all;
    QCOMPARE(camera_->GetFeatures(all), ZebErrorSuccess);
    for (const FeaturePtr& f : all) {
        f->GetName(text);
        QVERIFY(text != "Root"); // categories are no values
    }
}

void TestAravisInterop::rawRegisterRoundTrip()
{
    FeaturePtr buffer = featureOf(camera_, "FileAccessBuffer");
    FeatureDataType type = FeatureDataUnknown;
    buffer->GetDataType(type);
    QCOMPARE(type, FeatureDataRaw);
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
}

void TestAravisInterop::memoryReachesRegistersOfFeatures()
{
    QVERIFY(FakeGv::writeBigEndian(camera_, FakeGv::kFileSize, 70000));
    QVERIFY(FakeGv::writeBigEndian(camera_, FakeGv::kFileChunkId, 4096));
    int64_t value = 0;
    QCOMPARE(featureOf(camera_, "FileSize")->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, int64_t(70000));
    QCOMPARE(featureOf(camera_, "FileChunkId")->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, int64_t(4096));

    QCOMPARE(featureOf(camera_, "FileAccessOffset")->SetValue(int64_t(0x01020304)), ZebErrorSuccess);
    uint8_t bytes[8] = {};
    uint32_t read = 0;
    QCOMPARE(camera_->ReadMemory(0x4010, bytes, 8, read), ZebErrorSuccess);
    QCOMPARE(read, 8u);
    QCOMPARE(QByteArray(reinterpret_cast<char*>(bytes), 4), QByteArray("\x01\x02\x03\x04", 4));

    // Whole words only: a stray byte write would overwrite the neighbouring register.
    QCOMPARE(camera_->WriteMemory(0x4011, bytes, 4, read), ZebErrorBadParameter);
    QCOMPARE(camera_->ReadMemory(0x4010, bytes, 6, read), ZebErrorBadParameter);
    QCOMPARE(featureOf(camera_, "FileAccessOffset")->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, int64_t(0x01020304));
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
    auto recorder = std::make_shared<Recorder>();
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

    QCOMPARE(fake_.start(), QString());
    QVERIFY(recorder->waitFor(UpdateTriggerPluggedIn, 5000));
    CameraPtr again = FakeGv::waitForCamera(1000);
    QVERIFY(again && again != camera_); // a new camera object; the old one stays gone
    QCOMPARE(again->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(again->Close(), ZebErrorSuccess);
    ZebSystem::GetInstance().UnregisterCameraListObserver(recorder);
}

QTEST_GUILESS_MAIN(TestAravisInterop)
#include "tst_aravisinterop.moc"
