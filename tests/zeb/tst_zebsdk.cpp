#include "ZebC.h"
#include "sim/simcontrol.h"
#include "zebboundary.h"
#include "zebtestsupport.h"

// The SDK's own contracts that the camera layer, the panel and the soak suites
// do not reach: two-step strings and lists, ids, access, notices, and a camera
// that leaves in the middle of a register write.

using namespace ZebCPP;

class TestZebSdk : public QObject {
    Q_OBJECT

private slots:
    void init() { QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); }
    void cleanup() { ZebTest::stopSdk(); }

    void callsBeforeStartupAreRefused();
    void listsAndStringsAreFetchedInTwoSteps();
    void camerasAreFoundByPlainAndExtendedId();
    void openRespectsPermittedAccess();
    void observersHearPlugOnSdkThread();
    void unpluggedCameraKeepsIdentityOnly();
    void cameraVanishesDuringMemoryWrite();
};

void TestZebSdk::callsBeforeStartupAreRefused()
{
    ZebTest::stopSdk();
    ZebSystem& system = ZebSystem::GetInstance();
    uint32_t count = 0;
    QCOMPARE(system.GetCameras(nullptr, count), ZebErrorApiNotStarted);
    ZebCameraInfo info;
    QCOMPARE(ZebCameraInfoQuery("DEV_KV1230001", &info, sizeof info), ZebError_t(ZebErrorApiNotStarted));

    // A broken or missing camera set leaves the system stopped.
    QTemporaryDir dir;
    QFile broken(dir.filePath("broken.json"));
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("{ \"cameras\": [ ") > 0);
    broken.close();
    QCOMPARE(ZebTest::startSdk(broken.fileName().toUtf8().constData()), ZebErrorInvalidValue);
    QCOMPARE(ZebTest::startSdk(dir.filePath("missing.json").toUtf8().constData()), ZebErrorNotFound);
    QCOMPARE(system.GetCameras(nullptr, count), ZebErrorApiNotStarted);
    QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess);
    QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); // a started system stays as it is
}

void TestZebSdk::listsAndStringsAreFetchedInTwoSteps()
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

    CameraPtr camera = ZebTest::cameraBySerial(ZebTest::kMonoFile);
    uint32_t length = 0;
    QCOMPARE(camera->GetModel(nullptr, length), ZebErrorSuccess);
    QCOMPARE(length, uint32_t(sizeof "kvd123MXGE")); // the length counts the NUL
    std::vector<char> text(length);
    uint32_t shortLength = length - 1;
    QCOMPARE(camera->GetModel(text.data(), shortLength), ZebErrorMoreData);
    QCOMPARE(shortLength, length);
    QCOMPARE(camera->GetModel(text.data(), length), ZebErrorSuccess);
    QCOMPARE(QString(text.data()), QString("kvd123MXGE"));

    // A value that grows between the two steps is read again; one that keeps growing gives up.
    std::string grown;
    auto growing = [](int growths) {
        return [growths, value = std::string("ab")](char* out, uint32_t& size) mutable {
            if (out != nullptr && growths-- > 0)
                value += 'c';
            return copyOut(value, out, size);
        };
    };
    QCOMPARE(fetchString(grown, growing(1)), ZebErrorSuccess);
    QCOMPARE(grown, std::string("abc"));
    QCOMPARE(fetchString(grown, growing(5)), ZebErrorMoreData);
}

void TestZebSdk::camerasAreFoundByPlainAndExtendedId()
{
    ZebSystem& system = ZebSystem::GetInstance();
    CameraPtr plain, extended, unknown;
    QCOMPARE(system.GetCameraByID("DEV_RY1300003", plain), ZebErrorSuccess);
    QCOMPARE(system.GetCameraByID("SimGEV::DEV_RY1300003", extended), ZebErrorSuccess);
    QCOMPARE(plain, extended);
    QCOMPARE(system.GetCameraByID("SimU3V::DEV_RY1300003", unknown), ZebErrorNotFound);
    QVERIFY(!unknown);

    ZebCameraInfo info;
    QCOMPARE(ZebCameraInfoQuery("DEV_TB2000005", &info, sizeof info - 1), ZebError_t(ZebErrorStructSize));
    QCOMPARE(ZebCameraInfoQuery("SimU3V::DEV_TB2000005", &info, sizeof info), ZebError_t(ZebErrorSuccess));
    QCOMPARE(QString(info.cameraIdExtended), QString("SimU3V::DEV_TB2000005"));
    QCOMPARE(info.permittedAccess, ZebAccessMode_t(AccessModeRead));
}

void TestZebSdk::openRespectsPermittedAccess()
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
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorInvalidCall);
    camera->GetPermittedAccess(access);
    QCOMPARE(access, AccessModeRead); // others may only read while we hold it
    QCOMPARE(camera->Close(), ZebErrorSuccess);
    QCOMPARE(camera->Close(), ZebErrorDeviceNotOpen);

    // Closed: no device calls, identity still answers.
    FeaturePtr f;
    QCOMPARE(exposure->GetValue(value), ZebErrorDeviceNotOpen);
    QCOMPARE(camera->GetFeatureByName("ExposureTime", f), ZebErrorDeviceNotOpen);
    std::string model;
    QCOMPARE(camera->GetModel(model), ZebErrorSuccess);
}

// The camera layer turns these into queued signals; it must never be called
// back on the thread that plugged.
void TestZebSdk::observersHearPlugOnSdkThread()
{
    auto observer = std::make_shared<ZebTest::ListRecorder>();
    QCOMPARE(ZebSystem::GetInstance().RegisterCameraListObserver(observer), ZebErrorSuccess);
    QCOMPARE(SimControl::UnplugCamera(ZebTest::kColorFile), ZebErrorSuccess);
    QVERIFY(!ZebTest::cameraBySerial(ZebTest::kColorFile));
    QCOMPARE(SimControl::ReplugCamera(ZebTest::kColorFile), ZebErrorSuccess);
    QCOMPARE(SimControl::PlugCamera(R"({ "id": "DEV_NEW", "model": "pmq9MCX", "serial": "NEW1",
                                         "interface": "sim-usb7", "transportLayer": "SimU3V" })"),
             ZebErrorSuccess);
    QCOMPARE(SimControl::PlugCamera(R"({ "id": "DEV_X", "model": "m", "serial": "X", "interface": "nowhere" })"),
             ZebErrorBadParameter);
    QVERIFY(observer->waitFor(UpdateTriggerPluggedOut) && observer->waitFor(UpdateTriggerPluggedIn)
            && observer->waitFor(UpdateTriggerPluggedIn));
    std::lock_guard<std::mutex> lock(observer->mutex);
    QCOMPARE(observer->calls.size(), size_t(3));
    QCOMPARE(observer->calls[0].serial, std::string(ZebTest::kColorFile));
    QCOMPARE(observer->calls[0].reason, UpdateTriggerPluggedOut);
    QCOMPARE(observer->calls[1].reason, UpdateTriggerPluggedIn);
    QCOMPARE(observer->calls[2].serial, std::string("NEW1"));
    for (const ZebTest::ListRecorder::Call& call : observer->calls)
        QVERIFY(call.thread != std::this_thread::get_id());
}

void TestZebSdk::unpluggedCameraKeepsIdentityOnly()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    FeaturePtr exposure = ZebTest::feature(camera, "ExposureTime");
    QCOMPARE(SimControl::UnplugCamera("SimGEV::DEV_KV1230001"), ZebErrorSuccess);

    std::string extended;
    QCOMPARE(camera->GetExtendedID(extended), ZebErrorSuccess);
    double value = 0;
    QCOMPARE(exposure->GetValue(value), ZebErrorBadHandle);
    QCOMPARE(camera->Close(), ZebErrorBadHandle);
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorBadHandle);
    CameraPtr again;
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID(extended.c_str(), again), ZebErrorNotFound);

    // Back again: a new camera object; the old one stays gone.
    QCOMPARE(SimControl::ReplugCamera(ZebTest::kMonoFile), ZebErrorSuccess);
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID(extended.c_str(), again), ZebErrorSuccess);
    QVERIFY(again != camera);
    QCOMPARE(again->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(camera->Close(), ZebErrorBadHandle);

    // Shutting down invalidates what is still held.
    exposure = ZebTest::feature(again, "ExposureTime");
    ZebTest::stopSdk();
    QCOMPARE(exposure->GetValue(value), ZebErrorBadHandle);
    QCOMPARE(again->Close(), ZebErrorBadHandle);
}

void TestZebSdk::cameraVanishesDuringMemoryWrite()
{
    auto observer = std::make_shared<ZebTest::ListRecorder>();
    ZebSystem::GetInstance().RegisterCameraListObserver(observer);
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    const uint8_t slot[4] = {0, 0, 0, 1};
    uint32_t done = 0;
    QCOMPARE(camera->WriteMemory(0x10004014, slot, 4, done), ZebErrorSuccess);
    QCOMPARE(SimControl::DisconnectAfterBytes(ZebTest::kRegister, 16), ZebErrorSuccess);
    const std::vector<uint8_t> words(400, 0x01);
    QCOMPARE(camera->WriteMemory(0x10025000, words.data(), uint32_t(words.size()), done), ZebErrorBadHandle);
    QCOMPARE(done, 0u);
    QVERIFY(observer->waitFor(UpdateTriggerPluggedOut));
    QVERIFY(ZebTest::storedMap(ZebTest::kRegister, 1).empty());
    QCOMPARE(camera->Close(), ZebErrorBadHandle);
}

QTEST_GUILESS_MAIN(TestZebSdk)
#include "tst_zebsdk.moc"
