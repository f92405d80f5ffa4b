#include "panelfixture.h"

#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"

#include <sim/simcontrol.h>

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressDialog>
#include <QTabWidget>
#include <QtTest>

#include <set>

using namespace PanelFixture;
using ZebCPP::SimControl::SimDefect;
using ZebCPP::SimControl::SimMapEntry;

namespace {

using Position = std::pair<uint32_t, uint32_t>;

std::set<Position> positionsOf(const t_defpix* map, unsigned int count)
{
    std::set<Position> positions;
    for (unsigned int i = 0; i < count; ++i)
        positions.insert({map[i].x, map[i].y});
    return positions;
}

std::set<Position> storedPositions(const char* serial, uint32_t slot)
{
    std::vector<SimMapEntry> entries;
    ZebCPP::SimControl::GetStoredMap(serial, slot, entries);
    std::set<Position> positions;
    for (const SimMapEntry& e : entries)
        positions.insert({e.x, e.y});
    return positions;
}

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

// One monochrome file-access camera from the first image to the map in the
// camera, in a file, and back in another slot.
class TestPanelWorkflow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void monochromeFileAccessCamera();

private:
    void waitForTransfer(UXCDefectPixelCorrection& panel, RecordingDialogs& dialogs, const QString& transfer);

    Session m_session;
    QTemporaryDir m_dir;
};

void TestPanelWorkflow::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
}

void TestPanelWorkflow::cleanupTestCase()
{
    m_session.stop();
}

void TestPanelWorkflow::waitForTransfer(UXCDefectPixelCorrection& panel, RecordingDialogs& dialogs,
                                        const QString& transfer)
{
    QTRY_VERIFY(!panel.isFileTaskRunning());
    const QString done = "information|File Access|" + transfer + " task has been successfully done.";
    QTRY_VERIFY2(dialogs.messages().contains(done), qPrintable(dialogs.messages().join('\n')));
}

void TestPanelWorkflow::monochromeFileAccessCamera()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy logs(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    panel.resize(620, 720);
    panel.show();

    UxCamera* camera = m_session.open(kMonoFile);
    QVERIFY(camera);
    QVERIFY(panel.Init(camera));
    QCOMPARE(panel.camera(), camera);
    QVERIFY(!panel.isColor());
    QVERIFY(!panel.isRegisterMode());
    QVERIFY(panel.isBigEndian());
    QCOMPARE(panel.revision(), 3);
    auto* tabs = panel.findChild<QTabWidget*>("tabWidget");
    QVERIFY(tabs->isTabVisible(1));
    QCOMPARE(button(panel, "btnGenerateMap")->toolTip(),
             QString("Generate map from the resulting dark and bright mean images."));
    QVERIFY(panel.findChild<QLabel*>("lblCameraName")->text().endsWith("\nFirmware: FW 2.4.1 build 311\n"));

    auto* selector = panel.findChild<QComboBox*>("cmbDefectPixelMapSelector");
    QCOMPARE(selector->count(), 4);
    QCOMPARE(selector->itemText(0), QString("DefPixMap0"));
    QCOMPARE(selector->itemData(1, Qt::UserRole + 3).toInt(), 4096);
    QCOMPARE(selector->itemData(0, Qt::UserRole + 2).toBool(), true);
    QCOMPARE(selector->itemData(1, Qt::UserRole + 2).toBool(), false);
    QVERIFY(!button(panel, "btnGenerateMap")->isEnabled());
    QVERIFY(button(panel, "btnDownloadMapToFile")->isEnabled());

    const QStringList dark = captureSeries(camera, m_dir.path(), "dark", 4, false);
    const QStringList bright = captureSeries(camera, m_dir.path(), "bright", 4, true);
    QCOMPARE(dark.size(), 4);
    QCOMPARE(bright.size(), 4);
    dialogs.openFileNames = dark;
    click(panel, "btnAddDarkImage");
    QCOMPARE(dialogs.last("open files")->title, QString("Image paths"));
    QCOMPARE(dialogs.last("open files")->text, QString("Bitmap (*.bmp)"));
    dialogs.openFileNames = bright;
    click(panel, "btnAddBrightImage");
    QCOMPARE(dialogs.last("open files")->dir, m_dir.path());
    QCOMPARE(panel.findChild<QListWidget*>("listDarkImagePath")->count(), 4);
    QCOMPARE(panel.findChild<QListWidget*>("listBrightImagePath")->count(), 4);
    QCOMPARE(panel.imageGeometry().pixelCount, 640u * 480u);

    click(panel, "btnGenerateMap");
    QVERIFY(logLines(logs).contains("0|Map successfully generated."));
    const unsigned int count = panel.defectCount();
    QCOMPARE(panel.findChild<QLineEdit*>("txtDefectPixelCount")->text(), QString::number(count));
    QVERIFY(button(panel, "btnSaveMapToFile")->isEnabled());
    // The factory slot is still selected: it cannot be written.
    QVERIFY(!button(panel, "btnUploadMapToCam")->isEnabled());

    std::vector<SimDefect> seeded;
    QCOMPARE(ZebCPP::SimControl::GetDefects(kMonoFile, seeded), ZebCPP::ZebErrorSuccess);
    const std::set<Position> found = positionsOf(panel.defectMap(), count);
    QStringList missed;
    std::set<Position> expected;
    for (const SimDefect& d : seeded) {
        expected.insert({d.x, d.y});
        if (!found.count({d.x, d.y}))
            missed << QString("%1 at %2,%3").arg(ZebCPP::SimControl::DefectKindName(d.kind)).arg(d.x).arg(d.y);
    }
    QVERIFY2(missed.isEmpty(), qPrintable("seeded defects not found: " + missed.join(", ")));
    QCOMPARE(found, expected);

    selector->setCurrentIndex(1);
    emit selector->activated(1);
    QVERIFY(button(panel, "btnUploadMapToCam")->isEnabled());
    QSignalSpy progress(camera, &UxCamera::updateTransferProcess);
    click(panel, "btnUploadMapToCam");
    QCOMPARE(dialogs.last("question")->text,
             QString("The uploaded map would overwrite the selected map 'DefPixMap1'.\nStart upload?"));
    waitForTransfer(panel, dialogs, "Upload Generated Map");
    const std::vector<unsigned char> container = panel.buildDefPixContainerBuffer(
        3, 4096, count, panel.defectMap(), 640, 640 * 480);
    QVERIFY(logLines(logs).contains(
        QString("0|Upload Generated Map 'DefPixMap1': %1 bytes written.").arg(container.size())));
    QVERIFY(!progress.isEmpty());
    QCOMPARE(progress.last().at(0).toLongLong(), 0ll);
    QVERIFY(!panel.findChild<QProgressDialog*>()->isVisible());
    QCOMPARE(storedPositions(kMonoFile, 1), found);

    dialogs.saveFileName = QStringList{m_dir.filePath("slot1")};
    click(panel, "btnDownloadMapToFile");
    QCOMPARE(dialogs.last("save file")->title, QString("Download File As"));
    QCOMPARE(dialogs.last("save file")->text, QString("Bin (*.bin)"));
    waitForTransfer(panel, dialogs, "Download");
    const QByteArray expectedBytes(reinterpret_cast<const char*>(container.data()), int(container.size()));
    QCOMPARE(fileBytes(m_dir.filePath("slot1.bin")), expectedBytes);

    dialogs.saveFileName = QStringList{m_dir.filePath("saved")};
    click(panel, "btnSaveMapToFile");
    QCOMPARE(dialogs.last("save file")->title, QString("Export Map"));
    QCOMPARE(dialogs.last("save file")->text, QString("Bin (*.bin)"));
    QCOMPARE(fileBytes(m_dir.filePath("saved.bin")), expectedBytes);

    selector->setCurrentIndex(2);
    emit selector->activated(2);
    dialogs.openFileName = QStringList{m_dir.filePath("saved.bin")};
    click(panel, "btnUploadLocalMap");
    QCOMPARE(dialogs.last("question")->text,
             QString("The uploaded map would overwrite the selected map 'DefPixMap2'.\nDo you want to proceed?"));
    QCOMPARE(dialogs.last("open file")->title, QString("Upload Local Map"));
    QCOMPARE(dialogs.last("open file")->text, QString("Bin (*.bin)"));
    waitForTransfer(panel, dialogs, "Upload Local File");
    QVERIFY(logLines(logs).contains(
        QString("0|Upload Local File 'DefPixMap2': %1 bytes written.").arg(container.size())));
    QCOMPARE(storedPositions(kMonoFile, 2), found);
    QVERIFY(button(panel, "btnUploadLocalMap")->isEnabled());
    QVERIFY(!button(panel, "btnUploadMapToCam")->isEnabled());

    const QString shot = QDir(QCoreApplication::applicationDirPath()).filePath("panel_generated_map.png");
    QVERIFY(panel.grab().save(shot));
    qInfo("panel screenshot: %s", qPrintable(shot));

    panel.Reset();
    QVERIFY(!panel.camera());
    QVERIFY(m_session.close(kMonoFile));
}

QTEST_MAIN(TestPanelWorkflow)
#include "tst_uxdefectpixelcorrection_workflow.moc"
