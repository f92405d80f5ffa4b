#include "fakegvcamera.h"

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
    void accessAndTypeAreChecked();
    void rawRegisterRoundTrip();
    void memoryReachesRegistersOfFeatures();
    void singleFrameIsAcquired();
    void streamHasNoProtocolFeature();
    void killedCameraIsPluggedOutOnSdkThread();
    void restartedCameraIsPluggedInAgain();

private:
    FakeGv::Camera fake_;
    CameraPtr camera_;
};

void TestAravisInterop::initTestCase()
{
    const QString problem = fake_.start();
    if (!problem.isEmpty())
        QSKIP(qPrintable(problem));
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
                                               "restartedCameraIsPluggedInAgain"};
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
    InterfaceType type = InterfaceTypeUnknown;
    camera_->GetInterfaceType(type);
    QCOMPARE(type, InterfaceTypeGigEVision);
    AccessModeType access = AccessModeNone;
    QCOMPARE(camera_->GetPermittedAccess(access), ZebErrorSuccess);
    QVERIFY(access & AccessModeFull);

    TransportLayerPtr tl;
    QCOMPARE(camera_->GetTransportLayer(tl), ZebErrorSuccess);
    tl->GetName(text);
    QCOMPARE(text, std::string("GigE Vision"));
    tl->GetPath(text);
    QVERIFY2(QFileInfo::exists(QString::fromStdString(text)), text.c_str());
    InterfacePtr interface;
    QCOMPARE(camera_->GetInterface(interface), ZebErrorSuccess);
    interface->GetID(text);
    QCOMPARE(text, std::string("AravisGEV::lo"));

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

    FeaturePtr userId = featureOf(camera_, "DeviceUserID");
    QCOMPARE(userId->SetValue("bench 7"), ZebErrorSuccess);
    QCOMPARE(userId->GetValue(text), ZebErrorSuccess);
    QCOMPARE(text, std::string("bench 7"));

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
}

void TestAravisInterop::accessAndTypeAreChecked()
{
    FeaturePtr feature;
    QCOMPARE(camera_->GetFeatureByName("NoSuchFeature", feature), ZebErrorNotFound);
    FeaturePtr size = featureOf(camera_, "FileSize");
    bool readable = false, writable = true;
    QCOMPARE(size->IsReadable(readable), ZebErrorSuccess);
    QCOMPARE(size->IsWritable(writable), ZebErrorSuccess);
    QVERIFY(readable && !writable);
    QCOMPARE(size->SetValue(int64_t(1)), ZebErrorInvalidAccess);
    double asFloat = 0;
    QCOMPARE(size->GetValue(asFloat), ZebErrorWrongType);
    int64_t value = -1;
    QCOMPARE(featureOf(camera_, "AcquisitionStart")->GetValue(value), ZebErrorWrongType);
    QCOMPARE(value, int64_t(-1));
    QCOMPARE(featureOf(camera_, "AcquisitionStop")->IsReadable(readable), ZebErrorSuccess);
    QVERIFY(!readable);

    std::vector<FeaturePtr> all;
    QCOMPARE(camera_->GetFeatures(all), ZebErrorSuccess);
    QStringList names;
    for (const FeaturePtr& f : all) {
        std::string name;
        f->GetName(name);
        names << QString::fromStdString(name);
    }
    for (const char* expected : {"FileSelector", "FileAccessBuffer", "FileChunkId", "TLParamsLocked",
                                 "DefectPixelCorrection_Revision", "DeviceManufacturerInfo"})
        QVERIFY2(names.contains(expected), expected);
    QVERIFY(!names.contains("Root")); // categories are no values
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

void TestAravisInterop::singleFrameIsAcquired()
{
    featureOf(camera_, "Width")->SetValue(int64_t(64));
    featureOf(camera_, "Height")->SetValue(int64_t(48));
    featureOf(camera_, "PixelFormat")->SetValue("Mono8");
    FramePtr frame;
    QCOMPARE(camera_->AcquireSingleImage(frame, 5000), ZebErrorSuccess);
    QVERIFY(frame);
    FrameStatusType status = FrameStatusInvalid;
    frame->GetReceiveStatus(status);
    QCOMPARE(status, FrameStatusComplete);
    uint32_t width = 0, height = 0, size = 0;
    frame->GetWidth(width);
    frame->GetHeight(height);
    frame->GetBufferSize(size);
    QCOMPARE(width, 64u);
    QCOMPARE(height, 48u);
    QCOMPARE(size, 64u * 48u);
    PixelFormatType format = PixelFormatBayerBG8;
    frame->GetPixelFormat(format);
    QCOMPARE(format, PixelFormatMono8);
}

void TestAravisInterop::streamHasNoProtocolFeature()
{
    std::vector<StreamPtr> streams;
    QCOMPARE(camera_->GetStreams(streams), ZebErrorSuccess);
    QCOMPARE(streams.size(), size_t(1));
    FeaturePtr protocol;
    QCOMPARE(streams[0]->GetFeatureByName("GVSPProtocol", protocol), ZebErrorNotFound);
    QCOMPARE(streams[0]->GetFeatureByName("Width", protocol), ZebErrorNotFound);
    std::vector<StreamPtr> again;
    QCOMPARE(camera_->GetStreams(again), ZebErrorSuccess);
    QCOMPARE(again, streams);

    // After a close and a new open the streams belong to the new session.
    QCOMPARE(camera_->Close(), ZebErrorSuccess);
    QCOMPARE(camera_->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(camera_->GetStreams(again), ZebErrorSuccess);
    QCOMPARE(again.size(), size_t(1));
    QCOMPARE(again[0]->GetFeatureByName("Width", protocol), ZebErrorNotFound);
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
    ZebSystem::GetInstance().UnregisterCameraListObserver(recorder);
}

void TestAravisInterop::restartedCameraIsPluggedInAgain()
{
    auto recorder = std::make_shared<Recorder>();
    ZebSystem::GetInstance().RegisterCameraListObserver(recorder);
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
