#include "panelfixture.h"

#include "defectmapcontainer.h"
#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"

#include <sim/simcontrol.h>

#include <QPushButton>
#include <QtTest>

#include <random>

using namespace PanelFixture;
namespace Sim = ZebCPP::SimControl;
using Sim::FaultKind;

namespace {

constexpr quint32 kSeed = 20261123;
constexpr int kFileRounds = 300;
constexpr int kRegisterRounds = 250;

// A small file access buffer, so that a map takes several blocks and every
// block of the protocol can be hit.
constexpr const char* kFileCamera = "SOAKF01";
const char* const kFileCameraJson = R"({ "id": "DEV_SOAKF01", "model": "kvd123MXGE", "serial": "SOAKF01",
    "name": "Soak file access", "interface": "sim-usb0", "mapAccess": "file", "mapRevision": 4,
    "fileBufferSize": 256, "mapMaxSize": 200, "sensor": { "width": 64, "height": 64, "seed": 11 } })";

constexpr const char* kRegisterCamera = "SOAKR01";
const char* const kRegisterCameraJson = R"({ "id": "DEV_SOAKR01", "model": "kvd123MXGE", "serial": "SOAKR01",
    "name": "Soak registers", "interface": "sim-eth0", "mapAccess": "register", "bigEndian": true,
    "mapMaxSize": 200, "sensor": { "width": 64, "height": 64, "seed": 12 } })";

enum Fault {
    NoFault,
    RefusedOpen,
    WriteError,
    FeatureWriteError,
    FeatureReadError,
    Timeout,
    RefusedClose,
    StatusError,
    ShortWrite,
    Unplug,
    PanelReset,
    FaultCount
};

const char* const kFaultNames[FaultCount] = {"none",         "refused open", "write error", "feature write error",
                                             "read error",   "timeout",      "refused close", "status error",
                                             "short write",  "unplug",       "panel reset"};

// Distinct positions inside the 64 x 64 sensor, typed codes from 100 on.
std::vector<t_defpix> randomMap(std::mt19937& random, unsigned int maxCount)
{
    std::vector<t_defpix> map;
    QSet<quint32> used;
    const unsigned int count = 1 + random() % maxCount;
    while (map.size() < count) {
        const quint32 x = random() % 64;
        const quint32 y = random() % 64;
        if (!used.contains(x << 8 | y)) {
            used.insert(x << 8 | y);
            map.push_back({x, y, 100 + quint32(random() % 14)});
        }
    }
    return map;
}

// A transfer has ended once its task is done and the panel took its buttons back.
bool waitForTransfer(UXCDefectPixelCorrection& panel)
{
    QElapsedTimer timer;
    for (timer.start(); panel.isFileTaskRunning() || !button(panel, "btnUploadLocalMap")->isEnabled(); QTest::qWait(1))
        if (timer.elapsed() > 20000)
            return false;
    return true;
}

} // namespace

// Uploads under a random fault at every step of the protocol, each followed by
// a clean download: a slot holds its previous map or the new one, never a
// mixture, and the panel works again after every fault.
class TestTransferSoak : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void fileAccessSlotsKeepOldOrNewMap();
    void registerSlotsKeepOldOrNewMap();

private:
    // Opens the camera again after an unplug or a reset and binds the panel to it.
    bool rebind(Rig& rig, const char* serial, bool replug);

    Session m_session;
    QTemporaryDir m_dir;
};

void TestTransferSoak::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
    QCOMPARE(Sim::PlugCamera(kFileCameraJson), ZebCPP::ZebErrorSuccess);
    QCOMPARE(Sim::PlugCamera(kRegisterCameraJson), ZebCPP::ZebErrorSuccess);
    qInfo("transfer soak seed %u", kSeed);
}

void TestTransferSoak::cleanupTestCase()
{
    m_session.stop();
}

bool TestTransferSoak::rebind(Rig& rig, const char* serial, bool replug)
{
    rig.release();
    if (replug && Sim::ReplugCamera(serial) != ZebCPP::ZebErrorSuccess)
        return false;
    // The camera list hears of the new camera on the SDK's thread.
    return QTest::qWaitFor([&] { return rig.bind(serial); }, 5000);
}

void TestTransferSoak::fileAccessSlotsKeepOldOrNewMap()
{
    std::mt19937 random(kSeed);
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;
    RecordingDialogs& dialogs = rig.dialogs;
    QVERIFY(rig.bind(kFileCamera));
    const QString slotName = "DefPixMap2";
    const QString upload = m_dir.filePath("upload.bin");
    const QString download = m_dir.filePath("download.bin");

    // The slot starts from a known map.
    QByteArray current = containerBytes(randomMap(random, 150), 64, 64 * 64, 4, kDefPixTypedChunkId);
    QVERIFY(writeFile(upload, current));
    activateSlot(panel, slotName);
    dialogs.openFileName = QStringList{upload};
    click(panel, "btnUploadLocalMap");
    QVERIFY(waitForTransfer(panel));
    QCOMPARE(deviceFile(kFileCamera, "DefPixMap2"), current);

    int replaced = 0;
    for (int round = 0; round < kFileRounds; ++round) {
        const QByteArray next = containerBytes(randomMap(random, 150), 64, 64 * 64, 4, kDefPixTypedChunkId);
        const uint32_t blocks = uint32_t(next.size() + 255) / 256;
        const auto fault = Fault(random() % FaultCount);
        // Commands of an upload: Open, one Write per block, Close.
        const uint32_t command = 1 + random() % (blocks + 2);
        switch (fault) {
        case RefusedOpen:
            Sim::InjectFault(kFileCamera, FaultKind::Command, 1, ZebCPP::ZebErrorInvalidAccess);
            break;
        case WriteError:
            Sim::InjectFault(kFileCamera, FaultKind::Command, 2 + random() % blocks, ZebCPP::ZebErrorTransportLayer);
            break;
        case FeatureWriteError:
            Sim::InjectFault(kFileCamera, FaultKind::FeatureWrite, 1 + random() % (4 * blocks + 8),
                             ZebCPP::ZebErrorInvalidValue);
            break;
        case FeatureReadError:
            Sim::InjectFault(kFileCamera, FaultKind::FeatureRead, 1 + random() % (2 * blocks + 4),
                             ZebCPP::ZebErrorTransportLayer);
            break;
        case Timeout:
            Sim::InjectFault(kFileCamera, FaultKind::Command, command, ZebCPP::ZebErrorTimeout);
            break;
        case RefusedClose:
            Sim::InjectFault(kFileCamera, FaultKind::Command, blocks + 2, ZebCPP::ZebErrorInvalidAccess);
            break;
        case StatusError:
            Sim::InjectFault(kFileCamera, FaultKind::FileStatus, command, ZebCPP::ZebErrorInvalidCall);
            break;
        case ShortWrite:
            Sim::InjectFault(kFileCamera, FaultKind::ShortWrite, 1 + random() % blocks, ZebCPP::ZebErrorInvalidCall);
            break;
        case Unplug:
            Sim::DisconnectAfterBytes(kFileCamera, random() % uint32_t(next.size()));
            break;
        case NoFault:
        case PanelReset:
        case FaultCount:
            break;
        }

        QVERIFY(writeFile(upload, next));
        activateSlot(panel, slotName);
        dialogs.calls.clear();
        dialogs.openFileName = QStringList{upload};
        click(panel, "btnUploadLocalMap");
        if (fault == PanelReset) {
            QVERIFY2(rebind(rig, kFileCamera, false), qPrintable(QString("round %1").arg(round)));
        } else {
            QVERIFY2(waitForTransfer(panel), qPrintable(QString("round %1 hangs").arg(round)));
        }
        const RecordingDialogs::Call* report = dialogs.last("information");
        const bool reportedDone = report && report->title == "File Access";
        QCOMPARE(Sim::ClearFaults(kFileCamera), ZebCPP::ZebErrorSuccess);
        if (fault == Unplug)
            QVERIFY2(rebind(rig, kFileCamera, true), qPrintable(QString("round %1").arg(round)));

        // A clean download through the panel tells what the slot holds now.
        activateSlot(panel, slotName);
        QFile::remove(download);
        dialogs.saveFileName = QStringList{download};
        click(panel, "btnDownloadMapToFile");
        QVERIFY2(waitForTransfer(panel), qPrintable(QString("round %1: download hangs").arg(round)));
        const QByteArray held = readFile(download);
        const QString where = QString("round %1, fault %2").arg(round).arg(kFaultNames[fault]);
        QVERIFY2(held == current || held == next, qPrintable(where + ": the slot holds a map nobody uploaded"));
        QVERIFY2(!reportedDone || held == next, qPrintable(where + ": reported done, but the map is not there"));
        if (held == next) {
            ++replaced;
            current = next;
        }
    }
    qInfo("file access soak: %d uploads, %d downloads verified, %d maps replaced", kFileRounds, kFileRounds,
          replaced);
}

void TestTransferSoak::registerSlotsKeepOldOrNewMap()
{
    std::mt19937 random(kSeed + 1);
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;
    QVERIFY(rig.bind(kRegisterCamera));
    QVERIFY(panel.isRegisterMode());
    constexpr uint32_t kSlot = 2;

    std::vector<t_defpix> current = randomMap(random, 150);
    for (t_defpix& entry : current)
        entry.type = 0;
    QVERIFY(panel.SelectDefectPixelCorrectionMap(kSlot));
    QVERIFY(panel.uploadMap_RegisterAccess(current.data(), unsigned(current.size())));

    enum RegisterFault { None, ReadError, WriteError, Unplugged, Reset, RegisterFaultCount };
    const char* const names[RegisterFaultCount] = {"none", "read error", "write error", "unplug", "panel reset"};
    int replaced = 0;
    int emptied = 0;
    for (int round = 0; round < kRegisterRounds; ++round) {
        std::vector<t_defpix> next = randomMap(random, 150);
        for (t_defpix& entry : next)
            entry.type = 0;
        const auto fault = RegisterFault(random() % RegisterFaultCount);
        // An upload reads the selected slot, writes the clear register and then the entries.
        switch (fault) {
        case ReadError:
            Sim::InjectFault(kRegisterCamera, FaultKind::MemoryRead, 1 + random() % 3, ZebCPP::ZebErrorTimeout);
            break;
        case WriteError:
            Sim::InjectFault(kRegisterCamera, FaultKind::MemoryWrite, 1 + random() % 3,
                             ZebCPP::ZebErrorTransportLayer);
            break;
        case Unplugged:
            Sim::DisconnectAfterBytes(kRegisterCamera, random() % (8 + 4 * next.size()));
            break;
        default:
            break;
        }
        const QString where = QString("round %1, fault %2").arg(round).arg(names[fault]);
        const bool reported = panel.uploadMap_RegisterAccess(next.data(), unsigned(next.size()));
        QCOMPARE(Sim::ClearFaults(kRegisterCamera), ZebCPP::ZebErrorSuccess);
        if (fault == Unplugged || fault == Reset)
            QVERIFY2(rebind(rig, kRegisterCamera, fault == Unplugged), qPrintable(where));

        QVERIFY(panel.SelectDefectPixelCorrectionMap(kSlot));
        QVERIFY2(panel.downloadMap_RegisterAccess(), qPrintable(where));
        const std::vector<t_defpix> held(panel.defectMap(), panel.defectMap() + panel.defectCount());
        QVERIFY2(storedMap(kRegisterCamera, kSlot) == held, qPrintable(where));
        // The upload clears the slot before it writes: a failed write may leave
        // it empty, but never holding part of a map.
        const bool isNext = held == next;
        QVERIFY2(isNext || held == current || (held.empty() && !reported),
                 qPrintable(where + ": the slot holds a map nobody uploaded"));
        QVERIFY2(!reported || isNext, qPrintable(where + ": reported done, but the map is not there"));
        if (isNext) {
            ++replaced;
            current = next;
        } else if (held.empty()) {
            ++emptied;
            current.clear();
        }
    }
    qInfo("register soak: %d uploads, %d downloads verified, %d maps replaced, %d slots left cleared",
          kRegisterRounds, kRegisterRounds, replaced, emptied);
}

QTEST_MAIN(TestTransferSoak)
#include "tst_transfersoak.moc"
