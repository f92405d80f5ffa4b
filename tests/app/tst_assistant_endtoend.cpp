#include "CameraDiscoveryWidget.h"
#include "defectmapcontainer.h"
#include "mainwindow.h"
#include "panelfixture.h"
#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"

#include <ZebCPP.h>
#include <sim/simcontrol.h>

#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeView>
#include <QtTest>

#include <memory>
#include <set>

using namespace PanelFixture;
using namespace ZebCPP;

namespace {

// The SDK starts and transfers run on worker threads of a machine shared by sanitized builds.
constexpr int kTimeoutMs = 30000;

using Position = std::pair<uint32_t, uint32_t>;

std::set<Position> positions(const std::vector<t_defpix>& map)
{
    std::set<Position> result;
    for (const t_defpix& entry : map)
        result.insert({entry.x, entry.y});
    return result;
}

// A camera whose maps span several file-access blocks.
const char* const kLargeMapJson = R"({ "id": "DEV_LRG0001", "model": "kvd123MXGE", "serial": "LRG0001",
    "name": "Large map", "interface": "sim-eth0", "mapAccess": "file", "mapRevision": 3, "mapSlots": 2,
    "mapMaxSize": 40000, "sensor": { "width": 200, "height": 150 } })";

} // namespace

// The whole assistant as a user drives it: the camera chosen in the list, the
// dialogs answered, the maps checked inside the simulated cameras.
class TestAssistantEndToEnd : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void monochromeFileAccessCamera();
    void meanImageStaysUsableOnSmallAndCommonScreens();
    void colourCameraOfRevision4();
    void bigEndianRegisterCamera();
    void largeAndEmptyLocalMapFiles();
    void cameraUnpluggedDuringUpload();

private:
    UXCDefectPixelCorrection& assistant() const { return *m_window->Assistant(); }
    QComboBox* selector() const { return assistant().findChild<QComboBox*>("cmbDefectPixelMapSelector"); }
    QListWidget* log() const { return m_window->findChild<QListWidget*>("logList"); }
    QStringList logText() const;
    bool open(const QString& plainId);
    void closeCamera();
    void verifyChoosing() const;
    void addImages(const char* button, const QStringList& paths);
    void generate();
    void waitForTransfer(const QString& transfer);

    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    QTemporaryDir m_dir;
};

void TestAssistantEndToEnd::initTestCase()
{
    qputenv("ZEB_SIM_CAMERAS", "default");
    qunsetenv("ZEB_GEV_ADDRESSES");
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
}

void TestAssistantEndToEnd::init()
{
    m_dialogs = std::make_unique<RecordingDialogs>();
    m_window = std::make_unique<MainWindow>();
    m_window->setDefaultWindowTitle(QStringLiteral("Corvane Optics Orvel Defect Pixel Correction Assistant"));
    m_window->Assistant()->setDialogs(m_dialogs.get());
    m_window->resize(760, 900);
    m_window->show();
    auto* cameras = m_window->findChild<CameraDiscoveryWidget*>();
    QTRY_VERIFY_WITH_TIMEOUT(cameras->GetApiController() && !QApplication::overrideCursor(), kTimeoutMs);
}

void TestAssistantEndToEnd::cleanup()
{
    m_window.reset();
    m_dialogs.reset();
}

QStringList TestAssistantEndToEnd::logText() const
{
    QStringList lines;
    for (int i = 0; i < log()->count(); ++i)
        lines << log()->item(i)->text();
    return lines;
}

// Waits for the camera's row, selects it and presses "Open Selected Camera".
bool TestAssistantEndToEnd::open(const QString& plainId)
{
    auto* cameras = m_window->findChild<CameraDiscoveryWidget*>();
    auto* tree = cameras->findChild<QTreeView*>("treeCameras");
    QModelIndexList rows;
    const bool listed = QTest::qWaitFor(
        [&] {
            rows = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, '(' + plainId + ')', 1,
                                        Qt::MatchEndsWith | Qt::MatchRecursive);
            return !rows.isEmpty();
        },
        kTimeoutMs);
    if (!listed)
        return false;
    tree->setCurrentIndex(rows.first());
    QTest::mouseClick(cameras->findChild<QPushButton*>("btnOpenCamera"), Qt::LeftButton);
    return assistant().camera() && m_window->AssistantDock()->isVisible();
}

void TestAssistantEndToEnd::closeCamera()
{
    click(assistant(), "btnCloseCamera");
    verifyChoosing();
}

void TestAssistantEndToEnd::verifyChoosing() const
{
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Corvane Optics Orvel Defect Pixel Correction Assistant"));
    QVERIFY(!m_window->AssistantDock()->isVisible());
    QVERIFY(m_window->findChild<CameraDiscoveryWidget*>()->isVisible());
    QVERIFY(!assistant().isEnabled());
    QVERIFY(!assistant().camera());
    QVERIFY(!assistant().findChild<QProgressDialog*>()->isVisible());
}

void TestAssistantEndToEnd::addImages(const char* button, const QStringList& paths)
{
    QVERIFY(!paths.isEmpty());
    m_dialogs->openFileNames = paths;
    click(assistant(), button);
}

void TestAssistantEndToEnd::generate()
{
    click(assistant(), "btnGenerateMap");
    QCOMPARE(log()->item(log()->count() - 1)->text(), QStringLiteral("Map successfully generated."));
}

void TestAssistantEndToEnd::waitForTransfer(const QString& transfer)
{
    const QString done = "information|File Access|" + transfer + " task has been successfully done.";
    QTRY_VERIFY2_WITH_TIMEOUT(m_dialogs->messages().contains(done), qPrintable(m_dialogs->messages().join('\n')),
                              kTimeoutMs);
    QVERIFY(!assistant().isFileTaskRunning());
    QVERIFY(!assistant().findChild<QProgressDialog*>()->isVisible());
}

void TestAssistantEndToEnd::monochromeFileAccessCamera()
{
    QVERIFY(open("DEV_KV1230001"));
    UxCamera* camera = assistant().camera();
    QVERIFY(assistant().findChild<QTabWidget*>("tabWidget")->isTabVisible(1));
    QVERIFY(assistant().findChild<QLabel*>("lblCameraName")->text().endsWith("\nFirmware: FW 2.4.1 build 311\n"));
    QCOMPARE(selector()->count(), 4);
    QVERIFY(!button(assistant(), "btnGenerateMap")->isEnabled());
    QVERIFY(button(assistant(), "btnDownloadMapToFile")->isEnabled());

    addImages("btnAddDarkImage", captureSeries(camera, m_dir.path(), "monodark", 4, false));
    addImages("btnAddBrightImage", captureSeries(camera, m_dir.path(), "monobright", 4, true));
    QCOMPARE(m_dialogs->last("open files")->dir, m_dir.path());
    QCOMPARE(assistant().imageGeometry().pixelCount, 640u * 480u);
    generate();
    QCOMPARE(assistant().findChild<QLineEdit*>("txtDefectPixelCount")->text(),
             QString::number(assistant().defectCount()));
    // The factory slot is still selected: it cannot be written.
    QVERIFY(!button(assistant(), "btnUploadMapToCam")->isEnabled());

    // Every seeded defect is found, and nothing else; weak pixels stay below the
    // default margin of 12 %.
    const std::vector<t_defpix> generated(assistant().defectMap(), assistant().defectMap() + assistant().defectCount());
    const std::set<Position> found = positions(generated);
    std::vector<SimControl::SimDefect> seeded;
    QCOMPARE(SimControl::GetDefects(kMonoFile, seeded), ZebErrorSuccess);
    QStringList missed;
    std::set<Position> expected;
    for (const SimControl::SimDefect& d : seeded) {
        if (d.kind == SimControl::DefectKind::Weak)
            continue;
        expected.insert({d.x, d.y});
        if (!found.count({d.x, d.y}))
            missed << QString("%1 at %2,%3").arg(SimControl::DefectKindName(d.kind)).arg(d.x).arg(d.y);
    }
    QVERIFY2(missed.isEmpty(), qPrintable("seeded defects not found: " + missed.join(", ")));
    QCOMPARE(found, expected);

    activateSlot(assistant(), 1);
    QSignalSpy progress(camera, &UxCamera::updateTransferProcess);
    click(assistant(), "btnUploadMapToCam");
    waitForTransfer("Upload Generated Map");
    const QByteArray container = containerBytes(generated, 640, 640 * 480);
    QVERIFY(logText().contains(QString("Upload Generated Map 'DefPixMap1': %1 bytes written.").arg(container.size())));
    QVERIFY(!progress.isEmpty());
    QCOMPARE(progress.last().at(0).toLongLong(), 0ll);
    QCOMPARE(deviceFile(kMonoFile, "DefPixMap1"), container);

    m_dialogs->saveFileName = QStringList{m_dir.filePath("slot1")};
    click(assistant(), "btnDownloadMapToFile");
    waitForTransfer("Download");
    QCOMPARE(readFile(m_dir.filePath("slot1.bin")), container);

    m_dialogs->saveFileName = QStringList{m_dir.filePath("saved")};
    click(assistant(), "btnSaveMapToFile");
    QCOMPARE(readFile(m_dir.filePath("saved.bin")), container);

    activateSlot(assistant(), 2);
    m_dialogs->openFileName = QStringList{m_dir.filePath("saved.bin")};
    click(assistant(), "btnUploadLocalMap");
    waitForTransfer("Upload Local File");
    QVERIFY(logText().contains(QString("Upload Local File 'DefPixMap2': %1 bytes written.").arg(container.size())));
    QCOMPARE(deviceFile(kMonoFile, "DefPixMap2"), container);
    QCOMPARE(positions(storedMap(kMonoFile, 2)), found);
    QVERIFY(button(assistant(), "btnUploadLocalMap")->isEnabled());
    QVERIFY(!button(assistant(), "btnUploadMapToCam")->isEnabled());

    closeCamera();
}

void TestAssistantEndToEnd::meanImageStaysUsableOnSmallAndCommonScreens()
{
    QVERIFY(open("DEV_KV1230001"));
    addImages("btnAddDarkImage", captureSeries(assistant().camera(), m_dir.path(), "layoutdark", 1, false));
    generate();
    QVERIFY(saveShot(m_window.get(), DPC_ARTIFACT_DIR "/assistant-generated-map.png"));
    // The smallest window with the log shown, and two common screens: the mean image stays usable.
    m_window->findChild<QDockWidget*>("logDock")->show();
    for (const QSize& size : {QSize(600, 600), QSize(1366, 768), QSize(1920, 1080)}) {
        m_window->resize(size);
        QApplication::processEvents();
        const QLabel* mean = assistant().findChild<QLabel*>("lblMeanImageDark");
        QVERIFY2(mean->width() >= 150 && mean->height() >= 100,
                 qPrintable(QString("%1 x %2").arg(mean->width()).arg(mean->height())));
        QVERIFY(m_window->findChild<QDockWidget*>("logDock")->height() <= size.height() / 3);
        QVERIFY(saveShot(m_window.get(), QString(DPC_ARTIFACT_DIR "/assistant-generated-map-%1x%2.png")
                                             .arg(size.width()).arg(size.height())));
    }
    closeCamera();
}

void TestAssistantEndToEnd::colourCameraOfRevision4()
{
    QVERIFY(open("DEV_PM5000002"));
    QVERIFY(!assistant().findChild<QTabWidget*>("tabWidget")->isTabVisible(1));
    addImages("btnAddDarkImage", captureSeries(assistant().camera(), m_dir.path(), "colourdark", 3, false));
    generate();
    const unsigned int count = assistant().defectCount();
    QVERIFY(count > 0);
    for (unsigned int i = 0; i < count; ++i) {
        const uint32_t type = assistant().defectMap()[i].type;
        QVERIFY2(type >= 101 && type <= 113, qPrintable(QString::number(type)));
    }

    activateSlot(assistant(), 1);
    click(assistant(), "btnUploadMapToCam");
    waitForTransfer("Upload Generated Map");
    m_dialogs->saveFileName = QStringList{m_dir.filePath("colour")};
    click(assistant(), "btnDownloadMapToFile");
    waitForTransfer("Download");
    const QByteArray bytes = readFile(m_dir.filePath("colour.bin"));
    DefPixContainer container;
    QVERIFY(checkDefPixContainerBuffer(reinterpret_cast<const unsigned char*>(bytes.constData()), size_t(bytes.size()),
                                       4, &container));
    QCOMPARE(container.chunkId, 4100u);
    const std::vector<t_defpix> generated(assistant().defectMap(), assistant().defectMap() + count);
    QCOMPARE(container.entries, generated);
    QCOMPARE(storedMap(kColourFile, 1), generated);
    closeCamera();
}

void TestAssistantEndToEnd::bigEndianRegisterCamera()
{
    QVERIFY(open("DEV_RY1300003"));
    QCOMPARE(selector()->count(), 3);
    addImages("btnAddDarkImage", captureSeries(assistant().camera(), m_dir.path(), "regdark", 2, false));
    generate();
    const unsigned int count = assistant().defectCount();
    QVERIFY(count > 0);
    const std::vector<t_defpix> generated(assistant().defectMap(), assistant().defectMap() + count);

    activateSlot(assistant(), 1);
    click(assistant(), "btnUploadMapToCam");
    QVERIFY(logText().contains("Upload Map  succeeded."));
    QCOMPARE(positions(storedMap(kRegisterMono, 1)), positions(generated));

    m_dialogs->saveFileName = QStringList{m_dir.filePath("regmap")};
    click(assistant(), "btnDownloadMapToFile");
    QVERIFY(logText().contains("Download device file  succeeded."));
    QFile text(m_dir.filePath("regmap.txt"));
    QVERIFY(text.open(QIODevice::ReadOnly));
    QCOMPARE(text.readAll().count('\n'), int(count));

    activateSlot(assistant(), 2);
    m_dialogs->openFileName = QStringList{text.fileName()};
    click(assistant(), "btnUploadLocalMap");
    QVERIFY(logText().contains("Upload Local Map  succeeded."));
    QCOMPARE(positions(storedMap(kRegisterMono, 2)), positions(generated));

    // The camera holds 2000 entries: exactly that many are written, one more is refused.
    std::vector<t_defpix> full = rowMap(2001, 1000);
    QVERIFY(assistant().upload_defpix_map_genicam(full.data(), 2000));
    QCOMPARE(storedMap(kRegisterMono, 2).size(), size_t(2000));
    QVERIFY(!assistant().upload_defpix_map_genicam(full.data(), 2001));
    QVERIFY(logText().contains("Upload failed: maximum number of defect pixels exceeded!"));
    // The slot is cleared before the camera's maximum is asked for.
    QVERIFY(storedMap(kRegisterMono, 2).empty());
    closeCamera();
}

void TestAssistantEndToEnd::largeAndEmptyLocalMapFiles()
{
    QCOMPARE(SimControl::PlugCamera(kLargeMapJson), ZebErrorSuccess);
    QVERIFY(open("DEV_LRG0001"));
    const QByteArray large = containerBytes(rowMap(30000, 200), 200, 200 * 150);
    QVERIFY(large.size() > 3 * 65536);
    QVERIFY(writeFile(m_dir.filePath("large.bin"), large));
    QVERIFY(writeFile(m_dir.filePath("empty.bin"), QByteArray()));

    // Four blocks: the second is the first one shown between the ends.
    QSignalSpy bar(assistant().findChild<QProgressDialog*>()->findChild<QProgressBar*>(), &QProgressBar::valueChanged);
    activateSlot(assistant(), 1);
    m_dialogs->openFileName = QStringList{m_dir.filePath("large.bin")};
    click(assistant(), "btnUploadLocalMap");
    waitForTransfer("Upload Local File");
    QVERIFY(std::any_of(bar.cbegin(), bar.cend(), [](const QList<QVariant>& args) {
        return args.at(0).toInt() > 0 && args.at(0).toInt() < 100;
    }));
    QCOMPARE(deviceFile("LRG0001", "DefPixMap1"), large);

    // A file that is no map is refused before anything is sent, and the map already in the slot stays.
    m_dialogs->openFileName = QStringList{m_dir.filePath("empty.bin")};
    click(assistant(), "btnUploadLocalMap");
    QVERIFY(m_dialogs->last("critical")->text.contains("is not a readable map file"));
    QVERIFY(!assistant().isFileTaskRunning());
    QCOMPARE(log()->item(log()->count() - 1)->foreground().color(), QColor("red"));
    QVERIFY(button(assistant(), "btnUploadLocalMap")->isEnabled());
    QCOMPARE(deviceFile("LRG0001", "DefPixMap1"), large);
    closeCamera();
    QCOMPARE(SimControl::UnplugCamera("LRG0001"), ZebErrorSuccess);
}

void TestAssistantEndToEnd::cameraUnpluggedDuringUpload()
{
    QVERIFY(open("DEV_KV1230001"));
    addImages("btnAddDarkImage", captureSeries(assistant().camera(), m_dir.path(), "unplugdark", 2, false));
    generate();
    activateSlot(assistant(), 3);
    const QByteArray before = deviceFile(kMonoFile, "DefPixMap3");

    QCOMPARE(SimControl::DisconnectAfterBytes(kMonoFile, 8), ZebErrorSuccess);
    click(assistant(), "btnUploadMapToCam");
    QTRY_VERIFY_WITH_TIMEOUT(!assistant().camera(), kTimeoutMs);
    verifyChoosing();
    QTRY_VERIFY_WITH_TIMEOUT(logText().contains("Upload Generated Map 'DefPixMap3' failed: 0 bytes written."),
                             kTimeoutMs);

    // Back again with the map it had, and usable.
    QCOMPARE(SimControl::ReplugCamera(kMonoFile), ZebErrorSuccess);
    QCOMPARE(deviceFile(kMonoFile, "DefPixMap3"), before);
    QVERIFY(open("DEV_KV1230001"));
    closeCamera();
}

QTEST_MAIN(TestAssistantEndToEnd)
#include "tst_assistant_endtoend.moc"
