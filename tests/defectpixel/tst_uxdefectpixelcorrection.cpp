#include "panelfixture.h"

#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"

#include <sim/simcontrol.h>

#include <QComboBox>
#include <QLineEdit>
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

void typeThreshold(UXCDefectPixelCorrection& panel, const char* name, const QString& text)
{
    auto* edit = panel.findChild<QLineEdit*>(name);
    edit->setFocus();
    edit->setText(text);
    QTest::keyClick(edit, Qt::Key_Return);
}

} // namespace

// The panel's input rules, the slots it offers and a transfer cut short by a reset.
class TestPanel : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void inputRulesAndStreamingGuard();
    void chunkIdsHideSlots();
    void resetDuringTransferLeavesNothingBehind();

private:
    Session m_session;
    QTemporaryDir m_dir;
};

void TestPanel::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
    QCOMPARE(ZebCPP::SimControl::PlugCamera(kOddSlotsJson), ZebCPP::ZebErrorSuccess);
}

void TestPanel::cleanupTestCase()
{
    m_session.stop();
}

void TestPanel::inputRulesAndStreamingGuard()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    UxCamera* camera = m_session.open(kMonoFile);
    QVERIFY(panel.Init(camera));
    const QStringList dark = captureSeries(camera, m_dir.path(), "monodark", 2, false);
    const QStringList bright = captureSeries(camera, m_dir.path(), "monobright", 1, true);

    dialogs.openFileNames = QStringList{dark[0], dark[0], dark[1]};
    click(panel, "btnAddDarkImage");
    dialogs.openFileNames = QStringList{dark[1]};
    click(panel, "btnAddDarkImage");
    QCOMPARE(panel.findChild<QListWidget*>("listDarkImagePath")->count(), 2);
    QCOMPARE(panel.darkParams().count, 2u);
    dialogs.openFileNames = bright;
    click(panel, "btnAddBrightImage");

    auto* darkList = panel.findChild<QListWidget*>("listDarkImagePath");
    darkList->selectAll();
    QVERIFY(button(panel, "btnDeleteDarkImage")->isEnabled());
    click(panel, "btnDeleteDarkImage");
    QCOMPARE(darkList->count(), 0);
    QVERIFY(!button(panel, "btnDeleteDarkImage")->isEnabled());
    QCOMPARE(panel.imageGeometry().pixelCount, 640u * 480u);
    QVERIFY(button(panel, "btnGenerateMap")->isEnabled());

    typeThreshold(panel, "txtAbsoluteThreshold", "0");
    QCOMPARE(panel.darkParams().absoluteThreshold, 0);
    typeThreshold(panel, "txtAbsoluteThreshold", "255");
    QCOMPARE(panel.darkParams().absoluteThreshold, 255);
    typeThreshold(panel, "txtAbsoluteThreshold", "256");
    QCOMPARE(panel.darkParams().absoluteThreshold, 255);
    QCOMPARE(panel.findChild<QLineEdit*>("txtAbsoluteThreshold")->text(), QString("255"));
    typeThreshold(panel, "txtRelativeThreshold", "100");
    QCOMPARE(panel.brightParams().relativeThreshold, 100);
    typeThreshold(panel, "txtRelativeThreshold", "101");
    QCOMPARE(panel.brightParams().relativeThreshold, 100);
    QCOMPARE(panel.findChild<QLineEdit*>("txtRelativeThreshold")->text(), QString("100"));
    typeThreshold(panel, "txtRelativeThreshold", "12");

    click(panel, "btnGenerateMap");
    QVERIFY(panel.defectCount() > 0);
    // The factory slot cannot be written: both uploads stay off, download stays on.
    QVERIFY(!button(panel, "btnUploadMapToCam")->isEnabled());
    QVERIFY(!button(panel, "btnUploadLocalMap")->isEnabled());
    QVERIFY(button(panel, "btnDownloadMapToFile")->isEnabled());
    selectSlot(panel, 1);
    QVERIFY(button(panel, "btnUploadMapToCam")->isEnabled());

    QCOMPARE(ZebCPP::SimControl::SetStreaming(kMonoFile, true), ZebCPP::ZebErrorSuccess);
    dialogs.calls.clear();
    click(panel, "btnUploadMapToCam");
    QCOMPARE(dialogs.messages(), QStringList{"critical|Upload Map|Stop streaming before uploading map to camera."});
    dialogs.answer = QMessageBox::No;
    click(panel, "btnUploadLocalMap");
    QCOMPARE(dialogs.last("question")->title, QString("Upload Local Map"));
    QCOMPARE(ZebCPP::SimControl::SetStreaming(kMonoFile, false), ZebCPP::ZebErrorSuccess);

    auto* brightList = panel.findChild<QListWidget*>("listBrightImagePath");
    brightList->selectAll();
    click(panel, "btnDeleteBrightImage");
    QCOMPARE(panel.imageGeometry().pixelCount, 0u);
    QVERIFY(!button(panel, "btnGenerateMap")->isEnabled());
    panel.Reset();
    QVERIFY(m_session.close(kMonoFile));
}

void TestPanel::chunkIdsHideSlots()
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

void TestPanel::resetDuringTransferLeavesNothingBehind()
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

QTEST_MAIN(TestPanel)
#include "tst_uxdefectpixelcorrection.moc"
