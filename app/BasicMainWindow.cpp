#include "BasicMainWindow.h"

#include "CameraDiscoveryWidget.h"
#include "uxcamera.h"
#include "uxcameramanager.h"
#include "windowlayout.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QColor>
#include <QDockWidget>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>

#include <algorithm>
#include <QVBoxLayout>

// The icon lives in a static library, whose resources must be pulled in by name.
static void initResources()
{
    Q_INIT_RESOURCE(resources);
}

namespace {

constexpr int kDockMargin = 5;
constexpr int kLogLines = 5;

// The window's own wait cursor for the duration of a camera call.
class WindowWaitCursor {
public:
    explicit WindowWaitCursor(QWidget* window) : m_window(window) { m_window->setCursor(Qt::WaitCursor); }
    ~WindowWaitCursor() { m_window->unsetCursor(); }
    WindowWaitCursor(const WindowWaitCursor&) = delete;
    WindowWaitCursor& operator=(const WindowWaitCursor&) = delete;

private:
    QWidget* m_window;
};

} // namespace

BasicMainWindow::BasicMainWindow(QWidget* parent)
    : QMainWindow(parent)
    , m_logList(new QListWidget(this))
{
    initResources();
    setWindowIcon(QIcon(QStringLiteral(":/Images/res/CorvaneOptics.ico")));
    createMenus();
    createCameraListDock();
    createLogDock();
    setMinimumSize(600, 600);
    statusBar()->setObjectName(QStringLiteral("statusBar"));
    restoreWindowLayout(*this, *m_logDock);
}

BasicMainWindow::~BasicMainWindow() = default;

void BasicMainWindow::createMenus()
{
    m_viewMenu = menuBar()->addMenu(tr("&View"));
    QMenu* helpMenu = menuBar()->addMenu(tr("&Help"));
    connect(helpMenu->addAction(tr("About")), &QAction::triggered, this, &BasicMainWindow::showAbout);
    connect(helpMenu->addAction(tr("About Qt")), &QAction::triggered, qApp, &QApplication::aboutQt);
}

void BasicMainWindow::createCameraListDock()
{
    m_cameraListDock = new QDockWidget(tr("Camera List"), this);
    m_cameraListDock->setObjectName(QStringLiteral("cameraListDock"));
    m_discovery = new CameraDiscoveryWidget(m_cameraListDock);
    qRegisterMetaType<LogType>("LogType");

    connect(m_discovery, &CameraDiscoveryWidget::CameraOpened, this, &BasicMainWindow::OnCameraOpenRequested);
    connect(m_discovery, &CameraDiscoveryWidget::CameraClosed, this, &BasicMainWindow::OnCameraCloseRequested);
    connect(m_discovery, &CameraDiscoveryWidget::CameraRemoved, this, &BasicMainWindow::OnCameraDisconnected);
    connect(m_discovery, &CameraDiscoveryWidget::ApiError, this,
            [this](const QString& message) {
                // A camera unplugged while open can no longer be found or asked: expected, not a failure.
                const bool expected = std::any_of(m_unpluggedIds.cbegin(), m_unpluggedIds.cend(),
                                                  [&message](const QString& id) { return message.contains(id); });
                OnLogMessage(message, expected ? LogInfo : LogError);
            });
    // A close request from anywhere goes the way of the "Close Camera" button.
    connect(this, &BasicMainWindow::CameraCloseRequested, m_discovery,
            [this] { m_discovery->OnCameraStatusChanged(false); });
    connect(m_discovery, &CameraDiscoveryWidget::ApiControllerAvailable, this,
            &BasicMainWindow::OnApiControllerAvailable);
    connect(this, &BasicMainWindow::CameraFirmwareUpdateStarted, this,
            [this](bool started) { m_firmwareUpdateInProgress = started; });

    m_discovery->setContentsMargins(kDockMargin, kDockMargin, kDockMargin, kDockMargin);
    m_cameraListDock->setWidget(m_discovery);
    addDockWidget(Qt::BottomDockWidgetArea, m_cameraListDock);
    addViewToggle(m_cameraListDock);
}

void BasicMainWindow::createLogDock()
{
    m_logDock = new QDockWidget(tr("Log View"), this);
    m_logDock->setObjectName(QStringLiteral("logDock"));
    m_logList->setObjectName(QStringLiteral("logList"));
    // Room the window gains goes to the work below, not to the log.
    m_logList->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* content = new QWidget(m_logDock);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(kDockMargin, kDockMargin, kDockMargin, kDockMargin);
    layout->addWidget(m_logList);
    m_logDock->setWidget(content);
    addDockWidget(Qt::TopDockWidgetArea, m_logDock);
    m_logDock->hide();
    addViewToggle(m_logDock);
}

void BasicMainWindow::addViewToggle(QDockWidget* dock)
{
    QAction* action = m_viewMenu->addAction(dock->windowTitle());
    action->setCheckable(true);
    action->setChecked(!dock->isHidden());
    // triggered, not toggled: following the dock below must not hide or show it again.
    connect(action, &QAction::triggered, this, [this, dock](bool checked) {
        dock->setVisible(checked);
        adjustSizeKeepingUsersSize();
    });
    connect(dock, &QDockWidget::visibilityChanged, action, &QAction::setChecked);
}

void BasicMainWindow::setDefaultWindowTitle(const QString& title)
{
    m_defaultWindowTitle = title;
    setWindowTitle(title);
}

void BasicMainWindow::OnLogMessage(const QString& message, LogType type)
{
    auto* item = new QListWidgetItem(message);
    switch (type) {
    case LogError:
        item->setForeground(QColor(QStringLiteral("red")));
        break;
    case LogWarning:
        item->setForeground(QColor(QStringLiteral("yellow")));
        break;
    default:
        item->setForeground(QBrush());
        break;
    }
    m_logList->addItem(item);
    m_logList->scrollToItem(item);
    if (type == LogError) {
        m_logDock->setVisible(true);
        adjustSizeKeepingUsersSize();
    }
}

void BasicMainWindow::adjustSizeKeepingUsersSize()
{
    // The window still fits itself to its docks, but never takes away the size the user gave it.
    const QSize chosen = size();
    adjustSize();
    if (!isMaximized() && !isFullScreen())
        resize(chosen.expandedTo(minimumSizeHint()).expandedTo(minimumSize()));
}

void BasicMainWindow::resizeEvent(QResizeEvent* event)
{
    // Docks without a central widget share the window's height equally; a log capped at a
    // quarter of the window (a few lines at least) leaves the rest to the work below.
    // The dock area keeps its old height until told otherwise, hence the resizeDocks.
    const int fewLines = m_logList->fontMetrics().lineSpacing() * kLogLines + 2 * kDockMargin;
    const int logHeight = std::max(fewLines, height() / 4);
    m_logDock->widget()->setMaximumHeight(logHeight);
    QMainWindow::resizeEvent(event);
    if (m_logDock->isVisible() && !m_logDock->isFloating())
        resizeDocks({m_logDock}, {logHeight}, Qt::Vertical);
}

void BasicMainWindow::ShowOutcome(const QString& text, LogType type)
{
    statusBar()->setStyleSheet(type == LogError ? QStringLiteral("color: red;") : QString());
    statusBar()->showMessage(text);
}

void BasicMainWindow::closeEvent(QCloseEvent* event)
{
    saveWindowLayout(*this, *m_logDock);
    QMainWindow::closeEvent(event);
}

void BasicMainWindow::OnCameraSelected(bool selected, QString name)
{
    OnLogMessage((selected ? tr("Camera selected: %1") : tr("Camera unselected: %1")).arg(name), LogInfo);
    emit CameraSelected(selected, name);
}

void BasicMainWindow::OnCameraOpenRequested(const QString& extendedId)
{
    if (!m_cameraManager)
        return;
    // The list offers cameras again whenever another one is unplugged; a camera
    // opened then replaces the open one instead of leaving it open unseen.
    if (!m_openCameraId.isEmpty()) {
        const QString openId = m_openCameraId; // copies: closing clears the members
        const QString openName = m_openCameraName;
        OnCameraCloseRequested(openId, openName);
    }
    m_unpluggedIds.removeAll(extendedId);
    WindowWaitCursor waitCursor(this);
    UxCamera* camera = m_cameraManager->Open(extendedId);
    if (!camera) {
        // The manager reported why; the camera list goes back to choosing.
        emit CameraCloseRequested();
        return;
    }
    m_openCameraId = extendedId;
    m_openCameraName = camera->GetCameraName();
    OnLogMessage(tr("Camera opened: %1").arg(m_openCameraName), LogInfo);
    ShowOutcome(tr("Camera opened: %1").arg(m_openCameraName), LogInfo);
    emit CameraOpened(camera);
}

void BasicMainWindow::OnCameraCloseRequested(const QString& extendedId, const QString& name)
{
    // Nothing was opened under this ID (the open failed): there is nothing to close.
    if (!m_cameraManager || extendedId != m_openCameraId)
        return;
    WindowWaitCursor waitCursor(this);
    // A camera the SDK cannot close (gone unnoticed, or refusing) is let go all the
    // same: the controller has said why, and an assistant bound to it could only fail.
    const bool closed = m_cameraManager->Close(extendedId);
    m_openCameraId.clear();
    m_openCameraName.clear();
    emit CameraClosed(name);
    if (closed) {
        OnLogMessage(tr("Camera closed: %1").arg(name), LogInfo);
        ShowOutcome(tr("Camera closed: %1").arg(name), LogInfo);
    }
}

void BasicMainWindow::OnCameraDisconnected(const QString& extendedId, const QString& name)
{
    if (m_firmwareUpdateInProgress && m_disconnectIgnoreCount <= 2) {
        ++m_disconnectIgnoreCount;
        return;
    }
    m_disconnectIgnoreCount = 0;
    if (!m_cameraManager || extendedId != m_openCameraId)
        return;
    WindowWaitCursor waitCursor(this);
    // The camera is gone whatever the SDK answers.
    if (!m_unpluggedIds.contains(extendedId))
        m_unpluggedIds << extendedId;
    m_cameraManager->Close(extendedId);
    m_openCameraId.clear();
    m_openCameraName.clear();
    emit CameraClosed(name);
    OnLogMessage(tr("Camera disconnected: %1 (%2)").arg(name, extendedId), LogInfo);
    ShowOutcome(tr("Camera disconnected: %1 (%2)").arg(name, extendedId), LogWarning);
}

void BasicMainWindow::OnApiControllerAvailable(std::shared_ptr<ApiController> controller)
{
    // A member without Qt parent: destroyed before the window deletes its children.
    m_cameraManager = std::make_unique<UxCameraManager>(std::move(controller));
}

void BasicMainWindow::showAbout()
{
    const QStringList lines = {
        tr("%1 is a Qt application using the ZebCPP API.").arg(m_defaultWindowTitle),
        tr("Version: %1").arg(QApplication::applicationVersion()),
        QString(),
        tr("Published by Corvane Optics Technologies. All rights reserved."),
    };
    showAboutBox(tr("About"), lines.join(QLatin1Char('\n')));
}

void BasicMainWindow::showAboutBox(const QString& title, const QString& text)
{
    QMessageBox::about(this, title, text);
}
