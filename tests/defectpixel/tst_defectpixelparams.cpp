#include "defectpixelparams.h"
#include "exactdivider.h"
#include "meanbatch.h"
#include "referencewindow.h"

#include <QtTest>

#include <atomic>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace {

// Plain per-pixel accumulation with one integer division per pixel.
struct ReferenceSeries {
    std::vector<unsigned char> mean, remainder;
    uint32_t count = 0;

    explicit ReferenceSeries(size_t size) : mean(size, 0), remainder(size, 0) {}

    void update(const QImage& image, int weight)
    {
        if (weight == 1)
            ++count;
        else if (weight == -1 && count-- == 0)
            count = 0;
        if (count == 0) {
            std::fill(remainder.begin(), remainder.end(), 0);
            return;
        }
        const uint32_t oldCount = count - uint32_t(weight);
        for (size_t i = 0; i < mean.size(); ++i) {
            uint32_t contribution;
            if (image.format() == QImage::Format_RGB32) {
                const uchar* px = image.constBits() + 4 * i;
                // Through 64 bits, so that huge weights wrap instead of overflowing.
                contribution = uint32_t(int64_t(float(px[0] + px[1] + px[2]) / 3.0f * float(weight)));
            } else {
                contribution = image.constBits()[i] * uint32_t(weight);
            }
            const uint32_t s = remainder[i] + mean[i] * oldCount + contribution;
            mean[i] = uchar(s / count);
            remainder[i] = uchar(s - (s / count) * count);
        }
    }
};

// The mask the direct window gives.
std::vector<unsigned char> referenceMask(const QImage& mean, bool absolute, int threshold)
{
    const std::vector<int> averages = referenceAverages(mean.constBits(), mean.width(), mean.height());
    std::vector<unsigned char> mask(averages.size());
    for (size_t i = 0; i < mask.size(); ++i) {
        const int64_t m = averages[i], v = mean.constBits()[i];
        const int64_t t = absolute ? threshold : int64_t(double(threshold) * 0.01 * double(m));
        mask[i] = (v < m - t || v > m + t) ? 255 : 0;
    }
    return mask;
}

// Random bytes over the whole range.
QImage randomImage(int width, int height, QImage::Format format, std::mt19937& random)
{
    QImage image(width, height, format);
    std::uniform_int_distribution<int> noise(0, 255);
    for (qsizetype i = 0; i < image.sizeInBytes(); ++i)
        image.bits()[i] = uchar(noise(random));
    return image;
}

QByteArray bytesOf(const unsigned char* data, size_t size)
{
    return QByteArray(reinterpret_cast<const char*>(data), int(size));
}

QImage grey(int width, int height, int value)
{
    QImage image(width, height, QImage::Format_Indexed8);
    image.fill(uint(value));
    return image;
}

} // namespace

class TestDefectPixelParams : public QObject {
    Q_OBJECT

private slots:
    void exactDividerOverReachableSums();
    void windowDividerOverEveryBoxSum();
    void exactDivider16OverEveryNumerator();
    void updateMatchesPlainDivision_data();
    void updateMatchesPlainDivision();
    void largeCountsAndOtherWeights();
    void addingAndRemovingInAnyOrderRestoresMean();
    void removingLastOrFromEmptySeriesFreesBuffers();
    void meanSharingBytesWithImage();
    void sizeMismatchChangesNothing();
    void batchEqualsAddingOneByOne();
    void localThresholdMatchesDirectWindow_data();
    void localThresholdMatchesDirectWindow();
    void marginBoundaryIsNotFlagged();
};

void TestDefectPixelParams::exactDividerOverReachableSums()
{
    // Counts beyond the 16-bit path and weights other than +-1 reach any sum.
    std::mt19937 random(7);
    for (uint32_t d = 1; d <= 300; ++d) {
        const ExactDivider divider(d);
        for (uint32_t n = uint32_t(-256); n != 0; ++n)
            QCOMPARE(divider.divide(n), n / d);
        for (int i = 0; i < 1000; ++i) {
            const uint32_t n = uint32_t(random());
            QCOMPARE(divider.divide(n), n / d);
        }
    }
    for (int i = 0; i < 200000; ++i) {
        const uint32_t d = std::max<uint32_t>(1, random() >> (random() % 32));
        const uint32_t n = random();
        QCOMPARE(ExactDivider(d).divide(n), n / d);
    }
}

void TestDefectPixelParams::windowDividerOverEveryBoxSum()
{
    for (uint32_t d = 1; d <= 21; ++d) {
        const WindowDivider divider(d);
        for (uint32_t n = 0; n <= WindowDivider::maxSum; ++n)
            QCOMPARE(divider.divide(uint16_t(n)), n / d);
    }
}

void TestDefectPixelParams::exactDivider16OverEveryNumerator()
{
    // The 16-bit update divides numerators below 1020 + count: all of them up
    // to 2000 images, and every 16-bit numerator for a sample of divisors.
    for (uint32_t d = 1; d <= 2000; ++d) {
        const ExactDivider16 divider{uint16_t(d)};
        for (uint32_t n = 0; n < 1020 + d; ++n)
            if (divider.divide(uint16_t(n)) != n / d)
                QFAIL(qPrintable(QString("%1 / %2").arg(n).arg(d)));
    }
    std::mt19937 random(8);
    std::vector<uint32_t> divisors{1, 2, 3, 7, 255, 256, 257, 32768, 32769, 64000, 65534, 65535};
    for (int i = 0; i < 30; ++i)
        divisors.push_back(1 + random() % 65535);
    for (uint32_t d : divisors) {
        const ExactDivider16 divider{uint16_t(d)};
        for (uint32_t n = 0; n < 65536; ++n)
            if (divider.divide(uint16_t(n)) != n / d)
                QFAIL(qPrintable(QString("%1 / %2").arg(n).arg(d)));
    }
}

void TestDefectPixelParams::updateMatchesPlainDivision_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("images");
    for (auto format : {QImage::Format_Indexed8, QImage::Format_Grayscale8, QImage::Format_RGB32}) {
        QTest::addRow("format %d, 300 images past the one-byte remainder", format) << int(format) << 12 << 5 << 300;
        QTest::addRow("format %d, split over threads", format) << int(format) << 512 << 512 << 3;
    }
}

void TestDefectPixelParams::updateMatchesPlainDivision()
{
    QFETCH(int, format);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, images);
    std::mt19937 random(uint32_t(format * 31 + width));
    DefectPixelParams params;
    ReferenceSeries reference(size_t(width) * height);
    QImage mean(width, height, QImage::Format_Grayscale8);
    mean.fill(0);
    std::vector<QImage> added;
    while (params.count < uint32_t(images)) {
        const bool remove = !added.empty() && random() % 4 == 0;
        QImage image = remove ? added[random() % added.size()]
                              : randomImage(width, height, QImage::Format(format), random);
        if (!remove)
            added.push_back(image);
        QVERIFY(params.update(mean, image, remove ? -1 : 1));
        reference.update(image, remove ? -1 : 1);
        QCOMPARE(params.count, reference.count);
        if (params.count == 0)
            continue;
        QCOMPARE(bytesOf(mean.constBits(), reference.mean.size()), bytesOf(reference.mean.data(), reference.mean.size()));
        QCOMPARE(bytesOf(params.remainder, reference.remainder.size()),
                 bytesOf(reference.remainder.data(), reference.remainder.size()));
    }
}

void TestDefectPixelParams::largeCountsAndOtherWeights()
{
    std::mt19937 random(5);
    for (auto format : {QImage::Format_Indexed8, QImage::Format_RGB32}) {
        for (uint32_t count : {63999u, 64000u, 64001u, 70000u, 4000000000u}) {
            for (int weight : {1, -1, 2, 0, -7, 1 << 30}) {
                const QImage image = randomImage(16, 3, format, random);
                QImage mean = randomImage(16, 3, QImage::Format_Grayscale8, random);
                ReferenceSeries reference(48);
                std::copy(mean.constBits(), mean.constBits() + 48, reference.mean.begin());
                DefectPixelParams params;
                params.count = reference.count = count;
                QImage added = image;
                QVERIFY(params.update(mean, added, weight));
                reference.update(image, weight);
                QCOMPARE(bytesOf(mean.constBits(), 48), bytesOf(reference.mean.data(), 48));
                QCOMPARE(bytesOf(params.remainder, 48), bytesOf(reference.remainder.data(), 48));
            }
        }
    }
}

void TestDefectPixelParams::addingAndRemovingInAnyOrderRestoresMean()
{
    std::mt19937 random(3);
    std::vector<QImage> images;
    for (int i = 0; i < 6; ++i)
        images.push_back(randomImage(8, 4, QImage::Format_Indexed8, random));
    DefectPixelParams params;
    QImage mean = images[0].convertToFormat(QImage::Format_Grayscale8);
    QVERIFY(params.update(mean, images[0], 1));
    const QByteArray meanOfFirst = bytesOf(mean.constBits(), 32);
    for (int i = 1; i < 6; ++i)
        QVERIFY(params.update(mean, images[i], 1));
    for (int i : {3, 1, 5, 2, 4})
        QVERIFY(params.update(mean, images[i], -1));
    QCOMPARE(params.count, 1u);
    QCOMPARE(bytesOf(mean.constBits(), 32), meanOfFirst);
    QCOMPARE(bytesOf(params.remainder, 32), QByteArray(32, 0));
}

void TestDefectPixelParams::removingLastOrFromEmptySeriesFreesBuffers()
{
    DefectPixelParams params;
    params.absoluteThreshold = 3;
    params.defectCount = 9;
    QImage image = grey(4, 2, 77);
    QImage mean = image.convertToFormat(QImage::Format_Grayscale8);
    QVERIFY(params.update(mean, image, 1));
    QVERIFY(params.localThreshold(mean, true));
    QVERIFY(params.update(mean, image, -1));
    QCOMPARE(params.count, 0u);
    QVERIFY(!params.remainder);
    QVERIFY(!params.defectMask);
    QCOMPARE(bytesOf(mean.constBits(), 8), QByteArray(8, 77));
    QVERIFY(params.update(mean, image, -1));
    QCOMPARE(params.count, 0u);
    QCOMPARE(params.absoluteThreshold, 3);
    QCOMPARE(params.defectCount, 9u);
}

void TestDefectPixelParams::meanSharingBytesWithImage()
{
    // Removal with no displayed mean uses the file's image as its own mean.
    std::mt19937 random(11);
    for (auto format : {QImage::Format_Indexed8, QImage::Format_RGB32}) {
        QImage image = randomImage(640, 480, format, random);
        ReferenceSeries reference(640 * 480);
        std::copy(image.constBits(), image.constBits() + reference.mean.size(), reference.mean.begin());
        DefectPixelParams params;
        params.count = 3;
        reference.count = 3;
        reference.update(image, -1);
        QVERIFY(params.update(image, image, -1));
        QCOMPARE(bytesOf(image.constBits(), reference.mean.size()),
                 bytesOf(reference.mean.data(), reference.mean.size()));
    }
}

void TestDefectPixelParams::sizeMismatchChangesNothing()
{
    DefectPixelParams params;
    QImage mean(4, 2, QImage::Format_Grayscale8), image = grey(4, 3, 1), mono(4, 2, QImage::Format_Mono);
    QVERIFY(!params.update(mean, image, 1));
    QVERIFY(!params.update(mean, mono, 1));
    QCOMPARE(params.count, 0u);
    QVERIFY(!params.remainder);
    QVERIFY(!params.localThreshold(QImage(), true));
    QVERIFY(!params.defectMask);
}

void TestDefectPixelParams::batchEqualsAddingOneByOne()
{
    std::mt19937 random(31);
    struct Case {
        int width, height;
        uint32_t oldCount, images;
    };
    // Tiles and bands of a tall odd-width image, and counts up to the last one
    // whose remainder fits its byte on tiny ones.
    for (const Case c : {Case{37, 8000, 0, 3}, Case{37, 8000, 1, 2}, Case{37, 8000, 200, 4}, Case{5, 7, 0, 256},
                         Case{5, 7, 1, 255}, Case{5, 7, 128, 128}, Case{8, 3, 255, 1}}) {
        const size_t size = size_t(c.width) * c.height;
        ReferenceSeries reference(size);
        for (size_t i = 0; i < size && c.oldCount; ++i) {
            reference.mean[i] = uchar(random());
            reference.remainder[i] = uchar(random() % c.oldCount);
        }
        reference.count = c.oldCount;
        const std::vector<unsigned char> mean = reference.mean, remainder = reference.remainder;
        std::vector<QImage> images;
        std::vector<BatchImage> batchImages;
        for (uint32_t i = 0; i < c.images; ++i) {
            const bool rgb32 = random() % 2;
            images.push_back(randomImage(c.width, c.height, rgb32 ? QImage::Format_RGB32 : QImage::Format_Indexed8, random));
            reference.update(images.back(), 1);
            batchImages.push_back({rgb32, [image = images.back()](int first, int lines, unsigned char* into) {
                                       std::memcpy(into, image.constScanLine(first), size_t(lines) * image.bytesPerLine());
                                       return true;
                                   }});
        }
        std::vector<unsigned char> newMean(size), newRemainder(size);
        QCOMPARE(applyMeanBatch({mean.data(), remainder.data(), newMean.data(), newRemainder.data(), c.oldCount},
                                batchImages, uint32_t(c.width), uint32_t(c.height)),
                 -1);
        QVERIFY2(newMean == reference.mean, qPrintable(QString("%1 + %2 images").arg(c.oldCount).arg(c.images)));
        QVERIFY(newRemainder == reference.remainder);

        // An image whose lines give out fails the batch at its index: at once on
        // a tiny image, after its first tile on a tall one.
        if (c.images > 1) {
            auto calls = std::make_shared<std::atomic<int>>(0);
            batchImages[1].readLines = [calls](int, int lines, unsigned char*) {
                return calls->fetch_add(1) == 0 && lines > 100;
            };
            QCOMPARE(applyMeanBatch({mean.data(), remainder.data(), newMean.data(), newRemainder.data(), c.oldCount},
                                    batchImages, uint32_t(c.width), uint32_t(c.height)),
                     1);
        }
    }
}

void TestDefectPixelParams::localThresholdMatchesDirectWindow_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("absolute");
    QTest::addColumn<int>("threshold");
    const QList<QSize> sizes{{1, 1}, {1, 37}, {37, 1}, {20, 20}, {21, 21}, {22, 23}, {64, 45}};
    for (const QSize& size : sizes) {
        for (int threshold : {16, 0, -5, 100, 255, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
            QTest::addRow("%dx%d absolute %d", size.width(), size.height(), threshold) << size << true << threshold;
        for (int threshold : {12, 0, -5, 29, 58, 100, std::numeric_limits<int>::min()})
            QTest::addRow("%dx%d relative %d", size.width(), size.height(), threshold) << size << false << threshold;
    }
    // Large enough to be split into row bands.
    QTest::newRow("512x512 absolute 16") << QSize(512, 512) << true << 16;
    QTest::newRow("512x512 relative 29") << QSize(512, 512) << false << 29;
}

void TestDefectPixelParams::localThresholdMatchesDirectWindow()
{
    QFETCH(QSize, size);
    QFETCH(bool, absolute);
    QFETCH(int, threshold);
    std::mt19937 random(uint32_t(size.width() * 131 + size.height()));
    // Contiguous bytes: the width * height run then matches the image pixels.
    std::vector<uchar> bytes(size_t(size.width()) * size.height());
    const QImage mean(bytes.data(), size.width(), size.height(), size.width(), QImage::Format_Grayscale8);
    // Full range; narrow noise; a flat 100 with outliers right on the margins of
    // the percentages whose double products round down (29 * 100 / 100 -> 28).
    const uchar outliers[] = {71, 128, 129, 130, 42, 158, 100};
    for (int style = 0; style < 3; ++style) {
        for (uchar& b : bytes)
            b = uchar(style == 0 ? random() % 256
                    : style == 1 ? 100 + random() % 40
                                 : (random() % 16 ? 100 : outliers[random() % 7]));
        DefectPixelParams params;
        (absolute ? params.absoluteThreshold : params.relativeThreshold) = threshold;
        QVERIFY(params.localThreshold(mean, absolute));
        const std::vector<uchar> expected = referenceMask(mean, absolute, threshold);
        for (size_t i = 0; i < expected.size(); ++i)
            if (params.defectMask[i] != expected[i])
                QFAIL(qPrintable(QString("style %1: first difference at x %2, y %3")
                                     .arg(style).arg(i % size.width()).arg(i / size.width())));
    }
}

void TestDefectPixelParams::marginBoundaryIsNotFlagged()
{
    // Single outliers hardly move a 21 x 21 average of 200: 216 stays good, 217 is flagged.
    std::vector<uchar> bytes(64 * 64, 200);
    const QImage mean(bytes.data(), 64, 64, 64, QImage::Format_Grayscale8);
    bytes[32 * 64 + 32] = 200 + 16;
    bytes[10 * 64 + 40] = 200 + 17;
    DefectPixelParams params;
    QVERIFY(params.localThreshold(mean, true));
    QCOMPARE(params.defectMask[32 * 64 + 32], uchar(0));
    QCOMPARE(params.defectMask[10 * 64 + 40], uchar(255));
}

QTEST_GUILESS_MAIN(TestDefectPixelParams)
#include "tst_defectpixelparams.moc"
