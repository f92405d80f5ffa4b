#include "defaultpatterns.h"

#include <QtTest>

#include <random>

namespace {

using Grid = std::array<std::array<int, 5>, 5>;

// A grid with the defect in the middle and the given cells set.
Grid gridWith(std::initializer_list<std::pair<int, int>> cells)
{
    Grid grid{};
    grid[2][2] = 1;
    for (const auto& [r, c] : cells)
        grid[r][c] = 1;
    return grid;
}

int matchGrid(const DefectMatchPatterns& patterns, const Grid& grid)
{
    int cells[5][5];
    for (int r = 0; r < 5; ++r)
        for (int c = 0; c < 5; ++c)
            cells[r][c] = grid[r][c];
    return patterns.match(cells);
}

uint32_t bitsOf(const Grid& grid)
{
    uint32_t bits = 0;
    for (int i = 0; i < 25; ++i)
        bits |= uint32_t(grid[i / 5][i % 5] != 0) << i;
    return bits;
}

} // namespace

Q_DECLARE_METATYPE(Grid)

class TestDefectMatchPatterns : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void defaultTableFollowsCodeScheme_data();
    void defaultTableFollowsCodeScheme();
    void fileRules_data();
    void fileRules();
    void missingFileOrNullSettingsGiveNoNewPatterns();
    void valuesSetButNotYetReadBack();
    void bitMatchAgreesWithGridMatch();

private:
    QTemporaryDir m_home;
    DefectMatchPatterns m_defaults;
};

void TestDefectMatchPatterns::initTestCase()
{
    QVERIFY(loadDefaultPatterns(m_home, m_defaults));
}

void TestDefectMatchPatterns::defaultTableFollowsCodeScheme_data()
{
    QTest::addColumn<Grid>("grid");
    QTest::addColumn<int>("code");

    QTest::newRow("isolated") << gridWith({}) << 111;
    QTest::newRow("right neighbour") << gridWith({{2, 3}}) << 112;
    QTest::newRow("at x = 0") << gridWith({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}, {0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}})
                              << 112;
    QTest::newRow("run of three between good") << gridWith({{2, 1}, {2, 3}, {1, 1}, {1, 2}, {1, 3}, {3, 1}, {3, 2}, {3, 3}})
                                               << 113;
    QTest::newRow("all defects") << Grid{{{1, 1, 1, 1, 1}, {1, 1, 1, 1, 1}, {1, 1, 1, 1, 1}, {1, 1, 1, 1, 1}, {1, 1, 1, 1, 1}}}
                                 << -1;
}

void TestDefectMatchPatterns::defaultTableFollowsCodeScheme()
{
    QFETCH(Grid, grid);
    QFETCH(int, code);
    QCOMPARE(matchGrid(m_defaults, grid), code);
}

void TestDefectMatchPatterns::fileRules_data()
{
    QTest::addColumn<QString>("ini");
    QTest::addColumn<int>("patternCount");
    QTest::addColumn<Grid>("grid");
    QTest::addColumn<int>("code");

    // One group with the given rows "b", "c", "d" and code; rows "a" and "e" do not matter.
    const auto group = [](const QString& name, const QString& b, const QString& c, const QString& d,
                          const QString& f) {
        return QString("[%1]\na=-1,-1,-1,-1,-1\nb=%2\nc=%3\nd=%4\ne=-1,-1,-1,-1,-1\nf=%5\n")
            .arg(name, b, c, d, f);
    };
    const QString good = "-1,0,0,0,-1";
    const QString any = "-1,-1,-1,-1,-1";
    const QString isolated = group("P0", good, "-1,0,1,0,-1", good, "7");
    const QString fallback = group("P9", any, any, any, "9");
    const Grid alone = gridWith({});
    const Grid leftNeighbour = gridWith({{2, 1}});

    QTest::newRow("first match wins") << isolated + fallback << 2 << alone << 7;
    QTest::newRow("next pattern when one does not fit") << isolated + fallback << 2 << leftNeighbour << 9;
    QTest::newRow("groups in name order") << fallback + isolated << 2 << alone << 7;
    QTest::newRow("seventh key empties the table") << isolated + fallback + "g=0\n" + group("PA", any, any, any, "5")
                                                   << 0 << alone << -1;
    QTest::newRow("a one-key group empties the table") << isolated + "[P1]\na=-1,-1,-1,-1,-1\n" << 0 << alone << -1;
    QTest::newRow("x cell does not matter") << group("P0", good, "-1,x,1,0,-1", good, "4") << 1 << leftNeighbour << 4;
    QTest::newRow("code not a number stops the search") << group("P0", good, "-1,0,1,0,-1", good, "f") + fallback
                                                        << 2 << alone << -1;
    QTest::newRow("empty code stops the search") << group("P0", good, "-1,0,1,0,-1", good, "") + fallback << 2 << alone
                                                 << -1;
    QTest::newRow("short first row is skipped") << "[P0]\na=-1,-1\nb=0\nc=0\nd=0\ne=0\nf=7\n" + fallback << 2
                                                << alone << 9;
    QTest::newRow("short later row never fits") << group("P0", any, "-1,-1", any, "7") + fallback << 2 << alone << 9;
}

void TestDefectMatchPatterns::fileRules()
{
    QFETCH(QString, ini);
    QFETCH(int, patternCount);
    QFETCH(Grid, grid);
    QFETCH(int, code);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QFile file(dir.filePath("deffmatch.ini"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(ini.toUtf8());
    file.close();

    DefectMatchPatterns patterns = m_defaults;
    QSettings settings(file.fileName(), QSettings::IniFormat);
    patterns.setupDefMatchSettings(&settings);
    QCOMPARE(patterns.count(), patternCount);
    QCOMPARE(matchGrid(patterns, grid), code);
    QCOMPARE(patterns.matchBits(bitsOf(grid)), code);
}

void TestDefectMatchPatterns::missingFileOrNullSettingsGiveNoNewPatterns()
{
    DefectMatchPatterns patterns = m_defaults;
    patterns.setupDefMatchSettings(nullptr);
    QCOMPARE(patterns.count(), 34);

    QTemporaryDir dir;
    QSettings missing(dir.filePath("missing.ini"), QSettings::IniFormat);
    patterns.setupDefMatchSettings(&missing);
    QVERIFY(patterns.isEmpty());
    QCOMPARE(matchGrid(patterns, gridWith({})), -1);
}

void TestDefectMatchPatterns::valuesSetButNotYetReadBack()
{
    // A settings object that just wrote its defaults holds the code as a number.
    QTemporaryDir dir;
    QSettings settings(dir.filePath("deffmatch.ini"), QSettings::IniFormat);
    settings.beginGroup("P0");
    for (const char* key : {"a", "b", "c", "d", "e"})
        settings.setValue(key, QStringList{"-1", "-1", "-1", "-1", "-1"});
    settings.setValue("f", 105);
    settings.endGroup();

    DefectMatchPatterns patterns;
    patterns.setupDefMatchSettings(&settings);
    QCOMPARE(matchGrid(patterns, gridWith({})), 105);
}

void TestDefectMatchPatterns::bitMatchAgreesWithGridMatch()
{
    std::mt19937 random(11);
    for (int i = 0; i < 200000; ++i) {
        Grid grid{};
        for (int cell = 0; cell < 25; ++cell)
            grid[cell / 5][cell % 5] = cell == 12 || random() % 2;
        const int expected = matchGrid(m_defaults, grid);
        if (m_defaults.matchBits(bitsOf(grid)) != expected)
            QFAIL(qPrintable(QString("grid %1: expected %2").arg(bitsOf(grid), 7, 16, QLatin1Char('0')).arg(expected)));
    }
}

QTEST_GUILESS_MAIN(TestDefectMatchPatterns)
#include "tst_defectmatchpatterns.moc"
