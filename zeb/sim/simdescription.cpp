#include "sim/simdescription.h"

#include <nlohmann/json.hpp>

namespace ZebCPP {

namespace {

using nlohmann::json;

InterfaceType interfaceTypeFromText(const std::string& text)
{
    if (text == "GigEVision")
        return InterfaceTypeGigEVision;
    if (text == "USB3Vision")
        return InterfaceTypeUsb3Vision;
    if (text == "CameraLink")
        return InterfaceTypeCameraLink;
    if (text == "CoaXPress")
        return InterfaceTypeCoaXPress;
    throw std::invalid_argument("unknown transport layer type " + text);
}

SimSensorDescription sensorFrom(const json& j)
{
    SimSensorDescription s;
    s.width = j.value("width", s.width);
    s.height = j.value("height", s.height);
    s.colorFilter = j.value("colorFilter", s.colorFilter);
    s.darkLevel = j.value("darkLevel", s.darkLevel);
    s.brightLevel = j.value("brightLevel", s.brightLevel);
    s.noise = j.value("noise", s.noise);
    s.seed = j.value("seed", s.seed);
    s.hot = j.value("hot", s.hot);
    s.dead = j.value("dead", s.dead);
    s.stuck = j.value("stuck", s.stuck);
    s.clusters = j.value("clusters", s.clusters);
    if (s.width < 32 || s.height < 32 || s.width > 16384 || s.height > 16384 || s.width % 4 != 0)
        throw std::invalid_argument("sensor size must be 32 to 16384, width a multiple of 4");
    if (s.colorFilter != "None" && s.colorFilter != "BayerRG" && s.colorFilter != "BayerGR"
        && s.colorFilter != "BayerGB" && s.colorFilter != "BayerBG")
        throw std::invalid_argument("unknown colour filter " + s.colorFilter);
    return s;
}

SimFileDescription fileFrom(const json& j)
{
    SimFileDescription f;
    f.name = j.at("name").get<std::string>();
    f.chunkId = j.value("chunkId", f.chunkId);
    const std::string mode = j.value("mode", std::string("ReadWrite"));
    f.readable = mode == "Read" || mode == "ReadWrite";
    f.writable = mode == "Write" || mode == "ReadWrite";
    if (!f.readable && !f.writable)
        throw std::invalid_argument("unknown file mode " + mode);
    const std::string text = j.value("content", std::string());
    f.content.assign(text.begin(), text.end());
    return f;
}

SimCameraDescription cameraFrom(const json& j)
{
    SimCameraDescription c;
    c.id = j.at("id").get<std::string>();
    c.model = j.at("model").get<std::string>();
    c.serial = j.at("serial").get<std::string>();
    c.name = j.value("name", c.model);
    c.interfaceId = j.at("interface").get<std::string>();
    c.transportLayerId = j.value("transportLayer", c.transportLayerId);
    c.firmware = j.value("firmware", c.firmware);
    c.bigEndian = j.value("bigEndian", c.bigEndian);
    c.permittedAccess = static_cast<AccessModeType>(j.value("permittedAccess", uint32_t(c.permittedAccess)));
    const std::string maps = j.value("mapAccess", std::string("file"));
    if (maps != "file" && maps != "register")
        throw std::invalid_argument("mapAccess is \"file\" or \"register\"");
    c.fileAccessMaps = maps == "file";
    c.mapRevision = j.value("mapRevision", c.mapRevision);
    c.mapSlots = j.value("mapSlots", c.mapSlots);
    c.mapMaxSize = j.value("mapMaxSize", c.mapMaxSize);
    if (j.contains("mapMaxSizeReported"))
        c.mapMaxSizeReported = j.at("mapMaxSizeReported").get<uint32_t>();
    c.factoryMapSize = j.value("factoryMapSize", c.factoryMapSize);
    c.slotChunkIds = j.value("slotChunkIds", c.slotChunkIds);
    c.hasFilename = j.value("filename", c.hasFilename);
    c.accessLengthWritable = j.value("fileAccessLengthWritable", c.accessLengthWritable);
    c.fileBufferSize = j.value("fileBufferSize", c.fileBufferSize);
    c.fileOperationDelayMs = j.value("fileOperationDelayMs", c.fileOperationDelayMs);
    c.fileFailuresInStatus = j.value("fileFailuresInStatus", c.fileFailuresInStatus);
    c.hasPixelColorFilter = j.value("pixelColorFilter", c.hasPixelColorFilter);
    for (const json& f : j.value("files", json::array()))
        c.files.push_back(fileFrom(f));
    c.sensor = sensorFrom(j.value("sensor", json::object()));
    if (c.mapSlots < 1 || c.mapSlots > 16)
        throw std::invalid_argument("mapSlots must be 1 to 16");
    if (c.mapMaxSize < 1 || c.mapMaxSize > 0x10000)
        throw std::invalid_argument("mapMaxSize must be 1 to 65536");
    if (c.fileBufferSize < 1 || c.fileBufferSize > 0x10000)
        throw std::invalid_argument("fileBufferSize must be 1 to 65536");
    if (!c.slotChunkIds.empty() && c.slotChunkIds.size() != c.mapSlots)
        throw std::invalid_argument("slotChunkIds needs one id per slot");
    return c;
}

SimTransportLayerDescription transportLayerFrom(const json& j)
{
    SimTransportLayerDescription tl;
    tl.id = j.at("id").get<std::string>();
    tl.name = j.value("name", tl.id);
    tl.path = j.value("path", std::string("builtin:") + tl.id);
    tl.type = interfaceTypeFromText(j.at("type").get<std::string>());
    for (const json& i : j.at("interfaces")) {
        SimInterfaceDescription interface;
        interface.id = i.at("id").get<std::string>();
        interface.name = i.value("name", interface.id);
        tl.interfaces.push_back(interface);
    }
    return tl;
}

template <typename Parse>
bool parseGuarded(const std::string& text, std::string* error, Parse&& parse)
{
    try {
        parse(json::parse(text));
        return true;
    } catch (const std::exception& e) {
        if (error)
            *error = e.what();
        return false;
    }
}

} // namespace

bool parseSimCameraSet(const std::string& text, SimCameraSet& set, std::string* error)
{
    return parseGuarded(text, error, [&](const json& j) {
        SimCameraSet result;
        for (const json& tl : j.at("transportLayers"))
            result.transportLayers.push_back(transportLayerFrom(tl));
        for (const json& camera : j.at("cameras"))
            result.cameras.push_back(cameraFrom(camera));
        set = std::move(result);
    });
}

bool parseSimCamera(const std::string& text, SimCameraDescription& camera, std::string* error)
{
    return parseGuarded(text, error, [&](const json& j) { camera = cameraFrom(j); });
}

} // namespace ZebCPP
