#include "defaultpatterns.h"

#include "defectclassification.h"

#include <QtTest>

#include <random>
#include <vector>

namespace {

// The classification as first written: every entry looks at every entry.
void classifyDirectly(t_defpix* map, unsigned int count, const DefectMatchPatterns& patterns)
{
    for (unsigned int i = 0; i < count; ++i) {
        const int64_t x = int32_t(map[i].x);
        const int64_t y = int32_t(map[i].y);
        int grid[5][5] = {};
        for (int k = 0; k < 5; ++k) {
            if (map[i].x == 0) grid[k][0] = grid[k][1] = 1;
            if (map[i].x == 1) grid[k][0] = 1;
            if (map[i].x == 1278) grid[k][4] = 1;
            if (map[i].x == 1279) grid[k][3] = grid[k][4] = 1;
            if (map[i].y == 0) grid[0][k] = grid[1][k] = 1;
            if (map[i].y == 1) grid[0][k] = 1;
            if (map[i].y == 1022) grid[4][k] = 1;
            if (map[i].y == 1023) grid[3][k] = grid[4][k] = 1;
        }
        for (unsigned int j = 0; j < count; ++j) {
            const int64_t fx = int32_t(map[j].x);
            const int64_t fy = int32_t(map[j].y);
            if (fx >= x - 2 && fx <= x + 2 && fy >= y - 2 && fy <= y + 2)
                grid[fy - y + 2][fx - x + 2] = 1;
        }
        const int code = patterns.match(grid);
        if (code >= 0)
            map[i].type = unsigned(code);
    }
}

// A rectangle of positions; x and y are taken as signed 32-bit values.
struct Area {
    int64_t x, y;
    uint32_t width, height;
};
using Areas = std::vector<Area>;

// Distinct positions spread evenly over the areas, types 0 ... 3 so that kept
// types show.
std::vector<t_defpix> randomMap(unsigned int count, const Areas& areas, std::mt19937& random)
{
    std::vector<t_defpix> map(count);
    unsigned int used = 0;
    DefectMapWriter writer(map.data(), count, used);
    while (used < count) {
        const Area& area = areas[random() % areas.size()];
        writer.add(uint32_t(area.x + random() % area.width), uint32_t(area.y + random() % area.height), random() % 4);
    }
    return map;
}

QString firstDifference(const std::vector<t_defpix>& expected, const std::vector<t_defpix>& actual)
{
    for (size_t i = 0; i < expected.size(); ++i) {
        if (expected[i].type != actual[i].type)
            return QString("entry %1 at (%2, %3): expected %4, got %5")
                .arg(i).arg(expected[i].x).arg(expected[i].y).arg(expected[i].type).arg(actual[i].type);
    }
    return QString();
}

} // namespace

Q_DECLARE_METATYPE(Areas)

class TestDefectClassification : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void noPatternsKeepTypes();
    void sameCodesAsDirectClassification_data();
    void sameCodesAsDirectClassification();

private:
    QTemporaryDir m_home;
    DefectMatchPatterns m_defaults;
};

void TestDefectClassification::initTestCase()
{
    QVERIFY(loadDefaultPatterns(m_home, m_defaults));
}

void TestDefectClassification::noPatternsKeepTypes()
{
    t_defpix map[] = {{640, 512, 3}, {641, 512, 4}};
    conv_defpix_map_990(map, 2, DefectMatchPatterns());
    QCOMPARE(map[0].type, 3u);
    QCOMPARE(map[1].type, 4u);
    conv_defpix_map_990(nullptr, 2, m_defaults);
    conv_defpix_map_990(map, 0, m_defaults);
    QCOMPARE(map[0].type, 3u);
}

void TestDefectClassification::sameCodesAsDirectClassification_data()
{
    QTest::addColumn<Areas>("areas");
    QTest::addColumn<unsigned int>("count");

    const Areas spread{{0, 0, 1280, 1024}};
    const Areas clustered{{150, 100, 60, 60}, {600, 500, 60, 60}, {1000, 200, 60, 60}, {300, 900, 60, 60}};
    const Areas borders{{0, 0, 6, 1024}, {1274, 0, 6, 1024}, {0, 0, 1280, 6}, {0, 1018, 1280, 6}};
    // Around (0, 0) from the negative side, across the signed wrap, past the far corner.
    const Areas outside{{-8, -8, 16, 16}, {INT32_MAX - 7, INT32_MAX - 7, 16, 16}, {1272, 1016, 16, 16},
                        {INT32_MAX - 7, 500, 16, 16}, {4000, -8, 16, 16}};
    const std::pair<const char*, Areas> layouts[] = {
        {"spread", spread}, {"clustered", clustered}, {"borders", borders}, {"outside", outside}};
    for (const auto& [name, areas] : layouts) {
        for (unsigned int count : {1u, 50u, 1000u})
            QTest::addRow("%s %u", name, count) << areas << count;
    }
    QTest::newRow("clustered 10000") << clustered << 10000u;
    QTest::newRow("borders 10000") << borders << 10000u;
}

void TestDefectClassification::sameCodesAsDirectClassification()
{
    QFETCH(Areas, areas);
    QFETCH(unsigned int, count);

    std::mt19937 random(count);
    for (int round = 0; round < (count > 1000 ? 1 : 5); ++round) {
        std::vector<t_defpix> expected = randomMap(count, areas, random);
        std::vector<t_defpix> actual = expected;
        classifyDirectly(expected.data(), count, m_defaults);
        conv_defpix_map_990(actual.data(), count, m_defaults);
        const QString difference = firstDifference(expected, actual);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
}

QTEST_GUILESS_MAIN(TestDefectClassification)
#include "tst_defectclassification.moc"
