#include "simcameras.h"

#include <QtEndian>
#include <QtGlobal>

namespace SimCameras {

std::string bigMapCameraJson(const std::string& id, unsigned int operationDelayMs)
{
    return R"({ "id": ")" + id + R"(", "model": "kvd123MXGE", "serial": ")" + id + R"(", "name": "Big maps",
        "interface": "sim-usb0", "bigEndian": false, "mapAccess": "file", "mapRevision": 4,
        "mapSlots": 3, "mapMaxSize": 20000, "fileOperationDelayMs": )" + std::to_string(operationDelayMs) + R"(,
        "files": [ { "name": "UserData", "chunkId": 4098, "mode": "ReadWrite" },
                   { "name": "Notes", "chunkId": 4097, "mode": "Read" } ],
        "sensor": { "width": 640, "height": 480, "seed": 7 } })";
}

bool startup()
{
    qputenv("ZEB_SIM_CAMERAS", "default");
    return ZebCPP::ZebSystem::GetInstance().Startup() == ZebCPP::ZebErrorSuccess;
}

void shutdown()
{
    ZebCPP::ZebSystem::GetInstance().Shutdown();
}

QString extendedIdOf(const char* plainId)
{
    ZebCPP::CameraPtr camera;
    std::string id;
    if (ZebCPP::ZebSystem::GetInstance().GetCameraByID(plainId, camera) != ZebCPP::ZebErrorSuccess
        || camera->GetExtendedID(id) != ZebCPP::ZebErrorSuccess)
        return QString();
    return QString::fromStdString(id);
}

std::vector<unsigned char> mapContainer(unsigned int revision, uint32_t chunkId,
                                        const std::vector<MapEntry>& entries, uint32_t width, uint32_t height)
{
    std::vector<uint32_t> words = {0x1F56ADFC, 0, 0, chunkId, 0, width, width * height, 0};
    for (const MapEntry& e : entries) {
        words.push_back(e.x);
        words.push_back(e.y);
        if (revision == 4)
            words.push_back(e.type);
    }
    const auto size = static_cast<uint32_t>(words.size() * 4);
    words[1] = size;
    words[4] = size - 12;
    uint32_t sum = 0;
    for (uint32_t w : words)
        sum += w;
    words[2] = 0u - sum;

    std::vector<unsigned char> bytes(size);
    for (size_t i = 0; i < words.size(); ++i)
        qToLittleEndian<quint32>(words[i], bytes.data() + 4 * i);
    return bytes;
}

std::vector<MapEntry> sampleEntries(unsigned int count, uint32_t width, uint32_t seed)
{
    std::vector<MapEntry> entries;
    entries.reserve(count);
    for (unsigned int i = 0; i < count; ++i)
        entries.push_back(MapEntry{(i + seed) % width, (i + seed) / width, i % 5});
    return entries;
}

std::vector<unsigned char> patternBytes(size_t size)
{
    std::vector<unsigned char> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(i % 251);
    return bytes;
}

} // namespace SimCameras
