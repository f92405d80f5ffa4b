// Map text files as the user hands them to the assistant.
#include "fuzzsupport.h"

#include "defectmap.h"
#include "defectmaptext.h"

#include <QBuffer>

#include <set>
#include <utility>
#include <vector>

namespace {

constexpr unsigned int kCapacity = 256;

unsigned int readInto(const QByteArray& text, std::vector<t_defpix>& map)
{
    map.assign(kCapacity, t_defpix{0, 0, 0});
    unsigned int count = 0;
    QByteArray copy = text;
    QBuffer device(&copy);
    FUZZ_CHECK(device.open(QIODevice::ReadOnly));
    DefectMapWriter writer(map.data(), kCapacity, count);
    readDefectMapText(device, writer);
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::vector<t_defpix> map;
    const unsigned int count =
        readInto(QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size)), map);
    FUZZ_CHECK(count <= kCapacity);
    std::set<std::pair<uint32_t, uint32_t>> positions;
    for (unsigned int i = 0; i < count; ++i)
        FUZZ_CHECK(positions.insert({map[i].x, map[i].y}).second);

    // What the reader accepted, written and read back, is the same map.
    const QByteArray text = defectMapToText(map.data(), count);
    std::vector<t_defpix> again;
    FUZZ_CHECK(readInto(text, again) == count);
    for (unsigned int i = 0; i < count; ++i) {
        FUZZ_CHECK(again[i].x == map[i].x && again[i].y == map[i].y && again[i].type == map[i].type);
    }
    FUZZ_CHECK(defectMapToText(again.data(), count) == text);
    return 0;
}
