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

uint32_t wordAt(const std::vector<unsigned char>& buffer, size_t offset)
{
    uint32_t word;
    std::memcpy(&word, buffer.data() + offset, sizeof word);
    return word;
}

} // namespace

class TestDefectMapContainer : public QObject {
    Q_OBJECT

private slots:
    void layout_data();
    void layout();
    void everySingleWordCorruptionIsDetected_data();
    void everySingleWordCorruptionIsDetected();
    void checkerRejectsWrongLengthOrRevision();
    void wordSumAddsTrailingBytes_data();
    void wordSumAddsTrailingBytes();
    void refusesNullMapWithEntries();
};

void TestDefectMapContainer::layout_data()
{
    QTest::addColumn<unsigned int>("revision");
    QTest::addColumn<unsigned int>("count");
    QTest::addColumn<unsigned int>("entrySize");
    QTest::addColumn<unsigned int>("writtenChunkId");

    for (unsigned int count : {0u, 1u, 10000u}) {
        QTest::addRow("revision 0, %u entries", count) << 0u << count << 8u << 4096u;
        QTest::addRow("revision 3, %u entries", count) << 3u << count << 8u << 4100u;
        QTest::addRow("revision 4, %u entries", count) << 4u << count << 12u << 4100u;
    }
}

void TestDefectMapContainer::layout()
{
    QFETCH(unsigned int, revision);
    QFETCH(unsigned int, count);
    QFETCH(unsigned int, entrySize);
    QFETCH(unsigned int, writtenChunkId);

    const std::vector<t_defpix> map = sampleMap(count);
    const std::vector<unsigned char> buffer =
        buildDefPixContainerBuffer(revision, 4096, count, map.data(), 1280, 1280 * 1024);

    const uint32_t size = 32 + count * entrySize;
    QCOMPARE(buffer.size(), size_t(size));
    QCOMPARE(wordAt(buffer, 0), 0x1F56ADFCu);
    QCOMPARE(wordAt(buffer, 4), size);
    QCOMPARE(wordAt(buffer, 12), writtenChunkId);
    QCOMPARE(wordAt(buffer, 16), size - 12);
    QCOMPARE(wordAt(buffer, 20), 1280u);
    QCOMPARE(wordAt(buffer, 24), 1280u * 1024u);
    QCOMPARE(wordAt(buffer, 28), 0u);
    QCOMPARE(defPixContainerWordSum(buffer.data(), buffer.size()), 0u);
    for (unsigned int i = 0; i < count; ++i) {
        const size_t at = 32 + size_t(i) * entrySize;
        QCOMPARE(wordAt(buffer, at), map[i].x);
        QCOMPARE(wordAt(buffer, at + 4), map[i].y);
        if (entrySize == 12)
            QCOMPARE(wordAt(buffer, at + 8), map[i].type);
    }

    DefPixContainer parsed;
    QVERIFY(checkDefPixContainerBuffer(buffer.data(), buffer.size(), revision, &parsed));
    QCOMPARE(parsed.size, size);
    QCOMPARE(parsed.chunkId, writtenChunkId);
    QCOMPARE(parsed.chunkLength, size - 12);
    QCOMPARE(parsed.imageWidth, 1280u);
    QCOMPARE(parsed.imagePixelCount, 1280u * 1024u);
    QCOMPARE(parsed.entries.size(), size_t(count));
    for (unsigned int i = 0; i < count; ++i) {
        QCOMPARE(parsed.entries[i].x, map[i].x);
        QCOMPARE(parsed.entries[i].y, map[i].y);
        QCOMPARE(parsed.entries[i].type, entrySize == 12 ? map[i].type : 0u);
    }
}

void TestDefectMapContainer::everySingleWordCorruptionIsDetected_data()
{
    QTest::addColumn<unsigned int>("revision");
    QTest::addColumn<quint32>("delta");
    QTest::newRow("revision 0, +1") << 0u << quint32(1);
    QTest::newRow("revision 4, +1") << 4u << quint32(1);
    QTest::newRow("revision 4, high bit") << 4u << quint32(0x80000000u);
}

void TestDefectMapContainer::everySingleWordCorruptionIsDetected()
{
    QFETCH(unsigned int, revision);
    QFETCH(quint32, delta);

    const std::vector<t_defpix> map = sampleMap(10);
    const std::vector<unsigned char> good = buildDefPixContainerBuffer(revision, 0, 10, map.data(), 64, 4096);
    QVERIFY(checkDefPixContainerBuffer(good.data(), good.size(), revision, nullptr));
    for (size_t offset = 0; offset < good.size(); offset += 4) {
        std::vector<unsigned char> bad = good;
        const uint32_t word = wordAt(bad, offset) + delta;
        std::memcpy(bad.data() + offset, &word, sizeof word);
        QVERIFY2(!checkDefPixContainerBuffer(bad.data(), bad.size(), revision, nullptr),
                 qPrintable(QString("word at offset %1").arg(offset)));
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
}

void TestDefectMapContainer::wordSumAddsTrailingBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<quint32>("sum");
    const QByteArray word("\x01\x00\x00\x00", 4);
    QTest::newRow("no rest") << word << quint32(1);
    QTest::newRow("one byte") << word + QByteArray("\x05", 1) << quint32(1 + 0x05);
    QTest::newRow("two bytes") << word + QByteArray("\x05\x06", 2) << quint32(1 + 0x0605);
    QTest::newRow("three bytes") << word + QByteArray("\x05\x06\x07", 3) << quint32(1 + 0x070605);
    QTest::newRow("wraps") << QByteArray("\xff\xff\xff\xff\x02\x00\x00\x00", 8) << quint32(1);
}

void TestDefectMapContainer::wordSumAddsTrailingBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(quint32, sum);
    if (QSysInfo::ByteOrder != QSysInfo::LittleEndian)
        QSKIP("the expected sums are written for a little-endian host");
    QCOMPARE(defPixContainerWordSum(reinterpret_cast<const unsigned char*>(bytes.constData()), size_t(bytes.size())),
             sum);
}

void TestDefectMapContainer::refusesNullMapWithEntries()
{
    QVERIFY(buildDefPixContainerBuffer(4, 0, 3, nullptr, 1, 1).empty());
    QCOMPARE(buildDefPixContainerBuffer(4, 0, 0, nullptr, 1, 1).size(), size_t(32));
    // 400 million 12-byte entries do not fit the 32-bit size field; the map is never read.
    const t_defpix one{1, 2, 3};
    QVERIFY(buildDefPixContainerBuffer(4, 0, 400000000ul, &one, 1, 1).empty());
}

QTEST_GUILESS_MAIN(TestDefectMapContainer)
#include "tst_defectmapcontainer.moc"
