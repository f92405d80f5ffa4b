#include "uxcameramanager.h"

#include "ApiController.h"
#include "uxcamera.h"

UxCameraManager::UxCameraManager(std::shared_ptr<ApiController> controller, QObject* parent)
    : QObject(parent)
    , m_controller(std::move(controller))
{
}

UxCamera* UxCameraManager::Open(const QString& extendedId)
{
    if (!m_controller)
        return nullptr;
    ZebCPP::CameraPtr camera = m_controller->OpenCamera(extendedId);
    return camera ? new UxCamera(std::move(camera)) : nullptr;
}

bool UxCameraManager::Close(const QString& extendedId)
{
    return m_controller && m_controller->CloseCamera(extendedId) == ZebCPP::ZebErrorSuccess;
}
