#include "ZebC.h"
#include "sim/simcontrol.h"
#include "zebtestsupport.h"

#include <condition_variable>
#include <mutex>
#include <thread>

using namespace ZebCPP;

namespace {

// Records what the SDK reported and on which thread.
class RecordingObserver : public ICameraListObserver {
public:
    struct Call {
        std::string serial;
        UpdateTriggerType reason;
        std::thread::id thread;
    };

    void CameraListChanged(CameraPtr camera, UpdateTriggerType reason) override
    {
        std::string serial;
        camera->GetSerialNumber(serial);
        std::lock_guard<std::mutex> lock(mutex);
        calls.push_back({serial, reason, std::this_thread::get_id()});
        changed.notify_all();
    }

    // Waits until `count` calls arrived; the SDK thread may lag behind the caller.
    bool waitFor(size_t count)
    {
        std::unique_lock<std::mutex> lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(5), [&] { return calls.size() >= count; });
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Call> calls;
};

} // namespace

class TestZebSystem : public QObject {
    Q_OBJECT

private slots:
    void init() { QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); }
    void cleanup() { ZebTest::stopSdk(); }

    void callsBeforeStartupAreRefused();
    void startupWithBadCameraSetFails();
    void cameraListIsFetchedInTwoSteps();
    void camerasAreFoundByPlainAndExtendedId();
    void stringsAreReadInTwoSteps();
    void interfacesGroupCamerasByTransportLayer();
    void flatInfoQueryChecksItsRecord();
    void openRespectsPermittedAccess();
    void closedCameraRefusesDeviceCalls();
    void unplugAndReplugNotifyObserversOnSdkThread();
    void openAndCloseNotifyOpenState();
    void unpluggedCameraKeepsIdentityOnly();
    void shutdownInvalidatesHeldCameras();
    void observerRegistrationIsChecked();
};

void TestZebSystem::callsBeforeStartupAreRefused()
{
    ZebTest::stopSdk();
    ZebSystem& system = ZebSystem::GetInstance();
    uint32_t count = 0;
    QCOMPARE(system.GetCameras(nullptr, count), ZebErrorApiNotStarted);
    CameraPtr camera;
    QCOMPARE(system.GetCameraByID(ZebTest::kMonoFile, camera), ZebErrorApiNotStarted);
    QCOMPARE(system.RegisterCameraListObserver(std::make_shared<RecordingObserver>()), ZebErrorApiNotStarted);
    QCOMPARE(system.Shutdown(), ZebErrorApiNotStarted);
    ZebCameraInfo info;
    QCOMPARE(ZebCameraInfoQuery("DEV_KV1230001", &info, sizeof info), ZebError_t(ZebErrorApiNotStarted));
    ZebVersionInfo version;
    QCOMPARE(system.QueryVersion(version), ZebErrorSuccess);
    QCOMPARE(version.major, 1u);
}

void TestZebSystem::startupWithBadCameraSetFails()
{
    ZebTest::stopSdk();
    QTemporaryDir dir;
    QFile broken(dir.filePath("broken.json"));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("{ \"cameras\": [ ");
    broken.close();
    QCOMPARE(ZebTest::startSdk(broken.fileName().toUtf8().constData()), ZebErrorInvalidValue);
    QCOMPARE(ZebTest::startSdk(dir.filePath("missing.json").toUtf8().constData()), ZebErrorNotFound);
    uint32_t count = 0;
    QCOMPARE(ZebSystem::GetInstance().GetCameras(nullptr, count), ZebErrorApiNotStarted);

    QFile one(dir.filePath("one.json"));
    QVERIFY(one.open(QIODevice::WriteOnly));
    one.write(R"({ "transportLayers": [ { "id": "T", "type": "USB3Vision", "interfaces": [ { "id": "u0" } ] } ],
                   "cameras": [ { "id": "C1", "model": "pmq1MCX", "serial": "S1", "interface": "u0" } ] })");
    one.close();
    QCOMPARE(ZebTest::startSdk(one.fileName().toUtf8().constData()), ZebErrorSuccess);
    QCOMPARE(ZebSystem::GetInstance().GetCameras(nullptr, count), ZebErrorSuccess);
    QCOMPARE(count, 1u);
}

void TestZebSystem::cameraListIsFetchedInTwoSteps()
{
    ZebSystem& system = ZebSystem::GetInstance();
    uint32_t count = 0;
    QCOMPARE(system.GetCameras(nullptr, count), ZebErrorSuccess);
    QCOMPARE(count, 5u);
    std::vector<CameraPtr> cameras(count);
    uint32_t shortSize = count - 1;
    QCOMPARE(system.GetCameras(cameras.data(), shortSize), ZebErrorMoreData);
    QCOMPARE(shortSize, count);
    QCOMPARE(system.GetCameras(cameras.data(), count), ZebErrorSuccess);

    std::vector<CameraPtr> again;
    QCOMPARE(system.GetCameras(again), ZebErrorSuccess);
    QVERIFY(again == cameras); // the same camera is the same object
}

void TestZebSystem::camerasAreFoundByPlainAndExtendedId()
{
    ZebSystem& system = ZebSystem::GetInstance();
    CameraPtr plain, extended, unknown;
    QCOMPARE(system.GetCameraByID("DEV_RY1300003", plain), ZebErrorSuccess);
    QCOMPARE(system.GetCameraByID("SimGEV::DEV_RY1300003", extended), ZebErrorSuccess);
    QCOMPARE(plain, extended);
    QCOMPARE(system.GetCameraByID("SimU3V::DEV_RY1300003", unknown), ZebErrorNotFound);
    QCOMPARE(system.GetCameraByID(nullptr, unknown), ZebErrorBadParameter);
    QVERIFY(!unknown);
}

void TestZebSystem::stringsAreReadInTwoSteps()
{
    CameraPtr camera = ZebTest::cameraBySerial(ZebTest::kMonoFile);
    QVERIFY(camera);
    uint32_t length = 0;
    QCOMPARE(camera->GetModel(nullptr, length), ZebErrorSuccess);
    QCOMPARE(length, uint32_t(sizeof "kvd123MXGE")); // the length counts the NUL
    std::vector<char> text(length - 1, 'x');
    uint32_t shortLength = length - 1;
    QCOMPARE(camera->GetModel(text.data(), shortLength), ZebErrorMoreData);
    QCOMPARE(shortLength, length);
    text.resize(length);
    QCOMPARE(camera->GetModel(text.data(), length), ZebErrorSuccess);
    QCOMPARE(QString(text.data()), QString("kvd123MXGE"));
}

void TestZebSystem::interfacesGroupCamerasByTransportLayer()
{
    uint32_t interfaces = 0, layers = 0;
    QCOMPARE(ZebSystem::GetInstance().GetInterfaces(nullptr, interfaces), ZebErrorSuccess);
    QCOMPARE(ZebSystem::GetInstance().GetTransportLayers(nullptr, layers), ZebErrorSuccess);
    QCOMPARE(interfaces, 3u);
    QCOMPARE(layers, 2u);

    CameraPtr camera = ZebTest::cameraBySerial(ZebTest::kColorFile);
    InterfacePtr interface;
    TransportLayerPtr tl, interfaceTl;
    QCOMPARE(camera->GetInterface(interface), ZebErrorSuccess);
    QCOMPARE(camera->GetTransportLayer(tl), ZebErrorSuccess);
    interface->GetTransportLayer(interfaceTl);
    QCOMPARE(interfaceTl, tl);
    InterfacePtr byId;
    QCOMPARE(ZebSystem::GetInstance().GetInterfaceByID("sim-usb0", byId), ZebErrorSuccess);
    QCOMPARE(byId, interface);
}

void TestZebSystem::flatInfoQueryChecksItsRecord()
{
    ZebCameraInfo info;
    QCOMPARE(ZebCameraInfoQuery("DEV_TB2000005", &info, sizeof info - 1), ZebError_t(ZebErrorStructSize));
    QCOMPARE(ZebCameraInfoQuery("DEV_TB2000005", nullptr, sizeof info), ZebError_t(ZebErrorBadParameter));
    QCOMPARE(ZebCameraInfoQuery("DEV_NONE", &info, sizeof info), ZebError_t(ZebErrorNotFound));
    QCOMPARE(ZebCameraInfoQuery("SimU3V::DEV_TB2000005", &info, sizeof info), ZebError_t(ZebErrorSuccess));
    QCOMPARE(QString(info.cameraId), QString("DEV_TB2000005"));
    QCOMPARE(QString(info.cameraIdExtended), QString("SimU3V::DEV_TB2000005"));
    QCOMPARE(info.permittedAccess, ZebAccessMode_t(AccessModeRead));
    QCOMPARE(info.interfaceType, ZebInterfaceType_t(InterfaceTypeUsb3Vision));
}

void TestZebSystem::openRespectsPermittedAccess()
{
    CameraPtr held = ZebTest::cameraBySerial(ZebTest::kHeld);
    QCOMPARE(held->Open(AccessModeFull), ZebErrorInvalidAccess);
    QCOMPARE(held->Open(AccessModeRead), ZebErrorSuccess);
    FeaturePtr exposure = ZebTest::feature(held, "ExposureTime");
    double value = 0;
    QCOMPARE(exposure->GetValue(value), ZebErrorSuccess);
    QCOMPARE(exposure->SetValue(2000.0), ZebErrorInvalidAccess);
    QCOMPARE(held->Close(), ZebErrorSuccess);

    CameraPtr camera = ZebTest::cameraBySerial(ZebTest::kMonoFile);
    AccessModeType access = AccessModeNone;
    camera->GetPermittedAccess(access);
    QCOMPARE(uint32_t(access), uint32_t(AccessModeFull | AccessModeExclusive));
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorInvalidCall);
    camera->GetPermittedAccess(access);
    QCOMPARE(access, AccessModeRead); // others may only read while we hold it
    QCOMPARE(camera->Close(), ZebErrorSuccess);
    QCOMPARE(camera->Close(), ZebErrorDeviceNotOpen);
    QCOMPARE(camera->Open(static_cast<AccessModeType>(3)), ZebErrorBadParameter);
}

void TestZebSystem::closedCameraRefusesDeviceCalls()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    QVERIFY(camera);
    FeaturePtr revision = ZebTest::feature(camera, "DefectPixelCorrection_Revision");
    std::vector<StreamPtr> streams;
    QCOMPARE(camera->GetStreams(streams), ZebErrorSuccess);
    QCOMPARE(streams.size(), size_t(1));
    FeaturePtr protocol;
    QCOMPARE(streams[0]->GetFeatureByName("GVSPProtocol", protocol), ZebErrorSuccess);
    QCOMPARE(camera->Close(), ZebErrorSuccess);

    FeaturePtr f;
    int64_t value = 0;
    uint8_t buffer[4];
    uint32_t done = 0;
    FramePtr frame;
    QCOMPARE(camera->GetFeatureByName("ExposureTime", f), ZebErrorDeviceNotOpen);
    QCOMPARE(revision->GetValue(value), ZebErrorDeviceNotOpen);
    QCOMPARE(protocol->GetValue(value), ZebErrorDeviceNotOpen);
    QCOMPARE(camera->ReadMemory(0x10004000, buffer, 4, done), ZebErrorDeviceNotOpen);
    QCOMPARE(camera->GetStreams(streams), ZebErrorDeviceNotOpen);
    QCOMPARE(camera->AcquireSingleImage(frame, 1000), ZebErrorDeviceNotOpen);
    std::string model;
    QCOMPARE(camera->GetModel(model), ZebErrorSuccess); // identity needs no device
}

void TestZebSystem::unplugAndReplugNotifyObserversOnSdkThread()
{
    auto observer = std::make_shared<RecordingObserver>();
    ZebSystem& system = ZebSystem::GetInstance();
    QCOMPARE(system.RegisterCameraListObserver(observer), ZebErrorSuccess);
    QCOMPARE(SimControl::UnplugCamera(ZebTest::kColorFile), ZebErrorSuccess);
    QCOMPARE(SimControl::UnplugCamera(ZebTest::kColorFile), ZebErrorInvalidCall);
    QVERIFY(!ZebTest::cameraBySerial(ZebTest::kColorFile));
    QCOMPARE(SimControl::ReplugCamera(ZebTest::kColorFile), ZebErrorSuccess);
    QCOMPARE(SimControl::PlugCamera(R"({ "id": "DEV_NEW", "model": "pmq9MCX", "serial": "NEW1",
                                         "interface": "sim-usb7", "transportLayer": "SimU3V" })"),
             ZebErrorSuccess);
    QCOMPARE(SimControl::PlugCamera(R"({ "id": "DEV_X", "model": "m", "serial": "X", "interface": "nowhere" })"),
             ZebErrorBadParameter);
    QVERIFY(observer->waitFor(3));

    std::lock_guard<std::mutex> lock(observer->mutex);
    QCOMPARE(observer->calls.size(), size_t(3));
    QCOMPARE(observer->calls[0].serial, std::string(ZebTest::kColorFile));
    QCOMPARE(observer->calls[0].reason, UpdateTriggerPluggedOut);
    QCOMPARE(observer->calls[1].reason, UpdateTriggerPluggedIn);
    QCOMPARE(observer->calls[2].serial, std::string("NEW1"));
    for (const RecordingObserver::Call& call : observer->calls)
        QVERIFY(call.thread != std::this_thread::get_id());
    uint32_t count = 0;
    system.GetCameras(nullptr, count);
    QCOMPARE(count, 6u);
    uint32_t interfaces = 0;
    system.GetInterfaces(nullptr, interfaces);
    QCOMPARE(interfaces, 4u);
}

void TestZebSystem::openAndCloseNotifyOpenState()
{
    auto observer = std::make_shared<RecordingObserver>();
    QCOMPARE(ZebSystem::GetInstance().RegisterCameraListObserver(observer), ZebErrorSuccess);
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    QVERIFY(camera);
    QCOMPARE(camera->Close(), ZebErrorSuccess);
    QCOMPARE(SimControl::SetPermittedAccess(ZebTest::kMonoFile, AccessModeRead), ZebErrorSuccess);
    QVERIFY(observer->waitFor(3));
    {
        std::lock_guard<std::mutex> lock(observer->mutex);
        for (const RecordingObserver::Call& call : observer->calls)
            QCOMPARE(call.reason, UpdateTriggerOpenStateChanged);
    }
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorInvalidAccess);
}

void TestZebSystem::unpluggedCameraKeepsIdentityOnly()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    FeaturePtr exposure = ZebTest::feature(camera, "ExposureTime");
    QCOMPARE(SimControl::UnplugCamera("SimGEV::DEV_KV1230001"), ZebErrorSuccess);

    std::string extended, name;
    QCOMPARE(camera->GetExtendedID(extended), ZebErrorSuccess);
    QCOMPARE(camera->GetName(name), ZebErrorSuccess);
    double value = 0;
    QCOMPARE(exposure->GetValue(value), ZebErrorBadHandle);
    QCOMPARE(camera->Close(), ZebErrorBadHandle);
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorBadHandle);
    AccessModeType access;
    QCOMPARE(camera->GetPermittedAccess(access), ZebErrorBadHandle);
    CameraPtr again;
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID(extended.c_str(), again), ZebErrorNotFound);

    // Back again: a new camera object; the old one stays gone.
    QCOMPARE(SimControl::ReplugCamera(ZebTest::kMonoFile), ZebErrorSuccess);
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID(extended.c_str(), again), ZebErrorSuccess);
    QVERIFY(again != camera);
    QCOMPARE(again->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(camera->Close(), ZebErrorBadHandle);
}

void TestZebSystem::shutdownInvalidatesHeldCameras()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    FeaturePtr exposure = ZebTest::feature(camera, "ExposureTime");
    ZebTest::stopSdk();
    double value = 0;
    QCOMPARE(exposure->GetValue(value), ZebErrorBadHandle);
    QCOMPARE(camera->Close(), ZebErrorBadHandle);
    QCOMPARE(SimControl::UnplugCamera(ZebTest::kMonoFile), ZebErrorNoTransportLayer);
    QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess);
    QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); // a started system stays as it is
}

void TestZebSystem::observerRegistrationIsChecked()
{
    ZebSystem& system = ZebSystem::GetInstance();
    auto observer = std::make_shared<RecordingObserver>();
    QCOMPARE(system.RegisterCameraListObserver(nullptr), ZebErrorBadParameter);
    QCOMPARE(system.RegisterCameraListObserver(observer), ZebErrorSuccess);
    QCOMPARE(system.RegisterCameraListObserver(observer), ZebErrorInvalidCall);
    QCOMPARE(system.UnregisterCameraListObserver(observer), ZebErrorSuccess);
    QCOMPARE(system.UnregisterCameraListObserver(observer), ZebErrorNotFound);
    SimControl::UnplugCamera(ZebTest::kHeld);
    SimControl::ReplugCamera(ZebTest::kHeld);
    ZebTest::stopSdk(); // delivers what is queued
    QVERIFY(observer->calls.empty());
    QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess);
}

QTEST_GUILESS_MAIN(TestZebSystem)
#include "tst_zebsystem.moc"
