// Image files offered to a dark or bright series: the bitmap check before the
// image reader, the reader itself and the series' checks of what it returned.
#include "fuzzsupport.h"

#include "bitmapfile.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"
#include "imageseries.h"
#include "seriesfileloader.h"

#include <QtEndian>

#include <algorithm>

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
    // An uncompressed bitmap that was accepted holds every row its header
    // promises, whether the header is a Windows one or the old 12-byte one.
    if (size >= 34 && data[0] == 'B' && data[1] == 'M') {
        const quint32 infoSize = qFromLittleEndian<quint32>(data + 14);
        const bool windows = infoSize == 40 || infoSize == 108 || infoSize == 124;
        const bool old = infoSize == 12;
        const quint16 bitCount = qFromLittleEndian<quint16>(data + (windows ? 28 : 24));
        if ((windows && qFromLittleEndian<quint32>(data + 30) == 0) || old) {
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

    // The file loader, which reads a plain bitmap's lines straight from disk,
    // builds the same series as the image added twice.
    ImageGeometry referenceGeometry, loadedGeometry;
    DefectPixelParams referenceParams, loadedParams;
    QImage referenceMean, loadedMean;
    for (int i = 0; i < 2; ++i)
        FUZZ_CHECK(addImageToSeries(image, BrightSeries, referenceGeometry, referenceParams, referenceMean)
                   == SeriesChange::Accepted);
    SeriesFileLoader loader({path, path}, BrightSeries);
    while (!loader.atEnd()) {
        loader.start(loadedGeometry, loadedParams, loadedMean);
        for (const OfferedFile& offered : loader.finish(loadedGeometry, loadedParams, loadedMean))
            FUZZ_CHECK(offered.change == SeriesChange::Accepted);
    }
    FUZZ_CHECK(loadedParams.count == 2 && loadedMean.size() == referenceMean.size());
    const size_t run = size_t(geometry.pixelCount);
    FUZZ_CHECK(std::equal(loadedMean.constBits(), loadedMean.constBits() + run, referenceMean.constBits()));
    FUZZ_CHECK(std::equal(loadedParams.remainder, loadedParams.remainder + run, referenceParams.remainder));
    return 0;
}
