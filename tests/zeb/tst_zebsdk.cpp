#include "ZebC.h"
#include "sim/simcontrol.h"
#include "zebboundary.h"
#include "zebtestsupport.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

// The SDK's own contracts that the camera layer, the panel and the soak suites
// do not reach: two-step strings and lists, ids, access, notices, feature type
// and range refusals, the device-side checks of map files and registers, and
// what an injected fault leaves behind.

using namespace ZebCPP;
using SimControl::FaultKind;

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

    bool waitForReason(UpdateTriggerType reason)
    {
        std::unique_lock<std::mutex> lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(5), [&] {
            return std::any_of(calls.begin(), calls.end(), [&](const Call& c) { return c.reason == reason; });
        });
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Call> calls;
};

constexpr uint64_t kControl = 0x10004000;
constexpr uint64_t kSelect = 0x10004014;
constexpr uint64_t kClear = 0x10004018;
constexpr uint64_t kSize = 0x1000401C;
constexpr uint64_t kMaxSize = 0x10004020;
constexpr uint64_t kEntries = 0x10025000;

// Register access as the host does it: words in the camera's byte order.
class RegisterClient {
public:
    RegisterClient(CameraPtr camera, bool bigEndian) : camera_(std::move(camera)), bigEndian_(bigEndian) {}

    ZebErrorType write(uint64_t address, const std::vector<uint32_t>& words)
    {
        std::vector<uint8_t> data;
        for (uint32_t w : words) {
            for (int b = 0; b < 4; ++b)
                data.push_back(uint8_t(w >> (bigEndian_ ? 24 - 8 * b : 8 * b)));
        }
        uint32_t done = 0;
        return camera_->WriteMemory(address, data.data(), uint32_t(data.size()), done);
    }

    ZebErrorType read(uint64_t address, std::vector<uint32_t>& words)
    {
        std::vector<uint8_t> data(words.size() * 4);
        uint32_t done = 0;
        const ZebErrorType err = camera_->ReadMemory(address, data.data(), uint32_t(data.size()), done);
        for (size_t i = 0; i < words.size(); ++i) {
            words[i] = 0;
            for (int b = 0; b < 4; ++b)
                words[i] |= uint32_t(data[4 * i + b]) << (bigEndian_ ? 24 - 8 * b : 8 * b);
        }
        return err;
    }

    uint32_t value(uint64_t address)
    {
        std::vector<uint32_t> words(1);
        return read(address, words) == ZebErrorSuccess ? words[0] : 0xDEADBEEF;
    }

private:
    CameraPtr camera_;
    bool bigEndian_;
};

void putWord(std::vector<uint8_t>& bytes, size_t offset, uint32_t value)
{
    qToLittleEndian<quint32>(value, bytes.data() + offset);
}

// A revision 3 map container as the application sends it.
std::vector<uint8_t> container(size_t count)
{
    std::vector<uint8_t> bytes(32 + count * 8, 0);
    putWord(bytes, 0, 0x1F56ADFC);
    putWord(bytes, 4, uint32_t(bytes.size()));
    putWord(bytes, 12, 4096);
    putWord(bytes, 16, uint32_t(bytes.size() - 12));
    putWord(bytes, 20, 640);
    putWord(bytes, 24, 640 * 480);
    for (size_t i = 0; i < count; ++i) {
        putWord(bytes, 32 + i * 8, uint32_t(3 + i * 7 % 600));
        putWord(bytes, 36 + i * 8, uint32_t(5 + i * 3 % 400));
    }
    uint32_t sum = 0;
    for (size_t offset = 0; offset < bytes.size(); offset += 4)
        sum += qFromLittleEndian<quint32>(bytes.data() + offset);
    putWord(bytes, 8, 0u - sum);
    return bytes;
}

// The device side of a file transfer, driven feature by feature as a host does it.
class FileClient {
public:
    explicit FileClient(CameraPtr camera) : camera_(std::move(camera)) {}

    FeaturePtr f(const char* name) { return ZebTest::feature(camera_, name); }

    ZebErrorType run(const char* operation)
    {
        ZebErrorType err = f("FileOperationSelector")->SetValue(operation);
        return err != ZebErrorSuccess ? err : f("FileOperationExecute")->RunCommand();
    }

    ZebErrorType openFile(const char* file, const char* mode)
    {
        ZebErrorType err = f("FileSelector")->SetValue(file);
        if (err == ZebErrorSuccess)
            err = f("FileOpenMode")->SetValue(mode);
        return err != ZebErrorSuccess ? err : run("Open");
    }

    // One block is enough for the small files here.
    ZebErrorType upload(const char* file, const std::vector<uint8_t>& data)
    {
        ZebErrorType err = openFile(file, "Write");
        if (err != ZebErrorSuccess)
            return err;
        err = f("FileAccessOffset")->SetValue(int64_t(0));
        if (err == ZebErrorSuccess)
            err = f("FileAccessLength")->SetValue(int64_t(data.size()));
        if (err == ZebErrorSuccess)
            err = f("FileAccessBuffer")->SetRawData(data.data(), uint32_t(data.size()));
        if (err == ZebErrorSuccess)
            err = run("Write");
        const ZebErrorType closed = run("Close");
        return err != ZebErrorSuccess ? err : closed;
    }

    std::string status()
    {
        std::string text;
        f("FileOperationStatus")->GetValue(text);
        return text;
    }

private:
    CameraPtr camera_;
};

// One operation of the given kind on an opened camera; each leaves state a test can see.
ZebErrorType operate(const CameraPtr& camera, FaultKind kind)
{
    switch (kind) {
    case FaultKind::FeatureRead: {
        double value = 0;
        return ZebTest::feature(camera, "ExposureTime")->GetValue(value);
    }
    case FaultKind::FeatureWrite:
        return ZebTest::feature(camera, "DefectPixelCorrection_MapSelect")->SetValue("DefPixMap1");
    case FaultKind::Command:
        return ZebTest::feature(camera, "AcquisitionStart")->RunCommand();
    case FaultKind::MemoryRead: {
        uint8_t raw[4];
        uint32_t done = 0;
        return camera->ReadMemory(0x10004020, raw, 4, done);
    }
    case FaultKind::MemoryWrite: {
        const uint8_t raw[4] = {0, 0, 0, 1};
        uint32_t done = 0;
        return camera->WriteMemory(0x10004014, raw, 4, done);
    }
    case FaultKind::Open:
        return camera->Open(AccessModeFull);
    case FaultKind::Close:
        return camera->Close();
    default:
        break; // file status, short writes and acquisition: the transfer and capture suites
    }
    return ZebErrorInternalFault;
}

} // namespace

class TestZebSdk : public QObject {
    Q_OBJECT

private slots:
    void init() { QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); }
    void cleanup() { ZebTest::stopSdk(); }

    void callsBeforeStartupAreRefused();
    void listsAndStringsAreFetchedInTwoSteps();
    void camerasAreFoundByPlainAndExtendedId();
    void openRespectsPermittedAccess();
    void observersHearPlugAndOpenState();
    void unpluggedCameraKeepsIdentityOnly();
    void observerRegistrationIsChecked();
    void featuresRefuseWrongTypesAndRanges();
    void mapCoordinatesAreWrittenPerEntry();
    void registerBlocksFollowByteOrder_data();
    void registerBlocksFollowByteOrder();
    void badRegisterAccessIsRefused_data();
    void badRegisterAccessIsRefused();
    void corruptContainerKeepsOldMap_data();
    void corruptContainerKeepsOldMap();
    void fileOpenModesAndOrderAreEnforced();
    void nthOperationFailsWithItsCode_data();
    void nthOperationFailsWithItsCode();
    void cameraVanishesDuringMemoryWrite();
};

void TestZebSdk::callsBeforeStartupAreRefused()
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

    // A broken or missing camera set leaves the system stopped.
    QTemporaryDir dir;
    QFile broken(dir.filePath("broken.json"));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("{ \"cameras\": [ ");
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
    std::vector<char> text(length - 1, 'x');
    uint32_t shortLength = length - 1;
    QCOMPARE(camera->GetModel(text.data(), shortLength), ZebErrorMoreData);
    QCOMPARE(shortLength, length);
    text.resize(length);
    QCOMPARE(camera->GetModel(text.data(), length), ZebErrorSuccess);
    QCOMPARE(QString(text.data()), QString("kvd123MXGE"));

    QCOMPARE(camera->Open(AccessModeFull), ZebErrorSuccess);
    FeaturePtr firmware = ZebTest::feature(camera, "DeviceManufacturerInfo");
    QCOMPARE(firmware->GetValue(nullptr, length), ZebErrorSuccess);
    const std::string expected = "FW 2.4.1 build 311";
    QCOMPARE(length, uint32_t(expected.size() + 1));
    std::vector<char> buffer(length);
    shortLength = length - 1;
    QCOMPARE(firmware->GetValue(buffer.data(), shortLength), ZebErrorMoreData);
    QCOMPARE(firmware->GetValue(buffer.data(), length), ZebErrorSuccess);
    QCOMPARE(std::string(buffer.data()), expected);

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
    QCOMPARE(system.GetCameraByID(nullptr, unknown), ZebErrorBadParameter);
    QVERIFY(!unknown);

    ZebCameraInfo info;
    QCOMPARE(ZebCameraInfoQuery("DEV_TB2000005", &info, sizeof info - 1), ZebError_t(ZebErrorStructSize));
    QCOMPARE(ZebCameraInfoQuery("DEV_TB2000005", nullptr, sizeof info), ZebError_t(ZebErrorBadParameter));
    QCOMPARE(ZebCameraInfoQuery("DEV_NONE", &info, sizeof info), ZebError_t(ZebErrorNotFound));
    QCOMPARE(ZebCameraInfoQuery("SimU3V::DEV_TB2000005", &info, sizeof info), ZebError_t(ZebErrorSuccess));
    QCOMPARE(QString(info.cameraId), QString("DEV_TB2000005"));
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
    camera->GetPermittedAccess(access);
    QCOMPARE(uint32_t(access), uint32_t(AccessModeFull | AccessModeExclusive));
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorSuccess);
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorInvalidCall);
    camera->GetPermittedAccess(access);
    QCOMPARE(access, AccessModeRead); // others may only read while we hold it
    QCOMPARE(camera->Close(), ZebErrorSuccess);
    QCOMPARE(camera->Close(), ZebErrorDeviceNotOpen);
    QCOMPARE(camera->Open(static_cast<AccessModeType>(3)), ZebErrorBadParameter);

    // Closed: no device calls, identity still answers.
    FeaturePtr f;
    uint8_t buffer[4];
    uint32_t done = 0;
    QCOMPARE(exposure->GetValue(value), ZebErrorDeviceNotOpen);
    QCOMPARE(camera->GetFeatureByName("ExposureTime", f), ZebErrorDeviceNotOpen);
    QCOMPARE(camera->ReadMemory(0x10004000, buffer, 4, done), ZebErrorDeviceNotOpen);
    std::string model;
    QCOMPARE(camera->GetModel(model), ZebErrorSuccess);
}

void TestZebSdk::observersHearPlugAndOpenState()
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
    {
        std::lock_guard<std::mutex> lock(observer->mutex);
        QCOMPARE(observer->calls.size(), size_t(3));
        QCOMPARE(observer->calls[0].serial, std::string(ZebTest::kColorFile));
        QCOMPARE(observer->calls[0].reason, UpdateTriggerPluggedOut);
        QCOMPARE(observer->calls[1].reason, UpdateTriggerPluggedIn);
        QCOMPARE(observer->calls[2].serial, std::string("NEW1"));
        for (const RecordingObserver::Call& call : observer->calls)
            QVERIFY(call.thread != std::this_thread::get_id());
        observer->calls.clear();
    }
    uint32_t count = 0;
    system.GetCameras(nullptr, count);
    QCOMPARE(count, 6u);

    // Opening, closing and another application taking the camera are open-state notices.
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

void TestZebSdk::unpluggedCameraKeepsIdentityOnly()
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

    // Shutting down invalidates what is still held.
    exposure = ZebTest::feature(again, "ExposureTime");
    ZebTest::stopSdk();
    QCOMPARE(exposure->GetValue(value), ZebErrorBadHandle);
    QCOMPARE(again->Close(), ZebErrorBadHandle);
    QCOMPARE(SimControl::UnplugCamera(ZebTest::kMonoFile), ZebErrorNoTransportLayer);
}

void TestZebSdk::observerRegistrationIsChecked()
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

void TestZebSdk::featuresRefuseWrongTypesAndRanges()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    FeaturePtr command = ZebTest::feature(camera, "AcquisitionStart");
    FeaturePtr integer = ZebTest::feature(camera, "FileAccessOffset");
    FeaturePtr text = ZebTest::feature(camera, "DeviceManufacturerInfo");
    int64_t i = 7;
    double d = 7;
    bool b = true;
    std::string s = "kept";
    uint8_t raw[4];
    uint32_t filled = 0;
    QCOMPARE(command->GetValue(i), ZebErrorWrongType);
    QCOMPARE(command->GetValue(s), ZebErrorWrongType);
    QCOMPARE(integer->GetValue(d), ZebErrorWrongType);
    QCOMPARE(integer->SetValue(true), ZebErrorWrongType);
    QCOMPARE(integer->SetValue("5"), ZebErrorWrongType);
    QCOMPARE(integer->RunCommand(), ZebErrorWrongType);
    QCOMPARE(integer->GetRawData(raw, 4, filled), ZebErrorWrongType);
    QCOMPARE(text->GetValue(b), ZebErrorWrongType);
    std::vector<std::string> entries;
    QCOMPARE(text->GetEntries(entries), ZebErrorWrongType);
    double minimum = 0, maximum = 0;
    QCOMPARE(integer->GetRange(minimum, maximum), ZebErrorWrongType);
    QCOMPARE(i, int64_t(7)); // out values stay untouched
    QCOMPARE(s, std::string("kept"));

    FeaturePtr f;
    QCOMPARE(camera->GetFeatureByName("NoSuchFeature", f), ZebErrorNotFound);
    QCOMPARE(camera->GetFeatureByName(nullptr, f), ZebErrorBadParameter);
    QVERIFY(!f);
    QCOMPARE(ZebTest::openCamera(ZebTest::kRegister)->GetFeatureByName("FileSelector", f), ZebErrorNotFound);
    QCOMPARE(ZebTest::feature(camera, "DefectPixelCorrection_Revision")->SetValue(int64_t(4)),
             ZebErrorInvalidAccess);

    FeaturePtr index = ZebTest::feature(camera, "DefectPixelCorrection_MapIndex");
    int64_t low = -1, high = -1;
    QCOMPARE(index->GetRange(low, high), ZebErrorSuccess);
    QCOMPARE(index->SetValue(high + 1), ZebErrorInvalidValue);
    QCOMPARE(index->SetValue(high), ZebErrorSuccess);
    long long value = 0; // any 64-bit integer type works
    QCOMPARE(index->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, 999ll);
    FeaturePtr exposure = ZebTest::feature(camera, "ExposureTime");
    QCOMPARE(exposure->GetRange(minimum, maximum), ZebErrorSuccess);
    QCOMPARE(exposure->SetValue(maximum * 2), ZebErrorInvalidValue);
    QCOMPARE(exposure->SetValue(std::nan("")), ZebErrorInvalidValue);
    QCOMPARE(exposure->SetValue(2500.5), ZebErrorSuccess);
    exposure->GetValue(d);
    QCOMPARE(d, 2500.5);

    FeaturePtr mark = ZebTest::feature(camera, "DefectPixelCorrectionMark_Control");
    QCOMPARE(mark->SetValue(int64_t(0)), ZebErrorSuccess);
    QCOMPARE(mark->GetValue(s), ZebErrorSuccess);
    QCOMPARE(s, std::string("Off"));
    QCOMPARE(mark->SetValue("Blink"), ZebErrorInvalidValue);
    QCOMPARE(mark->SetValue(int64_t(9)), ZebErrorInvalidValue);
    QCOMPARE(mark->GetEntryValue("Blink", i), ZebErrorNotFound);
    QCOMPARE(ZebTest::feature(camera, "Filename")->SetValue("NoSuchFile"), ZebErrorInvalidValue);
}

// The panel writes register-mode maps entry by entry; the camera refuses what
// would corrupt a map.
void TestZebSdk::mapCoordinatesAreWrittenPerEntry()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    FeaturePtr select = ZebTest::feature(camera, "DefectPixelCorrection_MapSelect");
    FeaturePtr index = ZebTest::feature(camera, "DefectPixelCorrection_MapIndex");
    FeaturePtr x = ZebTest::feature(camera, "DefectPixelCorrection_X");
    int64_t value = -1;
    bool writable = true;
    select->SetValue("DefPixMap0");
    x->IsWritable(writable);
    QVERIFY(!writable);
    QCOMPARE(x->SetValue(int64_t(3)), ZebErrorInvalidAccess);

    select->SetValue("DefPixMap1");
    QCOMPARE(index->SetValue(int64_t(4)), ZebErrorSuccess);
    QCOMPARE(x->GetValue(value), ZebErrorInvalidValue); // index 4 of an empty map
    QCOMPARE(x->SetValue(int64_t(1)), ZebErrorInvalidValue); // no gaps in a map
    std::vector<SimControl::SimMapEntry> stored;
    SimControl::GetStoredMap(ZebTest::kMonoFile, 1, stored);
    QVERIFY(stored.empty());
}

void TestZebSdk::registerBlocksFollowByteOrder_data()
{
    QTest::addColumn<QString>("serial");
    QTest::addColumn<bool>("bigEndian");
    QTest::addColumn<bool>("typed");
    QTest::newRow("big-endian, 16-bit layout") << ZebTest::kRegister << true << false;
    QTest::newRow("little-endian, 14-bit layout with codes") << ZebTest::kColorFile << false << true;
}

void TestZebSdk::registerBlocksFollowByteOrder()
{
    QFETCH(QString, serial);
    QFETCH(bool, bigEndian);
    QFETCH(bool, typed);
    const std::string camera = serial.toStdString();
    CameraPtr device = ZebTest::openCamera(camera);
    RegisterClient client(device, bigEndian);

    QCOMPARE(client.write(kSelect, {2}), ZebErrorSuccess);
    std::string selected;
    ZebTest::feature(device, "DefectPixelCorrection_MapSelect")->GetValue(selected);
    QCOMPARE(selected, std::string("DefPixMap2"));
    QCOMPARE(client.write(kClear, {2}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 0u);

    std::vector<uint32_t> words;
    for (uint32_t i = 0; i < 40; ++i) {
        const uint32_t x = 5 + i * 13, y = 7 + i * 11;
        words.push_back(typed ? x | y << 14 | (i % 7) << 28 : x | y << 16);
    }
    QCOMPARE(client.write(kEntries, words), ZebErrorSuccess);
    QCOMPARE(client.write(kControl, {1}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 40u);
    QCOMPARE(client.value(kControl) & 1, 1u);

    std::vector<uint32_t> readBack(41);
    QCOMPARE(client.read(kEntries, readBack), ZebErrorSuccess);
    QCOMPARE(readBack.back(), 0xFFFFFFFFu); // end marker after the last entry
    readBack.pop_back();
    QVERIFY(readBack == words);

    std::vector<SimControl::SimMapEntry> stored;
    SimControl::GetStoredMap(camera, 2, stored);
    QCOMPARE(stored.size(), size_t(40));
    QCOMPARE(stored[39].x, 5u + 39 * 13);
    QCOMPARE(stored[39].y, 7u + 39 * 11);
    QCOMPARE(stored[39].type, typed ? 100u + 39 % 7 : 0u);

    // A shorter block starting at the first entry makes a shorter map; single words append.
    QCOMPARE(client.write(kEntries, {words[0], words[1]}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 2u);
    QCOMPARE(client.write(kEntries + 4 * 2, {words[2]}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 3u);
    QCOMPARE(client.write(kEntries + 4, {words[1]}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 3u); // a change in place keeps the length
    QCOMPARE(client.write(kEntries + 4 * 9, {1}), ZebErrorInvalidValue); // no gaps
}

void TestZebSdk::badRegisterAccessIsRefused_data()
{
    QTest::addColumn<quint64>("address");
    QTest::addColumn<int>("words");
    QTest::addColumn<int>("expected");
    QTest::newRow("unaligned") << quint64(kControl + 2) << 1 << int(ZebErrorBadParameter);
    QTest::newRow("unmapped") << quint64(0x20000000) << 1 << int(ZebErrorInvalidAccess);
    QTest::newRow("size is read only") << quint64(kSize) << 1 << int(ZebErrorInvalidAccess);
    QTest::newRow("maximum is read only") << quint64(kMaxSize) << 1 << int(ZebErrorInvalidAccess);
    QTest::newRow("more than the maximum") << quint64(kEntries) << 2001 << int(ZebErrorInvalidValue);
    QTest::newRow("slot out of range") << quint64(kSelect) << 1 << int(ZebErrorInvalidValue);
}

void TestZebSdk::badRegisterAccessIsRefused()
{
    QFETCH(quint64, address);
    QFETCH(int, words);
    QFETCH(int, expected);
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    RegisterClient client(camera, true);
    client.write(kSelect, {1});
    const std::vector<uint32_t> values(size_t(words), 7);
    QCOMPARE(int(client.write(address, values)), expected);
    QCOMPARE(client.value(kSelect), 1u);
    QCOMPARE(client.value(kSize), 0u);
    uint8_t buffer[4];
    uint32_t done = 0;
    QCOMPARE(camera->ReadMemory(kControl, buffer, 3, done), ZebErrorBadParameter);
    QCOMPARE(camera->ReadMemory(kControl, nullptr, 4, done), ZebErrorBadParameter);

    // The factory map and a camera opened for reading refuse changes.
    QCOMPARE(client.write(kSelect, {0}), ZebErrorSuccess);
    QCOMPARE(client.write(kClear, {0}), ZebErrorInvalidAccess);
    QCOMPARE(client.write(kEntries, {1, 2, 3}), ZebErrorInvalidAccess);
    QCOMPARE(client.value(kSize), 5u);
    camera->Close();
    QCOMPARE(camera->Open(AccessModeRead), ZebErrorSuccess);
    QCOMPARE(client.value(kMaxSize), 2000u);
    QCOMPARE(client.write(kControl, {0}), ZebErrorInvalidAccess);
}

void TestZebSdk::corruptContainerKeepsOldMap_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<uint>("value");
    QTest::addColumn<int>("truncate");
    QTest::newRow("magic") << 0 << 0x1F56ADFDu << 0;
    QTest::newRow("size field") << 4 << 0u << 0;
    QTest::newRow("chunk length") << 16 << 7u << 0;
    QTest::newRow("checksum") << 8 << 1u << 0;
    QTest::newRow("entry changed") << 40 << 12345u << 0;
    QTest::newRow("cut short") << -1 << 0u << 8;
}

void TestZebSdk::corruptContainerKeepsOldMap()
{
    QFETCH(int, offset);
    QFETCH(uint, value);
    QFETCH(int, truncate);
    FileClient client(ZebTest::openCamera(ZebTest::kMonoFile));
    QCOMPARE(client.upload("DefPixMap1", container(20)), ZebErrorSuccess);
    std::vector<SimControl::SimMapEntry> before;
    SimControl::GetStoredMap(ZebTest::kMonoFile, 1, before);
    QCOMPARE(before.size(), size_t(20));

    std::vector<uint8_t> bad = container(50);
    if (offset >= 0)
        putWord(bad, size_t(offset), value);
    bad.resize(bad.size() - size_t(truncate));
    QCOMPARE(client.upload("DefPixMap1", bad), ZebErrorInvalidValue);
    QCOMPARE(client.status(), std::string("Failure"));
    int64_t result = -1;
    client.f("FileOperationResult")->GetValue(result);
    QCOMPARE(result, int64_t(0));

    std::vector<SimControl::SimMapEntry> after;
    SimControl::GetStoredMap(ZebTest::kMonoFile, 1, after);
    QCOMPARE(after.size(), before.size());
    QCOMPARE(after.back().x, before.back().x);
    // The file is closed again: a new transfer may start.
    QCOMPARE(client.openFile("DefPixMap1", "Read"), ZebErrorSuccess);
}

void TestZebSdk::fileOpenModesAndOrderAreEnforced()
{
    FileClient client(ZebTest::openCamera(ZebTest::kMonoFile));
    FeaturePtr mode = client.f("FileOpenMode");
    client.f("FileSelector")->SetValue("DefPixMap0");
    QCOMPARE(mode->SetValue("Read"), ZebErrorSuccess);
    QCOMPARE(mode->SetValue("Write"), ZebErrorInvalidAccess);
    QCOMPARE(mode->SetValue("ReadWrite"), ZebErrorInvalidAccess);
    std::string current;
    mode->GetValue(current);
    QCOMPARE(current, std::string("Read")); // the last accepted mode stays
    bool available = true;
    QCOMPARE(mode->IsEntryAvailable("Write", available), ZebErrorSuccess);
    QVERIFY(!available);
    QCOMPARE(client.run("Delete"), ZebErrorInvalidAccess);

    client.f("FileSelector")->SetValue("Firmware");
    QCOMPARE(mode->SetValue("Read"), ZebErrorInvalidAccess);
    QCOMPARE(mode->SetValue("Write"), ZebErrorSuccess);
    // A mode accepted for another file does not open this one.
    client.f("FileSelector")->SetValue("DefPixMap0");
    QCOMPARE(client.run("Open"), ZebErrorInvalidAccess);

    client.f("FileSelector")->SetValue("UserData");
    QCOMPARE(client.run("Write"), ZebErrorInvalidCall);
    QCOMPARE(client.run("Close"), ZebErrorInvalidCall);
    QCOMPARE(client.openFile("UserData", "Write"), ZebErrorSuccess);
    QCOMPARE(client.run("Open"), ZebErrorInvalidCall);
    QCOMPARE(client.run("Read"), ZebErrorInvalidCall);
    QCOMPARE(client.run("Delete"), ZebErrorInvalidCall);
    client.f("FileAccessOffset")->SetValue(int64_t(10)); // beyond what was written
    QCOMPARE(client.run("Write"), ZebErrorInvalidValue);
    QCOMPARE(client.run("Close"), ZebErrorSuccess);
    std::vector<uint8_t> content;
    SimControl::GetDeviceFile(ZebTest::kMonoFile, "UserData", content);
    QVERIFY(content.empty());
    QCOMPARE(client.f("FileAccessLength")->SetValue(int64_t(0x10001)), ZebErrorInvalidValue);
}

void TestZebSdk::nthOperationFailsWithItsCode_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("code");
    QTest::newRow("feature read") << int(FaultKind::FeatureRead) << int(ZebErrorTimeout);
    QTest::newRow("feature write") << int(FaultKind::FeatureWrite) << int(ZebErrorTransportLayer);
    QTest::newRow("command") << int(FaultKind::Command) << int(ZebErrorResources);
    QTest::newRow("memory read") << int(FaultKind::MemoryRead) << int(ZebErrorTimeout);
    QTest::newRow("memory write") << int(FaultKind::MemoryWrite) << int(ZebErrorInternalFault);
    QTest::newRow("open") << int(FaultKind::Open) << int(ZebErrorResources);
    QTest::newRow("close") << int(FaultKind::Close) << int(ZebErrorTransportLayer);
}

void TestZebSdk::nthOperationFailsWithItsCode()
{
    QFETCH(int, kind);
    QFETCH(int, code);
    const auto faultKind = FaultKind(kind);
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    // Open and close alternate, so the camera is in the state the operation needs.
    auto prepare = [&] {
        if (faultKind == FaultKind::Open)
            camera->Close();
        if (faultKind == FaultKind::Close)
            camera->Open(AccessModeFull);
    };
    // Undoing the first call is itself a call of the same kind for writes and commands.
    const bool undoCounts = faultKind == FaultKind::FeatureWrite || faultKind == FaultKind::Command;
    QCOMPARE(SimControl::InjectFault(ZebTest::kRegister, faultKind, undoCounts ? 3 : 2, ZebErrorType(code)),
             ZebErrorSuccess);
    prepare();
    QCOMPARE(operate(camera, faultKind), ZebErrorSuccess);
    if (faultKind == FaultKind::Command)
        ZebTest::feature(camera, "AcquisitionStop")->RunCommand();
    if (faultKind == FaultKind::FeatureWrite || faultKind == FaultKind::MemoryWrite)
        ZebTest::feature(camera, "DefectPixelCorrection_MapSelect")->SetValue("DefPixMap0");
    prepare();
    QCOMPARE(int(operate(camera, faultKind)), code);

    // Nothing changed: the state is the one before the failed call.
    if (faultKind != FaultKind::Close) {
        if (faultKind == FaultKind::Open) {
            FeaturePtr f;
            QCOMPARE(camera->GetFeatureByName("ExposureTime", f), ZebErrorDeviceNotOpen);
            QCOMPARE(camera->Open(AccessModeFull), ZebErrorSuccess);
        }
        std::string slot;
        int64_t locked = -1;
        ZebTest::feature(camera, "DefectPixelCorrection_MapSelect")->GetValue(slot);
        ZebTest::feature(camera, "TLParamsLocked")->GetValue(locked);
        QCOMPARE(slot, std::string("DefPixMap0"));
        QCOMPARE(locked, int64_t(0));
    } else {
        int64_t value = 0;
        QCOMPARE(ZebTest::feature(camera, "TLParamsLocked")->GetValue(value), ZebErrorSuccess); // still open
    }
    prepare();
    QCOMPARE(operate(camera, faultKind), ZebErrorSuccess); // armed once only
}

void TestZebSdk::cameraVanishesDuringMemoryWrite()
{
    auto observer = std::make_shared<RecordingObserver>();
    ZebSystem::GetInstance().RegisterCameraListObserver(observer);
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    const uint8_t slot[4] = {0, 0, 0, 1};
    uint32_t done = 0;
    QCOMPARE(camera->WriteMemory(0x10004014, slot, 4, done), ZebErrorSuccess);
    QCOMPARE(SimControl::DisconnectAfterBytes(ZebTest::kRegister, 16), ZebErrorSuccess);
    const std::vector<uint8_t> words(400, 0x01);
    QCOMPARE(camera->WriteMemory(0x10025000, words.data(), uint32_t(words.size()), done), ZebErrorBadHandle);
    QCOMPARE(done, 0u);
    QVERIFY(observer->waitForReason(UpdateTriggerPluggedOut));
    std::vector<SimControl::SimMapEntry> stored;
    SimControl::GetStoredMap(ZebTest::kRegister, 1, stored);
    QVERIFY(stored.empty());
    QCOMPARE(camera->Close(), ZebErrorBadHandle);
}

QTEST_GUILESS_MAIN(TestZebSdk)
#include "tst_zebsdk.moc"
