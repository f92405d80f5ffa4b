#include "maptransfer.h"

#include <QtTest>

// Register words of the maps: the typed layout, the filters by type, the
// capacity cut and the end word. Plain words in either byte order meet the
// simulated cameras' own decoding in the map slot and transfer soak suites.
class TestMapTransfer : public QObject {
    Q_OBJECT

private slots:
    void typedWordsRoundTrip();
    void packingFiltersTypesAndStopsAtCapacity();
    void unpackingStopsAtEndWordAndKeepsFirstEntry();
};

void TestMapTransfer::typedWordsRoundTrip()
{
    QCOMPARE(packMapWord({0x3FFF, 0x3FFF, 115}, true), 0x3FFFu | 0x3FFFu << 14 | 15u << 28);
    const t_defpix typed = unpackMapWord(packMapWord({1279, 1023, 113}, true), true);
    QCOMPARE(typed.x, 1279u);
    QCOMPARE(typed.y, 1023u);
    QCOMPARE(typed.type, 113u);
}

void TestMapTransfer::packingFiltersTypesAndStopsAtCapacity()
{
    const t_defpix map[] = {{1, 1, 0}, {2, 2, 4}, {3, 3, 111}, {4, 4, 3}, {5, 5, 101}};
    QVector<double> progress;
    const std::vector<uint32_t> plain =
        packRegisterMap(map, 5, false, false, 10, [&](double p) { progress << p; });
    QCOMPARE(plain, (std::vector<uint32_t>{1u | 1u << 16, 4u | 4u << 16}));
    QCOMPARE(progress, (QVector<double>{0, 20, 40, 60, 80}));
    QCOMPARE(packRegisterMap(map, 5, true, false, 10).size(), size_t(2));
    QCOMPARE(packRegisterMap(map, 5, false, false, 1).size(), size_t(1));
    QVERIFY(packRegisterMap(nullptr, 5, false, false, 10).empty());
}

void TestMapTransfer::unpackingStopsAtEndWordAndKeepsFirstEntry()
{
    const uint32_t words[] = {1u | 2u << 16, 1u | 2u << 16, 3u | 4u << 16, kMapWordEnd, 5u | 6u << 16};
    t_defpix map[4] = {};
    unsigned int count = 0;
    unpackRegisterMap(words, 5, false, false, map, 4, count);
    QCOMPARE(count, 2u);
    QCOMPARE(map[1].x, 3u);
    count = 0;
    unpackRegisterMap(words, 5, false, false, map, 1, count);
    QCOMPARE(count, 1u);
}

QTEST_MAIN(TestMapTransfer)
#include "tst_maptransfer.moc"
