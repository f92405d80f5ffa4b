#include "sim/simcontrol.h"
#include "zebtestsupport.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

using namespace ZebCPP;
using SimControl::FaultKind;

namespace {

class UnplugWatcher : public ICameraListObserver {
public:
    void CameraListChanged(CameraPtr, UpdateTriggerType reason) override
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (reason == UpdateTriggerPluggedOut)
            ++unplugs_;
        changed_.notify_all();
    }

    bool waitForUnplug()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(5), [&] { return unplugs_ > 0; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int unplugs_ = 0;
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
    case FaultKind::FileStatus:
    case FaultKind::ShortWrite:
        break; // only file operations meet these; the transfer suites cover them
    case FaultKind::Acquisition: {
        FramePtr frame;
        return camera->AcquireSingleImage(frame, 1000);
    }
    }
    return ZebErrorInternalFault;
}

} // namespace

class TestZebFaults : public QObject {
    Q_OBJECT

private slots:
    void init() { QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); }
    void cleanup() { ZebTest::stopSdk(); }

    void nthOperationFailsWithItsCode_data();
    void nthOperationFailsWithItsCode();
    void cameraVanishesDuringFileTransfer();
    void cameraVanishesDuringMemoryWrite();
    void twoThreadsShareOneCamera();
};

void TestZebFaults::nthOperationFailsWithItsCode_data()
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

void TestZebFaults::nthOperationFailsWithItsCode()
{
    QFETCH(int, kind);
    QFETCH(int, code);
    const auto faultKind = FaultKind(kind);
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    const bool openClose = faultKind == FaultKind::Open || faultKind == FaultKind::Close;
    // Open and close alternate, so the camera is in the state the operation needs.
    auto prepare = [&] {
        if (faultKind == FaultKind::Open)
            camera->Close();
        if (faultKind == FaultKind::Close)
            camera->Open(AccessModeFull);
    };
    // Undoing the first call is itself a call of the same kind for writes and commands.
    const bool undoCounts = faultKind == FaultKind::FeatureWrite || faultKind == FaultKind::Command;
    const uint32_t nth = undoCounts ? 3 : 2;
    QCOMPARE(SimControl::InjectFault(ZebTest::kRegister, faultKind, nth, ZebErrorType(code)), ZebErrorSuccess);
    prepare();
    QCOMPARE(operate(camera, faultKind), ZebErrorSuccess);
    if (faultKind == FaultKind::Command)
        ZebTest::feature(camera, "AcquisitionStop")->RunCommand();
    if (faultKind == FaultKind::FeatureWrite || faultKind == FaultKind::MemoryWrite)
        ZebTest::feature(camera, "DefectPixelCorrection_MapSelect")->SetValue("DefPixMap0");
    prepare();
    QCOMPARE(int(operate(camera, faultKind)), code);

    // Nothing changed: the state is the one before the failed call.
    if (!openClose || faultKind == FaultKind::Open) {
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

void TestZebFaults::cameraVanishesDuringFileTransfer()
{
    auto watcher = std::make_shared<UnplugWatcher>();
    ZebSystem::GetInstance().RegisterCameraListObserver(watcher);
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    std::vector<uint8_t> before;
    SimControl::GetDeviceFile(ZebTest::kMonoFile, "UserData", before);
    QCOMPARE(SimControl::DisconnectAfterBytes(ZebTest::kMonoFile, 70000), ZebErrorSuccess);

    ZebTest::feature(camera, "FileSelector")->SetValue("UserData");
    ZebTest::feature(camera, "FileOpenMode")->SetValue("Write");
    ZebTest::feature(camera, "FileOperationSelector")->SetValue("Open");
    QCOMPARE(ZebTest::feature(camera, "FileOperationExecute")->RunCommand(), ZebErrorSuccess);
    FeaturePtr buffer = ZebTest::feature(camera, "FileAccessBuffer");
    const std::vector<uint8_t> block(0x10000, 0x5A);
    QCOMPARE(buffer->SetRawData(block.data(), uint32_t(block.size())), ZebErrorSuccess);
    QCOMPARE(ZebTest::feature(camera, "FileOperationSelector")->SetValue("Write"), ZebErrorSuccess);
    QCOMPARE(ZebTest::feature(camera, "FileOperationExecute")->RunCommand(), ZebErrorSuccess);
    QCOMPARE(buffer->SetRawData(block.data(), uint32_t(block.size())), ZebErrorBadHandle);
    QVERIFY(watcher->waitForUnplug());
    FeaturePtr stale;
    QCOMPARE(camera->GetFeatureByName("FileSize", stale), ZebErrorBadHandle);
    QVERIFY(!ZebTest::cameraBySerial(ZebTest::kMonoFile));

    // Back on the bus: the unfinished write left the file as it was, and closed.
    QCOMPARE(SimControl::ReplugCamera(ZebTest::kMonoFile), ZebErrorSuccess);
    CameraPtr again = ZebTest::openCamera(ZebTest::kMonoFile);
    QVERIFY(again);
    std::vector<uint8_t> after;
    SimControl::GetDeviceFile(ZebTest::kMonoFile, "UserData", after);
    QVERIFY(after == before);
    ZebTest::feature(again, "FileSelector")->SetValue("UserData");
    int64_t size = 0;
    ZebTest::feature(again, "FileSize")->GetValue(size);
    QCOMPARE(size, int64_t(before.size()));
    ZebTest::feature(again, "FileOpenMode")->SetValue("Read");
    ZebTest::feature(again, "FileOperationSelector")->SetValue("Open");
    QCOMPARE(ZebTest::feature(again, "FileOperationExecute")->RunCommand(), ZebErrorSuccess);
}

void TestZebFaults::cameraVanishesDuringMemoryWrite()
{
    auto watcher = std::make_shared<UnplugWatcher>();
    ZebSystem::GetInstance().RegisterCameraListObserver(watcher);
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    const uint8_t slot[4] = {0, 0, 0, 1};
    uint32_t done = 0;
    QCOMPARE(camera->WriteMemory(0x10004014, slot, 4, done), ZebErrorSuccess);
    QCOMPARE(SimControl::DisconnectAfterBytes(ZebTest::kRegister, 16), ZebErrorSuccess);
    const std::vector<uint8_t> words(400, 0x01);
    QCOMPARE(camera->WriteMemory(0x10025000, words.data(), uint32_t(words.size()), done), ZebErrorBadHandle);
    QCOMPARE(done, 0u);
    QVERIFY(watcher->waitForUnplug());
    std::vector<SimControl::SimMapEntry> stored;
    SimControl::GetStoredMap(ZebTest::kRegister, 1, stored);
    QVERIFY(stored.empty());
    QCOMPARE(camera->Close(), ZebErrorBadHandle);
}

void TestZebFaults::twoThreadsShareOneCamera()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kMonoFile);
    std::atomic<int> failures{0};
    std::thread writer([&] {
        FeaturePtr select = ZebTest::feature(camera, "DefectPixelCorrection_MapSelect");
        FeaturePtr index = ZebTest::feature(camera, "DefectPixelCorrection_MapIndex");
        FeaturePtr x = ZebTest::feature(camera, "DefectPixelCorrection_X");
        for (int i = 0; i < 200; ++i) {
            if (select->SetValue(i % 2 ? "DefPixMap1" : "DefPixMap2") != ZebErrorSuccess
                || index->SetValue(int64_t(0)) != ZebErrorSuccess || x->SetValue(int64_t(i)) != ZebErrorSuccess)
                ++failures;
        }
    });
    std::thread reader([&] {
        for (int i = 0; i < 20; ++i) {
            FramePtr frame;
            if (camera->AcquireSingleImage(frame, 1000) != ZebErrorSuccess)
                ++failures;
            std::vector<CameraPtr> cameras;
            if (ZebSystem::GetInstance().GetCameras(cameras) != ZebErrorSuccess || cameras.size() != 5)
                ++failures;
            int64_t size = 0;
            if (ZebTest::feature(camera, "DefectPixelCorrection_MapSize")->GetValue(size) != ZebErrorSuccess)
                ++failures;
        }
    });
    writer.join();
    reader.join();
    QCOMPARE(failures.load(), 0);
    std::vector<SimControl::SimMapEntry> one, two;
    SimControl::GetStoredMap(ZebTest::kMonoFile, 1, one);
    SimControl::GetStoredMap(ZebTest::kMonoFile, 2, two);
    QCOMPARE(one.size(), size_t(1));
    QCOMPARE(one[0].x, 199u);
    QCOMPARE(two[0].x, 198u);
}

QTEST_GUILESS_MAIN(TestZebFaults)
#include "tst_zebfaults.moc"
