#pragma once

#include "ZebCPP.h"

#include <QString>

// The SDK's camera whose serial number or model is the one a tool's user named.
inline ZebCPP::CameraPtr findCameraBySerialOrModel(const QString& wanted)
{
    std::vector<ZebCPP::CameraPtr> cameras;
    ZebCPP::ZebSystem::GetInstance().GetCameras(cameras);
    for (const ZebCPP::CameraPtr& camera : cameras) {
        std::string serial, model;
        camera->GetSerialNumber(serial);
        camera->GetModel(model);
        if (wanted == QString::fromStdString(serial) || wanted == QString::fromStdString(model))
            return camera;
    }
    return nullptr;
}
