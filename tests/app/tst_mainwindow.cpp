#include "CameraDiscoveryWidget.h"
#include "mainwindow.h"
#include "panelfixture.h"
#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"
#include "uxsettings.h"

#include <ZebCPP.h>
#include <sim/simcontrol.h>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTreeView>
#include <QtTest>

#include <memory>

using namespace ZebCPP;

namespace {

// The SDK starts and the list is refreshed on worker threads of a machine shared by sanitized builds.
constexpr int kTimeoutMs = 30000;

const QString kMonoId = QStringLiteral("SimGEV::DEV_KV1230001");
const QString kMonoName = QStringLiteral("Inspection mono");

} // namespace

// The window's flows, driven as the user and the SDK drive them. The
// firmware-update and disconnect hooks are reached by name, as a caller would.
class TestMainWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void logLinesAndDock();
    void assistantTakesTheCameraListsPlace();
    void onlyTheOpenCameraIsClosedOnDisconnect();
    void refusedOpenIsRedAndWindowStaysUsable();
    void unsupportedCameraIsClosedAgain();
    void anotherCameraReplacesTheOpenOne();
    void closeLetsTheCameraGoWhateverTheList();
    void nullCameraResetsTheAssistant();
    void keyboardStatusAndUnplug();
    void sizeAndLogAreKept();

private:
    CameraDiscoveryWidget* panel() const { return m_window->findChild<CameraDiscoveryWidget*>(); }
    QListWidget* log() const { return m_window->findChild<QListWidget*>(QStringLiteral("logList")); }
    QDockWidget* logDock() const { return m_window->findChild<QDockWidget*>(QStringLiteral("logDock")); }
    QString lastLine() const { return log()->count() ? log()->item(log()->count() - 1)->text() : QString(); }
    QModelIndex cameraRow(const QString& plainId) const
    {
        const QAbstractItemModel* model = panel()->findChild<QTreeView*>(QStringLiteral("treeCameras"))->model();
        return model->match(model->index(0, 0), Qt::DisplayRole, '(' + plainId + ')', 1,
                            Qt::MatchEndsWith | Qt::MatchRecursive).value(0);
    }
    // Listed and held open by no one (the SDK's access notices arrive queued).
    bool isOffered(const QString& plainId) const { return cameraRow(plainId).flags() & Qt::ItemIsEnabled; }
    // Selects the camera row and presses "Open Selected Camera".
    void open(const QString& plainId)
    {
        panel()->findChild<QTreeView*>(QStringLiteral("treeCameras"))->setCurrentIndex(cameraRow(plainId));
        QTest::mouseClick(panel()->findChild<QPushButton*>(QStringLiteral("btnOpenCamera")), Qt::LeftButton);
    }
    void closeInAssistant()
    {
        QTest::mouseClick(m_window->Assistant()->findChild<QPushButton*>(QStringLiteral("btnCloseCamera")),
                          Qt::LeftButton);
    }
    bool disconnect(const QString& extendedId, const QString& name)
    {
        return QMetaObject::invokeMethod(m_window.get(), "OnCameraDisconnected", Q_ARG(QString, extendedId),
                                         Q_ARG(QString, name));
    }

    // Choosing a camera: the list is shown, the assistant hidden, disabled and empty.
    void verifyChoosing() const
    {
        QCOMPARE(m_window->windowTitle(), m_window->property("defaultTitle").toString());
        QVERIFY(!m_window->AssistantDock()->isVisible());
        QVERIFY(panel()->isVisible());
        QVERIFY(!m_window->Assistant()->isEnabled());
        QVERIFY(!m_window->Assistant()->camera());
    }

    std::unique_ptr<MainWindow> m_window;
};

void TestMainWindow::initTestCase()
{
    // The simulated cameras alone, without network discovery, so that the camera set is known.
    qputenv("ZEB_SIM_CAMERAS", "default");
    qunsetenv("ZEB_GEV_ADDRESSES");
    qRegisterMetaType<UxCamera*>();
    QStandardPaths::setTestModeEnabled(true);
}

void TestMainWindow::init()
{
    // Every window starts as on a first run.
    UXCSettings::getInstance()->Set("Window", "Geometry", QByteArray());
    UXCSettings::getInstance()->Set("Window", "LogVisible", false);
    m_window = std::make_unique<MainWindow>();
    m_window->setDefaultWindowTitle(QStringLiteral("Corvane Optics Orvel Defect Pixel Correction Assistant"));
    m_window->setProperty("defaultTitle", m_window->windowTitle());
    m_window->resize(720, 600);
    m_window->show();
    QTRY_VERIFY_WITH_TIMEOUT(panel()->GetApiController() && !QApplication::overrideCursor(), kTimeoutMs);
}

void TestMainWindow::cleanup()
{
    m_window.reset();
}

void TestMainWindow::logLinesAndDock()
{
    QAction* logToggle = m_window->menuBar()->actions().value(0)->menu()->actions().value(1);
    QVERIFY(logDock()->isHidden());

    m_window->OnLogMessage(QStringLiteral("plain"), LogInfo);
    m_window->OnLogMessage(QStringLiteral("careful"), LogWarning);
    QVERIFY(logDock()->isHidden());
    QCOMPARE(log()->item(0)->foreground().style(), Qt::NoBrush);
    QCOMPARE(log()->item(1)->foreground().color(), QColor("yellow"));

    // Hidden by the user: an error still brings it up.
    logToggle->trigger();
    logToggle->trigger();
    // Queued, as from another thread: LogType must be a registered meta-type.
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "OnLogMessage", Qt::QueuedConnection,
                                      Q_ARG(QString, QStringLiteral("broken")), Q_ARG(LogType, LogError)));
    QTRY_COMPARE(lastLine(), QStringLiteral("broken"));
    QCOMPARE(log()->item(2)->foreground().color(), QColor("red"));
    QVERIFY(logDock()->isVisible());
    QVERIFY(logToggle->isChecked());
}

void TestMainWindow::assistantTakesTheCameraListsPlace()
{
    verifyChoosing();
    // Kept in the build tree, so that a person can judge the layout.
    QVERIFY(PanelFixture::saveShot(m_window.get(), DPC_ARTIFACT_DIR "/mainwindow-camera-list.png"));
    QSignalSpy opened(m_window.get(), &BasicMainWindow::CameraOpened);
    QSignalSpy closed(m_window.get(), &BasicMainWindow::CameraClosed);
    open("DEV_KV1230001");
    QCOMPARE(opened.count(), 1);
    QVERIFY(opened[0][0].value<UxCamera*>());
    QCOMPARE(lastLine(), QStringLiteral("Camera opened: %1").arg(kMonoName));
    QVERIFY(m_window->AssistantDock()->isVisible());
    QVERIFY(!panel()->isVisible());
    QVERIFY(m_window->Assistant()->isEnabled());
    QCOMPARE(m_window->windowTitle(),
             QStringLiteral("Corvane Optics Orvel Defect Pixel Correction Assistant - %1").arg(kMonoName));

    closeInAssistant();
    QCOMPARE(closed.count(), 1);
    QCOMPARE(closed[0][0].toString(), kMonoName);
    QCOMPARE(lastLine(), QStringLiteral("Camera closed: %1").arg(kMonoName));
    verifyChoosing();

    open("DEV_KV1230001"); // closed for real: it opens again
    QCOMPARE(opened.count(), 2);
    QVERIFY(logDock()->isHidden());
}

void TestMainWindow::onlyTheOpenCameraIsClosedOnDisconnect()
{
    open("DEV_KV1230001");
    QSignalSpy closed(m_window.get(), &BasicMainWindow::CameraClosed);
    const int lines = log()->count();
    QVERIFY(disconnect(QStringLiteral("SimU3V::DEV_PM5000002"), QStringLiteral("Line colour")));
    // The camera reboots during a firmware update: three notices are let pass on purpose.
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "CameraFirmwareUpdateStarted", Q_ARG(bool, true)));
    for (int notice = 1; notice <= 3; ++notice)
        QVERIFY(disconnect(kMonoId, kMonoName));
    QCOMPARE(closed.count(), 0);
    QCOMPARE(log()->count(), lines);

    QVERIFY(disconnect(kMonoId, kMonoName));
    QCOMPARE(closed.count(), 1);
    QCOMPARE(lastLine(), QStringLiteral("Camera disconnected: %1 (%2)").arg(kMonoName, kMonoId));
}

void TestMainWindow::refusedOpenIsRedAndWindowStaysUsable()
{
    QCOMPARE(SimControl::InjectFault("KV1230001", SimControl::FaultKind::Open, 1, ZebErrorTimeout), ZebErrorSuccess);
    QSignalSpy opened(m_window.get(), &BasicMainWindow::CameraOpened);
    open("DEV_KV1230001");
    QCOMPARE(opened.count(), 0);
    QCOMPARE(lastLine(), QStringLiteral("Failed to open camera %1 (error: Timeout.)").arg(kMonoId));
    QCOMPARE(log()->item(log()->count() - 1)->foreground().color(), QColor("red"));
    // Back to choosing, with no complaint about closing what never opened.
    QCOMPARE(panel()->findChild<QStackedWidget*>(QStringLiteral("stackedWidget"))->currentIndex(), 0);
    const int lines = log()->count();

    open("DEV_KV1230001");
    QCOMPARE(opened.count(), 1);
    QCOMPARE(log()->count(), lines + 1);
}

void TestMainWindow::unsupportedCameraIsClosedAgain()
{
    // A file-access camera whose slots carry chunk ids the assistant does not offer.
    const QString json = QStringLiteral(
        R"({"id": "DEV_RY0009009", "model": "ryn9MGE", "serial": "RY0009009", "name": "No slots",)"
        R"( "interface": "sim-eth0", "mapAccess": "file", "mapSlots": 2, "slotChunkIds": [4098, 4099]})");
    QCOMPARE(SimControl::PlugCamera(json.toStdString()), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(cameraRow("DEV_RY0009009").isValid(), kTimeoutMs);
    QSignalSpy opened(m_window.get(), &BasicMainWindow::CameraOpened);
    QSignalSpy closed(m_window.get(), &BasicMainWindow::CameraClosed);
    const int lines = log()->count();
    open("DEV_RY0009009");
    QCOMPARE(opened.count(), 1);
    QCOMPARE(closed.count(), 1);
    QCOMPARE(log()->item(lines + 1)->text(),
             QStringLiteral("Unsupported camera (No slots). Defect pixel map selection is unavailable."));
    QCOMPARE(log()->item(lines + 1)->foreground().color(), QColor("red"));
    int redLines = 0;
    for (int i = lines; i < log()->count(); ++i)
        redLines += log()->item(i)->foreground().color() == QColor("red");
    QCOMPARE(redLines, 1);
    verifyChoosing();

    open("DEV_RY0009009"); // closed for real: it opens (and is refused) again
    QCOMPARE(opened.count(), 2);
    QCOMPARE(closed.count(), 2);
    QCOMPARE(SimControl::UnplugCamera("RY0009009"), ZebErrorSuccess);
}

void TestMainWindow::anotherCameraReplacesTheOpenOne()
{
    open("DEV_KV1230001");
    QSignalSpy closed(m_window.get(), &BasicMainWindow::CameraClosed);
    // Another camera leaves: the list offers cameras again while the mono camera is open.
    QCOMPARE(SimControl::UnplugCamera("PM5000002"), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(panel()->findChild<QTreeView*>(QStringLiteral("treeCameras"))->isEnabled(), kTimeoutMs);
    open("DEV_RY1300003");
    QCOMPARE(closed.count(), 1);
    QCOMPARE(closed[0][0].toString(), kMonoName);
    QCOMPARE(log()->item(log()->count() - 2)->text(), QStringLiteral("Camera closed: %1").arg(kMonoName));
    QCOMPARE(lastLine(), QStringLiteral("Camera opened: Register mono"));
    QCOMPARE(m_window->Assistant()->camera()->GetCameraName(), QStringLiteral("Register mono"));

    closeInAssistant();
    QCOMPARE(lastLine(), QStringLiteral("Camera closed: Register mono"));
    // Closed for real: the SDK offers it again, and it opens.
    QTRY_VERIFY_WITH_TIMEOUT(isOffered("DEV_KV1230001"), kTimeoutMs);
    open("DEV_KV1230001");
    QCOMPARE(lastLine(), QStringLiteral("Camera opened: %1").arg(kMonoName));
    QCOMPARE(SimControl::ReplugCamera("PM5000002"), ZebErrorSuccess);
}

void TestMainWindow::closeLetsTheCameraGoWhateverTheList()
{
    // A refresh while the camera is open leaves the tree without a current row.
    open("DEV_KV1230001");
    panel()->RefreshCameraList();
    QTRY_VERIFY_WITH_TIMEOUT(!QApplication::overrideCursor(), kTimeoutMs);
    closeInAssistant();
    QCOMPARE(lastLine(), QStringLiteral("Camera closed: %1").arg(kMonoName));
    verifyChoosing();

    // A camera that refuses to close is let go all the same, the refusal in red.
    QCOMPARE(SimControl::InjectFault("KV1230001", SimControl::FaultKind::Close, 1, ZebErrorTimeout), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(isOffered("DEV_KV1230001"), kTimeoutMs);
    open("DEV_KV1230001");
    closeInAssistant();
    QCOMPARE(lastLine(), QStringLiteral("Failed to close camera %1 (error: Timeout.)").arg(kMonoId));
    verifyChoosing();
}

void TestMainWindow::nullCameraResetsTheAssistant()
{
    open("DEV_KV1230001");
    QVERIFY(m_window->Assistant()->isEnabled());
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "CameraOpened", Q_ARG(UxCamera*, nullptr)));
    verifyChoosing();
}

void TestMainWindow::keyboardStatusAndUnplug()
{
    QApplication::setActiveWindow(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    auto* tree = panel()->findChild<QTreeView*>(QStringLiteral("treeCameras"));
    tree->setFocus();
    tree->setCurrentIndex(cameraRow("DEV_KV1230001"));
    QTest::keyClick(tree, Qt::Key_Return);
    QVERIFY(m_window->Assistant()->camera());
    QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("Camera opened: %1").arg(kMonoName));
    QVERIFY(m_window->Assistant()->findChild<QPushButton*>(QStringLiteral("btnAddDarkImage"))->hasFocus());

    // Unplugging the open camera is an ordinary event: no red line, the log stays as it was.
    const int lines = log()->count();
    QCOMPARE(SimControl::UnplugCamera("KV1230001"), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->Assistant()->camera(), kTimeoutMs);
    for (int i = lines; i < log()->count(); ++i)
        QVERIFY2(log()->item(i)->foreground().color() != QColor("red"), qPrintable(log()->item(i)->text()));
    QVERIFY(logDock()->isHidden());
    QCOMPARE(m_window->statusBar()->currentMessage(),
             QStringLiteral("Camera disconnected: %1 (%2)").arg(kMonoName, kMonoId));
    QCOMPARE(SimControl::ReplugCamera("KV1230001"), ZebErrorSuccess);
}

void TestMainWindow::sizeAndLogAreKept()
{
    m_window->resize(900, 700);
    QAction* logToggle = m_window->menuBar()->actions().value(0)->menu()->actions().value(1);
    logToggle->trigger();
    QVERIFY(logDock()->isVisible());
    QCOMPARE(m_window->size(), QSize(900, 700));
    m_window->OnLogMessage(QStringLiteral("broken"), LogError);
    QCOMPARE(m_window->size(), QSize(900, 700));
    m_window->close();

    // The next run starts as this one ended.
    MainWindow next;
    next.show();
    QCOMPARE(next.size(), QSize(900, 700));
    QVERIFY(next.findChild<QDockWidget*>(QStringLiteral("logDock"))->isVisible());
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
