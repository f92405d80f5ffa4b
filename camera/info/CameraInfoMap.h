#pragma once

#include <QLatin1String>
#include <QMap>
#include <QString>
#include <QVariant>

// One camera as the camera list and tree show it, keyed by the names below.
using CameraInfoMap = QMap<QString, QVariant>;

// The keys of a camera information map; every reader and writer uses these.
namespace CameraInfoKey {
constexpr QLatin1String ExtendedId("Extended ID");
constexpr QLatin1String CameraId("Camera ID");
constexpr QLatin1String ModelName("Model Name");
constexpr QLatin1String CameraName("Camera Name");
constexpr QLatin1String SerialNumber("Serial No.");
constexpr QLatin1String Interface("Interface");
constexpr QLatin1String TransportLayer("Transport Layer");
constexpr QLatin1String TlPath("TL Path");
constexpr QLatin1String FullAccess("Full Access"); // bool: the camera may be opened with full access
} // namespace CameraInfoKey
