#pragma once

#include "logtype.h"

#include <QMainWindow>
#include <QString>
#include <QStringList>

#include <memory>

class ApiController;
class CameraDiscoveryWidget;
class QDockWidget;
class QListWidget;
class QMenu;
class UxCamera;
class UxCameraManager;

// The generic main window: the camera list and log docks, the menus and the
// About box, and the open, close and disconnect flow between the camera list
// and the camera manager.
class BasicMainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit BasicMainWindow(QWidget* parent = nullptr);
    ~BasicMainWindow() override;

public slots:
    void setDefaultWindowTitle(const QString& title);
    void OnLogMessage(const QString& message, LogType type);
    void OnCameraSelected(bool selected, QString name);
    void OnCameraOpenRequested(const QString& extendedId);
    void OnCameraCloseRequested(const QString& extendedId, const QString& name);
    // The first three notices during a firmware update are ignored: the camera reboots while updating.
    void OnCameraDisconnected(const QString& extendedId, const QString& name);
    void OnApiControllerAvailable(std::shared_ptr<ApiController> controller);
    // The outcome of a user's action in the status bar; errors in red.
    void ShowOutcome(const QString& text, LogType type);

signals:
    // The receiver owns the camera.
    void CameraOpened(UxCamera* camera);
    void CameraClosed(const QString& name);
    void CameraSelected(bool selected, const QString& name);
    void CameraCloseRequested();
    void CameraFirmwareUpdateStarted(bool started);

protected:
    QMenu* ViewMenu() const { return m_viewMenu; }
    QDockWidget* CameraListDock() const { return m_cameraListDock; }
    const QString& DefaultWindowTitle() const { return m_defaultWindowTitle; }
    // The one door to message boxes, so that tests can answer them.
    virtual void showAboutBox(const QString& title, const QString& text);
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void createMenus();
    void createCameraListDock();
    void createLogDock();
    // A checkable "&View" entry that shows or hides the dock and follows its visibility.
    void addViewToggle(QDockWidget* dock);
    void adjustSizeKeepingUsersSize();
    void showAbout();

    QListWidget* m_logList;
    CameraDiscoveryWidget* m_discovery = nullptr;
    std::unique_ptr<UxCameraManager> m_cameraManager;
    QMenu* m_viewMenu = nullptr;
    QDockWidget* m_cameraListDock = nullptr;
    QDockWidget* m_logDock = nullptr;
    QString m_defaultWindowTitle;
    // The camera opened through this window; empty while none is.
    QString m_openCameraId;
    QString m_openCameraName;
    quint8 m_disconnectIgnoreCount = 0;
    bool m_firmwareUpdateInProgress = false;
    QStringList m_unpluggedIds; // extended IDs of cameras gone while open: the SDK's complaints about them are expected
};
