#pragma once

#include "defectmap.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"

#include <QImage>

enum class MapGeneration {
    Generated,     // the map was emptied and filled anew (it may be empty); its capacity stays
    MissingImages, // no mean image to work from; the map is untouched
    NoMemory,      // a threshold step found no memory; the map is untouched
};

// Monochrome cameras: flags dark pixels against the absolute margin and bright
// pixels against the relative one, and adds them in raster order with type 0.
// Each flagged pixel raises its series' defectCount, also when the map is full
// or the pixel was already added for the dark series; a pixel flagged in both
// series is added once. A series without mean image is left out.
MapGeneration create_defpix_map(const QImage& darkMean, const QImage& brightMean,
                                DefectPixelParams& dark, DefectPixelParams& bright,
                                const ImageGeometry& geometry, DefectMap& map);

// Colour cameras: the dark series alone, every pixel against the average of all
// its neighbours regardless of the colour mosaic.
MapGeneration create_defpix_map_color(const QImage& darkMean, DefectPixelParams& dark,
                                      const ImageGeometry& geometry, DefectMap& map);
