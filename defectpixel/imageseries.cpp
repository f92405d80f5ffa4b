#include "imageseries.h"

#include "bitmapfile.h"
#include "largebuffer.h"

#include <QCoreApplication>

#include <utility>

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
    // The first image is weighted by one and the old mean by zero, so only the
    // bytes past the contiguous run (the padding of the lines) keep the
    // converted image's content; without padding a plain image will do.
    if (kind == DarkSeries && image.width() % 4 != 0)
        return image.convertToFormat(QImage::Format_Grayscale8);
    QImage mean = newLargeImage(int(geometry.width), int(geometry.height),
                                kind == DarkSeries ? QImage::Format_Grayscale8 : QImage::Format_Indexed8);
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

    QImage added = image; // before mean is taken: image may be that very object
    // A mean nobody else holds is taken over and written in place; one the
    // display shows as well is copied first, into memory that faults in fast.
    const bool taken = mean.isDetached();
    QImage updated = mean.isNull() ? firstMean(image, kind, geometry) : taken ? std::move(mean) : largeCopy(mean);
    if (updated.isNull() || !params.update(updated, added, 1)) {
        if (taken)
            mean = std::move(updated); // a refused update leaves its bytes untouched
        return SeriesChange::OutOfMemory;
    }
    mean = std::move(updated);
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

QString refusalReason(const ImageFile& file, SeriesChange change, const ImageGeometry& geometry)
{
    switch (change) {
    case SeriesChange::NullImage:
        if (file.problem == ImageFileProblem::Empty)
            return QCoreApplication::translate("ImageSeries", "The file is empty.");
        if (file.problem == ImageFileProblem::Truncated)
            return QCoreApplication::translate("ImageSeries", "The file is truncated: its pixel data is cut short.");
        return QCoreApplication::translate("ImageSeries", "Not a readable bitmap.");
    case SeriesChange::UnsupportedFormat:
        return QCoreApplication::translate("ImageSeries", "Bit depth %1 is not supported for this camera.")
            .arg(file.bitCount ? file.bitCount : file.image.depth());
    case SeriesChange::IncompatibleSize:
        return QCoreApplication::translate("ImageSeries", "Size %1×%2 differs from the series' %3×%4.")
            .arg(file.image.width())
            .arg(file.image.height())
            .arg(geometry.width)
            .arg(geometry.height);
    case SeriesChange::OutOfMemory:
        return QCoreApplication::translate("ImageSeries", "Not enough memory for the series.");
    case SeriesChange::Accepted:
    case SeriesChange::InvalidKind:
        break;
    }
    return QString();
}
