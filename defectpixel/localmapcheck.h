#pragma once

#include "defectmap.h"

#include <QString>

#include <vector>

// What a map file on disk would write into a camera map slot, judged against
// the opened camera before anything is sent.
struct LocalMapCheck {
    bool readable = false;           // the file was opened and read (a container: well formed)
    std::vector<t_defpix> entries;   // what would be written, in file order
    unsigned int outsideSensor = 0;  // entries with x >= width or y >= height
    unsigned int duplicates = 0;     // entries whose position came earlier (dropped)
    unsigned int skippedLines = 0;   // malformed text lines (dropped)
    unsigned int beyondCapacity = 0; // entries past the camera's maximum (dropped)

    // A map the camera would misread or that writes nothing must not replace a slot's map.
    bool refused() const { return !readable || entries.empty() || outsideSensor != 0; }
};

// A text map (one "x;y;type" per line) against a sensor of width x height and
// a slot of capacity entries.
LocalMapCheck checkLocalTextMap(const QString& fileName, unsigned int width, unsigned int height,
                                unsigned int capacity);

// A map slot container of the given revision against the sensor.
LocalMapCheck checkLocalContainerMap(const QString& fileName, unsigned int revision, unsigned int width,
                                     unsigned int height);
