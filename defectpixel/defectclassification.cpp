#include "defectclassification.h"

#include "defectmatch.h"

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace {

constexpr int kReach = 2;
constexpr int kSide = 2 * kReach + 1;

// Occupied positions as signed 32-bit coordinates. The sensor and a margin of
// two pixels around it are a bitmap, so the neighbourhood of an entry on the
// sensor is read without hashing; anything farther out goes to a hash set.
class OccupiedPositions {
public:
    OccupiedPositions(const t_defpix* map, unsigned int count)
        : m_bits((size_t(kPaddedWidth) * kPaddedHeight + 63) / 64, 0)
    {
        for (unsigned int i = 0; i < count; ++i) {
            const int64_t x = int32_t(map[i].x);
            const int64_t y = int32_t(map[i].y);
            if (inBitmap(x, y))
                m_bits[bitIndex(x, y) / 64] |= uint64_t(1) << (bitIndex(x, y) % 64);
            else
                m_far.insert(key(x, y));
        }
    }

    bool contains(int64_t x, int64_t y) const
    {
        if (inBitmap(x, y))
            return (m_bits[bitIndex(x, y) / 64] >> (bitIndex(x, y) % 64)) & 1;
        if (x < INT32_MIN || x > INT32_MAX || y < INT32_MIN || y > INT32_MAX)
            return false;
        return !m_far.empty() && m_far.count(key(x, y)) != 0;
    }

private:
    static constexpr int64_t kPaddedWidth = kClassificationWidth + 2 * kReach;
    static constexpr int64_t kPaddedHeight = kClassificationHeight + 2 * kReach;

    static bool inBitmap(int64_t x, int64_t y)
    {
        return x >= -kReach && x < kPaddedWidth - kReach && y >= -kReach && y < kPaddedHeight - kReach;
    }
    static size_t bitIndex(int64_t x, int64_t y)
    {
        return size_t((y + kReach) * kPaddedWidth + (x + kReach));
    }
    static uint64_t key(int64_t x, int64_t y) { return (uint64_t(uint32_t(x)) << 32) | uint32_t(y); }

    std::vector<uint64_t> m_bits;
    std::unordered_set<uint64_t> m_far;
};

constexpr uint32_t rowBits(int r) { return 0x1Fu << (r * kSide); }
constexpr uint32_t columnBits(int c)
{
    return (1u << c) | (1u << (c + kSide)) | (1u << (c + 2 * kSide)) | (1u << (c + 3 * kSide))
           | (1u << (c + 4 * kSide));
}

// Cells beyond the sensor's edges count as defects.
uint32_t borderBits(uint32_t x, uint32_t y)
{
    uint32_t bits = 0;
    if (x == 0)
        bits |= columnBits(0) | columnBits(1);
    else if (x == 1)
        bits |= columnBits(0);
    else if (x == kClassificationWidth - 2)
        bits |= columnBits(4);
    else if (x == kClassificationWidth - 1)
        bits |= columnBits(3) | columnBits(4);
    if (y == 0)
        bits |= rowBits(0) | rowBits(1);
    else if (y == 1)
        bits |= rowBits(0);
    else if (y == kClassificationHeight - 2)
        bits |= rowBits(4);
    else if (y == kClassificationHeight - 1)
        bits |= rowBits(3) | rowBits(4);
    return bits;
}

} // namespace

void conv_defpix_map_990(t_defpix* map, unsigned int count, const DefectMatchPatterns& patterns)
{
    if (!map || count == 0 || patterns.isEmpty())
        return;
    const OccupiedPositions occupied(map, count);
    for (unsigned int i = 0; i < count; ++i) {
        t_defpix& e = map[i];
        const int64_t x = int32_t(e.x);
        const int64_t y = int32_t(e.y);
        uint32_t grid = borderBits(e.x, e.y);
        for (int r = 0; r < kSide; ++r) {
            for (int c = 0; c < kSide; ++c) {
                if (occupied.contains(x + c - kReach, y + r - kReach))
                    grid |= 1u << (r * kSide + c);
            }
        }
        const int code = patterns.matchBits(grid);
        if (code >= 0)
            e.type = unsigned(code);
    }
}
