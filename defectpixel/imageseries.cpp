#include "imageseries.h"

#include "bitmapfile.h"

namespace {

bool isValidKind(int kind)
{
    return kind == DarkSeries || kind == BrightSeries;
}

bool fitsGeometry(const QImage& image, const ImageGeometry& geometry)
{
    const bool sizeKnown = geometry.width != 0 && geometry.height != 0;
    return !sizeKnown || (uint32_t(image.width()) == geometry.width && uint32_t(image.height()) == geometry.height);
}

// The mean a series starts from when its display holds none.
QImage firstMean(const QImage& image, int kind, const ImageGeometry& geometry)
{
    if (kind == DarkSeries)
        return image.convertToFormat(QImage::Format_Grayscale8);
    QImage mean(int(geometry.width), int(geometry.height), QImage::Format_Indexed8);
    // Its content is weighted by zero images; filled only to keep it defined.
    mean.fill(0);
    return mean;
}

} // namespace

SeriesChange addImageToSeries(const QImage& image, int kind, ImageGeometry& geometry,
                              DefectPixelParams& params, QImage& mean)
{
    if (image.isNull())
        return SeriesChange::NullImage;
    if (image.format() != QImage::Format_Indexed8 && image.format() != QImage::Format_RGB32)
        return SeriesChange::UnsupportedFormat;
    if (!fitsGeometry(image, geometry))
        return SeriesChange::IncompatibleSize;

    geometry.width = uint32_t(image.width());
    geometry.height = uint32_t(image.height());
    geometry.pixelCount = geometry.width * geometry.height;
    if (!isValidKind(kind))
        return SeriesChange::InvalidKind;

    QImage updated = mean.isNull() ? firstMean(image, kind, geometry) : mean;
    QImage added = image;
    if (updated.isNull() || !params.update(updated, added, 1))
        return SeriesChange::OutOfMemory;
    mean = updated;
    return SeriesChange::Accepted;
}

SeriesChange addImageToSeries(const QString& path, int kind, ImageGeometry& geometry,
                              DefectPixelParams& params, QImage& mean)
{
    return addImageToSeries(readImageFile(path), kind, geometry, params, mean);
}

SeriesChange removeImageFromSeries(const QImage& image, int kind, const ImageGeometry& geometry,
                                   DefectPixelParams& params, QImage& mean)
{
    if (image.isNull())
        return SeriesChange::NullImage;
    if (!fitsGeometry(image, geometry))
        return SeriesChange::IncompatibleSize;
    if (!isValidKind(kind))
        return SeriesChange::InvalidKind;

    QImage removed = image;
    if (mean.isNull()) {
        // The file's own image is the mean; update reads and writes the same bytes.
        const bool updated = params.update(removed, removed, -1);
        mean = removed;
        return updated ? SeriesChange::Accepted : SeriesChange::OutOfMemory;
    }
    const bool updated = params.update(mean, removed, -1);
    return updated ? SeriesChange::Accepted : SeriesChange::OutOfMemory;
}

SeriesChange removeImageFromSeries(const QString& path, int kind, const ImageGeometry& geometry,
                                   DefectPixelParams& params, QImage& mean)
{
    return removeImageFromSeries(readImageFile(path), kind, geometry, params, mean);
}
