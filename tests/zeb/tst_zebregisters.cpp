#include "sim/simcontrol.h"
#include "zebtestsupport.h"

using namespace ZebCPP;

namespace {

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

    std::vector<uint8_t> bytes(const std::vector<uint32_t>& words) const
    {
        std::vector<uint8_t> out;
        for (uint32_t w : words) {
            for (int b = 0; b < 4; ++b)
                out.push_back(uint8_t(w >> (bigEndian_ ? 24 - 8 * b : 8 * b)));
        }
        return out;
    }

    ZebErrorType write(uint64_t address, const std::vector<uint32_t>& words)
    {
        const std::vector<uint8_t> data = bytes(words);
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

} // namespace

class TestZebRegisters : public QObject {
    Q_OBJECT

private slots:
    void init() { QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess); }
    void cleanup() { ZebTest::stopSdk(); }

    void blockUploadReplacesSelectedMap_data();
    void blockUploadReplacesSelectedMap();
    void perEntryWritesAppend();
    void factoryMapRefusesChanges();
    void badRegisterAccessIsRefused_data();
    void badRegisterAccessIsRefused();
    void readOnlyOpenAndStreamingRefuseWrites();
};

void TestZebRegisters::blockUploadReplacesSelectedMap_data()
{
    QTest::addColumn<QString>("serial");
    QTest::addColumn<bool>("bigEndian");
    QTest::addColumn<bool>("typed");
    QTest::newRow("big-endian, 16-bit layout") << ZebTest::kRegister << true << false;
    QTest::newRow("little-endian, 14-bit layout with codes") << ZebTest::kColorFile << false << true;
}

void TestZebRegisters::blockUploadReplacesSelectedMap()
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

    // A shorter block starting at the first entry makes a shorter map.
    QCOMPARE(client.write(kEntries, {words[0], words[1]}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 2u);
}

void TestZebRegisters::perEntryWritesAppend()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    RegisterClient client(camera, true);
    client.write(kSelect, {1});
    client.write(kClear, {1});
    for (uint32_t i = 0; i < 5; ++i)
        QCOMPARE(client.write(kEntries + 4 * i, {i | (i + 1) << 16}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 5u);
    QCOMPARE(client.write(kEntries + 4 * 2, {0x00090009}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 5u); // a change in place keeps the length
    QCOMPARE(client.write(kEntries + 4 * 9, {1}), ZebErrorInvalidValue); // no gaps
    std::vector<SimControl::SimMapEntry> stored;
    SimControl::GetStoredMap(ZebTest::kRegister, 1, stored);
    QCOMPARE(stored.size(), size_t(5));
    QCOMPARE(stored[2].x, 9u);
}

void TestZebRegisters::factoryMapRefusesChanges()
{
    CameraPtr camera = ZebTest::openCamera(ZebTest::kRegister);
    RegisterClient client(camera, true);
    QCOMPARE(client.write(kSelect, {0}), ZebErrorSuccess);
    QCOMPARE(client.value(kSize), 5u);
    QCOMPARE(client.write(kClear, {0}), ZebErrorInvalidAccess);
    QCOMPARE(client.write(kEntries, {1, 2, 3}), ZebErrorInvalidAccess);
    QCOMPARE(client.value(kSize), 5u);
    std::vector<SimControl::SimMapEntry> factory;
    SimControl::GetStoredMap(ZebTest::kRegister, 0, factory);
    std::vector<uint32_t> first(1);
    client.read(kEntries, first);
    QCOMPARE(first[0], factory[0].x | factory[0].y << 16);
}

void TestZebRegisters::badRegisterAccessIsRefused_data()
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

void TestZebRegisters::badRegisterAccessIsRefused()
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
}

void TestZebRegisters::readOnlyOpenAndStreamingRefuseWrites()
{
    CameraPtr camera = ZebTest::cameraBySerial(ZebTest::kRegister);
    QCOMPARE(camera->Open(AccessModeRead), ZebErrorSuccess);
    RegisterClient client(camera, true);
    QCOMPARE(client.value(kMaxSize), 2000u);
    QCOMPARE(client.write(kControl, {0}), ZebErrorInvalidAccess);
    camera->Close();

    camera->Open(AccessModeFull);
    client.write(kSelect, {1});
    QCOMPARE(SimControl::SetStreaming(ZebTest::kRegister, true), ZebErrorSuccess);
    QCOMPARE(client.write(kEntries, {1}), ZebErrorInvalidAccess);
    QCOMPARE(client.write(kClear, {1}), ZebErrorInvalidAccess);
    QCOMPARE(client.write(kSelect, {2}), ZebErrorInvalidAccess);
    QCOMPARE(client.write(kControl, {0}), ZebErrorSuccess); // correction may be switched live
}

QTEST_GUILESS_MAIN(TestZebRegisters)
#include "tst_zebregisters.moc"
