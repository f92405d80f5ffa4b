#include "CameraDiscoveryWidget.h"
#include "mainwindow.h"
#include "uxcamera.h"

#include <ZebCPP.h>
#include <sim/simcontrol.h>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTreeView>
#include <QtTest>

#include <memory>

using namespace ZebCPP;

namespace {

// The SDK starts and the list is refreshed on worker threads of a machine shared by sanitized builds.
constexpr int kTimeoutMs = 30000;

const QString kMonoId = QStringLiteral("SimGEV::DEV_KV1230001");
const QString kMonoName = QStringLiteral("Inspection mono");
const QString kColourId = QStringLiteral("SimU3V::DEV_PM5000002");

} // namespace

// The window's own flows, driven as the user and the SDK drive them. The
// firmware-update and disconnect hooks are reached by name, as a caller would.
class TestMainWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void frameAndLogLines();
    void openAndCloseAreLogged();
    void disconnectsDuringFirmwareUpdate();
    void disconnectOfCameraNotOpenLogsNothing();
    void unpluggedOpenCameraIsClosed();
    void refusedOpenIsRedAndWindowStaysUsable();

private:
    CameraDiscoveryWidget* panel() const { return m_window->findChild<CameraDiscoveryWidget*>(); }
    QTreeView* tree() const { return panel()->findChild<QTreeView*>(QStringLiteral("treeCameras")); }
    QListWidget* log() const { return m_window->findChild<QListWidget*>(QStringLiteral("logList")); }
    QDockWidget* logDock() const { return m_window->findChild<QDockWidget*>(QStringLiteral("logDock")); }
    QString lastLine() const { return log()->count() ? log()->item(log()->count() - 1)->text() : QString(); }
    bool isIdle() const { return panel()->GetApiController() && !QApplication::overrideCursor(); }
    // Selects the camera row with this extended ID and presses "Open Selected Camera".
    void openFromList(const QString& extendedId);
    void disconnect(const QString& extendedId, const QString& name);

    std::unique_ptr<MainWindow> m_window;
};

void TestMainWindow::initTestCase()
{
    // The simulated cameras alone, without network discovery, so that the camera set is known.
    qputenv("ZEB_SIM_CAMERAS", "default");
    qunsetenv("ZEB_GEV_ADDRESSES");
    qRegisterMetaType<UxCamera*>();
}

void TestMainWindow::init()
{
    m_window = std::make_unique<MainWindow>();
    m_window->setDefaultWindowTitle(QStringLiteral("Assistant"));
    m_window->show();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
}

void TestMainWindow::cleanup()
{
    m_window.reset();
}

void TestMainWindow::openFromList(const QString& extendedId)
{
    const QModelIndexList rows = tree()->model()->match(tree()->model()->index(0, 0), Qt::DisplayRole,
                                                        '(' + extendedId.section("::", 1) + ')', 1,
                                                        Qt::MatchEndsWith | Qt::MatchRecursive);
    QVERIFY(!rows.isEmpty());
    tree()->setCurrentIndex(rows.first());
    QTest::mouseClick(panel()->findChild<QPushButton*>(QStringLiteral("btnOpenCamera")), Qt::LeftButton);
}

void TestMainWindow::disconnect(const QString& extendedId, const QString& name)
{
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "OnCameraDisconnected", Q_ARG(QString, extendedId),
                                      Q_ARG(QString, name)));
}

void TestMainWindow::frameAndLogLines()
{
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Assistant"));
    QVERIFY(!m_window->windowIcon().isNull());
    QCOMPARE(m_window->minimumSize(), QSize(600, 600));
    QStringList menus;
    for (QAction* menu : m_window->menuBar()->actions())
        menus << menu->text();
    QCOMPARE(menus, (QStringList{"&View", "&Help"}));

    QAction* logToggle = m_window->menuBar()->actions()[0]->menu()->actions().value(1);
    QCOMPARE(logToggle->text(), QStringLiteral("Log View"));
    QVERIFY(logDock()->isHidden());
    QVERIFY(!logToggle->isChecked());

    m_window->OnLogMessage(QStringLiteral("plain"), LogInfo);
    m_window->OnLogMessage(QStringLiteral("careful"), LogWarning);
    QVERIFY(logDock()->isHidden());
    QCOMPARE(log()->item(0)->foreground().style(), Qt::NoBrush);
    QCOMPARE(log()->item(1)->foreground().color(), QColor("yellow"));

    logToggle->trigger();
    QVERIFY(logDock()->isVisible());
    logToggle->trigger();
    QVERIFY(logDock()->isHidden());

    // Queued from another thread, as a panel's worker would send it.
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "OnLogMessage", Qt::QueuedConnection,
                                      Q_ARG(QString, QStringLiteral("broken")), Q_ARG(LogType, LogError)));
    QTRY_COMPARE(log()->count(), 3);
    QCOMPARE(lastLine(), QStringLiteral("broken"));
    QCOMPARE(log()->item(2)->foreground().color(), QColor("red"));
    QVERIFY(logDock()->isVisible());
    QVERIFY(logToggle->isChecked());
}

void TestMainWindow::openAndCloseAreLogged()
{
    QSignalSpy opened(m_window.get(), &BasicMainWindow::CameraOpened);
    QSignalSpy closed(m_window.get(), &BasicMainWindow::CameraClosed);
    openFromList(kMonoId);
    QCOMPARE(opened.count(), 1);
    QVERIFY(opened[0][0].value<UxCamera*>());
    QCOMPARE(lastLine(), QStringLiteral("Camera opened: %1").arg(kMonoName));

    QTest::mouseClick(panel()->findChild<QPushButton*>(QStringLiteral("btnCloseCamera")), Qt::LeftButton);
    QCOMPARE(closed.count(), 1);
    QCOMPARE(closed[0][0].toString(), kMonoName);
    QCOMPARE(lastLine(), QStringLiteral("Camera closed: %1").arg(kMonoName));

    // Closed for real: it opens again.
    openFromList(kMonoId);
    QCOMPARE(opened.count(), 2);
    QVERIFY(logDock()->isHidden());
}

void TestMainWindow::disconnectsDuringFirmwareUpdate()
{
    openFromList(kMonoId);
    QSignalSpy closed(m_window.get(), &BasicMainWindow::CameraClosed);
    const int lines = log()->count();
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "CameraFirmwareUpdateStarted", Q_ARG(bool, true)));

    for (int notice = 1; notice <= 3; ++notice)
        disconnect(kMonoId, kMonoName);
    QCOMPARE(closed.count(), 0);
    QCOMPARE(log()->count(), lines);

    disconnect(kMonoId, kMonoName);
    QCOMPARE(closed.count(), 1);
    QCOMPARE(lastLine(), QStringLiteral("Camera disconnected: %1 (%2)").arg(kMonoName, kMonoId));
    QVERIFY(logDock()->isHidden());
}

void TestMainWindow::disconnectOfCameraNotOpenLogsNothing()
{
    openFromList(kMonoId);
    QSignalSpy closed(m_window.get(), &BasicMainWindow::CameraClosed);
    const int lines = log()->count();

    disconnect(kColourId, QStringLiteral("Line colour"));
    QSignalSpy removed(panel(), &CameraDiscoveryWidget::CameraRemoved);
    QCOMPARE(SimControl::UnplugCamera("PM5000002"), ZebErrorSuccess);
    QVERIFY(removed.wait(kTimeoutMs));

    QCOMPARE(closed.count(), 0);
    QCOMPARE(log()->count(), lines);
}

void TestMainWindow::unpluggedOpenCameraIsClosed()
{
    openFromList(kMonoId);
    QSignalSpy closed(m_window.get(), &BasicMainWindow::CameraClosed);
    QCOMPARE(SimControl::UnplugCamera("KV1230001"), ZebErrorSuccess);
    QVERIFY(closed.wait(kTimeoutMs));
    QCOMPARE(closed[0][0].toString(), kMonoName);
    QCOMPARE(lastLine(), QStringLiteral("Camera disconnected: %1 (%2)").arg(kMonoName, kMonoId));
}

void TestMainWindow::refusedOpenIsRedAndWindowStaysUsable()
{
    QCOMPARE(SimControl::InjectFault("KV1230001", SimControl::FaultKind::Open, 1, ZebErrorTimeout), ZebErrorSuccess);
    QSignalSpy opened(m_window.get(), &BasicMainWindow::CameraOpened);
    openFromList(kMonoId);
    QCOMPARE(opened.count(), 0);
    QCOMPARE(lastLine(), QStringLiteral("Failed to open camera %1 (error: Timeout.)").arg(kMonoId));
    QCOMPARE(log()->item(log()->count() - 1)->foreground().color(), QColor("red"));
    QVERIFY(logDock()->isVisible());
    // Back to choosing, with no second complaint about closing what never opened.
    QCOMPARE(panel()->findChild<QStackedWidget*>(QStringLiteral("stackedWidget"))->currentIndex(), 0);
    QVERIFY(tree()->isEnabled());
    const int lines = log()->count();

    openFromList(kMonoId);
    QCOMPARE(opened.count(), 1);
    QCOMPARE(log()->count(), lines + 1);
    QCOMPARE(lastLine(), QStringLiteral("Camera opened: %1").arg(kMonoName));
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
