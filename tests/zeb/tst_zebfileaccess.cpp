#include "sim/simcontrol.h"
#include "zebtestsupport.h"

using namespace ZebCPP;

namespace {

constexpr uint32_t kBlock = 0x10000;

void putWord(std::vector<uint8_t>& bytes, size_t offset, uint32_t value)
{
    qToLittleEndian<quint32>(value, bytes.data() + offset);
}

// A map container as the application sends it; typed entries for revision 4.
std::vector<uint8_t> container(const std::vector<SimControl::SimMapEntry>& entries, bool typed)
{
    const size_t entrySize = typed ? 12 : 8;
    std::vector<uint8_t> bytes(32 + entries.size() * entrySize, 0);
    putWord(bytes, 0, 0x1F56ADFC);
    putWord(bytes, 4, uint32_t(bytes.size()));
    putWord(bytes, 12, typed ? 4100 : 4096);
    putWord(bytes, 16, uint32_t(bytes.size() - 12));
    putWord(bytes, 20, 640);
    putWord(bytes, 24, 640 * 480);
    for (size_t i = 0; i < entries.size(); ++i) {
        putWord(bytes, 32 + i * entrySize, entries[i].x);
        putWord(bytes, 36 + i * entrySize, entries[i].y);
        if (typed)
            putWord(bytes, 40 + i * entrySize, entries[i].type);
    }
    uint32_t sum = 0;
    for (size_t offset = 0; offset < bytes.size(); offset += 4)
        sum += qFromLittleEndian<quint32>(bytes.data() + offset);
    putWord(bytes, 8, 0u - sum);
    return bytes;
}

std::vector<SimControl::SimMapEntry> someEntries(size_t count, bool typed)
{
    std::vector<SimControl::SimMapEntry> entries;
    for (size_t i = 0; i < count; ++i)
        entries.push_back({uint32_t(3 + i * 7 % 600), uint32_t(5 + i * 3 % 400), typed ? uint32_t(100 + i % 9) : 0u});
    return entries;
}

// The device side of a transfer, driven feature by feature as a host does it.
class FileClient {
public:
    explicit FileClient(CameraPtr camera) : camera_(std::move(camera)) {}

    FeaturePtr f(const char* name) { return ZebTest::feature(camera_, name); }

    bool lengthWritable()
    {
        bool writable = false;
        return f("FileAccessLength")->IsWritable(writable) == ZebErrorSuccess && writable;
    }

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

    // Writes the data in blocks of at most 64 KiB; returns the first error.
    ZebErrorType write(const std::vector<uint8_t>& data)
    {
        const bool setLength = lengthWritable();
        for (size_t offset = 0; offset < data.size(); offset += kBlock) {
            const auto n = uint32_t(std::min<size_t>(kBlock, data.size() - offset));
            ZebErrorType err = f("FileAccessOffset")->SetValue(int64_t(offset));
            if (err == ZebErrorSuccess && setLength)
                err = f("FileAccessLength")->SetValue(int64_t(n));
            if (err == ZebErrorSuccess)
                err = f("FileAccessBuffer")->SetRawData(data.data() + offset, n);
            if (err == ZebErrorSuccess)
                err = run("Write");
            if (err != ZebErrorSuccess)
                return err;
        }
        return ZebErrorSuccess;
    }

    ZebErrorType upload(const char* file, const std::vector<uint8_t>& data)
    {
        ZebErrorType err = openFile(file, "Write");
        if (err != ZebErrorSuccess)
            return err;
        err = write(data);
        const ZebErrorType closed = run("Close");
        return err != ZebErrorSuccess ? err : closed;
    }

    ZebErrorType download(const char* file, std::vector<uint8_t>& data)
    {
        ZebErrorType err = openFile(file, "Read");
        if (err != ZebErrorSuccess)
            return err;
        int64_t size = 0;
        f("FileSize")->GetValue(size);
        const bool setLength = lengthWritable();
        data.assign(size_t(size), 0);
        for (int64_t offset = 0; offset < size && err == ZebErrorSuccess; offset += kBlock) {
            const auto n = uint32_t(std::min<int64_t>(kBlock, size - offset));
            err = f("FileAccessOffset")->SetValue(offset);
            if (err == ZebErrorSuccess && setLength)
                err = f("FileAccessLength")->SetValue(int64_t(n));
            if (err == ZebErrorSuccess)
                err = run("Read");
            int64_t moved = 0;
            f("FileOperationResult")->GetValue(moved);
            if (err == ZebErrorSuccess && moved != n)
                err = ZebErrorInvalidValue;
            uint32_t filled = 0;
            if (err == ZebErrorSuccess)
                err = f("FileAccessBuffer")->GetRawData(data.data() + offset, n, filled);
        }
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

} // namespace

class TestZebFileAccess : public QObject {
    Q_OBJECT

private slots:
    void init() { QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); }
    void cleanup() { ZebTest::stopSdk(); }

    void mapUploadReplacesSlotMap_data();
    void mapUploadReplacesSlotMap();
    void corruptContainerKeepsOldMap_data();
    void corruptContainerKeepsOldMap();
    void deleteEmptiesWritableFilesOnly();
    void openModesFollowFilePermissions();
    void protocolOrderIsEnforced();
};

void TestZebFileAccess::mapUploadReplacesSlotMap_data()
{
    QTest::addColumn<QString>("serial");
    QTest::addColumn<bool>("typed");
    QTest::newRow("revision 3, writable length") << ZebTest::kMonoFile << false;
    QTest::newRow("revision 4, read-only length, no Filename") << ZebTest::kColorFile << true;
}

void TestZebFileAccess::mapUploadReplacesSlotMap()
{
    QFETCH(QString, serial);
    QFETCH(bool, typed);
    const std::string camera = serial.toStdString();
    FileClient client(ZebTest::openCamera(camera));
    const std::vector<SimControl::SimMapEntry> entries = someEntries(300, typed);
    const std::vector<uint8_t> bytes = container(entries, typed);
    QCOMPARE(client.upload("DefPixMap2", bytes), ZebErrorSuccess);
    QCOMPARE(client.status(), std::string("Success"));

    std::vector<SimControl::SimMapEntry> stored;
    QCOMPARE(SimControl::GetStoredMap(camera, 2, stored), ZebErrorSuccess);
    QCOMPARE(stored.size(), entries.size());
    QCOMPARE(stored[299].x, entries[299].x);
    QCOMPARE(stored[299].y, entries[299].y);
    QCOMPARE(stored[299].type, entries[299].type);

    client.f("DefectPixelCorrection_MapSelect")->SetValue("DefPixMap2");
    int64_t size = 0;
    client.f("DefectPixelCorrection_MapSize")->GetValue(size);
    QCOMPARE(size, int64_t(300));
    client.f("DefectPixelCorrection_MapIndex")->SetValue(int64_t(17));
    int64_t y = 0;
    client.f("DefectPixelCorrection_Y")->GetValue(y);
    QCOMPARE(y, int64_t(entries[17].y));

    std::vector<uint8_t> readBack;
    QCOMPARE(client.download("DefPixMap2", readBack), ZebErrorSuccess);
    QVERIFY(readBack == bytes);
}

void TestZebFileAccess::corruptContainerKeepsOldMap_data()
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

void TestZebFileAccess::corruptContainerKeepsOldMap()
{
    QFETCH(int, offset);
    QFETCH(uint, value);
    QFETCH(int, truncate);
    FileClient client(ZebTest::openCamera(ZebTest::kMonoFile));
    QCOMPARE(client.upload("DefPixMap1", container(someEntries(20, false), false)), ZebErrorSuccess);
    std::vector<SimControl::SimMapEntry> before;
    SimControl::GetStoredMap(ZebTest::kMonoFile, 1, before);

    std::vector<uint8_t> bad = container(someEntries(50, false), false);
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

void TestZebFileAccess::deleteEmptiesWritableFilesOnly()
{
    FileClient client(ZebTest::openCamera(ZebTest::kMonoFile));
    QCOMPARE(client.upload("DefPixMap3", container(someEntries(4, false), false)), ZebErrorSuccess);
    client.f("FileSelector")->SetValue("DefPixMap3");
    QCOMPARE(client.run("Delete"), ZebErrorSuccess);
    int64_t size = -1;
    client.f("FileSize")->GetValue(size);
    QCOMPARE(size, int64_t(0));
    std::vector<uint8_t> empty{1};
    QCOMPARE(client.download("DefPixMap3", empty), ZebErrorSuccess);
    QVERIFY(empty.empty());

    client.f("FileSelector")->SetValue("DefPixMap0");
    QCOMPARE(client.run("Delete"), ZebErrorInvalidAccess);
    QCOMPARE(client.status(), std::string("Failure"));
    std::vector<SimControl::SimMapEntry> factory;
    SimControl::GetStoredMap(ZebTest::kMonoFile, 0, factory);
    QCOMPARE(factory.size(), size_t(5));

    client.f("FileSelector")->SetValue("UserData");
    QCOMPARE(client.run("Delete"), ZebErrorSuccess);
    std::vector<uint8_t> content{1};
    QCOMPARE(SimControl::GetDeviceFile(ZebTest::kMonoFile, "UserData", content), ZebErrorSuccess);
    QVERIFY(content.empty());
}

void TestZebFileAccess::openModesFollowFilePermissions()
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

    client.f("FileSelector")->SetValue("Firmware");
    QCOMPARE(mode->SetValue("Read"), ZebErrorInvalidAccess);
    QCOMPARE(mode->SetValue("Write"), ZebErrorSuccess);
    // A mode accepted for another file does not open this one.
    client.f("FileSelector")->SetValue("DefPixMap0");
    QCOMPARE(client.run("Open"), ZebErrorInvalidAccess);

    client.f("FileSelector")->SetValue("DefPixMap1");
    QCOMPARE(mode->SetValue("ReadWrite"), ZebErrorSuccess);
}

void TestZebFileAccess::protocolOrderIsEnforced()
{
    FileClient client(ZebTest::openCamera(ZebTest::kMonoFile));
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
    QCOMPARE(client.f("FileAccessLength")->SetValue(int64_t(kBlock + 1)), ZebErrorInvalidValue);
}

QTEST_GUILESS_MAIN(TestZebFileAccess)
#include "tst_zebfileaccess.moc"
