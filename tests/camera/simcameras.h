#pragma once

// Shared set-up of the camera suites: the simulated cameras they run against and
// map containers as a camera's map slot accepts them.

#include "../zeb/zebtestsupport.h"

#include <QString>
#include <QtEndian>

#include <string>
#include <vector>

namespace SimCameras {

// Cameras of the built-in set, by plain ID.
constexpr const char* kMonoFile = "DEV_KV1230001";     // GigE Vision, "Filename", writable access length
constexpr const char* kColourFile = "DEV_PM5000002";   // USB3 Vision, no "Filename", read-only access length
constexpr const char* kRegisterMono = "DEV_RY1300003"; // GigE Vision, maps in registers
constexpr const char* kHeldElsewhere = "DEV_TB2000005";

// A revision-4 file-access camera whose slots take 20000 entries (a map spans
// several blocks), with an empty read-only file "Notes".
inline std::string bigMapCameraJson(const std::string& id, unsigned int operationDelayMs = 0)
{
    return R"({ "id": ")" + id + R"(", "model": "kvd123MXGE", "serial": ")" + id
        + R"(", "interface": "sim-usb0", "mapAccess": "file", "mapRevision": 4, "mapSlots": 3,
        "mapMaxSize": 20000, "fileOperationDelayMs": )" + std::to_string(operationDelayMs) + R"(,
        "files": [ { "name": "UserData", "mode": "ReadWrite" }, { "name": "Notes", "mode": "Read" } ] })";
}

// The simulated cameras only: no GigE Vision discovery, so that the camera set is known.
inline bool startup()
{
    return ZebTest::startSdk() == ZebCPP::ZebErrorSuccess;
}

using ZebTest::openCamera;
using ZebTest::storedMap;

inline QString extendedIdOf(const char* plainId)
{
    ZebCPP::CameraPtr camera;
    std::string id;
    ZebCPP::ZebSystem::GetInstance().GetCameraByID(plainId, camera);
    return camera && camera->GetExtendedID(id) == ZebCPP::ZebErrorSuccess ? QString::fromStdString(id) : QString();
}

// A valid revision-4 container of count distinct entries (row by row from
// position seed on a 640-pixel-wide sensor): 32-byte header of magic, size,
// checksum, chunk id, chunk length, width, pixel count and 0, then X, Y, type.
inline std::vector<unsigned char> mapContainer(unsigned int count, uint32_t seed)
{
    std::vector<uint32_t> words = {0x1F56ADFC, 32 + 12 * count, 0, 4100, 20 + 12 * count, 640, 640 * 480, 0};
    for (uint32_t i = 0; i < count; ++i)
        words.insert(words.end(), {(i + seed) % 640, (i + seed) / 640, i % 5});
    uint32_t sum = 0;
    for (uint32_t w : words)
        sum += w;
    words[2] = 0u - sum;
    std::vector<unsigned char> bytes(words.size() * 4);
    for (size_t i = 0; i < words.size(); ++i)
        qToLittleEndian<quint32>(words[i], bytes.data() + 4 * i);
    return bytes;
}

// Bytes 0, 1, 2, ... wrapping at 251, so that misplaced blocks show.
inline std::vector<unsigned char> patternBytes(size_t size)
{
    std::vector<unsigned char> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(i % 251);
    return bytes;
}

} // namespace SimCameras
