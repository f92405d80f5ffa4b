#include "defectmapgenerator.h"

#include <QtTest>

#include <random>
#include <vector>

namespace {

// A map buffer standing in for the panel's, reset as the panel resets it.
struct MapFixture {
    explicit MapFixture(unsigned int maximum) : capacity(maximum), entries(maximum), map(entries.data()) {}

    DefectMapTarget target()
    {
        return {map, capacity, count, [this] { count = 0; ++resets; }};
    }
    std::vector<t_defpix> used() const { return {entries.begin(), entries.begin() + count}; }

    unsigned int capacity;
    std::vector<t_defpix> entries;
    t_defpix* map;
    unsigned int count = 0;
    int resets = 0;
};

// Flat grey means whose single outliers are flagged by both tests.
QImage meanWithOutliers(int width, int height, const QList<QPoint>& outliers)
{
    QImage mean(width, height, QImage::Format_Grayscale8);
    mean.fill(100);
    for (const QPoint& p : outliers)
        mean.setPixel(p, qRgb(250, 250, 250));
    return mean;
}

} // namespace

bool operator==(const t_defpix& a, const t_defpix& b)
{
    return a.x == b.x && a.y == b.y && a.type == b.type;
}

class TestDefectMapGenerator : public QObject {
    Q_OBJECT

private slots:
    void missingImagesLeaveMapUntouched();
    void pixelFlaggedInBothSeriesGivesOneEntry();
    void brightSeriesAlone();
    void colourUsesDarkSeriesOnly();
    void fullMapKeepsFirstEntriesAndCounts();
    void matchesOneByOneAdding();
};

void TestDefectMapGenerator::missingImagesLeaveMapUntouched()
{
    MapFixture fixture(4);
    fixture.count = 1;
    DefectPixelParams dark, bright;
    const ImageGeometry geometry{8, 8, 64};
    QCOMPARE(create_defpix_map(QImage(), QImage(), dark, bright, geometry, fixture.target()),
             MapGeneration::MissingImages);
    QCOMPARE(create_defpix_map_color(QImage(), dark, geometry, fixture.target()), MapGeneration::MissingImages);
    QCOMPARE(fixture.resets, 0);
    QCOMPARE(fixture.count, 1u);
}

void TestDefectMapGenerator::pixelFlaggedInBothSeriesGivesOneEntry()
{
    MapFixture fixture(10);
    DefectPixelParams dark, bright;
    const QImage darkMean = meanWithOutliers(24, 24, {{5, 3}, {7, 3}});
    const QImage brightMean = meanWithOutliers(24, 24, {{7, 3}, {2, 9}});
    QCOMPARE(create_defpix_map(darkMean, brightMean, dark, bright, {24, 24, 576}, fixture.target()),
             MapGeneration::Generated);
    QCOMPARE(fixture.resets, 1);
    QCOMPARE(fixture.used(), (std::vector<t_defpix>{{5, 3, 0}, {7, 3, 0}, {2, 9, 0}}));
    QCOMPARE(dark.defectCount, 2u);
    QCOMPARE(bright.defectCount, 2u);
    // Counts accumulate over generations.
    create_defpix_map(darkMean, brightMean, dark, bright, {24, 24, 576}, fixture.target());
    QCOMPARE(dark.defectCount, 4u);
    QCOMPARE(fixture.count, 3u);
}

void TestDefectMapGenerator::brightSeriesAlone()
{
    MapFixture fixture(10);
    DefectPixelParams dark, bright;
    const QImage brightMean = meanWithOutliers(24, 24, {{1, 1}});
    create_defpix_map(QImage(), brightMean, dark, bright, {24, 24, 576}, fixture.target());
    QCOMPARE(fixture.used(), (std::vector<t_defpix>{{1, 1, 0}}));
    QCOMPARE(dark.defectCount, 0u);
    QVERIFY(!dark.defectMask);
    // No rows, no entries, but the map is still rebuilt.
    create_defpix_map(QImage(), brightMean, dark, bright, {}, fixture.target());
    QCOMPARE(fixture.count, 0u);
    QCOMPARE(fixture.resets, 2);
}

void TestDefectMapGenerator::colourUsesDarkSeriesOnly()
{
    MapFixture fixture(10);
    DefectPixelParams dark;
    const QImage darkMean = meanWithOutliers(24, 24, {{3, 20}, {4, 2}});
    QCOMPARE(create_defpix_map_color(darkMean, dark, {24, 24, 576}, fixture.target()), MapGeneration::Generated);
    QCOMPARE(fixture.used(), (std::vector<t_defpix>{{4, 2, 0}, {3, 20, 0}}));
    QCOMPARE(dark.defectCount, 2u);
}

void TestDefectMapGenerator::fullMapKeepsFirstEntriesAndCounts()
{
    MapFixture fixture(3);
    DefectPixelParams dark, bright;
    const QList<QPoint> outliers{{20, 0}, {0, 1}, {9, 5}, {3, 6}, {4, 30}};
    const QImage mean = meanWithOutliers(32, 32, outliers);
    create_defpix_map(mean, QImage(), dark, bright, {32, 32, 1024}, fixture.target());
    QCOMPARE(fixture.used(), (std::vector<t_defpix>{{20, 0, 0}, {0, 1, 0}, {9, 5, 0}}));
    QCOMPARE(dark.defectCount, 5u);
}

void TestDefectMapGenerator::matchesOneByOneAdding()
{
    // Random masks compared with the plain walk over defpix_add, over a map that
    // already holds entries (one of them with a type of its own).
    std::mt19937 random(21);
    for (int round = 0; round < 20; ++round) {
        const int width = 20 + int(random() % 40), height = 1 + int(random() % 40);
        QImage darkMean(width, height, QImage::Format_Grayscale8), brightMean = darkMean;
        brightMean.detach();
        for (QImage* mean : {&darkMean, &brightMean})
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    mean->setPixel(x, y, random() % 9 == 0 ? qRgb(0, 0, 0) : qRgb(90, 90, 90));
        const ImageGeometry geometry{uint32_t(width), uint32_t(height), uint32_t(width * height)};
        const unsigned int capacity = 1 + random() % 200;
        const std::vector<t_defpix> preset{{1, 0, 107}, {999, 999, 0}};

        MapFixture fixture(capacity);
        DefectPixelParams dark, bright;
        DefectMapTarget target = fixture.target();
        target.reset = [&] {
            fixture.count = std::min<unsigned int>(2, capacity);
            std::copy(preset.begin(), preset.begin() + fixture.count, fixture.entries.begin());
        };
        create_defpix_map(darkMean, brightMean, dark, bright, geometry, target);

        std::vector<t_defpix> expected(capacity);
        unsigned int count = std::min<unsigned int>(2, capacity);
        std::copy(preset.begin(), preset.begin() + count, expected.begin());
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const bool inDark = dark.defectMask[y * width + x] != 0;
                if (inDark)
                    defpix_add(expected.data(), capacity, x, y, 0, count);
                if (bright.defectMask[y * width + x] && !inDark)
                    defpix_add(expected.data(), capacity, x, y, 0, count);
            }
        expected.resize(count);
        QCOMPARE(fixture.used(), expected);
    }
}

QTEST_GUILESS_MAIN(TestDefectMapGenerator)
#include "tst_defectmapgenerator.moc"
