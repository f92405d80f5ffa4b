#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

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

// A defect map owned by value: count entries in use out of room for capacity.
// Without room (capacity 0) data() is null, as the map of a panel without camera.
class DefectMap {
public:
    DefectMap() = default;
    explicit DefectMap(unsigned int capacity) : m_entries(capacity, t_defpix{0, 0, 0}) {}

    unsigned int capacity() const { return static_cast<unsigned int>(m_entries.size()); }
    unsigned int count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }
    t_defpix* data() { return m_entries.empty() ? nullptr : m_entries.data(); }
    const t_defpix* data() const { return m_entries.empty() ? nullptr : m_entries.data(); }
    const t_defpix& operator[](unsigned int index) const { return m_entries[index]; }
    // The entries in use.
    std::vector<t_defpix> entries() const { return {m_entries.begin(), m_entries.begin() + m_count}; }

    // The rules of defpix_add.
    bool add(unsigned int x, unsigned int y, unsigned int type);
    bool contains(unsigned int x, unsigned int y) const;
    // Empties the map; the room stays.
    void clear() { m_count = 0; }
    // After the storage was filled through data(); clamped to the capacity.
    void setCount(unsigned int count) { m_count = count < capacity() ? count : capacity(); }

private:
    friend class DefectMapWriter;
    std::vector<t_defpix> m_entries;
    unsigned int m_count = 0;
};

// The rules of defpix_add over a hash of occupied positions, so that filling a map
// of n entries costs O(n) instead of a scan of the map per entry.
class DefectMapWriter {
public:
    // Indexes the first count entries already in the map; count is raised by add().
    DefectMapWriter(t_defpix* map, unsigned int capacity, unsigned int& count);
    explicit DefectMapWriter(DefectMap& map) : DefectMapWriter(map.data(), map.capacity(), map.m_count) {}

    bool add(unsigned int x, unsigned int y, unsigned int type);
    bool contains(unsigned int x, unsigned int y) const;

private:
    static uint64_t key(unsigned int x, unsigned int y) { return (uint64_t(x) << 32) | y; }

    t_defpix* m_map;
    unsigned int m_capacity;
    unsigned int& m_count;
    std::unordered_set<uint64_t> m_occupied;
};
