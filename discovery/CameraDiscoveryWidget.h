#pragma once

#include "CameraInfoMap.h"
#include "cameramodels.h"

#include <QFuture>
#include <QVector>
#include <QWidget>

#include <memory>

class ApiController;
class CameraTreeModel;
class QCheckBox;
class QLabel;
class QPushButton;
class QStackedWidget;
class QTreeView;

// The camera list: starts the camera SDK in the background, creates the API
// controller once the SDK is up, keeps the camera tree current by background
// refreshes and hot-plug notifications, and turns the user's open and close
// gestures into signals. Destroying the panel shuts the SDK down.
class CameraDiscoveryWidget : public QWidget {
    Q_OBJECT

public:
    explicit CameraDiscoveryWidget(QWidget* parent = nullptr);
    ~CameraDiscoveryWidget() override;

    // Empty until the SDK is ready.
    std::shared_ptr<ApiController> GetApiController() const;

public slots:
    // Rebuilds the list on a worker thread; ignored while a refresh runs.
    void RefreshCameraList();
    // Emits CameraOpened (open) or CameraClosed for the current camera row.
    void OnCameraStatusChanged(bool open);

signals:
    void ZebSystemReady();
    void ApiControllerAvailable(std::shared_ptr<ApiController> controller);
    void CameraOpened(const QString& extendedId);
    void CameraClosed(const QString& extendedId, const QString& name);
    void CameraRemoved(const QString& extendedId, const QString& name);
    void ApiError(QString message);

private slots:
    void InitApiController();
    void OnCameraListReady(const QVector<CameraInfoMap>& cameras);
    void Update_lblRefreshInfo();

private:
    void buildLayout();
    void connectControls();
    void startSdk();
    void setAutomaticDiscovery(bool on);
    void onCameraAdded(const CameraInfoMap& camera);
    void onCameraRemoved(const CameraInfoMap& camera);
    void setOpenedState(bool opened);
    bool isCameraRow(const QModelIndex& index) const;
    void beginWaitCursor();
    void endWaitCursor();

    std::shared_ptr<ApiController> m_controller;
    CameraTreeModel* m_model;
    QLabel* m_lblRefreshInfo;
    QTreeView* m_treeView;
    QStackedWidget* m_stackedWidget;
    QCheckBox* m_chkCompatibleOnly;
    QCheckBox* m_chkAutoRefresh;
    QPushButton* m_btnOpenCamera;
    QPushButton* m_btnRefresh;
    QPushButton* m_btnCloseCamera;
    bool m_refreshRunning = false;
    bool m_refreshAgain = false; // the filter changed while a refresh ran
    QString m_openedId;          // the camera this panel asked to open, until it asks to close it
    QString m_openedName;
    // Kept so that the destructor can wait for them: no worker may touch a shut-down SDK.
    QFuture<QString> m_startup; // the SDK's start-up error, empty on success
    QFuture<QVector<CameraInfoMap>> m_refresh;
    // Wait cursors this panel has pushed and not yet restored.
    int m_waitCursors = 0;
};
