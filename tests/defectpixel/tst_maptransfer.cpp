#include "maptransfer.h"

#include <QtTest>

// Register words of the maps: packing, the filters by type, byte order, the
// capacity cut and the end word.
class TestMapTransfer : public QObject {
    Q_OBJECT

private slots:
    void wordsOfBothLayouts();
    void packingFiltersTypesAndStopsAtCapacity();
    void bigEndianWordsRoundTrip();
    void unpackingStopsAtEndWordAndKeepsFirstEntry();
};

void TestMapTransfer::wordsOfBothLayouts()
{
    QCOMPARE(packMapWord({5, 7, 0}, false), 5u | 7u << 16);
    QCOMPARE(packMapWord({0x3FFF, 0x3FFF, 115}, true), 0x3FFFu | 0x3FFFu << 14 | 15u << 28);
    const t_defpix typed = unpackMapWord(packMapWord({1279, 1023, 113}, true), true);
    QCOMPARE(typed.x, 1279u);
    QCOMPARE(typed.y, 1023u);
    QCOMPARE(typed.type, 113u);
    const t_defpix plain = unpackMapWord(0xABCD1234, false);
    QCOMPARE(plain.x, 0x1234u);
    QCOMPARE(plain.y, 0xABCDu);
    QCOMPARE(plain.type, 0u);
    QCOMPARE(mapEntryRegister(3), 0x1002500Cul);
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

void TestMapTransfer::bigEndianWordsRoundTrip()
{
    const t_defpix map[] = {{10, 20, 0}, {30, 40, 0}};
    const std::vector<uint32_t> words = packRegisterMap(map, 2, false, true, 10);
    QCOMPARE(words.front(), qbswap(10u | 20u << 16));
    t_defpix back[4] = {};
    unsigned int count = 0;
    unpackRegisterMap(words.data(), words.size(), false, true, back, 4, count);
    QCOMPARE(count, 2u);
    QCOMPARE(back[1].x, 30u);
    QCOMPARE(back[1].y, 40u);
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
