#pragma once

#include <cstdint>
#include <unordered_set>

// One entry of a defect pixel map. Map files and the camera container rely on
// the three words being packed in exactly this order.
struct t_defpix {
    uint32_t x;    // column of the defect pixel, 0 = left
    uint32_t y;    // row of the defect pixel, 0 = top
    uint32_t type; // correction code: 0 when generated, a pattern code after classification
};
static_assert(sizeof(t_defpix) == 12, "a map entry is three packed 32-bit words");

// True when one of the first count entries has this position (the type is not compared).
bool defpix_avail(const t_defpix* map, unsigned int count, unsigned int x, unsigned int y);

// Appends (x, y, type) unless the map is null (false), full (false, the entry is dropped)
// or already holds the position (true, the existing entry keeps its type).
bool defpix_add(t_defpix* map, unsigned int capacity, unsigned int x, unsigned int y,
                unsigned int type, unsigned int& count);

// The rules of defpix_add over a hash of occupied positions, so that filling a map
// of n entries costs O(n) instead of a scan of the map per entry.
class DefectMapWriter {
public:
    // Indexes the first count entries already in the map; count is raised by add().
    DefectMapWriter(t_defpix* map, unsigned int capacity, unsigned int& count);

    bool add(unsigned int x, unsigned int y, unsigned int type);
    bool contains(unsigned int x, unsigned int y) const;

private:
    static uint64_t key(unsigned int x, unsigned int y) { return (uint64_t(x) << 32) | y; }

    t_defpix* m_map;
    unsigned int m_capacity;
    unsigned int& m_count;
    std::unordered_set<uint64_t> m_occupied;
};
