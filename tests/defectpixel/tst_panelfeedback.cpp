#include "panelfixture.h"

#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"

#include <sim/simcontrol.h>

#include <QBuffer>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

using namespace PanelFixture;

namespace {

// Nine hot pixels and room for eight of them.
const char* const kSmallMapJson = R"({ "id": "DEV_SMF0001", "model": "kvd123MXGE", "serial": "SMF0001",
    "name": "Small map", "interface": "sim-eth0", "mapAccess": "file", "mapRevision": 3, "mapSlots": 2,
    "mapMaxSize": 8, "sensor": { "width": 96, "height": 64, "seed": 7, "hot": 9, "dead": 0, "stuck": 0,
    "clusters": 0 } })";

// Register maps, reporting room for 3 entries while the factory slot holds more.
const char* const kShortMaximumJson = R"({ "id": "DEV_SRM0001", "model": "kvd123MXGE", "serial": "SRM0001",
    "name": "Short maximum", "interface": "sim-eth0", "mapAccess": "register", "mapRevision": 3, "mapSlots": 2,
    "mapMaxSizeReported": 3 })";

bool writeText(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList outcomes(const QSignalSpy& spy)
{
    QStringList lines;
    for (const QList<QVariant>& args : spy)
        lines << args.at(0).toString();
    return lines;
}

} // namespace

// What the panel tells the user beside its log lines, and the local maps it refuses.
class TestPanelFeedback : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void localTextMapsAreCheckedBeforeUpload();
    void factorySlotIsRefusedBeforeAnyQuestion();
    void truncatedAndStaleMapsAreShown();
    void singleImageRefusalsAreTold_data();
    void singleImageRefusalsAreTold();
    void mapActionsWithoutAMapOrBeyondTheMaximum();

private:
    Session m_session;
    QTemporaryDir m_dir;
};

void TestPanelFeedback::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
    QCOMPARE(ZebCPP::SimControl::PlugCamera(kSmallMapJson), ZebCPP::ZebErrorSuccess);
    QCOMPARE(ZebCPP::SimControl::PlugCamera(kShortMaximumJson), ZebCPP::ZebErrorSuccess);
}

void TestPanelFeedback::cleanupTestCase()
{
    m_session.stop();
}

void TestPanelFeedback::localTextMapsAreCheckedBeforeUpload()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy outcome(&panel, &UXCDefectPixelCorrection::actionOutcome);
    QVERIFY(panel.Init(m_session.open(kRegisterMono)));
    activateSlot(panel, 1);

    // Junk lines and a repeated position are dropped, and the question says so.
    const QString good = m_dir.filePath("good.txt");
    QVERIFY(writeText(good, "# made by hand\n10;20;0\nnonsense\n30;40;0\n10;20;0\n1;2\n1279;1023;0\n"));
    dialogs.openFileName = QStringList{good};
    click(panel, "btnUploadLocalMap");
    QCOMPARE(dialogs.last("question")->text,
             QString("3 entry(s) will be written to 'DefPixMap1' (2 line(s) skipped as malformed, "
                     "1 duplicate coordinate(s)).\nWrite them?"));
    QCOMPARE(outcomes(outcome).last(), QString("Uploaded 3 entry(s) to DefPixMap1."));

    const QString before = m_dir.filePath("before.txt");
    dialogs.saveFileName = QStringList{before};
    click(panel, "btnDownloadMapToFile");
    QCOMPARE(readAll(before), QByteArray("10;20;0\n30;40;0\n1279;1023;0\n"));

    // Garbage with one entry far outside the sensor: refused, the slot keeps its map.
    const QString garbage = m_dir.filePath("garbage.txt");
    QVERIFY(writeText(garbage, "\x01\x02junk\n;;;\n5;5;0\n70000;3;0\nzz;1;0\n"));
    const int questions = int(std::count_if(dialogs.calls.cbegin(), dialogs.calls.cend(),
                                            [](const RecordingDialogs::Call& c) { return c.kind == "question"; }));
    dialogs.openFileName = QStringList{garbage};
    click(panel, "btnUploadLocalMap");
    QVERIFY(dialogs.last("critical")->text.contains("1 entry(s) lie outside the sensor (1280 x 1024)"));
    QCOMPARE(std::count_if(dialogs.calls.cbegin(), dialogs.calls.cend(),
                           [](const RecordingDialogs::Call& c) { return c.kind == "question"; }),
             questions + 1); // only the proceed question the upload always asks
    QVERIFY(outcomes(outcome).last().startsWith("Upload to DefPixMap1 refused"));

    const QString after = m_dir.filePath("after.txt");
    dialogs.saveFileName = QStringList{after};
    click(panel, "btnDownloadMapToFile");
    QCOMPARE(readAll(after), readAll(before));
    QVERIFY(outcomes(outcome).last().startsWith("Downloaded 3 entry(s) from DefPixMap1 to "));

    // Nothing usable at all is refused as well.
    QVERIFY(writeText(garbage, "junk only\n\n"));
    dialogs.openFileName = QStringList{garbage};
    click(panel, "btnUploadLocalMap");
    QVERIFY(dialogs.last("critical")->text.contains("holds no valid map entry"));
    panel.Reset();
    QVERIFY(m_session.close(kRegisterMono));
}

void TestPanelFeedback::factorySlotIsRefusedBeforeAnyQuestion()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QVERIFY(panel.Init(m_session.open(kRegisterMono)));
    activateSlot(panel, 0);
    QVERIFY(button(panel, "btnUploadLocalMap")->toolTip().contains("factory map"));
    click(panel, "btnUploadLocalMap");
    QVERIFY(!dialogs.last("question"));
    QCOMPARE(dialogs.last("critical")->text, QString("Upload failed: upload to factory map is protected!"));
    activateSlot(panel, 1);
    QVERIFY(button(panel, "btnUploadLocalMap")->toolTip().isEmpty());
    panel.Reset();
    QVERIFY(m_session.close(kRegisterMono));

    // File-access cameras disable the buttons; the tooltip says why.
    QVERIFY(panel.Init(m_session.open(kMonoFile)));
    activateSlot(panel, 0);
    QVERIFY(!button(panel, "btnUploadLocalMap")->isEnabled());
    QVERIFY(button(panel, "btnUploadMapToCam")->toolTip().contains("factory map"));
    panel.Reset();
    QVERIFY(m_session.close(kMonoFile));
}

void TestPanelFeedback::truncatedAndStaleMapsAreShown()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy log(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    QSignalSpy outcome(&panel, &UXCDefectPixelCorrection::actionOutcome);
    UxCamera* camera = m_session.open("SMF0001");
    QVERIFY(panel.Init(camera));
    const QStringList dark = captureSeries(camera, m_dir.path(), "smalldark", 3, false);
    dialogs.openFileNames = dark;
    click(panel, "btnAddDarkImage");
    QCOMPARE(outcomes(outcome).last(), QString("3 dark image(s) added."));

    click(panel, "btnGenerateMap");
    QCOMPARE(logLines(log).last(), QString("0|Map successfully generated."));
    const QString warning = "9 pixels flagged; only 8 fit into the camera's map. Raise the thresholds to flag "
                            "fewer pixels.";
    QCOMPARE(outcomes(outcome).last(), warning);
    QCOMPARE(panel.findChild<QLabel*>("lblMapNote")->text(), warning);
    QVERIFY(!panel.isMapStale());

    // A save into a folder that does not exist fails aloud.
    dialogs.saveFileName = QStringList{m_dir.filePath("missing/map")};
    click(panel, "btnSaveMapToFile");
    QCOMPARE(dialogs.messages().last(), QString("critical|Save Map|Save to file failed!"));
    QCOMPARE(outcomes(outcome).last(), QString("Saving the map failed."));

    // Removing an image makes the shown map out of date; uploading it asks first.
    auto* list = panel.findChild<QListWidget*>("listDarkImagePath");
    panel.show();
    QApplication::setActiveWindow(&panel);
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    list->setFocus();
    list->setCurrentRow(2);
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(list->count(), 2);
    QVERIFY(panel.isMapStale());
    QVERIFY(panel.findChild<QLineEdit*>("txtDefectPixelCount")->font().strikeOut());
    activateSlot(panel, 1);
    dialogs.answer = QMessageBox::No;
    click(panel, "btnUploadMapToCam");
    QVERIFY(dialogs.last("question")->text.contains("out of date"));
    QVERIFY(!panel.isFileTaskRunning());

    click(panel, "btnGenerateMap");
    QVERIFY(!panel.isMapStale());
    QVERIFY(!panel.findChild<QLineEdit*>("txtDefectPixelCount")->font().strikeOut());
    panel.Reset();
    QVERIFY(m_session.close("SMF0001"));
}

void TestPanelFeedback::singleImageRefusalsAreTold_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("logLine");
    QTest::newRow("not an image") << QByteArray("no image") << "critical|Load Image|%1 failed!"
                                  << "2|Loading image '%1' failed.";
    QImage mono(8, 4, QImage::Format_Mono);
    mono.fill(1);
    QBuffer bitmap;
    QVERIFY(bitmap.open(QIODevice::WriteOnly) && mono.save(&bitmap, "BMP"));
    QTest::newRow("1-bit bitmap") << bitmap.data() << "information|Load Image|%1: image format not supported!"
                                  << "2|Loading '%1': Image format not supported.";
}

void TestPanelFeedback::singleImageRefusalsAreTold()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QFETCH(QString, logLine);
    const QString path = m_dir.filePath(QString("refused-%1.bmp").arg(QTest::currentDataTag()));
    QVERIFY(writeText(path, content));
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy log(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    QVERIFY(panel.Init(m_session.open(kMonoFile)));
    dialogs.openFileNames = QStringList{path};
    click(panel, "btnAddDarkImage");
    QCOMPARE(dialogs.messages(), QStringList{message.arg(path)});
    QVERIFY(logLines(log).contains(logLine.arg(path)));
    QCOMPARE(panel.darkParams().count, 0u);
    panel.Reset();
    QVERIFY(m_session.close(kMonoFile));
}

void TestPanelFeedback::mapActionsWithoutAMapOrBeyondTheMaximum()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy log(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    QVERIFY(panel.Init(m_session.open("SRM0001")));
    activateSlot(panel, 1);
    // Nothing generated: the upload says so instead of asking.
    QVERIFY(QMetaObject::invokeMethod(&panel, "on_btnUploadMapToCam_clicked"));
    QCOMPARE(dialogs.messages(), QStringList{"information|Upload Defect Pixel Map|Upload failed: empty map"});
    QCOMPARE(logLines(log).last(), QString("2|Upload failed: empty map!"));

    // The factory slot holds more entries than the camera says fit: its download is refused.
    dialogs.calls.clear();
    activateSlot(panel, 0);
    dialogs.saveFileName = QStringList{m_dir.filePath("factory")};
    click(panel, "btnDownloadMapToFile");
    QCOMPARE(dialogs.messages().value(0), QString("critical|Download Map From Camera|Download failed: invalid map size!"));
    QVERIFY(logLines(log).contains("2|Download failed: invalid map size!"));
    panel.Reset();
    QVERIFY(m_session.close("SRM0001"));
}

QTEST_MAIN(TestPanelFeedback)
#include "tst_panelfeedback.moc"
