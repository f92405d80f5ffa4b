#pragma once

#include "defectmap.h"

class DefectMatchPatterns;

// Sensor geometry the classification assumes, whatever the size of the images
// the map was made from: the cameras that take correction codes have this sensor.
constexpr unsigned int kClassificationWidth = 1280;
constexpr unsigned int kClassificationHeight = 1024;

// Gives every entry the code of the first pattern that fits its 5 x 5
// neighbourhood; an entry that no pattern fits keeps its type. The neighbourhood
// holds the other entries within two columns and rows (positions compared as
// signed 32-bit values) and the positions beyond the sensor's edges. Only
// positions are looked at, so the order of the entries does not change the codes.
void conv_defpix_map_990(t_defpix* map, unsigned int count, const DefectMatchPatterns& patterns);
