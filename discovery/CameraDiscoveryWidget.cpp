#include "CameraDiscoveryWidget.h"

#include "ApiController.h"
#include "CameraTreeModel.h"

#include <QApplication>
#include <QCheckBox>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtConcurrent>

namespace {

enum Page { ListPage = 0, OpenedPage = 1 };

// Runs on a worker thread: touches only the controller, whose list is guarded.
QVector<CameraInfoMap> listCameras(ApiController& controller, bool compatibleOnly)
{
    QVector<CameraInfoMap> cameras;
    QString family;
    for (const CameraInfoMap& info : controller.ListCameras()) {
        if (!compatibleOnly || IsCameraModelCompatible(info.value(CameraInfoKey::ModelName).toString(), family))
            cameras.append(info);
    }
    return cameras;
}

} // namespace

CameraDiscoveryWidget::CameraDiscoveryWidget(QWidget* parent)
    : QWidget(parent)
    , m_model(new CameraTreeModel(this))
{
    buildLayout();
    connectControls();
    startSdk();
}

CameraDiscoveryWidget::~CameraDiscoveryWidget()
{
    m_startup.waitForFinished();
    m_refresh.waitForFinished();
    while (m_waitCursors > 0)
        endWaitCursor();
    // Shut down first: the SDK's thread stops, so no notification races the controller's end.
    ApiController::ShutdownSdk();
    m_controller.reset();
}

std::shared_ptr<ApiController> CameraDiscoveryWidget::GetApiController() const
{
    return m_controller;
}

void CameraDiscoveryWidget::buildLayout()
{
    m_lblRefreshInfo = new QLabel(this);
    m_lblRefreshInfo->setObjectName(QStringLiteral("lblRefreshInfo"));
    m_lblRefreshInfo->hide();

    m_treeView = new QTreeView(this);
    m_treeView->setObjectName(QStringLiteral("treeCameras"));
    m_treeView->setHeaderHidden(true);
    m_treeView->setModel(m_model);

    m_chkCompatibleOnly = new QCheckBox(tr("Compatible only"));
    m_chkCompatibleOnly->setObjectName(QStringLiteral("chkCompatibleOnly"));
    m_chkCompatibleOnly->setToolTip(tr("Show compatible cameras only"));
    m_chkCompatibleOnly->setChecked(true);
    m_chkAutoRefresh = new QCheckBox(tr("Auto refresh"));
    m_chkAutoRefresh->setObjectName(QStringLiteral("chkAutoRefresh"));
    m_chkAutoRefresh->setToolTip(tr("Enable or disable the automatic refresh of the list of cameras"));
    m_chkAutoRefresh->setChecked(true);
    m_btnOpenCamera = new QPushButton(tr("&Open Selected Camera"));
    m_btnOpenCamera->setObjectName(QStringLiteral("btnOpenCamera"));
    m_btnOpenCamera->setEnabled(false);
    m_btnRefresh = new QPushButton(tr("&Refresh"));
    m_btnRefresh->setObjectName(QStringLiteral("btnRefresh"));
    m_btnCloseCamera = new QPushButton(tr("&Close Camera"));
    m_btnCloseCamera->setObjectName(QStringLiteral("btnCloseCamera"));

    auto* listPage = new QWidget;
    auto* listRow = new QHBoxLayout(listPage);
    listRow->setContentsMargins(0, 0, 0, 0);
    listRow->addWidget(m_chkCompatibleOnly);
    listRow->addWidget(m_chkAutoRefresh);
    listRow->addStretch();
    listRow->addWidget(m_btnOpenCamera);
    listRow->addWidget(m_btnRefresh);

    auto* openedPage = new QWidget;
    auto* openedRow = new QHBoxLayout(openedPage);
    openedRow->setContentsMargins(0, 0, 0, 0);
    openedRow->addStretch();
    openedRow->addWidget(m_btnCloseCamera);

    m_stackedWidget = new QStackedWidget(this);
    m_stackedWidget->setObjectName(QStringLiteral("stackedWidget"));
    m_stackedWidget->insertWidget(ListPage, listPage);
    m_stackedWidget->insertWidget(OpenedPage, openedPage);

    // Margins are the host's choice.
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_lblRefreshInfo);
    layout->addWidget(m_treeView, 1);
    layout->addWidget(m_stackedWidget);
}

void CameraDiscoveryWidget::connectControls()
{
    connect(m_chkCompatibleOnly, &QCheckBox::toggled, this, &CameraDiscoveryWidget::RefreshCameraList);
    connect(m_chkAutoRefresh, &QCheckBox::toggled, this, &CameraDiscoveryWidget::setAutomaticDiscovery);
    connect(m_btnOpenCamera, &QPushButton::clicked, this, [this] { OnCameraStatusChanged(true); });
    connect(m_treeView, &QTreeView::doubleClicked, this, [this] { OnCameraStatusChanged(true); });
    // Enter on a camera row opens it, as the button does.
    for (const QKeySequence& key : {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)}) {
        auto* enter = new QShortcut(key, m_treeView, nullptr, nullptr, Qt::WidgetShortcut);
        connect(enter, &QShortcut::activated, this, [this] {
            if (m_btnOpenCamera->isEnabled())
                OnCameraStatusChanged(true);
        });
    }
    connect(m_btnCloseCamera, &QPushButton::clicked, this, [this] { OnCameraStatusChanged(false); });
    connect(this, &CameraDiscoveryWidget::CameraOpened, this, [this] { setOpenedState(true); });
    connect(this, &CameraDiscoveryWidget::CameraClosed, this, [this] { setOpenedState(false); });
    connect(m_treeView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { m_btnOpenCamera->setEnabled(isCameraRow(current)); });
    connect(m_model, &QAbstractItemModel::rowsInserted, m_treeView, &QTreeView::expandAll);
    connect(m_model, &QAbstractItemModel::rowsRemoved, m_treeView, &QTreeView::expandAll);
    connect(m_btnRefresh, &QPushButton::clicked, this, &CameraDiscoveryWidget::RefreshCameraList);
    connect(this, &CameraDiscoveryWidget::ZebSystemReady, this, &CameraDiscoveryWidget::InitApiController);
}

void CameraDiscoveryWidget::startSdk()
{
    beginWaitCursor();
    auto* watcher = new QFutureWatcher<QString>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        const QString error = watcher->result();
        watcher->deleteLater();
        if (!error.isEmpty())
            emit ApiError(tr("%1 (error: %2)").arg(tr("Failed to start the camera SDK"), error));
        emit ZebSystemReady();
    });
    m_startup = QtConcurrent::run(&ApiController::StartSdk);
    watcher->setFuture(m_startup);
}

void CameraDiscoveryWidget::InitApiController()
{
    // Owned by its shares alone: the window's camera manager holds one too.
    m_controller = std::make_shared<ApiController>();
    ApiController* controller = m_controller.get();

    connect(controller, &ApiController::CameraAdded, this, &CameraDiscoveryWidget::onCameraAdded);
    connect(controller, &ApiController::CameraRemoved, this, &CameraDiscoveryWidget::onCameraRemoved);
    connect(controller, &ApiController::CameraOpenStateChanged, m_model, &CameraTreeModel::OnCameraAccessChanged);
    connect(controller, &ApiController::ApiError, this, &CameraDiscoveryWidget::ApiError);
    // Nothing is registered yet, so an unchecked box needs no call.
    if (m_chkAutoRefresh->isChecked())
        setAutomaticDiscovery(true);

    emit ApiControllerAvailable(m_controller);
    endWaitCursor();
    RefreshCameraList();
}

void CameraDiscoveryWidget::setAutomaticDiscovery(bool on)
{
    if (m_controller && m_controller->enableAutomaticDiscovery(on))
        return;
    emit ApiError(tr("Failed to %1 the automatic refresh of cameras").arg(on ? tr("enable") : tr("disable")));
}

void CameraDiscoveryWidget::RefreshCameraList()
{
    if (!m_controller)
        return;
    if (m_refreshRunning) {
        // The running refresh may use the old filter; one more follows it.
        m_refreshAgain = true;
        return;
    }
    m_refreshRunning = true;
    beginWaitCursor();
    m_lblRefreshInfo->setText(tr("Refresh in progress..."));
    m_lblRefreshInfo->show();
    m_btnOpenCamera->setEnabled(false);
    m_model->Init({});

    auto* watcher = new QFutureWatcher<QVector<CameraInfoMap>>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        OnCameraListReady(watcher->result());
        watcher->deleteLater();
    });
    // The destructor waits for the worker, so the panel's controller outlives it.
    ApiController* controller = m_controller.get();
    const bool compatibleOnly = m_chkCompatibleOnly->isChecked();
    m_refresh = QtConcurrent::run([controller, compatibleOnly] { return listCameras(*controller, compatibleOnly); });
    watcher->setFuture(m_refresh);
}

void CameraDiscoveryWidget::OnCameraListReady(const QVector<CameraInfoMap>& cameras)
{
    m_model->Init(cameras);
    m_treeView->expandAll();
    m_treeView->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_refreshRunning = false;
    Update_lblRefreshInfo();
    endWaitCursor();
    if (m_refreshAgain) {
        m_refreshAgain = false;
        RefreshCameraList();
    }
}

void CameraDiscoveryWidget::Update_lblRefreshInfo()
{
    const bool empty = m_model->rowCount() == 0;
    if (empty) {
        const QString filter = m_chkCompatibleOnly->isChecked() ? tr("compatible ") : QString();
        m_lblRefreshInfo->setText(tr("No %1cameras found").arg(filter));
    }
    m_lblRefreshInfo->setVisible(empty);
}

void CameraDiscoveryWidget::OnCameraStatusChanged(bool open)
{
    // Closing names the camera that was opened: a refresh or another camera's
    // removal may have moved the tree's current row since.
    if (!open && !m_openedId.isEmpty()) {
        const QString extendedId = m_openedId;
        const QString name = m_openedName;
        m_openedId.clear();
        m_openedName.clear();
        emit CameraClosed(extendedId, name);
        return;
    }
    const QModelIndex current = m_treeView->currentIndex();
    if (!isCameraRow(current))
        return;
    const QString extendedId = m_model->GetCameraExtId(current);
    if (open) {
        m_openedId = extendedId;
        m_openedName = m_model->GetCameraName(current);
        emit CameraOpened(extendedId);
    } else {
        emit CameraClosed(extendedId, m_model->GetCameraName(current));
    }
}

void CameraDiscoveryWidget::onCameraAdded(const CameraInfoMap& camera)
{
    // As in a refresh: without its extended ID the camera could be neither opened nor removed again.
    if (camera.isEmpty())
        return;
    QString family;
    if (m_chkCompatibleOnly->isChecked()
        && !IsCameraModelCompatible(camera.value(CameraInfoKey::ModelName).toString(), family))
        return;
    m_model->OnCameraAdded(camera);
    Update_lblRefreshInfo();
}

void CameraDiscoveryWidget::onCameraRemoved(const CameraInfoMap& camera)
{
    const QString extendedId = camera.value(CameraInfoKey::ExtendedId).toString();
    if (extendedId == m_openedId) {
        m_openedId.clear();
        m_openedName.clear();
    }
    m_model->OnCameraRemoved(camera);
    // Whichever camera left: the window decides from the ID whether it was the open one.
    m_stackedWidget->setCurrentIndex(ListPage);
    emit CameraRemoved(extendedId, camera.value(CameraInfoKey::CameraName).toString());
    m_treeView->setEnabled(true);
    Update_lblRefreshInfo();
}

void CameraDiscoveryWidget::setOpenedState(bool opened)
{
    m_stackedWidget->setCurrentIndex(opened ? OpenedPage : ListPage);
    m_treeView->setEnabled(!opened);
}

bool CameraDiscoveryWidget::isCameraRow(const QModelIndex& index) const
{
    return index.isValid() && !m_model->hasChildren(index);
}

void CameraDiscoveryWidget::beginWaitCursor()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ++m_waitCursors;
}

void CameraDiscoveryWidget::endWaitCursor()
{
    if (m_waitCursors == 0)
        return;
    --m_waitCursors;
    QApplication::restoreOverrideCursor();
}
