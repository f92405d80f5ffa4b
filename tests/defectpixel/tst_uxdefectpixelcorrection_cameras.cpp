#include "panelfixture.h"

#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"

#include <sim/simcontrol.h>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QtTest>

using namespace PanelFixture;
using ZebCPP::SimControl::SimMapEntry;

namespace {

std::vector<SimMapEntry> stored(const char* serial, uint32_t slot)
{
    std::vector<SimMapEntry> entries;
    ZebCPP::SimControl::GetStoredMap(serial, slot, entries);
    return entries;
}

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

// The cameras the panel tells apart, its input rules and a camera lost mid-transfer.
class TestPanelCameras : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void colourCameraClassifiesDarkDefects();
    void registerCameraMovesMapsThroughRegisters();
    void inputRulesAndStreamingGuard();
    void cameraUnpluggedDuringUpload();

private:
    Session m_session;
    QTemporaryDir m_dir;
};

void TestPanelCameras::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
}

void TestPanelCameras::cleanupTestCase()
{
    m_session.stop();
}

void TestPanelCameras::colourCameraClassifiesDarkDefects()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    UxCamera* camera = m_session.open(kColourFile);
    QVERIFY(panel.Init(camera));
    QVERIFY(panel.isColor());
    QCOMPARE(panel.revision(), 4);
    QVERIFY(!panel.findChild<QTabWidget*>("tabWidget")->isTabVisible(1));
    QCOMPARE(button(panel, "btnGenerateMap")->toolTip(), QString("Generate map from the resulting dark mean images."));

    dialogs.openFileNames = captureSeries(camera, m_dir.path(), "colourdark", 3, false);
    click(panel, "btnAddDarkImage");
    QVERIFY(button(panel, "btnGenerateMap")->isEnabled());
    click(panel, "btnGenerateMap");
    const unsigned int count = panel.defectCount();
    QVERIFY(count > 0);
    for (unsigned int i = 0; i < count; ++i) {
        const uint32_t type = panel.defectMap()[i].type;
        QVERIFY2(type >= 101 && type <= 113, qPrintable(QString::number(type)));
    }
    const std::vector<unsigned char> container =
        panel.buildDefPixContainerBuffer(4, 4100, count, panel.defectMap(), 640, 640 * 480);
    QCOMPARE(container.size(), size_t(32 + 12 * count));

    selectSlot(panel, 1);
    click(panel, "btnUploadMapToCam");
    QTRY_VERIFY(dialogs.messages().contains("information|File Access|Upload Generated Map task has been successfully done."));
    const std::vector<SimMapEntry> slot = stored(kColourFile, 1);
    QCOMPARE(slot.size(), size_t(count));
    for (unsigned int i = 0; i < count; ++i)
        QCOMPARE(slot[i].type, panel.defectMap()[i].type);
    panel.Reset();
    QVERIFY(m_session.close(kColourFile));
}

void TestPanelCameras::registerCameraMovesMapsThroughRegisters()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy logs(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    UxCamera* camera = m_session.open(kRegisterMono);
    QVERIFY(panel.Init(camera));
    QVERIFY(panel.isRegisterMode());
    QVERIFY(panel.isBigEndian());
    auto* selector = panel.findChild<QComboBox*>("cmbDefectPixelMapSelector");
    QCOMPARE(selector->count(), 3);
    QCOMPARE(selector->itemText(2), QString("DefPixMap2"));

    dialogs.openFileNames = captureSeries(camera, m_dir.path(), "regdark", 2, false);
    click(panel, "btnAddDarkImage");
    click(panel, "btnGenerateMap");
    const unsigned int count = panel.defectCount();
    QVERIFY(count > 0);
    const std::vector<t_defpix> generated(panel.defectMap(), panel.defectMap() + count);
    QVERIFY(button(panel, "btnUploadMapToCam")->isEnabled());

    click(panel, "btnUploadMapToCam");
    QVERIFY(dialogs.messages().contains(
        "critical|Upload Defect Pixel Map|Upload failed: upload to factory map is protected!"));
    QVERIFY(logLines(logs).contains("2|Upload Map  failed."));
    QCOMPARE(stored(kRegisterMono, 0).size(), size_t(5));

    selectSlot(panel, 1);
    click(panel, "btnUploadMapToCam");
    QVERIFY(logLines(logs).contains("0|Upload Map  succeeded."));
    const std::vector<SimMapEntry> slot = stored(kRegisterMono, 1);
    QCOMPARE(slot.size(), size_t(count));
    for (unsigned int i = 0; i < count; ++i) {
        QCOMPARE(slot[i].x, generated[i].x);
        QCOMPARE(slot[i].y, generated[i].y);
    }

    QVERIFY(panel.downloadMap_RegisterAccess());
    QCOMPARE(panel.defectCount(), count);
    for (unsigned int i = 0; i < count; ++i) {
        QCOMPARE(panel.defectMap()[i].x, generated[i].x);
        QCOMPARE(panel.defectMap()[i].y, generated[i].y);
    }

    dialogs.saveFileName = QStringList{m_dir.filePath("regmap")};
    click(panel, "btnDownloadMapToFile");
    QCOMPARE(dialogs.last("save file")->title, QString("Export Map"));
    QCOMPARE(dialogs.last("save file")->text, QString("Text (*.txt)"));
    QVERIFY(logLines(logs).contains("0|Download device file  succeeded."));
    QFile text(m_dir.filePath("regmap.txt"));
    QVERIFY(text.open(QIODevice::ReadOnly));
    QCOMPARE(text.readAll().count('\n'), int(count));

    selectSlot(panel, 2);
    dialogs.openFileName = QStringList{text.fileName()};
    click(panel, "btnUploadLocalMap");
    QCOMPARE(dialogs.last("open file")->title, QString("Import Map"));
    QCOMPARE(dialogs.last("open file")->text, QString("Text (*.txt)"));
    QVERIFY(logLines(logs).contains("0|Upload Local Map  succeeded."));
    QCOMPARE(stored(kRegisterMono, 2).size(), size_t(count));

    // The per-entry upload refuses a map over the camera's maximum.
    std::vector<t_defpix> tooLong(2001);
    for (unsigned int i = 0; i < tooLong.size(); ++i)
        tooLong[i] = {i % 1000, i / 1000, 0};
    QVERIFY(!panel.upload_defpix_map_genicam(tooLong.data(), 2001));
    QVERIFY(logLines(logs).contains("2|Upload failed: maximum number of defect pixels exceeded!"));
    // The slot is cleared before the camera's maximum is asked for.
    QVERIFY(stored(kRegisterMono, 2).empty());
    panel.Reset();
    QVERIFY(m_session.close(kRegisterMono));
}

void TestPanelCameras::inputRulesAndStreamingGuard()
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

void TestPanelCameras::cameraUnpluggedDuringUpload()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy logs(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    UxCamera* camera = m_session.open(kMonoFile);
    QVERIFY(panel.Init(camera));
    dialogs.openFileNames = captureSeries(camera, m_dir.path(), "unplugdark", 2, false);
    click(panel, "btnAddDarkImage");
    click(panel, "btnGenerateMap");
    selectSlot(panel, 3);
    const std::vector<SimMapEntry> before = stored(kMonoFile, 3);

    QCOMPARE(ZebCPP::SimControl::DisconnectAfterBytes(kMonoFile, 8), ZebCPP::ZebErrorSuccess);
    click(panel, "btnUploadMapToCam");
    QTRY_VERIFY(dialogs.messages().contains("critical|File Access|Upload Generated Map Error occurs during File Access."));
    QVERIFY(logLines(logs).contains("2|Upload Generated Map 'DefPixMap3' failed: 0 bytes written."));
    QVERIFY(button(panel, "btnUploadMapToCam")->isEnabled());
    QVERIFY(button(panel, "btnUploadLocalMap")->isEnabled());

    panel.Reset();
    QVERIFY(!panel.camera());
    QCOMPARE(panel.findChild<QComboBox*>("cmbDefectPixelMapSelector")->count(), 0);
    QCOMPARE(panel.findChild<QListWidget*>("listDarkImagePath")->count(), 0);
    QVERIFY(!panel.defectMap());
    QCOMPARE(ZebCPP::SimControl::ReplugCamera(kMonoFile), ZebCPP::ZebErrorSuccess);
    const std::vector<SimMapEntry> after = stored(kMonoFile, 3);
    QCOMPARE(after.size(), before.size());
}

QTEST_MAIN(TestPanelCameras)
#include "tst_uxdefectpixelcorrection_cameras.moc"
