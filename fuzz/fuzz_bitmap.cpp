// Image files offered to a dark or bright series: the bitmap check before the
// image reader, the reader itself and the series' checks of what it returned.
#include "fuzzsupport.h"

#include "bitmapfile.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"
#include "imageseries.h"

#include <QtEndian>

namespace {

// Series of larger images only cost time here; their checks are the same.
constexpr qint64 kSeriesPixelLimit = 1 << 18;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = FuzzSupport::writeScratchFile(QStringLiteral("input.bmp"), data, size);
    FUZZ_CHECK(!path.isEmpty());
    const QImage image = readImageFile(path);
    if (image.isNull())
        return 0;
    FUZZ_CHECK(image.width() > 0 && image.height() > 0);
    // An uncompressed bitmap that was accepted holds every row its header promises.
    if (size >= 34 && data[0] == 'B' && data[1] == 'M') {
        const quint32 infoSize = qFromLittleEndian<quint32>(data + 14);
        const quint32 compression = qFromLittleEndian<quint32>(data + 30);
        const quint16 bitCount = qFromLittleEndian<quint16>(data + 28);
        if (infoSize >= 40 && compression == 0) {
            const qint64 rowBytes = (qint64(image.width()) * bitCount + 31) / 32 * 4;
            FUZZ_CHECK(qint64(qFromLittleEndian<quint32>(data + 10)) + rowBytes * image.height() <= qint64(size));
        }
    }
    if (qint64(image.width()) * image.height() > kSeriesPixelLimit)
        return 0;

    ImageGeometry geometry;
    DefectPixelParams params;
    QImage mean;
    const SeriesChange added = addImageToSeries(image, DarkSeries, geometry, params, mean);
    if (added != SeriesChange::Accepted) {
        FUZZ_CHECK(added == SeriesChange::UnsupportedFormat || added == SeriesChange::OutOfMemory);
        return 0;
    }
    FUZZ_CHECK(geometry.width == uint32_t(image.width()) && geometry.height == uint32_t(image.height()));
    FUZZ_CHECK(mean.size() == image.size());
    // The same file again, then out again: the series holds one image.
    FUZZ_CHECK(addImageToSeries(image, DarkSeries, geometry, params, mean) == SeriesChange::Accepted);
    FUZZ_CHECK(removeImageFromSeries(image, DarkSeries, geometry, params, mean) == SeriesChange::Accepted);
    FUZZ_CHECK(params.count == 1);
    return 0;
}
