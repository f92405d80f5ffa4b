#include "defectmap.h"

#include <algorithm>

bool defpix_avail(const t_defpix* map, unsigned int count, unsigned int x, unsigned int y)
{
    if (!map)
        return false;
    return std::any_of(map, map + count, [x, y](const t_defpix& e) { return e.x == x && e.y == y; });
}

bool defpix_add(t_defpix* map, unsigned int capacity, unsigned int x, unsigned int y,
                unsigned int type, unsigned int& count)
{
    if (!map || count >= capacity)
        return false;
    if (defpix_avail(map, count, x, y))
        return true;
    map[count++] = t_defpix{x, y, type};
    return true;
}

DefectMapWriter::DefectMapWriter(t_defpix* map, unsigned int capacity, unsigned int& count)
    : m_map(map), m_capacity(capacity), m_count(count)
{
    if (!map)
        return;
    m_occupied.reserve(std::min(capacity, 1u << 20));
    for (unsigned int i = 0; i < count; ++i)
        m_occupied.insert(key(map[i].x, map[i].y));
}

bool DefectMapWriter::add(unsigned int x, unsigned int y, unsigned int type)
{
    if (!m_map || m_count >= m_capacity)
        return false;
    if (!m_occupied.insert(key(x, y)).second)
        return true;
    m_map[m_count++] = t_defpix{x, y, type};
    return true;
}

bool DefectMapWriter::contains(unsigned int x, unsigned int y) const
{
    return m_occupied.count(key(x, y)) != 0;
}

bool DefectMap::add(unsigned int x, unsigned int y, unsigned int type)
{
    return defpix_add(data(), capacity(), x, y, type, m_count);
}

bool DefectMap::contains(unsigned int x, unsigned int y) const
{
    return defpix_avail(data(), m_count, x, y);
}
