#include "defectmapgenerator.h"

#include <QtTest>

#include <random>
#include <vector>

namespace {

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
    void missingImagesOrMemoryLeaveMapUntouched();
    void brightSeriesAlone();
    void colourUsesDarkSeriesOnly();
    void fullMapKeepsFirstEntriesAndCounts();
    void matchesOneByOneAdding();
};

void TestDefectMapGenerator::missingImagesOrMemoryLeaveMapUntouched()
{
    DefectMap map(4);
    map.add(1, 2, 0);
    DefectPixelParams dark, bright;
    const ImageGeometry geometry{24, 24, 576};
    QCOMPARE(create_defpix_map(QImage(), QImage(), dark, bright, geometry, map), MapGeneration::MissingImages);
    QCOMPARE(create_defpix_map_color(QImage(), dark, geometry, map), MapGeneration::MissingImages);
    const QImage mean = meanWithOutliers(24, 24, {{5, 3}});
    failDefectMaskMemory(true);
    QCOMPARE(create_defpix_map(mean, mean, dark, bright, geometry, map), MapGeneration::NoMemory);
    QCOMPARE(create_defpix_map_color(mean, dark, geometry, map), MapGeneration::NoMemory);
    failDefectMaskMemory(false);
    QCOMPARE(map.entries(), (std::vector<t_defpix>{{1, 2, 0}}));
}

void TestDefectMapGenerator::brightSeriesAlone()
{
    DefectMap map(10);
    DefectPixelParams dark, bright;
    const QImage brightMean = meanWithOutliers(24, 24, {{1, 1}});
    create_defpix_map(QImage(), brightMean, dark, bright, {24, 24, 576}, map);
    QCOMPARE(map.entries(), (std::vector<t_defpix>{{1, 1, 0}}));
    QCOMPARE(dark.defectCount, 0u);
    QVERIFY(!dark.defectMask);
    // No rows, no entries, but the map is still rebuilt.
    create_defpix_map(QImage(), brightMean, dark, bright, {}, map);
    QCOMPARE(map.count(), 0u);
}

void TestDefectMapGenerator::colourUsesDarkSeriesOnly()
{
    DefectMap map(10);
    DefectPixelParams dark;
    const QImage darkMean = meanWithOutliers(24, 24, {{3, 20}, {4, 2}});
    QCOMPARE(create_defpix_map_color(darkMean, dark, {24, 24, 576}, map), MapGeneration::Generated);
    QCOMPARE(map.entries(), (std::vector<t_defpix>{{4, 2, 0}, {3, 20, 0}}));
    QCOMPARE(dark.defectCount, 2u);
}

void TestDefectMapGenerator::fullMapKeepsFirstEntriesAndCounts()
{
    DefectMap map(3);
    DefectPixelParams dark, bright;
    const QList<QPoint> outliers{{20, 0}, {0, 1}, {9, 5}, {3, 6}, {4, 30}};
    const QImage mean = meanWithOutliers(32, 32, outliers);
    create_defpix_map(mean, QImage(), dark, bright, {32, 32, 1024}, map);
    QCOMPARE(map.entries(), (std::vector<t_defpix>{{20, 0, 0}, {0, 1, 0}, {9, 5, 0}}));
    QCOMPARE(dark.defectCount, 5u);
    // Counts accumulate over generations; the map is rebuilt.
    create_defpix_map(mean, QImage(), dark, bright, {32, 32, 1024}, map);
    QCOMPARE(dark.defectCount, 10u);
    QCOMPARE(map.count(), 3u);
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

        DefectMap map(capacity);
        for (const t_defpix& entry : preset)
            map.add(entry.x, entry.y, entry.type); // emptied by the generation
        DefectPixelParams dark, bright;
        create_defpix_map(darkMean, brightMean, dark, bright, geometry, map);

        std::vector<t_defpix> expected(capacity);
        unsigned int count = 0;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const bool inDark = dark.defectMask[y * width + x] != 0;
                if (inDark)
                    defpix_add(expected.data(), capacity, x, y, 0, count);
                if (bright.defectMask[y * width + x] && !inDark)
                    defpix_add(expected.data(), capacity, x, y, 0, count);
            }
        expected.resize(count);
        QCOMPARE(map.entries(), expected);
    }
}

QTEST_GUILESS_MAIN(TestDefectMapGenerator)
#include "tst_defectmapgenerator.moc"
