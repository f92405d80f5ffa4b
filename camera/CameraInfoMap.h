#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

// One camera as the camera list and tree show it, keyed by "Extended ID", "Camera Name", ...
using CameraInfoMap = QMap<QString, QVariant>;
