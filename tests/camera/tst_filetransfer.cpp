#include "simcameras.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"

#include <sim/simcontrol.h>

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QtConcurrent>
#include <QtTest>

using namespace ZebCPP;
using SimControl::FaultKind;
using Progress = QList<long long>;

namespace {

constexpr const char* kBigMap = "DEV_BIGMAP01";
constexpr const char* kQuietFailures = "DEV_QUIET01";

// Completes the command of a refused file operation; only its status tells.
const char* const kQuietFailuresJson = R"({ "id": "DEV_QUIET01", "model": "kvd123MXGE", "serial": "QUIET01",
    "interface": "sim-usb0", "mapAccess": "file", "mapRevision": 4, "fileFailuresInStatus": true })";
constexpr const char* kSlot = "DefPixMap1";
constexpr unsigned int kTwoBlockEntries = 6000; // 72032 bytes: one full block and 6496 bytes

Progress remainingOf(const QSignalSpy& spy)
{
    Progress values;
    for (const QList<QVariant>& signal : spy)
        values.append(signal.at(0).toLongLong());
    return values;
}

std::vector<uint8_t> deviceFile(const char* camera, const char* name)
{
    std::vector<uint8_t> content;
    SimControl::GetDeviceFile(camera, name, content);
    return content;
}

QByteArray fileContent(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

QByteArray firstBytes(const std::vector<unsigned char>& bytes, int count)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), count);
}

} // namespace

class TestFileTransfer : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();

    void uploadInBlocks_data();
    void uploadInBlocks();
    void uploadFault_data();
    void uploadFault();
    void corruptMapIsRefusedAndOldMapStays_data();
    void corruptMapIsRefusedAndOldMapStays();
    void smallFileBufferSetsTheBlock();
    void download_data();
    void download();
    void progressReachesGuiThreadQueued();
    void unplugMidTransferFails_data();
    void unplugMidTransferFails();

private:
    UxCamera* camera(const QByteArray& id) const;
    static void closeDeviceFile(UxCamera& camera);

    std::map<QByteArray, std::unique_ptr<UxCamera>> m_cameras;
    QTemporaryDir m_dir;
};

void TestFileTransfer::initTestCase()
{
    QVERIFY(SimCameras::startup());
    QVERIFY(m_dir.isValid());
    QCOMPARE(SimControl::PlugCamera(SimCameras::bigMapCameraJson(kBigMap)), ZebErrorSuccess);
    QCOMPARE(SimControl::PlugCamera(kQuietFailuresJson), ZebErrorSuccess);
    for (const char* id : {SimCameras::kMonoFile, SimCameras::kColourFile, kBigMap, kQuietFailures}) {
        const CameraPtr sdkCamera = SimCameras::openCamera(id);
        QVERIFY2(sdkCamera, id);
        m_cameras[id] = std::make_unique<UxCamera>(sdkCamera);
    }
}

void TestFileTransfer::cleanupTestCase()
{
    m_cameras.clear();
    ZebSystem::GetInstance().Shutdown();
}

void TestFileTransfer::cleanup()
{
    for (const auto& camera : m_cameras)
        SimControl::ClearFaults(camera.first.toStdString());
}

UxCamera* TestFileTransfer::camera(const QByteArray& id) const
{
    return m_cameras.at(id).get();
}

void TestFileTransfer::closeDeviceFile(UxCamera& camera)
{
    UxCameraFeature* features = camera.GetFeatureContainer();
    QVERIFY(features->SetValue("FileOperationSelector", QString("Close")));
    QVERIFY(features->SetCommand("FileOperationExecute", 2000));
}

void TestFileTransfer::uploadInBlocks_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<int>("size");
    QTest::addColumn<Progress>("progress");
    QTest::addColumn<qlonglong>("lastLength");

    // The colour camera has no "Filename" and refuses length writes: one attempt would cut the upload short.
    const QByteArray mono = SimCameras::kMonoFile, colour = SimCameras::kColourFile;
    QTest::newRow("one full block") << mono << 65536 << Progress{0} << 65536LL;
    QTest::newRow("one byte more") << mono << 65537 << Progress{0} << 1LL;
    QTest::newRow("three blocks") << mono << 150000 << Progress{84464, 0} << 18928LL;
    QTest::newRow("fixed length, one byte more") << colour << 65537 << Progress{0} << 1LL;
    QTest::newRow("fixed length, three blocks") << colour << 150000 << Progress{84464, 0} << 18928LL;
}

void TestFileTransfer::uploadInBlocks()
{
    QFETCH(QByteArray, id);
    QFETCH(int, size);
    QFETCH(Progress, progress);
    QFETCH(qlonglong, lastLength);

    QSignalSpy spy(camera(id), &UxCamera::updateTransferProcess);
    const std::vector<unsigned char> data = SimCameras::patternBytes(size_t(size));
    long written = -1;
    QVERIFY(camera(id)->UploadBuffer(data, "UserData", "UserData", &written));
    QCOMPARE(written, long(size));
    QCOMPARE(remainingOf(spy), progress);
    QCOMPARE(spy.at(0).mid(1), (QVariantList{"UserData", "Write"}));
    QVERIFY(deviceFile(id.constData(), "UserData") == data);
    QVariant length;
    QVERIFY(camera(id)->GetFeatureContainer()->GetValue("FileAccessLength", length));
    QCOMPARE(length.toLongLong(), lastLength);

    QVERIFY(!camera(id)->UploadBuffer({}, "UserData", "UserData", &written));
    QCOMPARE(written, long(size));
}

void TestFileTransfer::uploadFault_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("faultAt"); // n-th file command; the open is the first
    QTest::addColumn<bool>("result");
    QTest::addColumn<long>("written");
    QTest::addColumn<bool>("leftOpen");

    // A failed block still closes a plain file and reports the bytes that arrived.
    // The third command is the close of a one-block file: 65536 bytes are one write.
    QTest::newRow("open") << QByteArray("UserData") << 65537 << 1 << false << -1L << false;
    QTest::newRow("only block") << QByteArray("UserData") << 65536 << 2 << true << 0L << false;
    QTest::newRow("close after one block") << QByteArray("UserData") << 65536 << 3 << false << -1L << true;
    QTest::newRow("second block") << QByteArray("UserData") << 65537 << 3 << true << 65536L << false;
    // A map slot refuses a map cut short on its close; the map it had stays.
    QTest::newRow("map, open") << QByteArray(kSlot) << 0 << 1 << false << -1L << false;
    QTest::newRow("map, first block") << QByteArray(kSlot) << 0 << 2 << false << -1L << false;
    QTest::newRow("map, second block") << QByteArray(kSlot) << 0 << 3 << false << -1L << false;
    QTest::newRow("map, close") << QByteArray(kSlot) << 0 << 4 << false << -1L << true;
}

void TestFileTransfer::uploadFault()
{
    QFETCH(QByteArray, file);
    QFETCH(int, size);
    QFETCH(int, faultAt);
    QFETCH(bool, result);
    QFETCH(long, written);
    QFETCH(bool, leftOpen);
    UxCamera& target = *camera(kBigMap);
    const bool map = file == kSlot;
    long count = -1;
    QVERIFY(target.UploadBuffer(SimCameras::mapContainer(4000, 0), kSlot, kSlot, &count));
    const auto before = SimCameras::storedMap(kBigMap, 1);
    const std::vector<unsigned char> data =
        map ? SimCameras::mapContainer(kTwoBlockEntries, 1) : SimCameras::patternBytes(size_t(size));

    QCOMPARE(SimControl::InjectFault(kBigMap, FaultKind::Command, uint32_t(faultAt), ZebErrorTimeout), ZebErrorSuccess);
    QSignalSpy spy(&target, &UxCamera::updateTransferProcess);
    count = -1;
    QCOMPARE(target.UploadBuffer(data, file, file, &count), result);
    QCOMPARE(count, written);
    QCOMPARE(remainingOf(spy), result ? Progress{0} : Progress{});
    QVERIFY(SimCameras::storedMap(kBigMap, 1) == before);

    // Closed by the upload unless the close itself failed: the next upload goes through.
    SimControl::ClearFaults(kBigMap);
    if (leftOpen)
        closeDeviceFile(target);
    QVERIFY(target.UploadBuffer(data, file, file, &count));
    QCOMPARE(count, long(data.size()));
}

void TestFileTransfer::corruptMapIsRefusedAndOldMapStays_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<int>("offset"); // of the flipped bit's byte; -1: cut short instead
    QTest::newRow("magic") << QByteArray(kBigMap) << 0;
    QTest::newRow("size field") << QByteArray(kBigMap) << 4;
    QTest::newRow("checksum") << QByteArray(kBigMap) << 8;
    QTest::newRow("chunk length") << QByteArray(kBigMap) << 16;
    QTest::newRow("entry changed") << QByteArray(kBigMap) << 40;
    QTest::newRow("cut short") << QByteArray(kBigMap) << -1;
    // The slot checks a map on its close; this camera says so only in the status.
    QTest::newRow("checksum, refusal only in status") << QByteArray(kQuietFailures) << 8;
}

void TestFileTransfer::corruptMapIsRefusedAndOldMapStays()
{
    QFETCH(QByteArray, id);
    QFETCH(int, offset);
    UxCamera& target = *camera(id);
    long count = -1;
    QVERIFY(target.UploadBuffer(SimCameras::mapContainer(20, 7), kSlot, kSlot, &count));
    const auto before = SimCameras::storedMap(id.toStdString(), 1);
    QCOMPARE(before.size(), size_t(20));

    std::vector<unsigned char> bad = SimCameras::mapContainer(50, 0);
    if (offset >= 0)
        bad[size_t(offset)] ^= 1;
    else
        bad.resize(bad.size() - 8);
    QVERIFY(!target.UploadBuffer(bad, kSlot, kSlot, &count));
    QVERIFY(SimCameras::storedMap(id.toStdString(), 1) == before);
    // The file is closed again: a new transfer goes through.
    QVERIFY(target.UploadBuffer(SimCameras::mapContainer(50, 0), kSlot, kSlot, &count));
}

void TestFileTransfer::smallFileBufferSetsTheBlock()
{
    for (const bool lengthWritable : {true, false}) {
        const std::string id = lengthWritable ? "DEV_SMALLBUF1" : "DEV_SMALLBUF2";
        QCOMPARE(SimControl::PlugCamera(R"({ "id": ")" + id + R"(", "model": "kvd123MXGE", "serial": ")" + id
                                        + R"(", "interface": "sim-usb0", "fileBufferSize": 1000,
                                        "fileAccessLengthWritable": )" + (lengthWritable ? "true" : "false")
                                        + R"(, "files": [ { "name": "UserData", "mode": "ReadWrite" } ] })"),
                 ZebErrorSuccess);
        const CameraPtr sdkCamera = SimCameras::openCamera(id);
        QVERIFY(sdkCamera);
        UxCamera target(sdkCamera);
        const std::vector<unsigned char> data = SimCameras::patternBytes(2500);
        QSignalSpy spy(&target, &UxCamera::updateTransferProcess);
        long count = -1;
        QVERIFY(target.UploadBuffer(data, "UserData", "UserData", &count));
        QCOMPARE(count, 2500L);
        QCOMPARE(remainingOf(spy), (Progress{1500, 0}));
        QVERIFY(deviceFile(id.c_str(), "UserData") == data);

        const QString path = m_dir.filePath("small.bin");
        QVERIFY(target.DownloadDeviceFile(path, "UserData", "UserData", &count));
        QCOMPARE(fileContent(path), firstBytes(data, 2500));
    }
}

void TestFileTransfer::download_data()
{
    QTest::addColumn<int>("faultKind"); // -1: none
    QTest::addColumn<int>("faultAt");
    QTest::addColumn<bool>("result");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<Progress>("progress");
    QTest::addColumn<bool>("leftOpen");

    // File commands: 1 open, 2 and 3 the blocks, 4 close. The file size is read third, after the
    // two reads of the open's status.
    const int command = int(FaultKind::Command);
    QTest::newRow("no fault") << -1 << 0 << true << 72032 << Progress{6496, 0, 0} << false;
    QTest::newRow("open") << command << 1 << false << 0 << Progress{} << false;
    QTest::newRow("file size") << int(FaultKind::FeatureRead) << 3 << false << 0 << Progress{} << false;
    QTest::newRow("first block") << command << 2 << false << 0 << Progress{} << false;
    QTest::newRow("second block") << command << 3 << false << 65536 << Progress{6496} << false;
    QTest::newRow("close") << command << 4 << false << 72032 << Progress{6496, 0} << true;
}

void TestFileTransfer::download()
{
    QFETCH(int, faultKind);
    QFETCH(int, faultAt);
    QFETCH(bool, result);
    QFETCH(int, bytes);
    QFETCH(Progress, progress);
    QFETCH(bool, leftOpen);
    UxCamera& target = *camera(kBigMap);
    const std::vector<unsigned char> map = SimCameras::mapContainer(kTwoBlockEntries, 3);
    long count = -1;
    QVERIFY(target.UploadBuffer(map, kSlot, kSlot, &count));

    const QString path = m_dir.filePath("download.bin");
    QFile::remove(path);
    if (faultKind >= 0)
        QCOMPARE(SimControl::InjectFault(kBigMap, FaultKind(faultKind), uint32_t(faultAt), ZebErrorTimeout),
                 ZebErrorSuccess);
    QSignalSpy spy(&target, &UxCamera::updateTransferProcess);
    QCOMPARE(target.DownloadDeviceFile(path, kSlot, kSlot, &count), result);
    QCOMPARE(count, long(bytes));
    QCOMPARE(remainingOf(spy), progress);
    QCOMPARE(fileContent(path), firstBytes(map, bytes)); // a failed download leaves what it got

    SimControl::ClearFaults(kBigMap);
    if (leftOpen)
        closeDeviceFile(target);
    QVERIFY(target.DownloadDeviceFile(path, kSlot, kSlot, &count));
    QCOMPARE(fileContent(path), firstBytes(map, int(map.size())));

    // An empty device file gives an empty local file, replacing what was there.
    spy.clear();
    QVERIFY(target.DownloadDeviceFile(path, "Notes", "Notes", &count));
    QCOMPARE(count, 0L);
    QCOMPARE(fileContent(path), QByteArray());
    QCOMPARE(remainingOf(spy), Progress{0});
    QVERIFY(!target.DownloadDeviceFile(m_dir.filePath("no/such/folder"), "Notes", "Notes", &count));
}

void TestFileTransfer::progressReachesGuiThreadQueued()
{
    UxCamera* target = camera(SimCameras::kMonoFile);
    Progress remaining;
    bool onGuiThread = true;
    QObject receiver;
    connect(target, &UxCamera::updateTransferProcess, &receiver, [&](long long left, const QString&, const QString&) {
        remaining.append(left);
        onGuiThread = onGuiThread && QThread::currentThread() == qApp->thread();
    });

    const std::vector<unsigned char> data = SimCameras::patternBytes(150000);
    const QString path = m_dir.filePath("userdata.bin");
    long count = -1;
    QFuture<bool> upload = QtConcurrent::run([&] { return target->UploadBuffer(data, "UserData", "UserData", &count); });
    QVERIFY(upload.result());
    QVERIFY(remaining.isEmpty()); // queued: nothing arrives while this thread waits
    QTRY_COMPARE(remaining, (Progress{84464, 0}));

    remaining.clear();
    QFuture<bool> download =
        QtConcurrent::run([&] { return target->DownloadDeviceFile(path, "UserData", "UserData", &count); });
    QVERIFY(download.result());
    QTRY_COMPARE(remaining, (Progress{84464, 18928, 0, 0}));
    QVERIFY(onGuiThread);
    QCOMPARE(fileContent(path), firstBytes(data, 150000));
}

void TestFileTransfer::unplugMidTransferFails_data()
{
    QTest::addColumn<bool>("upload");
    QTest::newRow("upload") << true;
    QTest::newRow("download") << false;
}

void TestFileTransfer::unplugMidTransferFails()
{
    QFETCH(bool, upload);
    const std::string id = upload ? "DEV_UNPLUG01" : "DEV_UNPLUG02";
    QCOMPARE(SimControl::PlugCamera(SimCameras::bigMapCameraJson(id)), ZebErrorSuccess);
    UxCamera target(SimCameras::openCamera(id));
    const std::vector<unsigned char> data = SimCameras::patternBytes(200000);
    long count = -1;
    QVERIFY(upload || target.UploadBuffer(data, "UserData", "UserData", &count));

    // Gone during the second block.
    QCOMPARE(SimControl::DisconnectAfterBytes(id, 70000), ZebErrorSuccess);
    const QString path = m_dir.filePath("unplugged.bin");
    QFuture<bool> transfer = QtConcurrent::run([&] {
        return upload ? target.UploadBuffer(data, "UserData", "UserData", &count)
                      : target.DownloadDeviceFile(path, "UserData", "UserData", &count);
    });
    QVERIFY(!transfer.result());
    if (!upload)
        QCOMPARE(fileContent(path), firstBytes(data, 65536));
}

QTEST_GUILESS_MAIN(TestFileTransfer)
#include "tst_filetransfer.moc"
