#pragma once

#include "CameraInfoMap.h"

#include <ZebCPP.h>

#include <QMutex>
#include <QObject>
#include <QVector>

#include <memory>
#include <string>
#include <vector>

class CameraObserver;
class InterfaceObserver;

// The program's one session with the camera SDK: the camera list, the camera
// information maps, hot-plug notifications on the GUI thread, opening and closing
// by extended ID, and the texts of SDK errors. Created after ZebSystem::Startup()
// succeeded and shared through std::shared_ptr.
class ApiController : public QObject {
    Q_OBJECT

public:
    explicit ApiController(QObject* parent = nullptr);
    ~ApiController() override;

    // Starts the camera SDK; blocks, so callers run it on a worker thread. Empty
    // on success, otherwise the text of the SDK's error.
    static QString StartSdk();
    // Stops the SDK's thread: no notification comes after it.
    static void ShutdownSdk();

    // Registers (on) or unregisters (off) the camera-list, then the interface-list observer.
    bool enableAutomaticDiscovery(bool on);

    // Fetches the SDK's camera list; safe to call from a worker thread.
    ZebCPP::ZebErrorType UpdateCamerasList();
    // A copy of the list fetched last.
    std::vector<ZebCPP::CameraPtr> GetCameraModel() const;
    // Keys the SDK could not answer are left out, each with an ApiError.
    CameraInfoMap GetCameraInfo(const ZebCPP::CameraPtr& camera);
    // Fetches the list and returns the information of each camera, leaving out
    // those without an extended ID (reported); safe to call from a worker thread.
    QVector<CameraInfoMap> ListCameras();

    // The camera with this extended ID, empty on failure.
    ZebCPP::CameraPtr GetCameraPtr(const QString& extendedId);
    // Opens with full access; empty on failure.
    ZebCPP::CameraPtr OpenCamera(const QString& extendedId);
    ZebCPP::ZebErrorType CloseCamera(const QString& extendedId);

    // "major.minor.patch", "0.0.0" when the SDK cannot tell.
    std::string GetVersion() const;

    static QString ErrorCodeToMessage(ZebCPP::ZebErrorType code);
    void emitApiError(ZebCPP::ZebErrorType code, const QString& text);

signals:
    void ApiError(const QString& message);
    void CameraAdded(const QMap<QString, QVariant>& info);
    void CameraRemoved(const QMap<QString, QVariant>& info);
    void CameraOpenStateChanged(const QMap<QString, QVariant>& info);

private slots:
    void OnCameraListChanged(ZebCPP::CameraPtr camera, ZebCPP::UpdateTriggerType reason);

private:
    ZebCPP::ZebErrorType findCamera(const QString& extendedId, ZebCPP::CameraPtr& camera);

    ZebCPP::ZebSystem& m_system;
    std::shared_ptr<CameraObserver> m_cameraObserver;
    std::shared_ptr<InterfaceObserver> m_interfaceObserver;
    std::vector<ZebCPP::CameraPtr> m_cameras;
    mutable QMutex m_camerasMutex;
};
