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

namespace {

constexpr const char* kBigMap = "DEV_BIGMAP01";
constexpr const char* kSlot = "DefPixMap1";
constexpr unsigned int kBaseEntries = 4000;
constexpr unsigned int kTwoBlockEntries = 6000; // 72032 bytes: one full block and 6496 bytes

QList<long long> remainingOf(const QSignalSpy& spy)
{
    QList<long long> values;
    for (const QList<QVariant>& signal : spy)
        values.append(signal.at(0).toLongLong());
    return values;
}

std::vector<unsigned char> deviceFile(const char* camera, const char* name)
{
    std::vector<uint8_t> content;
    SimControl::GetDeviceFile(camera, name, content);
    return content;
}

std::vector<SimControl::SimMapEntry> storedMap(const char* camera, uint32_t slot)
{
    std::vector<SimControl::SimMapEntry> entries;
    SimControl::GetStoredMap(camera, slot, entries);
    return entries;
}

bool sameMap(const std::vector<SimControl::SimMapEntry>& a, const std::vector<SimControl::SimMapEntry>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& l, const auto& r) {
        return l.x == r.x && l.y == r.y && l.type == r.type;
    });
}

std::vector<unsigned char> bigMapContainer(unsigned int count, uint32_t seed)
{
    return SimCameras::mapContainer(4, 4100, SimCameras::sampleEntries(count, 640, seed), 640, 480);
}

QByteArray fileContent(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

QByteArray bytesOf(const std::vector<unsigned char>& bytes, size_t count)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(count));
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
    void uploadFaultOnPlainFile_data();
    void uploadFaultOnPlainFile();
    void emptyBufferTouchesNothing();
    void uploadFaultKeepsPreviousMap_data();
    void uploadFaultKeepsPreviousMap();
    void download_data();
    void download();
    void emptyDeviceFileGivesEmptyLocalFile();
    void localFileUploadAndDeletion();
    void fileAccessModes_data();
    void fileAccessModes();
    void progressReachesGuiThreadQueued();
    void unplugMidTransferFails_data();
    void unplugMidTransferFails();

private:
    UxCamera* cameraFor(const QByteArray& name) const;
    void closeDeviceFile(UxCamera& camera);

    CameraPtr open(const char* id);

    std::unique_ptr<UxCamera> m_mono;
    std::unique_ptr<UxCamera> m_colour;
    std::unique_ptr<UxCamera> m_bigMap;
    QTemporaryDir m_dir;
};

CameraPtr TestFileTransfer::open(const char* id)
{
    CameraPtr camera;
    if (ZebSystem::GetInstance().GetCameraByID(id, camera) != ZebErrorSuccess
        || camera->Open(AccessModeFull) != ZebErrorSuccess)
        camera.reset();
    return camera;
}

void TestFileTransfer::initTestCase()
{
    if (!SimCameras::startup())
        QSKIP("the simulated cameras are not available");
    QVERIFY(m_dir.isValid());
    QCOMPARE(SimControl::PlugCamera(SimCameras::bigMapCameraJson(kBigMap)), ZebErrorSuccess);
    for (auto [camera, id] : {std::pair{&m_mono, SimCameras::kMonoFile}, std::pair{&m_colour, SimCameras::kColourFile},
                              std::pair{&m_bigMap, kBigMap}}) {
        CameraPtr sdkCamera = open(id);
        QVERIFY2(sdkCamera, id);
        camera->reset(new UxCamera(sdkCamera));
        QVERIFY(camera->get()->IsFileAccessSupported());
    }
}

void TestFileTransfer::cleanupTestCase()
{
    m_mono.reset();
    m_colour.reset();
    m_bigMap.reset();
    SimCameras::shutdown();
}

void TestFileTransfer::cleanup()
{
    for (const char* id : {SimCameras::kMonoFile, SimCameras::kColourFile, kBigMap})
        SimControl::ClearFaults(id);
}

UxCamera* TestFileTransfer::cameraFor(const QByteArray& name) const
{
    if (name == "mono")
        return m_mono.get();
    if (name == "colour")
        return m_colour.get();
    return m_bigMap.get();
}

void TestFileTransfer::closeDeviceFile(UxCamera& camera)
{
    UxCameraFeature* features = camera.GetFeatureContainer();
    QVERIFY(features->SetValue("FileOperationSelector", QString("Close")));
    QVERIFY(features->SetCommand("FileOperationExecute", 2000));
}

void TestFileTransfer::uploadInBlocks_data()
{
    QTest::addColumn<QByteArray>("camera");
    QTest::addColumn<int>("size");
    QTest::addColumn<QList<long long>>("progress");
    QTest::addColumn<qlonglong>("lastLength");

    // The colour camera refuses length writes: any attempt would cut the upload short.
    using L = QList<long long>;
    QTest::newRow("one full block") << QByteArray("mono") << 65536 << L{0} << 65536LL;
    QTest::newRow("one byte more") << QByteArray("mono") << 65537 << L{0} << 1LL;
    QTest::newRow("three blocks") << QByteArray("mono") << 150000 << L{84464, 0} << 18928LL;
    QTest::newRow("short") << QByteArray("mono") << 10 << L{0} << 10LL;
    QTest::newRow("no Filename, fixed length, one byte more") << QByteArray("colour") << 65537 << L{0} << 1LL;
    QTest::newRow("no Filename, fixed length, three blocks") << QByteArray("colour") << 150000 << L{84464, 0}
                                                             << 18928LL;
}

void TestFileTransfer::uploadInBlocks()
{
    QFETCH(QByteArray, camera);
    QFETCH(int, size);
    QFETCH(QList<long long>, progress);
    QFETCH(qlonglong, lastLength);
    UxCamera* target = cameraFor(camera);
    const char* id = camera == "mono" ? SimCameras::kMonoFile : SimCameras::kColourFile;

    QSignalSpy spy(target, &UxCamera::updateTransferProcess);
    const std::vector<unsigned char> data = SimCameras::patternBytes(size_t(size));
    long written = -1;
    QVERIFY(target->UploadBuffer(data, "UserData", "UserData", &written));
    QCOMPARE(written, long(size));
    QCOMPARE(remainingOf(spy), progress);
    for (const QList<QVariant>& signal : spy) {
        QCOMPARE(signal.at(1).toString(), QString("UserData"));
        QCOMPARE(signal.at(2).toString(), QString("Write"));
    }
    QVERIFY(deviceFile(id, "UserData") == data);

    QVariant length;
    QVERIFY(target->GetFeatureContainer()->GetValue("FileAccessLength", length));
    QCOMPARE(length.toLongLong(), lastLength);
}

void TestFileTransfer::uploadFaultOnPlainFile_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("faultAt"); // n-th file command, the open is the first
    QTest::addColumn<bool>("result");
    QTest::addColumn<long>("written");
    QTest::addColumn<QList<long long>>("progress");
    QTest::addColumn<bool>("leftOpen");

    // A failed block still closes the file and reports the bytes that arrived.
    // The third command is the close of a one-block file, so 65536 bytes are one write.
    using L = QList<long long>;
    QTest::newRow("open") << 65537 << 1 << false << -1L << L{} << false;
    QTest::newRow("only block") << 65536 << 2 << true << 0L << L{0} << false;
    QTest::newRow("close after one block") << 65536 << 3 << false << -1L << L{} << true;
    QTest::newRow("second block") << 65537 << 3 << true << 65536L << L{0} << false;
    QTest::newRow("close after two blocks") << 65537 << 4 << false << -1L << L{} << true;
}

void TestFileTransfer::uploadFaultOnPlainFile()
{
    QFETCH(int, size);
    QFETCH(int, faultAt);
    QFETCH(bool, result);
    QFETCH(long, written);
    QFETCH(QList<long long>, progress);
    QFETCH(bool, leftOpen);

    QCOMPARE(SimControl::InjectFault(SimCameras::kMonoFile, FaultKind::Command, uint32_t(faultAt), ZebErrorTimeout),
             ZebErrorSuccess);
    QSignalSpy spy(m_mono.get(), &UxCamera::updateTransferProcess);
    long count = -1;
    QCOMPARE(m_mono->UploadBuffer(SimCameras::patternBytes(size_t(size)), "UserData", "UserData", &count), result);
    QCOMPARE(count, written);
    QCOMPARE(remainingOf(spy), progress);

    SimControl::ClearFaults(SimCameras::kMonoFile);
    if (leftOpen)
        closeDeviceFile(*m_mono);
    QVERIFY(m_mono->UploadBuffer(SimCameras::patternBytes(10), "UserData", "UserData", &count));
}

void TestFileTransfer::emptyBufferTouchesNothing()
{
    UxCameraFeature* features = m_mono->GetFeatureContainer();
    QVERIFY(features->SetValue("FileSelector", QString("UserData")));
    long count = -1;
    QVERIFY(!m_mono->UploadBuffer({}, "DefPixMap1", "DefPixMap1", &count));
    QVERIFY(!m_mono->UploadBuffer({1}, nullptr, "DefPixMap1", &count));
    QCOMPARE(count, -1L);
    QVariant selector;
    QVERIFY(features->GetValue("FileSelector", selector));
    QCOMPARE(selector.toString(), QString("UserData"));
}

void TestFileTransfer::uploadFaultKeepsPreviousMap_data()
{
    QTest::addColumn<int>("faultAt"); // n-th file command: 1 open, 2 and 3 the blocks, 4 close
    QTest::addColumn<bool>("leftOpen");

    // The camera checks a map on its close and refuses one cut short, so every
    // fault ends in a failed upload.
    QTest::newRow("open") << 1 << false;
    QTest::newRow("first block") << 2 << false;
    QTest::newRow("second block") << 3 << false;
    QTest::newRow("close") << 4 << true;
}

void TestFileTransfer::uploadFaultKeepsPreviousMap()
{
    QFETCH(int, faultAt);
    QFETCH(bool, leftOpen);

    long count = -1;
    QVERIFY(m_bigMap->UploadBuffer(bigMapContainer(kBaseEntries, 0), kSlot, kSlot, &count));
    const std::vector<SimControl::SimMapEntry> before = storedMap(kBigMap, 1);
    QCOMPARE(before.size(), size_t(kBaseEntries));

    QCOMPARE(SimControl::InjectFault(kBigMap, FaultKind::Command, uint32_t(faultAt), ZebErrorTimeout), ZebErrorSuccess);
    QSignalSpy spy(m_bigMap.get(), &UxCamera::updateTransferProcess);
    count = -1;
    QVERIFY(!m_bigMap->UploadBuffer(bigMapContainer(kTwoBlockEntries, 1), kSlot, kSlot, &count));
    QCOMPARE(count, -1L);
    QCOMPARE(spy.count(), 0);
    QVERIFY(sameMap(storedMap(kBigMap, 1), before));

    SimControl::ClearFaults(kBigMap);
    if (leftOpen)
        closeDeviceFile(*m_bigMap);
    // The device file is closed: the next upload goes through.
    QVERIFY(m_bigMap->UploadBuffer(bigMapContainer(kTwoBlockEntries, 2), kSlot, kSlot, &count));
    QCOMPARE(count, 72032L);
    QCOMPARE(storedMap(kBigMap, 1).size(), size_t(kTwoBlockEntries));
}

void TestFileTransfer::download_data()
{
    QTest::addColumn<int>("faultKind"); // -1: none
    QTest::addColumn<int>("faultAt");
    QTest::addColumn<bool>("result");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QList<long long>>("progress");
    QTest::addColumn<bool>("leftOpen");

    using L = QList<long long>;
    const int command = int(FaultKind::Command);
    QTest::newRow("no fault") << -1 << 0 << true << 72032 << L{6496, 0, 0} << false;
    QTest::newRow("open") << command << 1 << false << 0 << L{} << false;
    QTest::newRow("file size") << int(FaultKind::FeatureRead) << 1 << false << 0 << L{} << false;
    QTest::newRow("first block") << command << 2 << false << 0 << L{} << false;
    QTest::newRow("second block") << command << 3 << false << 65536 << L{6496} << false;
    QTest::newRow("close") << command << 4 << false << 72032 << L{6496, 0} << true;
}

void TestFileTransfer::download()
{
    QFETCH(int, faultKind);
    QFETCH(int, faultAt);
    QFETCH(bool, result);
    QFETCH(int, bytes);
    QFETCH(QList<long long>, progress);
    QFETCH(bool, leftOpen);

    const std::vector<unsigned char> map = bigMapContainer(kTwoBlockEntries, 3);
    long count = -1;
    QVERIFY(m_bigMap->UploadBuffer(map, kSlot, kSlot, &count));

    const QString path = m_dir.filePath("download.bin");
    QFile::remove(path);
    if (faultKind >= 0)
        QCOMPARE(SimControl::InjectFault(kBigMap, FaultKind(faultKind), uint32_t(faultAt), ZebErrorTimeout),
                 ZebErrorSuccess);
    QSignalSpy spy(m_bigMap.get(), &UxCamera::updateTransferProcess);
    count = -1;
    QCOMPARE(m_bigMap->DownloadDeviceFile(path, kSlot, kSlot, &count), result);
    QCOMPARE(count, long(bytes));
    QCOMPARE(remainingOf(spy), progress);
    for (const QList<QVariant>& signal : spy)
        QCOMPARE(signal.at(2).toString(), QString("Read"));
    // A failed download leaves what it got.
    QCOMPARE(fileContent(path), bytesOf(map, size_t(bytes)));

    SimControl::ClearFaults(kBigMap);
    if (leftOpen)
        closeDeviceFile(*m_bigMap);
    QVERIFY(m_bigMap->DownloadDeviceFile(path, kSlot, kSlot, &count));
    QCOMPARE(fileContent(path), bytesOf(map, map.size()));
}

void TestFileTransfer::emptyDeviceFileGivesEmptyLocalFile()
{
    const QString path = m_dir.filePath("notes.txt");
    {
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("old content");
    }
    QSignalSpy spy(m_bigMap.get(), &UxCamera::updateTransferProcess);
    long count = -1;
    QVERIFY(m_bigMap->DownloadDeviceFile(path, "Notes", "Notes", &count));
    QCOMPARE(count, 0L);
    QCOMPARE(fileContent(path), QByteArray());
    QCOMPARE(remainingOf(spy), QList<long long>{0});

    QVERIFY(!m_bigMap->DownloadDeviceFile(m_dir.filePath("no/such/folder/file.bin"), "Notes", "Notes", &count));
    QVERIFY(!m_bigMap->DownloadDeviceFile(path, "Notes", "Notes", nullptr));
}

void TestFileTransfer::localFileUploadAndDeletion()
{
    const QString path = m_dir.filePath("map.bin");
    const std::vector<unsigned char> map = bigMapContainer(kBaseEntries, 4);
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytesOf(map, map.size()));
    }
    long count = -1;
    QVERIFY(m_bigMap->UploadLocalFile(path, "DefPixMap2", "DefPixMap2", &count));
    QCOMPARE(count, long(map.size()));
    QCOMPARE(storedMap(kBigMap, 2).size(), size_t(kBaseEntries));
    QVERIFY(!m_bigMap->UploadLocalFile(m_dir.filePath("missing.bin"), "DefPixMap2", "DefPixMap2", &count));

    QVERIFY(m_bigMap->UploadBuffer(SimCameras::patternBytes(100), "UserData", "UserData", &count));
    QVERIFY(m_bigMap->DeleteDeviceFile("UserData", "UserData"));
    QVERIFY(deviceFile(kBigMap, "UserData").empty());
}

void TestFileTransfer::fileAccessModes_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("cannotRead");
    QTest::addColumn<bool>("cannotWrite");
    QTest::newRow("read and write") << "UserData" << false << false;
    QTest::newRow("write only firmware") << "Firmware" << true << false;
    QTest::newRow("factory map") << "DefPixMap0" << false << true;
    QTest::newRow("user map") << "DefPixMap1" << false << false;
}

void TestFileTransfer::fileAccessModes()
{
    QFETCH(QString, file);
    QFETCH(bool, cannotRead);
    QFETCH(bool, cannotWrite);
    QVERIFY(m_mono->GetFeatureContainer()->SetValue("FileSelector", file));
    bool noRead = !cannotRead;
    bool noWrite = !cannotWrite;
    QVERIFY(m_mono->GetFileAccessMode(&noRead, &noWrite));
    QCOMPARE(noRead, cannotRead);
    QCOMPARE(noWrite, cannotWrite);
    QVERIFY(!m_mono->GetFileAccessMode(nullptr, &noWrite));
}

void TestFileTransfer::progressReachesGuiThreadQueued()
{
    QList<long long> remaining;
    bool onGuiThread = true;
    QObject receiver;
    connect(m_mono.get(), &UxCamera::updateTransferProcess, &receiver,
            [&](long long left, const QString&, const QString&) {
                remaining.append(left);
                onGuiThread = onGuiThread && QThread::currentThread() == qApp->thread();
            });

    const std::vector<unsigned char> data = SimCameras::patternBytes(150000);
    QFuture<long> upload = QtConcurrent::run([this, data] {
        long count = -1;
        return m_mono->UploadBuffer(data, "UserData", "UserData", &count) ? count : -1L;
    });
    upload.waitForFinished();
    QCOMPARE(upload.result(), 150000L);
    QVERIFY(remaining.isEmpty()); // nothing is delivered while the GUI thread is blocked
    QTRY_COMPARE(remaining, (QList<long long>{84464, 0}));

    remaining.clear();
    const QString path = m_dir.filePath("userdata.bin");
    QFuture<long> download = QtConcurrent::run([this, path] {
        long count = -1;
        return m_mono->DownloadDeviceFile(path, "UserData", "UserData", &count) ? count : -1L;
    });
    download.waitForFinished();
    QCOMPARE(download.result(), 150000L);
    QTRY_COMPARE(remaining, (QList<long long>{84464, 18928, 0, 0}));
    QVERIFY(onGuiThread);
    QCOMPARE(fileContent(path), bytesOf(data, data.size()));
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
    const CameraPtr sdkCamera = open(id.c_str());
    QVERIFY(sdkCamera);
    UxCamera camera(sdkCamera);
    const std::vector<unsigned char> data = SimCameras::patternBytes(200000);
    long count = -1;
    if (!upload)
        QVERIFY(camera.UploadBuffer(data, "UserData", "UserData", &count));

    QCOMPARE(SimControl::DisconnectAfterBytes(id, 70000), ZebErrorSuccess);
    const QString path = m_dir.filePath("unplugged.bin");
    QFuture<bool> transfer = QtConcurrent::run([&] {
        long moved = -1;
        return upload ? camera.UploadBuffer(data, "UserData", "UserData", &moved)
                      : camera.DownloadDeviceFile(path, "UserData", "UserData", &moved);
    });
    transfer.waitForFinished();
    QVERIFY(!transfer.result());
    if (!upload)
        QCOMPARE(fileContent(path), bytesOf(data, 65536));
}

QTEST_GUILESS_MAIN(TestFileTransfer)
#include "tst_filetransfer.moc"
