// Binary map files and map containers: the application's check of what it
// downloads or is given, and the simulated camera's check of what is uploaded.
// The first byte picks the map revision; the rest is the container.
#include "fuzzsupport.h"

#include "defectmapcontainer.h"
#include "sim/simmapcontainer.h"

#include <algorithm>
#include <vector>

namespace {

bool sameEntries(const std::vector<t_defpix>& a, const std::vector<ZebCPP::SimControl::SimMapEntry>& b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i].x != b[i].x || a[i].y != b[i].y || a[i].type != b[i].type)
            return false;
    }
    return true;
}

void checkBothSides(const std::vector<uint8_t>& bytes, unsigned int revision)
{
    DefPixContainer app;
    ZebCPP::SimMapContainer device;
    const bool appAccepts = checkDefPixContainerBuffer(bytes.data(), bytes.size(), revision, &app);
    const bool deviceAccepts = ZebCPP::simParseMapContainer(bytes, revision, device);
    // A map file the application would upload must be one the camera takes, and
    // a slot the camera hands out must be one the application can read.
    FUZZ_CHECK(appAccepts == deviceAccepts);
    if (!appAccepts)
        return;
    FUZZ_CHECK(app.size == bytes.size());
    FUZZ_CHECK(app.chunkLength == app.size - 12);
    FUZZ_CHECK(app.chunkId == device.chunkId);
    FUZZ_CHECK(sameEntries(app.entries, device.entries));
    if (revision != 4) {
        for (const t_defpix& entry : app.entries)
            FUZZ_CHECK(entry.type == 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const unsigned int revision = data[0] % 6;
    const std::vector<uint8_t> bytes(data + 1, data + size);
    checkBothSides(bytes, revision);
    // The same bytes with the checksum made right, so that the checks of the
    // other header fields are reached as well.
    if (bytes.size() >= 32) {
        std::vector<uint8_t> summed = bytes;
        std::fill(summed.begin() + 8, summed.begin() + 12, 0);
        const uint32_t checksum = 0u - defPixContainerWordSum(summed.data(), summed.size());
        for (int i = 0; i < 4; ++i)
            summed[8 + i] = uint8_t(checksum >> (8 * i));
        checkBothSides(summed, revision);
    }

    // The same bytes read as entries: a container built from them passes both
    // checks and gives them back.
    const size_t entrySize = defPixContainerEntrySize(revision);
    std::vector<t_defpix> map(bytes.size() / 12);
    for (size_t i = 0; i < map.size(); ++i) {
        map[i] = {uint32_t(bytes[12 * i]) | uint32_t(bytes[12 * i + 1]) << 8, bytes[12 * i + 4],
                  revision == 4 ? bytes[12 * i + 8] : 0u};
    }
    const std::vector<unsigned char> built =
        buildDefPixContainerBuffer(revision, 4096, map.size(), map.data(), 640, 640 * 480);
    FUZZ_CHECK(built.size() == 32 + map.size() * entrySize);
    checkBothSides(built, revision);
    DefPixContainer back;
    FUZZ_CHECK(checkDefPixContainerBuffer(built.data(), built.size(), revision, &back));
    FUZZ_CHECK(back.entries.size() == map.size());
    for (size_t i = 0; i < map.size(); ++i)
        FUZZ_CHECK(back.entries[i].x == map[i].x && back.entries[i].y == map[i].y && back.entries[i].type == map[i].type);
    return 0;
}
