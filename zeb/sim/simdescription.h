#pragma once

#include "zebtypes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The description of simulated cameras as read from a JSON camera set:
//
// { "transportLayers": [ { "id", "name", "path", "type": "GigEVision" | "USB3Vision" |
//                          "CameraLink" | "CoaXPress", "interfaces": [ { "id", "name" } ] } ],
//   "cameras": [ { "id", "model", "serial", "name", "interface" (an interface ID),
//                  "transportLayer" (only to add a new interface at run time),
//                  "firmware", "bigEndian", "permittedAccess" (bit set, default 9),
//                  "mapAccess": "file" | "register", "mapRevision", "mapSlots",
//                  "mapMaxSize", "mapMaxSizeReported" (a faulty firmware's claim),
//                  "factoryMapSize", "slotChunkIds": [ one per slot ],
//                  "filename" (has the Filename feature), "fileAccessLengthWritable",
//                  "fileBufferSize" (bytes of FileAccessBuffer, 1 to 65536),
//                  "fileOperationDelayMs", "fileFailuresInStatus" (a failed file
//                  operation's command still completes), "pixelColorFilter" (has that feature),
//                  "files": [ { "name", "chunkId", "mode": "Read" | "Write" | "ReadWrite",
//                               "content" (text) } ],
//                  "sensor": { "width", "height", "colorFilter": "None" | "BayerRG" |
//                              "BayerGR" | "BayerGB" | "BayerBG", "darkLevel",
//                              "brightLevel", "noise", "seed", "hot", "dead", "stuck",
//                              "clusters", "weak", "border", "bitDepth": 8 | 10 | 12 | 16 },
//                  "streams" (false: a camera without image streams) } ] }
//
// Every camera field but id, model, serial and interface has the default below.

namespace ZebCPP {

struct SimInterfaceDescription {
    std::string id;
    std::string name;
};

struct SimTransportLayerDescription {
    std::string id;
    std::string name;
    std::string path;
    InterfaceType type = InterfaceTypeGigEVision;
    std::vector<SimInterfaceDescription> interfaces;
};

// A device file besides the map slots.
struct SimFileDescription {
    std::string name;
    uint32_t chunkId = 0;
    bool readable = true;
    bool writable = true;
    std::vector<uint8_t> content;
};

struct SimSensorDescription {
    uint32_t width = 640;
    uint32_t height = 480;
    std::string colorFilter = "None"; // "None" or a Bayer order: "BayerRG", "BayerGR", ...
    double darkLevel = 8;             // grey level of a dark frame
    double brightLevel = 160;         // signal added at full light and 10 ms exposure
    double noise = 2;                 // temporal noise, +- grey levels
    uint64_t seed = 1;
    uint32_t hot = 10;
    uint32_t dead = 6;
    uint32_t stuck = 3;
    uint32_t clusters = 2;
    uint32_t weak = 0;                // pixels 10 % less sensitive to light
    uint32_t border = 0;              // hot pixels in the outermost rows and columns
    uint32_t bitDepth = 8;            // 10, 12, 16: frames of two bytes per pixel
};

struct SimCameraDescription {
    std::string id;
    std::string model;
    std::string serial;
    std::string name;
    std::string interfaceId;
    std::string transportLayerId;     // for a new interface plugged with the camera
    std::string firmware = "FW 1.0.0";
    bool bigEndian = false;
    AccessModeType permittedAccess = static_cast<AccessModeType>(AccessModeFull | AccessModeExclusive);
    bool fileAccessMaps = true;       // map slots are device files; else only registers
    uint32_t mapRevision = 3;
    uint32_t mapSlots = 4;            // slot 0 is the factory map
    uint32_t mapMaxSize = 1000;
    std::optional<uint32_t> mapMaxSizeReported; // what the camera claims; mapMaxSize unless set
    uint32_t factoryMapSize = 5;      // taken from the seeded defects
    std::vector<uint32_t> slotChunkIds; // per slot; default 4100 for revision 4, else 4096
    bool hasFilename = true;
    bool accessLengthWritable = true;
    uint32_t fileBufferSize = 0x10000;
    uint32_t fileOperationDelayMs = 0;
    bool fileFailuresInStatus = false; // only FileOperationStatus tells of a failed operation
    bool hasPixelColorFilter = true;
    bool hasStreams = true;
    std::vector<SimFileDescription> files;
    SimSensorDescription sensor;
};

struct SimCameraSet {
    std::vector<SimTransportLayerDescription> transportLayers;
    std::vector<SimCameraDescription> cameras;
};

// Parse a whole camera set, or one camera object. On failure returns false and
// says why in *error.
bool parseSimCameraSet(const std::string& json, SimCameraSet& set, std::string* error);
bool parseSimCamera(const std::string& json, SimCameraDescription& camera, std::string* error);

// The JSON text of the built-in set.
const char* simDefaultCameraSetJson();

} // namespace ZebCPP
