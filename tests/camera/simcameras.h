#pragma once

// Shared set-up of the camera suites: the simulated cameras they run against and
// map containers as a camera's map slot accepts them.

#include <ZebCPP.h>

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace SimCameras {

// Cameras of the built-in set, by plain ID.
constexpr const char* kMonoFile = "DEV_KV1230001";     // GigE Vision, big-endian, "Filename", writable length
constexpr const char* kColourFile = "DEV_PM5000002";   // USB3 Vision, revision 4, no "Filename", read-only length
constexpr const char* kRegisterMono = "DEV_RY1300003"; // GigE Vision, register-mode maps
constexpr const char* kHeldElsewhere = "DEV_TB2000005";

// A file-access camera whose map slots take 20000 entries, so that a map spans
// several transfer blocks, with an empty read-only file "Notes". Plugged in with the given ID; its file operations
// complete after operationDelayMs.
std::string bigMapCameraJson(const std::string& id, unsigned int operationDelayMs = 0);

// Starts the SDK with the built-in set; false when the simulated cameras are not there.
bool startup();
void shutdown();

QString extendedIdOf(const char* plainId);

struct MapEntry {
    uint32_t x;
    uint32_t y;
    uint32_t type;
};

// A valid map container: 32-byte header (magic, size, checksum, chunk id, chunk
// length, width, pixel count, 0), then X, Y (and the type for revision 4) per entry.
std::vector<unsigned char> mapContainer(unsigned int revision, uint32_t chunkId,
                                        const std::vector<MapEntry>& entries, uint32_t width, uint32_t height);
// count distinct positions, row by row from position seed on.
std::vector<MapEntry> sampleEntries(unsigned int count, uint32_t width, uint32_t seed);

// Bytes 0, 1, 2, ... wrapping at 251, so that misplaced blocks show.
std::vector<unsigned char> patternBytes(size_t size);

} // namespace SimCameras
