#include "sim/simdescription.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <type_traits>

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

// One JSON number as a field's value; refused when out of the field's range.
template <typename T>
T numberFrom(const json& value, const char* key)
{
    if constexpr (std::is_floating_point_v<T>) {
        if (value.is_number() && std::isfinite(value.get<double>()))
            return static_cast<T>(value.get<double>());
    } else if (value.is_number_unsigned()) {
        if (value.get<uint64_t>() <= std::numeric_limits<T>::max())
            return static_cast<T>(value.get<uint64_t>());
    } else if (value.is_number_integer()) {
        const int64_t number = value.get<int64_t>();
        if (number >= 0 && uint64_t(number) <= std::numeric_limits<T>::max())
            return static_cast<T>(number);
    }
    throw std::invalid_argument(std::string(key) + " must be a number in the field's range");
}

// A number of a user's file, or the fallback when the key is missing. A value
// outside the field's range is refused rather than wrapped or cut off: a
// negative count must not become four billion.
template <typename T>
T number(const json& j, const char* key, T fallback)
{
    const auto it = j.find(key);
    return it == j.end() ? fallback : numberFrom<T>(*it, key);
}

// Defects of one kind a sensor may be seeded with.
constexpr uint32_t kMaxDefectsPerKind = 4096;

SimSensorDescription sensorFrom(const json& j)
{
    SimSensorDescription s;
    s.width = number(j, "width", s.width);
    s.height = number(j, "height", s.height);
    s.colorFilter = j.value("colorFilter", s.colorFilter);
    s.darkLevel = number(j, "darkLevel", s.darkLevel);
    s.brightLevel = number(j, "brightLevel", s.brightLevel);
    s.noise = number(j, "noise", s.noise);
    s.seed = number(j, "seed", s.seed);
    s.hot = number(j, "hot", s.hot);
    s.dead = number(j, "dead", s.dead);
    s.stuck = number(j, "stuck", s.stuck);
    s.clusters = number(j, "clusters", s.clusters);
    s.weak = number(j, "weak", s.weak);
    s.border = number(j, "border", s.border);
    s.bitDepth = number(j, "bitDepth", s.bitDepth);
    for (const double level : {s.darkLevel, s.brightLevel, s.noise}) {
        if (level < 0 || level > 65535)
            throw std::invalid_argument("sensor levels and noise must be 0 to 65535");
    }
    for (const uint32_t count : {s.hot, s.dead, s.stuck, s.clusters, s.weak, s.border}) {
        if (count > kMaxDefectsPerKind)
            throw std::invalid_argument("a sensor has at most 4096 defects of each kind");
    }
    if (s.bitDepth != 8 && s.bitDepth != 10 && s.bitDepth != 12 && s.bitDepth != 16)
        throw std::invalid_argument("sensor bit depth must be 8, 10, 12 or 16");
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
    f.chunkId = number(j, "chunkId", f.chunkId);
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
    c.permittedAccess = static_cast<AccessModeType>(number(j, "permittedAccess", uint32_t(c.permittedAccess)));
    const std::string maps = j.value("mapAccess", std::string("file"));
    if (maps != "file" && maps != "register")
        throw std::invalid_argument("mapAccess is \"file\" or \"register\"");
    c.fileAccessMaps = maps == "file";
    c.mapRevision = number(j, "mapRevision", c.mapRevision);
    c.mapSlots = number(j, "mapSlots", c.mapSlots);
    c.mapMaxSize = number(j, "mapMaxSize", c.mapMaxSize);
    if (j.contains("mapMaxSizeReported"))
        c.mapMaxSizeReported = number(j, "mapMaxSizeReported", uint32_t(0));
    c.factoryMapSize = number(j, "factoryMapSize", c.factoryMapSize);
    c.hasStreams = j.value("streams", c.hasStreams);
    if (j.contains("slotChunkIds")) {
        for (const json& id : j.at("slotChunkIds").get<std::vector<json>>())
            c.slotChunkIds.push_back(numberFrom<uint32_t>(id, "slotChunkIds"));
    }
    c.hasFilename = j.value("filename", c.hasFilename);
    c.accessLengthWritable = j.value("fileAccessLengthWritable", c.accessLengthWritable);
    c.fileBufferSize = number(j, "fileBufferSize", c.fileBufferSize);
    c.fileOperationDelayMs = number(j, "fileOperationDelayMs", c.fileOperationDelayMs);
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
