#include "defectmapcomparison.h"
#include "deviationstatistics.h"
#include "localthreshold.h"
#include "referencewindow.h"

#include <QtTest>

#include <random>
#include <set>
#include <vector>

namespace {

// Noise with a few far outliers, so that every threshold flags something.
QImage randomMean(int w, int h, std::mt19937& random)
{
    QImage image(w, h, QImage::Format_Grayscale8);
    std::uniform_int_distribution<int> level(0, 255), noise(-30, 30), outlier(0, 40);
    const int base = level(random);
    uchar* bytes = image.bits();
    for (qsizetype i = 0; i < image.sizeInBytes(); ++i)
        bytes[i] = uchar(outlier(random) == 0 ? level(random) : std::clamp(base + noise(random), 0, 255));
    return image;
}

} // namespace

class TestDeviationStatistics : public QObject {
    Q_OBJECT

private slots:
    void statisticsMatchReferenceAndDetection();
    void emptyAndUnfitMeans();
    void comparisonMatchesReference();
};

void TestDeviationStatistics::statisticsMatchReferenceAndDetection()
{
    std::mt19937 random(15);
    const QSize sizes[] = {{1, 1}, {5, 3}, {20, 22}, {37, 29}, {64, 48}, {130, 90}, {1101, 997}};
    for (const QSize& size : sizes) {
        const int w = size.width(), h = size.height();
        const QImage mean = randomMean(w, h, random);
        DeviationStatistics stats;
        QVERIFY(stats.compute(mean));
        const std::vector<int> averages = referenceAverages(mean.constBits(), w, h);

        std::vector<uint64_t> byDeviation(511, 0), byPercent(201, 0);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const int v = mean.constBits()[y * w + x], m = averages[size_t(y) * w + x];
                QCOMPARE(int(stats.localAverage(x, y)), m);
                QCOMPARE(stats.deviation(x, y), v - m);
                ++byDeviation[size_t(v - m + 255)];
                const int percent = m ? (v - m) * 100 / m : (v > m ? 100 : v < m ? -100 : 0);
                ++byPercent[size_t(std::clamp(percent, -100, 100) + 100)];
            }
        QCOMPARE(stats.deviationHistogram(), byDeviation);
        QCOMPARE(stats.percentHistogram(), byPercent);
        if (w * h > 100000)
            continue; // only there to be split into row bands counted on several threads

        // The counts and per-pixel flags are what the detection's mask says.
        std::vector<unsigned char> mask(size_t(w) * h);
        const int absolute[] = {-1, 0, 5, 16, 254, 255, 300};
        const int relative[] = {-3, 0, 1, 12, 29, 57, 100, 150};
        for (bool isAbsolute : {true, false})
            for (int threshold : isAbsolute ? std::vector<int>(std::begin(absolute), std::end(absolute))
                                            : std::vector<int>(std::begin(relative), std::end(relative))) {
                QVERIFY(computeDefectMask(mean.constBits(), w, h, isAbsolute, threshold, mask.data()));
                uint64_t flagged = 0;
                for (int y = 0; y < h; ++y)
                    for (int x = 0; x < w; ++x) {
                        const bool inMask = mask[size_t(y) * w + x] != 0;
                        flagged += inMask;
                        if (stats.isFlagged(x, y, isAbsolute, threshold) != inMask)
                            QFAIL(qPrintable(QString("%1x%2 threshold %3: pixel %4,%5").arg(w).arg(h).arg(threshold).arg(x).arg(y)));
                    }
                QCOMPARE(stats.flaggedCount(isAbsolute, threshold), flagged);
            }
    }
}

void TestDeviationStatistics::emptyAndUnfitMeans()
{
    DeviationStatistics stats;
    QVERIFY(!stats.compute(QImage()));
    QVERIFY(stats.isEmpty());
    QCOMPARE(stats.flaggedCount(true, 0), uint64_t(0));
    QVERIFY(!stats.compute(QImage(4, 4, QImage::Format_RGB32)));
    QVERIFY(stats.compute(QImage(4, 4, QImage::Format_Grayscale8)));
    stats.clear();
    QVERIFY(stats.isEmpty());
}

void TestDeviationStatistics::comparisonMatchesReference()
{
    std::mt19937 random(7);
    std::uniform_int_distribution<uint32_t> coordinate(0, 40), count(0, 300);
    for (int round = 0; round < 20; ++round) {
        std::vector<t_defpix> first(count(random)), second(count(random));
        for (t_defpix& e : first)
            e = {coordinate(random), coordinate(random), coordinate(random)};
        for (t_defpix& e : second)
            e = {coordinate(random), coordinate(random), coordinate(random)};
        std::set<std::pair<uint32_t, uint32_t>> a, b;
        for (const t_defpix& e : first)
            a.insert({e.x, e.y});
        for (const t_defpix& e : second)
            b.insert({e.x, e.y});
        unsigned int common = 0;
        for (const auto& p : a)
            common += b.count(p) ? 1 : 0;
        const DefectMapComparison c = compareDefectMaps(first.data(), unsigned(first.size()), second.data(),
                                                        unsigned(second.size()));
        QCOMPARE(c.common, common);
        QCOMPARE(c.onlyFirst, unsigned(a.size()) - common);
        QCOMPARE(c.onlySecond, unsigned(b.size()) - common);
    }
    const DefectMapComparison none = compareDefectMaps(nullptr, 3, nullptr, 0);
    QCOMPARE(none.common + none.onlyFirst + none.onlySecond, 0u);
}

QTEST_GUILESS_MAIN(TestDeviationStatistics)
#include "tst_deviationstatistics.moc"
