#include "panelfixture.h"

#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"

#include <sim/simcontrol.h>

#include <QComboBox>
#include <QListWidget>
#include <QProgressDialog>
#include <QPushButton>
#include <QtTest>

using namespace PanelFixture;

namespace {

constexpr const char* kOddSlots = "ODD0001";

// Slots whose chunk ids are not map chunks must not be offered.
const char* const kOddSlotsJson = R"({ "id": "DEV_ODD0001", "model": "kvd123MXGE", "serial": "ODD0001",
    "name": "Odd slots", "interface": "sim-usb0", "bigEndian": false, "mapAccess": "file",
    "mapRevision": 3, "mapSlots": 5, "slotChunkIds": [4096, 4098, 4099, 4097, 4100],
    "sensor": { "width": 64, "height": 64, "seed": 3 } })";

void selectSlot(UXCDefectPixelCorrection& panel, int index)
{
    auto* selector = panel.findChild<QComboBox*>("cmbDefectPixelMapSelector");
    selector->setCurrentIndex(index);
    emit selector->activated(index);
}

} // namespace

// Slots that are not offered, and transfers that end badly or are cut short by a reset.
class TestPanelFaults : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void chunkIdsHideSlots();
    void resetDuringTransferLeavesNothingBehind();

private:
    Session m_session;
    QTemporaryDir m_dir;
};

void TestPanelFaults::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
    QCOMPARE(ZebCPP::SimControl::PlugCamera(kOddSlotsJson), ZebCPP::ZebErrorSuccess);
}

void TestPanelFaults::cleanupTestCase()
{
    m_session.stop();
}

void TestPanelFaults::chunkIdsHideSlots()
{
    UXCDefectPixelCorrection panel;
    QVERIFY(panel.Init(m_session.open(kOddSlots)));
    auto* selector = panel.findChild<QComboBox*>("cmbDefectPixelMapSelector");
    QCOMPARE(selector->count(), 3);
    QCOMPARE(selector->itemText(1), QString("DefPixMap3"));
    QCOMPARE(selector->itemData(1, Qt::UserRole + 3).toInt(), 4097);
    QCOMPARE(selector->itemData(2, Qt::UserRole + 3).toInt(), 4100);
    panel.Reset();
    QVERIFY(m_session.close(kOddSlots));
}

void TestPanelFaults::resetDuringTransferLeavesNothingBehind()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    UxCamera* camera = m_session.open(kMonoFile);
    QVERIFY(panel.Init(camera));
    dialogs.openFileNames = captureSeries(camera, m_dir.path(), "dark", 2, false);
    click(panel, "btnAddDarkImage");
    click(panel, "btnGenerateMap");
    const unsigned int count = panel.defectCount();
    selectSlot(panel, 1);
    click(panel, "btnUploadMapToCam");
    panel.Reset();
    QVERIFY(!panel.isFileTaskRunning());
    QVERIFY(!panel.camera());
    QVERIFY(!panel.defectMap());
    QCOMPARE(panel.findChild<QListWidget*>("listDarkImagePath")->count(), 0);
    QCOMPARE(panel.findChild<QComboBox*>("cmbDefectPixelMapSelector")->count(), 0);
    QVERIFY(m_session.close(kMonoFile));
    // A task the reset cancelled before it started leaves the previous (empty) map;
    // one that had started ran to its end before the camera went. Never half a map.
    std::vector<ZebCPP::SimControl::SimMapEntry> slot;
    ZebCPP::SimControl::GetStoredMap(kMonoFile, 1, slot);
    QVERIFY2(slot.empty() || slot.size() == count, qPrintable(QString::number(slot.size())));

    // A camera bound after a reset still gets its buttons and progress window back
    // after a transfer, although finishFileTask no longer reports it.
    camera = m_session.open(kMonoFile);
    QVERIFY(panel.Init(camera));
    selectSlot(panel, 2);
    dialogs.calls.clear();
    dialogs.saveFileName = QStringList{m_dir.filePath("after-reset")};
    click(panel, "btnDownloadMapToFile");
    QTRY_VERIFY(!panel.isFileTaskRunning());
    QTRY_VERIFY(button(panel, "btnUploadLocalMap")->isEnabled());
    QVERIFY(!panel.findChild<QProgressDialog*>()->isVisible());
    QVERIFY(!dialogs.messages().join('\n').contains("File Access"));
    panel.Reset();
    QVERIFY(m_session.close(kMonoFile));
}

QTEST_MAIN(TestPanelFaults)
#include "tst_uxdefectpixelcorrection_faults.moc"
