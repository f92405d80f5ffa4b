#pragma once

#include "defectmap.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"

#include <QImage>

#include <functional>

// The panel's map as the generators fill it. reset() empties the map and sizes
// it to the camera's maximum; map and capacity are read after it.
struct DefectMapTarget {
    t_defpix*& map;
    unsigned int& capacity;
    unsigned int& count;
    std::function<void()> reset;
};

enum class MapGeneration {
    Generated,     // the map was rebuilt (it may be empty)
    MissingImages, // no mean image to work from; the map is untouched
};

// Monochrome cameras: flags dark pixels against the absolute margin and bright
// pixels against the relative one, and adds them in raster order with type 0.
// Each flagged pixel raises its series' defectCount, also when the map is full
// or the pixel was already added for the dark series; a pixel flagged in both
// series is added once. A series without mean image is left out.
MapGeneration create_defpix_map(const QImage& darkMean, const QImage& brightMean,
                                DefectPixelParams& dark, DefectPixelParams& bright,
                                const ImageGeometry& geometry, const DefectMapTarget& target);

// Colour cameras: the dark series alone, every pixel against the average of all
// its neighbours regardless of the colour mosaic.
MapGeneration create_defpix_map_color(const QImage& darkMean, DefectPixelParams& dark,
                                      const ImageGeometry& geometry, const DefectMapTarget& target);
