#include "CameraObserver.h"

CameraObserver::CameraObserver(QObject* parent)
    : QObject(parent)
{
}

void CameraObserver::CameraListChanged(ZebCPP::CameraPtr camera, ZebCPP::UpdateTriggerType reason)
{
    emit CameraListChangedSignal(camera, reason);
}
