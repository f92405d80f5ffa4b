#include "defectmapcontainer.h"

#include <QtTest>

#include <cstring>

namespace {

std::vector<t_defpix> sampleMap(unsigned int count)
{
    std::vector<t_defpix> map(count);
    for (unsigned int i = 0; i < count; ++i)
        map[i] = t_defpix{i % 1280, i / 1280, 101 + i % 13};
    return map;
}

std::vector<uint32_t> wordsOf(const std::vector<unsigned char>& buffer)
{
    std::vector<uint32_t> words(buffer.size() / 4);
    std::memcpy(words.data(), buffer.data(), words.size() * 4);
    return words;
}

} // namespace

class TestDefectMapContainer : public QObject {
    Q_OBJECT

private slots:
    void layout_data();
    void layout();
    void checkerRejectsEverySingleWordChange();
    void checkerRejectsWrongLengthOrRevision();
    void wordSumAddsTrailingBytes();
};

void TestDefectMapContainer::layout_data()
{
    QTest::addColumn<unsigned int>("revision");
    QTest::addColumn<unsigned int>("count");
    QTest::addColumn<unsigned int>("entryWords");
    QTest::addColumn<unsigned int>("writtenChunkId");

    for (unsigned int count : {0u, 1u, 10000u}) {
        QTest::addRow("revision 0, %u entries", count) << 0u << count << 2u << 4096u;
        QTest::addRow("revision 3, %u entries", count) << 3u << count << 2u << 4100u;
        QTest::addRow("revision 4, %u entries", count) << 4u << count << 3u << 4100u;
    }
}

void TestDefectMapContainer::layout()
{
    QFETCH(unsigned int, revision);
    QFETCH(unsigned int, count);
    QFETCH(unsigned int, entryWords);
    QFETCH(unsigned int, writtenChunkId);

    const std::vector<t_defpix> map = sampleMap(count);
    const std::vector<unsigned char> buffer = buildDefPixContainerBuffer(revision, 4096, count, map.data(), 1280, 1310720);
    const uint32_t size = 32 + count * entryWords * 4;
    QCOMPARE(buffer.size(), size_t(size));
    const std::vector<uint32_t> words = wordsOf(buffer);
    const std::vector<uint32_t> header(words.begin(), words.begin() + 8);
    QCOMPARE(header, (std::vector<uint32_t>{0x1F56ADFC, size, words[2], writtenChunkId, size - 12, 1280, 1310720, 0}));
    QCOMPARE(defPixContainerWordSum(buffer.data(), buffer.size()), 0u);

    DefPixContainer parsed;
    QVERIFY(checkDefPixContainerBuffer(buffer.data(), buffer.size(), revision, &parsed));
    QCOMPARE(parsed.chunkId, writtenChunkId);
    QCOMPARE(parsed.imagePixelCount, 1310720u);
    QCOMPARE(parsed.entries.size(), size_t(count));
    for (unsigned int i = 0; i < count; ++i) {
        const uint32_t* entry = &words[8 + i * entryWords];
        QCOMPARE(entry[0], map[i].x);
        QCOMPARE(entry[1], map[i].y);
        QCOMPARE(parsed.entries[i].x, map[i].x);
        QCOMPARE(parsed.entries[i].y, map[i].y);
        QCOMPARE(parsed.entries[i].type, entryWords == 3 ? map[i].type : 0u);
        if (entryWords == 3)
            QCOMPARE(entry[2], map[i].type);
    }
}

void TestDefectMapContainer::checkerRejectsEverySingleWordChange()
{
    const std::vector<t_defpix> map = sampleMap(10);
    for (unsigned int revision : {0u, 4u}) {
        const std::vector<unsigned char> good = buildDefPixContainerBuffer(revision, 0, 10, map.data(), 64, 4096);
        QVERIFY(checkDefPixContainerBuffer(good.data(), good.size(), revision, nullptr));
        for (uint32_t delta : {1u, 0x80000000u}) {
            for (size_t offset = 0; offset < good.size(); offset += 4) {
                std::vector<unsigned char> bad = good;
                uint32_t word;
                std::memcpy(&word, bad.data() + offset, 4);
                word += delta;
                std::memcpy(bad.data() + offset, &word, 4);
                QVERIFY2(!checkDefPixContainerBuffer(bad.data(), bad.size(), revision, nullptr),
                         qPrintable(QString("revision %1, word at %2").arg(revision).arg(offset)));
            }
        }
    }
}

void TestDefectMapContainer::checkerRejectsWrongLengthOrRevision()
{
    const std::vector<t_defpix> map = sampleMap(10);
    std::vector<unsigned char> buffer = buildDefPixContainerBuffer(0, 4096, 10, map.data(), 64, 4096);
    // 80 bytes of entries are not a whole number of 12-byte entries.
    QVERIFY(!checkDefPixContainerBuffer(buffer.data(), buffer.size(), 4, nullptr));
    QVERIFY(!checkDefPixContainerBuffer(buffer.data(), buffer.size() - 4, 0, nullptr));
    QVERIFY(!checkDefPixContainerBuffer(buffer.data(), 16, 0, nullptr));
    QVERIFY(!checkDefPixContainerBuffer(nullptr, 0, 0, nullptr));
    buffer.insert(buffer.end(), 4, 0);
    QVERIFY(!checkDefPixContainerBuffer(buffer.data(), buffer.size(), 0, nullptr));

    QVERIFY(buildDefPixContainerBuffer(4, 0, 3, nullptr, 1, 1).empty());
    QCOMPARE(buildDefPixContainerBuffer(4, 0, 0, nullptr, 1, 1).size(), size_t(32));
    // 400 million 12-byte entries do not fit the 32-bit size field; the map is never read.
    QVERIFY(buildDefPixContainerBuffer(4, 0, 400000000ul, map.data(), 1, 1).empty());
}

void TestDefectMapContainer::wordSumAddsTrailingBytes()
{
    if (QSysInfo::ByteOrder != QSysInfo::LittleEndian)
        QSKIP("the expected sums are written for a little-endian host");
    const unsigned char bytes[] = {0xff, 0xff, 0xff, 0xff, 0x02, 0x00, 0x00, 0x00, 0x05, 0x06, 0x07};
    QCOMPARE(defPixContainerWordSum(bytes, 8), 1u);
    QCOMPARE(defPixContainerWordSum(bytes, 9), 1u + 0x05);
    QCOMPARE(defPixContainerWordSum(bytes, 10), 1u + 0x0605);
    QCOMPARE(defPixContainerWordSum(bytes, 11), 1u + 0x070605);
}

QTEST_GUILESS_MAIN(TestDefectMapContainer)
#include "tst_defectmapcontainer.moc"
