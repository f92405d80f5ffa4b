#include "panelfixture.h"

#include "uxcamera.h"
#include "imageseries.h"
#include "mapformat.h"
#include "uxcustomwidgets.h"
#include "uxdefectpixelcorrection.h"
#include "uxframecapturecontrol.h"

#include <sim/simcontrol.h>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressDialog>
#include <QPushButton>
#include <QSemaphore>
#include <QThreadPool>
#include <QtConcurrent>
#include <QtTest>

using namespace PanelFixture;
using ZebCPP::SimControl::SimMapEntry;

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

bool operator==(const t_defpix& a, const t_defpix& b)
{
    return a.x == b.x && a.y == b.y && a.type == b.type;
}

// The panel's input rules, the slots it offers and a transfer met by a reset.
class TestPanel : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void inputRulesAndStreamingGuard();
    void generationWithoutMemoryKeepsTheMap();
    void cancelledUploadKeepsThePreviousMap();
    void resetDuringTransferNeverLeavesHalfAMap();
    void nextCameraStartsAfresh();
    void batchTellsRefusalsOnceAndKeepsGoodImages();
    void captureFillsTheSeriesAndKeepsItWhenUnplugged();

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
    QCOMPARE(ZebCPP::SimControl::PlugCamera(kSlowTransfersJson), ZebCPP::ZebErrorSuccess);
    QCOMPARE(ZebCPP::SimControl::PlugCamera(kWildMaximumJson), ZebCPP::ZebErrorSuccess);
    QCOMPARE(ZebCPP::SimControl::PlugCamera(kCancellableJson), ZebCPP::ZebErrorSuccess);
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
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    auto* darkList = panel.findChild<QListWidget*>("listDarkImagePath");
    const QPoint first = darkList->visualItemRect(darkList->item(0)).center();
    QTest::mouseClick(darkList->viewport(), Qt::LeftButton, Qt::NoModifier, first);
    QCOMPARE(darkList->selectedItems().size(), 1);
    QTest::mouseClick(darkList->viewport(), Qt::LeftButton, Qt::ControlModifier, first);
    QVERIFY(darkList->selectedItems().isEmpty());
    dialogs.openFileNames = bright;
    click(panel, "btnAddBrightImage");

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

void TestPanel::resetDuringTransferNeverLeavesHalfAMap()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);

    // Mid-transfer, one block of three written: the reset waits for the upload's end,
    // so the slot holds the whole map.
    UxCamera* camera = m_session.open(kSlowTransfers);
    QVERIFY(panel.Init(camera));
    selectSlot(panel, 1);
    std::vector<t_defpix> map(20000);
    for (unsigned int i = 0; i < map.size(); ++i)
        map[i] = {i % 200, i / 200, 0};
    const std::vector<unsigned char> container =
        panel.buildDefPixContainerBuffer(kDefaultMapRevision, kDefaultChunkId, map.size(), map.data(), 200, 200 * 100);
    QFile large(m_dir.filePath("large.bin"));
    QVERIFY(large.open(QIODevice::WriteOnly));
    QCOMPARE(large.write(reinterpret_cast<const char*>(container.data()), qint64(container.size())),
             qint64(container.size()));
    large.close();
    QSignalSpy progress(camera, &UxCamera::updateTransferProcess);
    dialogs.openFileName = QStringList{large.fileName()};
    click(panel, "btnUploadLocalMap");
    QTRY_VERIFY(!progress.isEmpty());
    QVERIFY(!button(panel, "btnDownloadMapToFile")->isEnabled());
    panel.Reset();
    QVERIFY(m_session.close(kSlowTransfers));
    QCOMPARE(stored(kSlowTransfers, 1).size(), map.size());

    // Queued behind busy workers: the reset cancels the upload before it starts and
    // the slot keeps that map.
    QVERIFY(panel.Init(m_session.open(kSlowTransfers)));
    dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "slowdark", 2, false);
    click(panel, "btnAddDarkImage");
    click(panel, "btnGenerateMap");
    selectSlot(panel, 1);
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
    QVERIFY(m_session.close(kSlowTransfers));
    QCOMPARE(stored(kSlowTransfers, 1).size(), map.size());

    // A camera bound after a reset still gets its buttons and progress window back
    // after a transfer, although finishFileTask no longer reports it.
    QVERIFY(panel.Init(m_session.open(kOddSlots)));
    selectSlot(panel, 1);
    dialogs.calls.clear();
    dialogs.saveFileName = QStringList{m_dir.filePath("after-reset")};
    click(panel, "btnDownloadMapToFile");
    QTRY_VERIFY(!panel.isFileTaskRunning());
    QTRY_VERIFY(button(panel, "btnUploadLocalMap")->isEnabled());
    QVERIFY(!panel.findChild<QProgressDialog*>()->isVisible());
    QVERIFY(!dialogs.messages().join('\n').contains("File Access"));
    panel.Reset();
    QVERIFY(m_session.close(kOddSlots));
}

void TestPanel::generationWithoutMemoryKeepsTheMap()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy log(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    QVERIFY(panel.Init(m_session.open(kMonoFile)));
    dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "spacedark", 1, false);
    click(panel, "btnAddDarkImage");
    click(panel, "btnGenerateMap");
    const std::vector<t_defpix> before(panel.defectMap(), panel.defectMap() + panel.defectCount());
    QVERIFY(!before.empty());
    log.clear();

    failDefectMaskMemory(true);
    click(panel, "btnGenerateMap");
    failDefectMaskMemory(false);
    QCOMPARE(dialogs.messages().last(), QString("critical|Generate Map|Generate map failed: out of memory!"));
    QCOMPARE(logLines(log), QStringList{"2|Generate map failed: out of memory!"});
    QCOMPARE(std::vector<t_defpix>(panel.defectMap(), panel.defectMap() + panel.defectCount()), before);
    QCOMPARE(panel.findChild<QLineEdit*>("txtDefectPixelCount")->text(), QString::number(before.size()));
    QVERIFY(button(panel, "btnSaveMapToFile")->isEnabled());
    panel.Reset();
    QVERIFY(m_session.close(kMonoFile));
}

void TestPanel::cancelledUploadKeepsThePreviousMap()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy log(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    UxCamera* camera = m_session.open(kCancellable);
    QVERIFY(panel.Init(camera));
    selectSlot(panel, 1);
    const auto containerFile = [&](const QString& name, unsigned int count) {
        std::vector<t_defpix> map(count);
        for (unsigned int i = 0; i < count; ++i)
            map[i] = {i % 200, i / 200, 0};
        const std::vector<unsigned char> bytes = panel.buildDefPixContainerBuffer(
            kDefaultMapRevision, kDefaultChunkId, map.size(), map.data(), 200, 200 * 100);
        QFile file(m_dir.filePath(name));
        file.open(QIODevice::WriteOnly);
        file.write(reinterpret_cast<const char*>(bytes.data()), qint64(bytes.size()));
        return file.fileName();
    };
    const auto content = [](const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QString kept = containerFile("kept.bin", 50);
    dialogs.openFileName = QStringList{kept};
    click(panel, "btnUploadLocalMap");
    QTRY_COMPARE_WITH_TIMEOUT(stored(kCancellable, 1).size(), size_t(50), 10000);
    QTRY_VERIFY(button(panel, "btnDownloadMapToFile")->isEnabled());

    // Three blocks: cancelled once the first one is in, the camera refuses the cut container.
    QSignalSpy progress(camera, &UxCamera::updateTransferProcess);
    dialogs.openFileName = QStringList{containerFile("cancelled.bin", 20000)};
    click(panel, "btnUploadLocalMap");
    QTRY_VERIFY(!progress.isEmpty());
    auto* cancel = panel.findChild<QProgressDialog*>()->findChild<QPushButton*>();
    QVERIFY(cancel);
    QTRY_VERIFY(cancel->isVisible());
    QTest::mouseClick(cancel, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(button(panel, "btnDownloadMapToFile")->isEnabled(), 10000);
    const QString said = "Upload Local File cancelled; the slot DefPixMap1 keeps its previous map.";
    QCOMPARE(dialogs.messages().last(), "information|File Access|" + said);
    QVERIFY(logLines(log).contains("1|" + said));
    QVERIFY(!panel.findChild<QProgressDialog*>()->findChild<QPushButton*>());

    const QString back = m_dir.filePath("back.bin");
    dialogs.saveFileName = QStringList{back};
    click(panel, "btnDownloadMapToFile");
    QTRY_VERIFY_WITH_TIMEOUT(!panel.isFileTaskRunning() && button(panel, "btnDownloadMapToFile")->isEnabled(),
                             10000);
    QCOMPARE(content(back), content(kept));
    panel.Reset();
    QVERIFY(m_session.close(kCancellable));
}

void TestPanel::nextCameraStartsAfresh()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy log(&panel, &UXCDefectPixelCorrection::sendLogMessage);

    // The first camera's image size must not bar the next camera's images.
    QVERIFY(panel.Init(m_session.open(kMonoFile)));
    dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "firstdark", 1, false);
    click(panel, "btnAddDarkImage");
    QCOMPARE(panel.imageGeometry().pixelCount, 640u * 480u);
    panel.Reset();
    QVERIFY(m_session.close(kMonoFile));

    // A series stopped once its first image is in keeps that image, and loads no more.
    QVERIFY(panel.Init(m_session.open(kWildMaximum)));
    dialogs.openFileNames = captureSeries(panel.camera(), m_dir.path(), "nextdark", 3, false);
    auto* list = panel.findChild<QListWidget*>("listDarkImagePath");
    connect(list->model(), &QAbstractItemModel::rowsInserted, &panel, [&panel] {
        if (auto* progress = panel.findChild<QProgressDialog*>("imageLoadProgress"))
            progress->cancel();
    });
    click(panel, "btnAddDarkImage");
    QCOMPARE(list->count(), 1);
    QCOMPARE(panel.darkParams().count, 1u);
    QCOMPARE(panel.imageGeometry().pixelCount, 64u * 64u);
    // An absurd maximum would size the map buffers; the panel keeps its own.
    click(panel, "btnGenerateMap");
    QVERIFY(logLines(log).contains("2|The camera reports an implausible maximal map size: 4000000000."));
    QCOMPARE(panel.maxMapSize(), 10000u);
    QVERIFY(panel.defectCount() > 0);
    panel.Reset();
    QVERIFY(m_session.close(kWildMaximum));
}

void TestPanel::batchTellsRefusalsOnceAndKeepsGoodImages()
{
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QSignalSpy log(&panel, &UXCDefectPixelCorrection::sendLogMessage);
    QVERIFY(panel.Init(m_session.open(kMonoFile)));
    const QStringList good = captureSeries(panel.camera(), m_dir.path(), "batchdark", 3, false);
    QCOMPARE(good.size(), 3);
    const QString small = m_dir.filePath("small.bmp"), empty = m_dir.filePath("empty.bmp"),
                  cut = m_dir.filePath("cut.bmp"), text = m_dir.filePath("text.bmp");
    QImage smallImage(8, 4, QImage::Format_Grayscale8);
    smallImage.fill(0);
    QVERIFY(smallImage.convertToFormat(QImage::Format_Indexed8).save(small, "BMP"));
    QFile(empty).open(QIODevice::WriteOnly);
    QFile whole(good[0]);
    QVERIFY(whole.open(QIODevice::ReadOnly));
    QFile cutFile(cut);
    QVERIFY(cutFile.open(QIODevice::WriteOnly) && cutFile.write(whole.read(whole.size() - 640)) > 0);
    cutFile.close();
    QFile textFile(text);
    QVERIFY(textFile.open(QIODevice::WriteOnly) && textFile.write("no image") > 0);
    textFile.close();

    // Good and bad mixed, added at once: the good ones stay, one box tells the rest.
    dialogs.openFileNames = QStringList{good[0], small, empty, good[1], cut, text, good[2]};
    click(panel, "btnAddDarkImage");
    QCOMPARE(panel.findChild<QListWidget*>("listDarkImagePath")->count(), 3);
    QCOMPARE(panel.darkParams().count, 3u);
    QCOMPARE(dialogs.messages(), QStringList{"critical|Load Image|4 of the 7 chosen images were not added."});
    const RecordingDialogs::Call* box = dialogs.last("critical");
    QVERIFY(!box->overProgress);
    QCOMPARE(box->details.split('\n'),
             (QStringList{small + ": Size 8×4 differs from the series' 640×480.", empty + ": The file is empty.",
                          cut + ": The file is truncated: its pixel data is cut short.",
                          text + ": Not a readable bitmap."}));
    const QStringList lines = logLines(log);
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
    dialogs.calls.clear();
    dialogs.openFileNames = QStringList{small};
    click(panel, "btnAddBrightImage");
    QCOMPARE(dialogs.messages(), QStringList{"information|Load Image|" + small + ": incompatible image!"});
    QCOMPARE(dialogs.last("information")->details, small + ": Size 8×4 differs from the series' 640×480.");
    panel.Reset();
    QVERIFY(m_session.close(kMonoFile));
}

void TestPanel::captureFillsTheSeriesAndKeepsItWhenUnplugged()
{
    QCOMPARE(ZebCPP::SimControl::PlugCamera(R"({ "id": "DEV_NSC0001", "model": "kvd123MXGE", "serial": "NSC0001",
        "interface": "sim-usb0", "streams": false, "sensor": { "width": 64, "height": 64 } })"),
             ZebCPP::ZebErrorSuccess);
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    QVERIFY(panel.Init(m_session.open("NSC0001")));
    QVERIFY(!panel.captureControl(0)->button()->isEnabled());
    QVERIFY(panel.captureControl(1)->button()->toolTip().contains("no image stream"));
    panel.Reset();

    QVERIFY(panel.Init(m_session.open(kMonoFile)));
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
    QVERIFY(dialogs.last("critical")->text.contains("disconnected"));
    panel.Reset();
    QCOMPARE(ZebCPP::SimControl::ReplugCamera(kMonoFile), ZebCPP::ZebErrorSuccess);
}

QTEST_MAIN(TestPanel)
#include "tst_uxdefectpixelcorrection.moc"
