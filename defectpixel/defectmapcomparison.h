#pragma once

#include "defectmap.h"

// How two maps overlap by position (the correction code is not compared); a
// position listed twice in one map counts once.
struct DefectMapComparison {
    unsigned int common = 0;     // positions in both maps
    unsigned int onlyFirst = 0;  // positions only in the first map
    unsigned int onlySecond = 0; // positions only in the second map
};

DefectMapComparison compareDefectMaps(const t_defpix* first, unsigned int firstCount, const t_defpix* second,
                                      unsigned int secondCount);
