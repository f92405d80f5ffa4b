#include "panelfixture.h"

#include "uxcamera.h"
#include "imageseries.h"
#include "mapformat.h"
#include "uxcustomwidgets.h"
#include "uxdefectpixelcorrection.h"
#include "uxframecapturecontrol.h"

#include <sim/simcontrol.h>

#include <QBuffer>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressDialog>
#include <QPushButton>
#include <QSemaphore>
#include <QThreadPool>
#include <QtConcurrent>
#include <QtTest>

using namespace PanelFixture;

namespace {

constexpr const char* kOddSlots = "ODD0001";

// Slots whose chunk ids are not map chunks must not be offered.
const char* const kOddSlotsJson = R"({ "id": "DEV_ODD0001", "model": "kvd123MXGE", "serial": "ODD0001",
    "name": "Odd slots", "interface": "sim-usb0", "bigEndian": false, "mapAccess": "file",
    "mapRevision": 3, "mapSlots": 5, "slotChunkIds": [4096, 4098, 4099, 4097, 4100],
    "sensor": { "width": 64, "height": 64, "seed": 3 } })";

constexpr const char* kSlowTransfers = "SLW0001";

// Every file operation takes a while, so that a transfer can be caught under way.
const char* const kSlowTransfersJson = R"({ "id": "DEV_SLW0001", "model": "kvd123MXGE", "serial": "SLW0001",
    "name": "Slow transfers", "interface": "sim-usb0", "mapAccess": "file", "fileOperationDelayMs": 20,
    "mapMaxSize": 40000, "sensor": { "width": 200, "height": 100, "seed": 5 } })";

constexpr const char* kCancellable = "CNC0001";

// Slow enough that a transfer of a few blocks can be cancelled from its progress window.
const char* const kCancellableJson = R"({ "id": "DEV_CNC0001", "model": "kvd123MXGE", "serial": "CNC0001",
    "name": "Cancellable", "interface": "sim-usb0", "mapAccess": "file", "fileOperationDelayMs": 150,
    "mapMaxSize": 40000, "sensor": { "width": 200, "height": 100, "seed": 7 } })";

constexpr const char* kWildMaximum = "WLD0001";

// Firmware that claims room for four billion map entries.
const char* const kWildMaximumJson = R"({ "id": "DEV_WLD0001", "model": "kvd123MXGE", "serial": "WLD0001",
    "name": "Wild maximum", "interface": "sim-usb0", "mapAccess": "file", "mapMaxSizeReported": 4000000000,
    "sensor": { "width": 64, "height": 64, "seed": 9 } })";

// Nine hot pixels and room for eight of them.
const char* const kSmallMapJson = R"({ "id": "DEV_SMF0001", "model": "kvd123MXGE", "serial": "SMF0001",
    "name": "Small map", "interface": "sim-eth0", "mapAccess": "file", "mapRevision": 3, "mapSlots": 2,
    "mapMaxSize": 8, "sensor": { "width": 96, "height": 64, "seed": 7, "hot": 9, "dead": 0, "stuck": 0,
    "clusters": 0 } })";

// Register maps, reporting room for 3 entries while the factory slot holds more.
const char* const kShortMaximumJson = R"({ "id": "DEV_SRM0001", "model": "kvd123MXGE", "serial": "SRM0001",
    "name": "Short maximum", "interface": "sim-eth0", "mapAccess": "register", "mapRevision": 3, "mapSlots": 2,
    "mapMaxSizeReported": 3 })";

QStringList outcomes(const QSignalSpy& spy)
{
    QStringList lines;
    for (const QList<QVariant>& args : spy)
        lines << args.at(0).toString();
    return lines;
}

void typeThreshold(UXCDefectPixelCorrection& panel, const char* name, const QString& text)
{
    auto* edit = panel.findChild<QLineEdit*>(name);
    edit->setFocus();
    edit->setText(text);
    QTest::keyClick(edit, Qt::Key_Return);
}

} // namespace

// The panel's input rules, its transfers cancelled or met by a reset, what it tells
// the user beside its log lines and the local maps it refuses.
class TestPanel : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void imageListsDropRepeatsAndFollowTheSelection();
    void typedThresholdsBeyondTheLimitKeepTheLastValue();
    void uploadsWaitUntilStreamingStops();
    void generationWithoutMemoryKeepsTheMap();
    void cancelledUploadKeepsThePreviousMap();
    void resetDuringTransferNeverLeavesHalfAMap();
    void nextCameraStartsAfresh();
    void batchTellsRefusalsOnceAndKeepsGoodImages();
    void captureFillsTheSeriesAndKeepsItWhenUnplugged();
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

void TestPanel::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
    for (const char* json : {kOddSlotsJson, kSlowTransfersJson, kWildMaximumJson, kCancellableJson, kSmallMapJson,
                             kShortMaximumJson})
        QCOMPARE(ZebCPP::SimControl::PlugCamera(json), ZebCPP::ZebErrorSuccess);
}

void TestPanel::cleanupTestCase()
{
    m_session.stop();
}

void TestPanel::imageListsDropRepeatsAndFollowTheSelection()
{
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;
    QVERIFY(rig.bind(kMonoFile));
    const QStringList dark = captureSeries(panel.camera(), m_dir.path(), "monodark", 2, false);
    rig.dialogs.openFileNames = QStringList{dark[0], dark[0], dark[1]};
    click(panel, "btnAddDarkImage");
    rig.dialogs.openFileNames = QStringList{dark[1]};
    click(panel, "btnAddDarkImage");
    auto* darkList = panel.findChild<QListWidget*>("listDarkImagePath");
    QCOMPARE(darkList->count(), 2);
    QCOMPARE(panel.darkParams().count, 2u);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    const QPoint first = darkList->visualItemRect(darkList->item(0)).center();
    QTest::mouseClick(darkList->viewport(), Qt::LeftButton, Qt::NoModifier, first);
    QCOMPARE(darkList->selectedItems().size(), 1);
    QTest::mouseClick(darkList->viewport(), Qt::LeftButton, Qt::ControlModifier, first);
    QVERIFY(darkList->selectedItems().isEmpty());

    // Either series alone keeps the image size and lets a map be generated.
    rig.dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "monobright", 1, true);
    click(panel, "btnAddBrightImage");
    darkList->selectAll();
    QVERIFY(button(panel, "btnDeleteDarkImage")->isEnabled());
    click(panel, "btnDeleteDarkImage");
    QCOMPARE(darkList->count(), 0);
    QVERIFY(!button(panel, "btnDeleteDarkImage")->isEnabled());
    QCOMPARE(panel.imageGeometry().pixelCount, 640u * 480u);
    QVERIFY(button(panel, "btnGenerateMap")->isEnabled());
    panel.findChild<QListWidget*>("listBrightImagePath")->selectAll();
    click(panel, "btnDeleteBrightImage");
    QCOMPARE(panel.imageGeometry().pixelCount, 0u);
    QVERIFY(!button(panel, "btnGenerateMap")->isEnabled());
}

void TestPanel::typedThresholdsBeyondTheLimitKeepTheLastValue()
{
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;
    QVERIFY(rig.bind(kMonoFile));
    typeThreshold(panel, "txtAbsoluteThreshold", "255");
    typeThreshold(panel, "txtAbsoluteThreshold", "256");
    QCOMPARE(panel.darkParams().absoluteThreshold, 255);
    QCOMPARE(panel.findChild<QLineEdit*>("txtAbsoluteThreshold")->text(), QString("255"));
    typeThreshold(panel, "txtRelativeThreshold", "100");
    typeThreshold(panel, "txtRelativeThreshold", "101");
    QCOMPARE(panel.brightParams().relativeThreshold, 100);
    QCOMPARE(panel.findChild<QLineEdit*>("txtRelativeThreshold")->text(), QString("100"));
}

void TestPanel::uploadsWaitUntilStreamingStops()
{
    Rig rig(m_session);
    QVERIFY(rig.bind(kMonoFile));
    rig.dialogs.openFileNames = captureSeries(rig.panel.camera(), m_dir.path(), "streamdark", 1, false);
    click(rig.panel, "btnAddDarkImage");
    click(rig.panel, "btnGenerateMap");
    activateSlot(rig.panel, 1);
    QCOMPARE(ZebCPP::SimControl::SetStreaming(kMonoFile, true), ZebCPP::ZebErrorSuccess);
    rig.dialogs.calls.clear();
    click(rig.panel, "btnUploadMapToCam");
    QCOMPARE(rig.dialogs.messages(), QStringList{"critical|Upload Map|Stop streaming before uploading map to camera."});
    rig.dialogs.answer = QMessageBox::No;
    click(rig.panel, "btnUploadLocalMap");
    QCOMPARE(rig.dialogs.last("question")->title, QString("Upload Local Map"));
    QCOMPARE(ZebCPP::SimControl::SetStreaming(kMonoFile, false), ZebCPP::ZebErrorSuccess);
}

void TestPanel::resetDuringTransferNeverLeavesHalfAMap()
{
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;

    // Mid-transfer, one block of three written: the reset waits for the upload's end,
    // so the slot holds the whole map.
    QVERIFY(rig.bind(kSlowTransfers));
    activateSlot(panel, 1);
    const std::vector<t_defpix> map = rowMap(20000, 200);
    QVERIFY(writeFile(m_dir.filePath("large.bin"), containerBytes(map, 200, 200 * 100)));
    QSignalSpy progress(panel.camera(), &UxCamera::updateTransferProcess);
    rig.dialogs.openFileName = QStringList{m_dir.filePath("large.bin")};
    click(panel, "btnUploadLocalMap");
    QTRY_VERIFY(!progress.isEmpty());
    QVERIFY(!button(panel, "btnDownloadMapToFile")->isEnabled());
    QVERIFY(rig.release());
    QCOMPARE(storedMap(kSlowTransfers, 1).size(), map.size());

    // Queued behind busy workers: the reset cancels the upload before it starts and
    // the slot keeps that map.
    QVERIFY(rig.bind(kSlowTransfers));
    rig.dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "slowdark", 2, false);
    click(panel, "btnAddDarkImage");
    click(panel, "btnGenerateMap");
    activateSlot(panel, 1);
    QVERIFY(button(panel, "btnUploadMapToCam")->isEnabled());
    QThreadPool* pool = QThreadPool::globalInstance();
    QSemaphore hold;
    std::vector<QFuture<void>> busy;
    for (int i = 0; i < pool->maxThreadCount(); ++i)
        busy.push_back(QtConcurrent::run([&hold] { hold.acquire(); }));
    QTRY_COMPARE(pool->activeThreadCount(), pool->maxThreadCount());
    click(panel, "btnUploadMapToCam");
    panel.Reset();
    hold.release(pool->maxThreadCount());
    for (QFuture<void>& worker : busy)
        worker.waitForFinished();
    QVERIFY(!panel.isFileTaskRunning());
    QVERIFY(!panel.camera());
    QVERIFY(!panel.defectMap());
    QCOMPARE(panel.findChild<QListWidget*>("listDarkImagePath")->count(), 0);
    QCOMPARE(panel.findChild<QComboBox*>("cmbDefectPixelMapSelector")->count(), 0);
    QVERIFY(rig.release());
    QCOMPARE(storedMap(kSlowTransfers, 1).size(), map.size());

    // A camera bound after a reset still gets its buttons and progress window back
    // after a transfer, although finishFileTask no longer reports it.
    QVERIFY(rig.bind(kOddSlots));
    activateSlot(panel, 1);
    rig.dialogs.calls.clear();
    rig.dialogs.saveFileName = QStringList{m_dir.filePath("after-reset")};
    click(panel, "btnDownloadMapToFile");
    QTRY_VERIFY(!panel.isFileTaskRunning());
    QTRY_VERIFY(button(panel, "btnUploadLocalMap")->isEnabled());
    QVERIFY(!panel.findChild<QProgressDialog*>()->isVisible());
    QVERIFY(!rig.dialogs.messages().join('\n').contains("File Access"));
}

void TestPanel::generationWithoutMemoryKeepsTheMap()
{
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;
    QVERIFY(rig.bind(kMonoFile));
    rig.dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "spacedark", 1, false);
    click(panel, "btnAddDarkImage");
    click(panel, "btnGenerateMap");
    const std::vector<t_defpix> before(panel.defectMap(), panel.defectMap() + panel.defectCount());
    QVERIFY(!before.empty());
    rig.log.clear();

    failDefectMaskMemory(true);
    click(panel, "btnGenerateMap");
    failDefectMaskMemory(false);
    QCOMPARE(rig.dialogs.messages().last(), QString("critical|Generate Map|Generate map failed: out of memory!"));
    QCOMPARE(rig.logLines(), QStringList{"2|Generate map failed: out of memory!"});
    QCOMPARE(std::vector<t_defpix>(panel.defectMap(), panel.defectMap() + panel.defectCount()), before);
    QCOMPARE(panel.findChild<QLineEdit*>("txtDefectPixelCount")->text(), QString::number(before.size()));
    QVERIFY(button(panel, "btnSaveMapToFile")->isEnabled());
}

void TestPanel::cancelledUploadKeepsThePreviousMap()
{
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;
    QVERIFY(rig.bind(kCancellable));
    activateSlot(panel, 1);
    const QString kept = m_dir.filePath("kept.bin"), cancelled = m_dir.filePath("cancelled.bin");
    QVERIFY(writeFile(kept, containerBytes(rowMap(50, 200), 200, 200 * 100)));
    QVERIFY(writeFile(cancelled, containerBytes(rowMap(20000, 200), 200, 200 * 100)));
    rig.dialogs.openFileName = QStringList{kept};
    click(panel, "btnUploadLocalMap");
    QTRY_COMPARE_WITH_TIMEOUT(storedMap(kCancellable, 1).size(), size_t(50), 10000);
    QTRY_VERIFY(button(panel, "btnDownloadMapToFile")->isEnabled());

    // Three blocks: cancelled once the first one is in, the camera refuses the cut container.
    QSignalSpy progress(panel.camera(), &UxCamera::updateTransferProcess);
    rig.dialogs.openFileName = QStringList{cancelled};
    click(panel, "btnUploadLocalMap");
    QTRY_VERIFY(!progress.isEmpty());
    auto* cancel = panel.findChild<QProgressDialog*>()->findChild<QPushButton*>();
    QVERIFY(cancel);
    QTRY_VERIFY(cancel->isVisible());
    QTest::mouseClick(cancel, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(button(panel, "btnDownloadMapToFile")->isEnabled(), 10000);
    const QString said = "Upload Local File cancelled; the slot DefPixMap1 keeps its previous map.";
    QCOMPARE(rig.dialogs.messages().last(), "information|File Access|" + said);
    QVERIFY(rig.logLines().contains("1|" + said));
    QVERIFY(!panel.findChild<QProgressDialog*>()->findChild<QPushButton*>());

    const QString back = m_dir.filePath("back.bin");
    rig.dialogs.saveFileName = QStringList{back};
    click(panel, "btnDownloadMapToFile");
    QTRY_VERIFY_WITH_TIMEOUT(!panel.isFileTaskRunning() && button(panel, "btnDownloadMapToFile")->isEnabled(),
                             10000);
    QCOMPARE(readFile(back), readFile(kept));
}

void TestPanel::nextCameraStartsAfresh()
{
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;

    // The first camera's image size must not bar the next camera's images.
    QVERIFY(rig.bind(kMonoFile));
    rig.dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "firstdark", 1, false);
    click(panel, "btnAddDarkImage");
    QCOMPARE(panel.imageGeometry().pixelCount, 640u * 480u);
    QVERIFY(rig.release());

    // A series stopped once its first images are in keeps them, and loads no more.
    QVERIFY(rig.bind(kWildMaximum));
    rig.dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "nextdark", 12, false);
    auto* list = panel.findChild<QListWidget*>("listDarkImagePath");
    connect(list->model(), &QAbstractItemModel::rowsInserted, &panel, [&panel] {
        if (auto* progress = panel.findChild<QProgressDialog*>("imageLoadProgress"))
            progress->cancel();
    });
    click(panel, "btnAddDarkImage");
    QVERIFY(list->count() >= 1 && list->count() < 12);
    QCOMPARE(panel.darkParams().count, uint32_t(list->count()));
    QCOMPARE(panel.imageGeometry().pixelCount, 64u * 64u);
    // An absurd maximum would size the map buffers; the panel keeps its own.
    click(panel, "btnGenerateMap");
    QVERIFY(rig.logLines().contains("2|The camera reports an implausible maximal map size: 4000000000."));
    QCOMPARE(panel.maxMapSize(), 10000u);
    QVERIFY(panel.defectCount() > 0);
}

void TestPanel::batchTellsRefusalsOnceAndKeepsGoodImages()
{
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;
    QVERIFY(rig.bind(kMonoFile));
    const QStringList good = captureSeries(panel.camera(), m_dir.path(), "batchdark", 3, false);
    QCOMPARE(good.size(), 3);
    const QString small = m_dir.filePath("small.bmp"), empty = m_dir.filePath("empty.bmp"),
                  cut = m_dir.filePath("cut.bmp"), text = m_dir.filePath("text.bmp");
    QImage smallImage(8, 4, QImage::Format_Grayscale8);
    smallImage.fill(0);
    QVERIFY(smallImage.convertToFormat(QImage::Format_Indexed8).save(small, "BMP"));
    QVERIFY(writeFile(empty, QByteArray()));
    const QByteArray whole = readFile(good[0]);
    QVERIFY(writeFile(cut, whole.left(whole.size() - 640)));
    QVERIFY(writeFile(text, "no image"));

    // Good and bad mixed, added at once: the good ones stay, one box tells the rest.
    rig.dialogs.openFileNames = QStringList{good[0], small, empty, good[1], cut, text, good[2]};
    click(panel, "btnAddDarkImage");
    QCOMPARE(panel.findChild<QListWidget*>("listDarkImagePath")->count(), 3);
    QCOMPARE(panel.darkParams().count, 3u);
    QCOMPARE(rig.dialogs.messages(), QStringList{"critical|Load Image|4 of the 7 chosen images were not added."});
    const RecordingDialogs::Call* box = rig.dialogs.last("critical");
    QVERIFY(!box->overProgress);
    QCOMPARE(box->details.split('\n'),
             (QStringList{small + ": Size 8×4 differs from the series' 640×480.", empty + ": The file is empty.",
                          cut + ": The file is truncated: its pixel data is cut short.",
                          text + ": Not a readable bitmap."}));
    const QStringList lines = rig.logLines();
    for (const QString& line : {"2|Loading '" + small + "': incompatible image.", "2|Loading image '" + empty + "' failed.",
                                "2|Loading image '" + cut + "' failed.", "2|Loading image '" + text + "' failed."})
        QVERIFY2(lines.contains(line), qPrintable(line));

    // The batch's mean is the one file-by-file accumulation gives.
    ImageGeometry geometry;
    DefectPixelParams params;
    QImage mean;
    for (const QString& path : good)
        QCOMPARE(addImageToSeries(path, DarkSeries, geometry, params, mean), SeriesChange::Accepted);
    QCOMPARE(panel.findChild<UXCPixmapLabel*>("lblMeanImageDark")->getImage(), mean);

    // A single refusal keeps the described message, with its reason as details.
    rig.dialogs.calls.clear();
    rig.dialogs.openFileNames = QStringList{small};
    click(panel, "btnAddBrightImage");
    QCOMPARE(rig.dialogs.messages(), QStringList{"information|Load Image|" + small + ": incompatible image!"});
    QCOMPARE(rig.dialogs.last("information")->details, small + ": Size 8×4 differs from the series' 640×480.");
}

void TestPanel::captureFillsTheSeriesAndKeepsItWhenUnplugged()
{
    QCOMPARE(ZebCPP::SimControl::PlugCamera(R"({ "id": "DEV_NSC0001", "model": "kvd123MXGE", "serial": "NSC0001",
        "interface": "sim-usb0", "streams": false, "sensor": { "width": 64, "height": 64 } })"),
             ZebCPP::ZebErrorSuccess);
    Rig rig(m_session);
    UXCDefectPixelCorrection& panel = rig.panel;
    QVERIFY(rig.bind("NSC0001"));
    QVERIFY(!panel.captureControl(0)->button()->isEnabled());
    QVERIFY(!panel.captureControl(1)->button()->isEnabled());
    QVERIFY(rig.release());

    QVERIFY(rig.bind(kMonoFile));
    UXCFrameCaptureControl* dark = panel.captureControl(0);
    QVERIFY(dark->button()->isEnabled());
    QSignalSpy finished(dark, &UXCFrameCaptureControl::captureFinished);
    QSignalSpy frames(dark, &UXCFrameCaptureControl::frameCaptured);
    FrameCaptureSettings settings;
    settings.frames = 3;
    QVERIFY(dark->capture(settings));
    QVERIFY(finished.wait(20000));
    auto* list = panel.findChild<QListWidget*>("listDarkImagePath");
    QCOMPARE(list->count(), 3);
    QCOMPARE(panel.darkParams().count, 3u);
    QVERIFY2(QFileInfo(list->item(2)->text()).fileName().startsWith("KV1230001_dark_"), qPrintable(list->item(2)->text()));
    QVERIFY(button(panel, "btnGenerateMap")->isEnabled());

    settings.frames = 200;
    QVERIFY(dark->capture(settings));
    QVERIFY(frames.wait(20000));
    QCOMPARE(ZebCPP::SimControl::UnplugCamera(kMonoFile), ZebCPP::ZebErrorSuccess);
    QVERIFY(finished.wait(20000));
    QCOMPARE(finished.last().at(0).toInt(), int(CaptureEnd::CameraLost));
    const int kept = finished.last().at(1).toInt();
    QVERIFY(kept > 0 && kept < 200);
    QCOMPARE(list->count(), 3 + kept);
    QCOMPARE(panel.darkParams().count, 3u + kept);
    QVERIFY(rig.dialogs.last("critical")->text.contains("disconnected"));
    rig.release();
    QCOMPARE(ZebCPP::SimControl::ReplugCamera(kMonoFile), ZebCPP::ZebErrorSuccess);
}

void TestPanel::localTextMapsAreCheckedBeforeUpload()
{
    Rig rig(m_session);
    QSignalSpy outcome(&rig.panel, &UXCDefectPixelCorrection::actionOutcome);
    QVERIFY(rig.bind(kRegisterMono));
    activateSlot(rig.panel, 1);

    // Junk lines and a repeated position are dropped, and the question says so.
    const QString good = m_dir.filePath("good.txt");
    QVERIFY(writeFile(good, "# made by hand\n10;20;0\nnonsense\n30;40;0\n10;20;0\n1;2\n1279;1023;0\n"));
    rig.dialogs.openFileName = QStringList{good};
    click(rig.panel, "btnUploadLocalMap");
    QCOMPARE(rig.dialogs.last("question")->text,
             QString("3 entry(s) will be written to 'DefPixMap1' (2 line(s) skipped as malformed, "
                     "1 duplicate coordinate(s)).\nWrite them?"));
    QCOMPARE(outcomes(outcome).last(), QString("Uploaded 3 entry(s) to DefPixMap1."));

    const QString before = m_dir.filePath("before.txt");
    rig.dialogs.saveFileName = QStringList{before};
    click(rig.panel, "btnDownloadMapToFile");
    QCOMPARE(readFile(before), QByteArray("10;20;0\n30;40;0\n1279;1023;0\n"));

    // Garbage with one entry far outside the sensor: refused, the slot keeps its map.
    const QString garbage = m_dir.filePath("garbage.txt");
    QVERIFY(writeFile(garbage, "\x01\x02junk\n;;;\n5;5;0\n70000;3;0\nzz;1;0\n"));
    const int questions = rig.dialogs.count("question");
    rig.dialogs.openFileName = QStringList{garbage};
    click(rig.panel, "btnUploadLocalMap");
    QVERIFY(rig.dialogs.last("critical")->text.contains("1 entry(s) lie outside the sensor (1280 x 1024)"));
    QCOMPARE(rig.dialogs.count("question"), questions + 1); // only the proceed question the upload always asks
    QVERIFY(outcomes(outcome).last().startsWith("Upload to DefPixMap1 refused"));

    const QString after = m_dir.filePath("after.txt");
    rig.dialogs.saveFileName = QStringList{after};
    click(rig.panel, "btnDownloadMapToFile");
    QCOMPARE(readFile(after), readFile(before));
    QVERIFY(outcomes(outcome).last().startsWith("Downloaded 3 entry(s) from DefPixMap1 to "));

    // Nothing usable at all is refused as well.
    QVERIFY(writeFile(garbage, "junk only\n\n"));
    rig.dialogs.openFileName = QStringList{garbage};
    click(rig.panel, "btnUploadLocalMap");
    QVERIFY(rig.dialogs.last("critical")->text.contains("holds no valid map entry"));
}

void TestPanel::factorySlotIsRefusedBeforeAnyQuestion()
{
    Rig rig(m_session);
    QVERIFY(rig.bind(kRegisterMono));
    activateSlot(rig.panel, 0);
    click(rig.panel, "btnUploadLocalMap");
    QVERIFY(!rig.dialogs.last("question"));
    QCOMPARE(rig.dialogs.last("critical")->text, QString("Upload failed: upload to factory map is protected!"));
    QVERIFY(rig.release());

    // File-access cameras disable the uploads instead; the slot can still be read.
    QVERIFY(rig.bind(kMonoFile));
    activateSlot(rig.panel, 0);
    QVERIFY(!button(rig.panel, "btnUploadLocalMap")->isEnabled());
    QVERIFY(button(rig.panel, "btnDownloadMapToFile")->isEnabled());
}

void TestPanel::truncatedAndStaleMapsAreShown()
{
    Rig rig(m_session);
    QSignalSpy outcome(&rig.panel, &UXCDefectPixelCorrection::actionOutcome);
    QVERIFY(rig.bind("SMF0001"));
    rig.dialogs.openFileNames = captureSeries(rig.panel.camera(), m_dir.path(), "smalldark", 3, false);
    click(rig.panel, "btnAddDarkImage");

    click(rig.panel, "btnGenerateMap");
    const QString warning = "9 pixels flagged; only 8 fit into the camera's map. Raise the thresholds to flag "
                            "fewer pixels.";
    QCOMPARE(outcomes(outcome).last(), warning);
    QCOMPARE(rig.panel.findChild<QLabel*>("lblMapNote")->text(), warning);
    QVERIFY(!rig.panel.isMapStale());

    // A save into a folder that does not exist fails aloud.
    rig.dialogs.saveFileName = QStringList{m_dir.filePath("missing/map")};
    click(rig.panel, "btnSaveMapToFile");
    QCOMPARE(rig.dialogs.messages().last(), QString("critical|Save Map|Save to file failed!"));
    QCOMPARE(outcomes(outcome).last(), QString("Saving the map failed."));

    // Removing an image makes the shown map out of date; uploading it asks first.
    auto* list = rig.panel.findChild<QListWidget*>("listDarkImagePath");
    rig.panel.show();
    QApplication::setActiveWindow(&rig.panel);
    QVERIFY(QTest::qWaitForWindowActive(&rig.panel));
    list->setFocus();
    list->setCurrentRow(2);
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(list->count(), 2);
    QVERIFY(rig.panel.isMapStale());
    QVERIFY(rig.panel.findChild<QLineEdit*>("txtDefectPixelCount")->font().strikeOut());
    activateSlot(rig.panel, 1);
    rig.dialogs.answer = QMessageBox::No;
    click(rig.panel, "btnUploadMapToCam");
    QVERIFY(rig.dialogs.last("question")->text.contains("out of date"));
    QVERIFY(!rig.panel.isFileTaskRunning());

    click(rig.panel, "btnGenerateMap");
    QVERIFY(!rig.panel.isMapStale());
    QVERIFY(!rig.panel.findChild<QLineEdit*>("txtDefectPixelCount")->font().strikeOut());
}

void TestPanel::singleImageRefusalsAreTold_data()
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

void TestPanel::singleImageRefusalsAreTold()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QFETCH(QString, logLine);
    const QString path = m_dir.filePath(QString("refused-%1.bmp").arg(QTest::currentDataTag()));
    QVERIFY(writeFile(path, content));
    Rig rig(m_session);
    QVERIFY(rig.bind(kMonoFile));
    rig.dialogs.openFileNames = QStringList{path};
    click(rig.panel, "btnAddDarkImage");
    QCOMPARE(rig.dialogs.messages(), QStringList{message.arg(path)});
    QVERIFY(rig.logLines().contains(logLine.arg(path)));
    QCOMPARE(rig.panel.darkParams().count, 0u);
}

void TestPanel::mapActionsWithoutAMapOrBeyondTheMaximum()
{
    Rig rig(m_session);
    QVERIFY(rig.bind("SRM0001"));
    activateSlot(rig.panel, 1);
    // Nothing generated: the upload says so instead of asking.
    QVERIFY(QMetaObject::invokeMethod(&rig.panel, "on_btnUploadMapToCam_clicked"));
    QCOMPARE(rig.dialogs.messages(), QStringList{"information|Upload Defect Pixel Map|Upload failed: empty map"});
    QCOMPARE(rig.logLines().last(), QString("2|Upload failed: empty map!"));

    // The factory slot holds more entries than the camera says fit: its download is refused.
    rig.dialogs.calls.clear();
    activateSlot(rig.panel, 0);
    rig.dialogs.saveFileName = QStringList{m_dir.filePath("factory")};
    click(rig.panel, "btnDownloadMapToFile");
    QCOMPARE(rig.dialogs.messages().value(0), QString("critical|Download Map From Camera|Download failed: invalid map size!"));
    QVERIFY(rig.logLines().contains("2|Download failed: invalid map size!"));
}

QTEST_MAIN(TestPanel)
#include "tst_uxdefectpixelcorrection.moc"
