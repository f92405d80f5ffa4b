#include "defectmapcomparison.h"

#include <unordered_set>

namespace {

uint64_t positionKey(const t_defpix& entry)
{
    return (uint64_t(entry.x) << 32) | entry.y;
}

std::unordered_set<uint64_t> positionsOf(const t_defpix* map, unsigned int count)
{
    std::unordered_set<uint64_t> positions;
    positions.reserve(count);
    for (unsigned int i = 0; map && i < count; ++i)
        positions.insert(positionKey(map[i]));
    return positions;
}

} // namespace

DefectMapComparison compareDefectMaps(const t_defpix* first, unsigned int firstCount, const t_defpix* second,
                                      unsigned int secondCount)
{
    const std::unordered_set<uint64_t> firstPositions = positionsOf(first, firstCount);
    const std::unordered_set<uint64_t> secondPositions = positionsOf(second, secondCount);
    DefectMapComparison comparison;
    for (uint64_t key : firstPositions)
        secondPositions.count(key) ? ++comparison.common : ++comparison.onlyFirst;
    comparison.onlySecond = unsigned(secondPositions.size()) - comparison.common;
    return comparison;
}
