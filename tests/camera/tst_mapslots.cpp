#include "defectmapcontainer.h"
#include "filemapslots.h"
#include "mapformat.h"
#include "mapslotprofile.h"
#include "registermapslots.h"
#include "simcameras.h"
#include "uxcamera.h"

#include <sim/simcontrol.h>

#include <QtTest>

using namespace ZebCPP;

namespace {

// A register camera whose firmware claims more entries than any buffer should hold.
constexpr const char* kBoastful = "DEV_RB0000009";
const std::string kBoastfulJson = R"({ "id": "DEV_RB0000009", "model": "ryn1300MGE", "serial": "RB0000009",
    "interface": "sim-eth1", "bigEndian": true, "mapAccess": "register", "mapRevision": 3, "mapSlots": 2,
    "mapMaxSize": 100, "mapMaxSizeReported": 4000000 })";

// Slots whose chunk ids are not map chunks must not be offered.
const std::string kOddSlotsJson = R"({ "id": "DEV_ODD0001", "model": "kvd123MXGE", "serial": "ODD0001",
    "interface": "sim-usb0", "mapAccess": "file", "mapRevision": 3, "mapSlots": 5,
    "slotChunkIds": [4096, 4098, 4099, 4097, 4100] })";

std::vector<t_defpix> diagonal(unsigned int count, unsigned int type = 0)
{
    std::vector<t_defpix> map;
    for (unsigned int i = 0; i < count; ++i)
        map.push_back(t_defpix{i + 1, 2 * i + 3, type});
    return map;
}

size_t storedCount(const char* camera, uint32_t slot)
{
    return SimCameras::storedMap(camera, slot).size();
}

} // namespace

bool operator==(const t_defpix& a, const t_defpix& b)
{
    return a.x == b.x && a.y == b.y && a.type == b.type;
}

// The map-slot core against the simulated cameras, without any widget.
class TestMapSlots : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(SimCameras::startup());
        QCOMPARE(SimControl::PlugCamera(kBoastfulJson), ZebErrorSuccess);
        QCOMPARE(SimControl::PlugCamera(kOddSlotsJson), ZebErrorSuccess);
    }
    void cleanupTestCase() { ZebSystem::GetInstance().Shutdown(); }

    void profileOfEachKindOfCamera();
    void registerRoundTrips_data();
    void registerRoundTrips();
    void factorySlotAndEmptyMapAreRefused();
    void sizeLimits();

private:
    // Each case opens afresh what an earlier case may have left open.
    std::unique_ptr<UxCamera> open(const char* id)
    {
        CameraPtr known;
        if (ZebSystem::GetInstance().GetCameraByID(id, known) == ZebErrorSuccess)
            known->Close();
        const CameraPtr camera = SimCameras::openCamera(id);
        return camera ? std::make_unique<UxCamera>(camera) : nullptr;
    }
};

void TestMapSlots::profileOfEachKindOfCamera()
{
    auto mono = open(SimCameras::kMonoFile);
    QVERIFY(mono);
    MapSlotProfile profile = inspectMapSlots(*mono);
    QVERIFY(!profile.registerMode && !profile.color);
    QCOMPARE(profile.revision, kDefaultMapRevision);
    // Only the map files are slots; "UserData" and "Firmware" are not offered.
    QCOMPARE(profile.mapSlots.size(), 4);
    QCOMPARE(profile.mapSlots[0].name, QString("DefPixMap0"));
    QVERIFY(profile.mapSlots[0].cannotWrite);
    QVERIFY(!profile.mapSlots[1].cannotWrite);

    auto colour = open(SimCameras::kColourFile);
    QVERIFY(colour);
    profile = inspectMapSlots(*colour);
    QVERIFY(profile.color && !profile.bigEndian);
    QCOMPARE(profile.revision, kTypedMapRevision);

    auto registers = open(SimCameras::kRegisterMono);
    QVERIFY(registers);
    profile = inspectMapSlots(*registers);
    QVERIFY(profile.registerMode && profile.bigEndian);
    QCOMPARE(profile.maxMapSize, 2000u);
    QCOMPARE(profile.mapSlots.size(), 3);

    auto odd = open("DEV_ODD0001");
    QVERIFY(odd);
    profile = inspectMapSlots(*odd);
    QCOMPARE(profile.mapSlots.size(), 3);
    QCOMPARE(profile.mapSlots[1].name, QString("DefPixMap3"));
    QCOMPARE(profile.mapSlots[1].chunkId, kSecondChunkId);
    QCOMPARE(profile.mapSlots[2].chunkId, kTypedChunkId);
}

void TestMapSlots::registerRoundTrips_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<bool>("typed");
    QTest::addColumn<bool>("bigEndian");
    QTest::newRow("big-endian, 16-bit layout") << QByteArray(SimCameras::kRegisterMono) << false << true;
    QTest::newRow("little-endian, 14-bit layout with codes") << QByteArray(SimCameras::kColourFile) << true << false;
}

void TestMapSlots::registerRoundTrips()
{
    QFETCH(QByteArray, id);
    QFETCH(bool, typed);
    QFETCH(bool, bigEndian);
    auto camera = open(id.constData());
    QVERIFY(camera);
    RegisterMapSlots mapSlots(*camera);
    QVERIFY(mapSlots.selectSlot(2));
    QVERIFY(mapSlots.setCorrectionEnabled(false));
    const std::vector<t_defpix> map = diagonal(200, typed ? 103 : 0);
    unsigned int bytes = 0;
    QCOMPARE(mapSlots.uploadWords(map.data(), 200, typed, bigEndian, 2000, bytes), MapTransfer::Done);
    QCOMPARE(bytes, 800u);
    bool enabled = false;
    QVERIFY(mapSlots.correctionEnabled(enabled) && enabled);
    QCOMPARE(storedCount(id.constData(), 2), size_t(200));

    DefectMap back(2000);
    unsigned int count = 0;
    QCOMPARE(mapSlots.downloadWords(typed, bigEndian, back.data(), 2000, count), MapTransfer::Done);
    back.setCount(count);
    QCOMPARE(back.entries(), map);
    std::vector<t_defpix> read;
    QCOMPARE(mapSlots.readSlot(typed, bigEndian, 2000, read), MapTransfer::Done);
    QCOMPARE(read, map);
    // A smaller buffer takes the first entries only.
    count = 0;
    QCOMPARE(mapSlots.downloadWords(typed, bigEndian, back.data(), 10, count), MapTransfer::Done);
    QCOMPARE(count, 10u);
    // A shorter map replaces a longer one.
    QCOMPARE(mapSlots.uploadWords(map.data(), 2, typed, bigEndian, 2000, bytes), MapTransfer::Done);
    QCOMPARE(storedCount(id.constData(), 2), size_t(2));
    if (typed)
        return;

    // Entry by entry, written and read back through the same path.
    QVERIFY(mapSlots.selectSlot(1));
    const std::vector<t_defpix> small = diagonal(40);
    unsigned int maximum = 0;
    QString reported;
    QCOMPARE(uploadMapEntries(mapSlots, small.data(), 40, maximum, reported), MapTransfer::Done);
    QCOMPARE(maximum, 2000u);
    count = 0;
    QCOMPARE(downloadMapEntries(mapSlots, back.data(), 1000, count), MapTransfer::Done);
    back.setCount(count);
    QCOMPARE(back.entries(), small);
}

void TestMapSlots::factorySlotAndEmptyMapAreRefused()
{
    const std::vector<t_defpix> map = diagonal(5);
    unsigned int maximum = 0;
    QString reported;

    auto file = open(SimCameras::kMonoFile);
    QVERIFY(file);
    FileAccessMapSlots fileSlots(*file);
    QVERIFY(fileSlots.selectSlotByName("DefPixMap0"));
    const size_t factoryEntries = storedCount(SimCameras::kMonoFile, 0);
    QCOMPARE(uploadMapEntries(fileSlots, map.data(), 5, maximum, reported), MapTransfer::FactoryProtected);
    QCOMPARE(uploadMapEntries(fileSlots, map.data(), 0, maximum, reported), MapTransfer::EmptyMap);
    const std::vector<unsigned char> container =
        buildDefPixContainerBuffer(kDefaultMapRevision, kDefaultChunkId, 5, map.data(), 640, 640 * 480);
    long written = 0;
    QCOMPARE(fileSlots.uploadContainer(container, "DefPixMap0", written), MapTransfer::WriteFailed);
    fileSlots.closeDeviceFile();
    QCOMPARE(storedCount(SimCameras::kMonoFile, 0), factoryEntries);

    auto registers = open(SimCameras::kRegisterMono);
    QVERIFY(registers);
    RegisterMapSlots registerSlots(*registers);
    unsigned int bytes = 0;
    QVERIFY(registerSlots.selectSlot(0));
    QCOMPARE(registerSlots.uploadWords(map.data(), 5, false, true, 2000, bytes), MapTransfer::FactoryProtected);
    QVERIFY(registerSlots.selectSlot(1));
    QCOMPARE(registerSlots.uploadWords(nullptr, 0, false, true, 2000, bytes), MapTransfer::EmptyMap);
}

void TestMapSlots::sizeLimits()
{
    auto registers = open(SimCameras::kRegisterMono);
    QVERIFY(registers);
    RegisterMapSlots registerSlots(*registers);
    QVERIFY(registerSlots.selectSlot(1));
    const std::vector<t_defpix> map = diagonal(2001);
    unsigned int maximum = 0;
    QString reported;
    QCOMPARE(uploadMapEntries(registerSlots, map.data(), 2001, maximum, reported), MapTransfer::TooManyEntries);

    // Register packing stops at the capacity.
    unsigned int bytes = 0;
    QCOMPARE(registerSlots.uploadWords(map.data(), 1001, false, true, 100, bytes), MapTransfer::Done);
    QCOMPARE(storedCount(SimCameras::kRegisterMono, 1), size_t(100));
    // A slot holding more than the reader's capacity is refused, not cut.
    DefectMap back(99);
    unsigned int count = 0;
    QCOMPARE(downloadMapEntries(registerSlots, back.data(), 99, count), MapTransfer::InvalidSize);

    // An implausible maximum is rejected with what the camera said.
    auto boastful = open(kBoastful);
    QVERIFY(boastful);
    QCOMPARE(inspectMapSlots(*boastful).maxMapSize, 0u);
    RegisterMapSlots boastfulSlots(*boastful);
    QVERIFY(boastfulSlots.selectSlot(1));
    QCOMPARE(uploadMapEntries(boastfulSlots, map.data(), 5, maximum, reported), MapTransfer::MaxSizeFailed);
    QCOMPARE(reported, QString("4000000"));
}

QTEST_GUILESS_MAIN(TestMapSlots)
#include "tst_mapslots.moc"
