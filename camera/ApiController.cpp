#include "ApiController.h"

#include "CameraObserver.h"
#include "InterfaceObserver.h"

#include <QMutexLocker>

using namespace ZebCPP;

namespace {

// Either bit counts as full access: 1 full, 8 exclusive.
constexpr uint32_t kFullAccessMask = AccessModeFull | AccessModeExclusive;

QString toQString(const std::string& text)
{
    return QString::fromStdString(text);
}

} // namespace

ApiController::ApiController(QObject* parent)
    : QObject(parent)
    , m_system(ZebSystem::GetInstance())
{
    qRegisterMetaType<CameraPtr>("ZebCPP::CameraPtr");
    qRegisterMetaType<InterfacePtr>("ZebCPP::InterfacePtr");
    qRegisterMetaType<UpdateTriggerType>("ZebCPP::UpdateTriggerType");

    m_interfaceObserver = std::make_shared<InterfaceObserver>();
    m_cameraObserver = std::make_shared<CameraObserver>();
    // Automatic: the SDK emits on its own thread, so this is queued to ours.
    connect(m_cameraObserver.get(), &CameraObserver::CameraListChangedSignal, this,
            &ApiController::OnCameraListChanged);
}

ApiController::~ApiController()
{
    // The SDK may outlive us; it must not keep calling observers nobody listens to.
    m_system.UnregisterCameraListObserver(m_cameraObserver);
    m_system.UnregisterInterfaceListObserver(m_interfaceObserver);
}

QString ApiController::StartSdk()
{
    const ZebErrorType status = ZebSystem::GetInstance().Startup();
    return status == ZebErrorSuccess ? QString() : ErrorCodeToMessage(status);
}

void ApiController::ShutdownSdk()
{
    ZebSystem::GetInstance().Shutdown();
}

bool ApiController::enableAutomaticDiscovery(bool on)
{
    if (on) {
        const bool cameras = m_system.RegisterCameraListObserver(m_cameraObserver) == ZebErrorSuccess;
        const bool interfaces = m_system.RegisterInterfaceListObserver(m_interfaceObserver) == ZebErrorSuccess;
        return cameras && interfaces;
    }
    const bool cameras = m_system.UnregisterCameraListObserver(m_cameraObserver) == ZebErrorSuccess;
    const bool interfaces = m_system.UnregisterInterfaceListObserver(m_interfaceObserver) == ZebErrorSuccess;
    return cameras && interfaces;
}

ZebErrorType ApiController::UpdateCamerasList()
{
    QMutexLocker lock(&m_camerasMutex);
    // Counted and fetched in one SDK call: a camera plugged in between two calls
    // would otherwise fail the whole list.
    std::vector<CameraPtr> cameras;
    const ZebErrorType err = m_system.GetCameras(cameras);
    m_cameras = err == ZebErrorSuccess ? std::move(cameras) : std::vector<CameraPtr>();
    return err;
}

std::vector<CameraPtr> ApiController::GetCameraModel() const
{
    QMutexLocker lock(&m_camerasMutex);
    return m_cameras;
}

QVector<CameraInfoMap> ApiController::ListCameras()
{
    UpdateCamerasList();
    QVector<CameraInfoMap> cameras;
    for (const CameraPtr& camera : GetCameraModel()) {
        // Without its extended ID a camera can be neither shown nor opened.
        CameraInfoMap info = GetCameraInfo(camera);
        if (!info.isEmpty())
            cameras.append(std::move(info));
    }
    return cameras;
}

CameraInfoMap ApiController::GetCameraInfo(const CameraPtr& camera)
{
    CameraInfoMap info;
    if (!camera) {
        emitApiError(ZebErrorBadParameter, tr("Failed to get camera extended ID"));
        return info;
    }

    std::string text;
    ZebErrorType err = camera->GetExtendedID(text);
    if (err != ZebErrorSuccess) {
        emitApiError(err, tr("Failed to get camera extended ID"));
        return info;
    }
    const QString extendedId = toQString(text);
    info.insert(CameraInfoKey::ExtendedId, extendedId);

    // One string item: stored on success, otherwise reported and left out.
    auto addString = [&](QLatin1String key, ZebErrorType status, const QString& errorText) {
        if (status == ZebErrorSuccess)
            info.insert(key, toQString(text));
        else
            emitApiError(status, errorText.arg(extendedId));
    };

    addString(CameraInfoKey::CameraId, camera->GetID(text), tr("Failed to get camera ID for %1"));
    addString(CameraInfoKey::ModelName, camera->GetModel(text), tr("Failed to get camera model for %1"));
    addString(CameraInfoKey::CameraName, camera->GetName(text), tr("Failed to get camera name for %1"));
    addString(CameraInfoKey::SerialNumber, camera->GetSerialNumber(text),
              tr("Failed to get camera serial number for %1"));

    InterfacePtr interface;
    err = camera->GetInterface(interface);
    if (err == ZebErrorSuccess)
        err = interface ? interface->GetID(text) : ZebErrorBadHandle;
    addString(CameraInfoKey::Interface, err, tr("Failed to get camera interface ID for %1"));

    TransportLayerPtr transportLayer;
    err = camera->GetTransportLayer(transportLayer);
    if (err == ZebErrorSuccess && !transportLayer)
        err = ZebErrorBadHandle;
    if (err != ZebErrorSuccess) {
        emitApiError(err, tr("Failed to get camera transport layer for %1").arg(extendedId));
    } else {
        addString(CameraInfoKey::TransportLayer, transportLayer->GetName(text),
                  tr("Failed to get camera transport layer name for %1"));
        addString(CameraInfoKey::TlPath, transportLayer->GetPath(text), tr("Failed to get camera TL path for %1"));
    }

    AccessModeType access = AccessModeNone;
    err = camera->GetPermittedAccess(access);
    if (err == ZebErrorSuccess)
        info.insert(CameraInfoKey::FullAccess, (access & kFullAccessMask) != 0);
    else
        emitApiError(err, tr("Failed to get camera access mode for %1").arg(extendedId));
    return info;
}

ZebErrorType ApiController::findCamera(const QString& extendedId, CameraPtr& camera)
{
    camera.reset();
    const QByteArray id = extendedId.toUtf8();
    const ZebErrorType err = m_system.GetCameraByID(id.constData(), camera);
    if (err == ZebErrorSuccess && camera)
        return ZebErrorSuccess;
    camera.reset();
    const ZebErrorType reported = err == ZebErrorSuccess ? ZebErrorNotFound : err;
    emitApiError(reported, tr("Failed to get camera for %1").arg(extendedId));
    return reported;
}

CameraPtr ApiController::GetCameraPtr(const QString& extendedId)
{
    CameraPtr camera;
    findCamera(extendedId, camera);
    return camera;
}

CameraPtr ApiController::OpenCamera(const QString& extendedId)
{
    CameraPtr camera = GetCameraPtr(extendedId);
    if (!camera)
        return camera;
    const ZebErrorType err = camera->Open(AccessModeFull);
    if (err != ZebErrorSuccess) {
        camera.reset();
        emitApiError(err, tr("Failed to open camera %1").arg(extendedId));
    }
    return camera;
}

ZebErrorType ApiController::CloseCamera(const QString& extendedId)
{
    CameraPtr camera;
    ZebErrorType err = findCamera(extendedId, camera);
    if (err != ZebErrorSuccess)
        return err;
    err = camera->Close();
    if (err != ZebErrorSuccess)
        emitApiError(err, tr("Failed to close camera %1").arg(extendedId));
    return err;
}

std::string ApiController::GetVersion() const
{
    ZebVersionInfo version;
    if (m_system.QueryVersion(version) != ZebErrorSuccess)
        return "0.0.0";
    return std::to_string(version.major) + '.' + std::to_string(version.minor) + '.'
        + std::to_string(version.patch);
}

QString ApiController::ErrorCodeToMessage(ZebErrorType code)
{
    switch (code) {
    case ZebErrorSuccess: return tr("Success.");
    case ZebErrorInternalFault: return tr("Unexpected fault in ZebApi or driver.");
    case ZebErrorApiNotStarted: return tr("API not started.");
    case ZebErrorNotFound: return tr("Not found.");
    case ZebErrorBadHandle: return tr("Invalid handle ");
    case ZebErrorDeviceNotOpen: return tr("Device not open.");
    case ZebErrorInvalidAccess: return tr("Invalid access.");
    case ZebErrorBadParameter: return tr("Bad parameter.");
    case ZebErrorStructSize: return tr("Wrong DLL version.");
    case ZebErrorMoreData: return tr("More data returned than memory provided.");
    case ZebErrorWrongType: return tr("Wrong type.");
    case ZebErrorInvalidValue: return tr("Invalid value.");
    case ZebErrorTimeout: return tr("Timeout.");
    case ZebErrorTransportLayer: return tr("TL error.");
    case ZebErrorResources: return tr("Resource not available.");
    case ZebErrorInvalidCall: return tr("Invalid call.");
    case ZebErrorNoTransportLayer: return tr("TL not loaded.");
    case ZebErrorNotImplemented: return tr("Not implemented.");
    case ZebErrorNotSupported: return tr("Not supported.");
    }
    return tr("Unknown");
}

void ApiController::emitApiError(ZebErrorType code, const QString& text)
{
    const QString message = ErrorCodeToMessage(code);
    if (!text.isEmpty())
        emit ApiError(tr("%1 (error: %2)").arg(text, message));
    else
        emit ApiError(tr("Error: %1").arg(message));
}

void ApiController::OnCameraListChanged(CameraPtr camera, UpdateTriggerType reason)
{
    switch (reason) {
    case UpdateTriggerPluggedOut: {
        // The device is gone; only the identity the SDK keeps can still be read.
        CameraInfoMap info;
        std::string text;
        if (camera && camera->GetExtendedID(text) == ZebErrorSuccess)
            info.insert(CameraInfoKey::ExtendedId, toQString(text));
        if (camera && camera->GetName(text) == ZebErrorSuccess)
            info.insert(CameraInfoKey::CameraName, toQString(text));
        emit CameraRemoved(info);
        break;
    }
    case UpdateTriggerPluggedIn:
        emit CameraAdded(GetCameraInfo(camera));
        break;
    case UpdateTriggerOpenStateChanged: {
        // A camera unplugged while open reports its closing with a handle already gone;
        // its removal follows and says all there is to say.
        AccessModeType access = AccessModeNone;
        const ZebErrorType state = camera ? camera->GetPermittedAccess(access) : ZebErrorBadParameter;
        if (state == ZebErrorBadHandle || state == ZebErrorNotFound)
            break;
        emit CameraOpenStateChanged(GetCameraInfo(camera));
        break;
    }
    }
}
