#pragma once

#include "bitmapfile.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"

#include <QImage>
#include <QString>

// Series kinds of the panel.
enum SeriesKind { DarkSeries = 0, BrightSeries = 1 };

// What became of an image offered to or taken from a series; the panel words
// its messages from it.
enum class SeriesChange {
    Accepted,          // the series and its mean changed
    NullImage,         // the file could not be loaded
    UnsupportedFormat, // neither 8-bit indexed nor 32-bit RGB
    IncompatibleSize,  // differs from the size of the images already loaded
    OutOfMemory,       // the series could not get its per-pixel buffers
    InvalidKind,       // neither dark nor bright (the geometry is stored all the same)
};

// Adds one image to series kind. params and mean belong to that series; mean is
// the image its display holds (null when none) and is replaced by the new mean
// when the image is accepted, so the caller can always put it back.
SeriesChange addImageToSeries(const QImage& image, int kind, ImageGeometry& geometry,
                              DefectPixelParams& params, QImage& mean);
SeriesChange addImageToSeries(const QString& path, int kind, ImageGeometry& geometry,
                              DefectPixelParams& params, QImage& mean);

// Why file was refused with change, in a few words for the user; geometry is
// that of the series when the file was offered.
QString refusalReason(const ImageFile& file, SeriesChange change, const ImageGeometry& geometry);

// Takes one image's contribution out of series kind, as the file is now on disk.
// When mean is null the image itself serves as the mean and becomes it, so the
// caller can always put mean back into the display. Accepted also when the
// series was already empty; the result is never shown to the user.
SeriesChange removeImageFromSeries(const QImage& image, int kind, const ImageGeometry& geometry,
                                   DefectPixelParams& params, QImage& mean);
SeriesChange removeImageFromSeries(const QString& path, int kind, const ImageGeometry& geometry,
                                   DefectPixelParams& params, QImage& mean);
