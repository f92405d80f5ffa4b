#include "defectmaptext.h"

#include <QtTest>

#include <random>
#include <vector>

namespace {

std::vector<t_defpix> readText(const QByteArray& text, unsigned int capacity, bool* readToEnd = nullptr)
{
    std::vector<t_defpix> map(capacity);
    unsigned int count = 0;
    DefectMapWriter writer(map.data(), capacity, count);
    QBuffer device;
    device.setData(text);
    device.open(QIODevice::ReadOnly | QIODevice::Text);
    const bool ok = readDefectMapText(device, writer);
    if (readToEnd)
        *readToEnd = ok;
    map.resize(count);
    return map;
}

QString describe(const std::vector<t_defpix>& map)
{
    QStringList items;
    for (const t_defpix& e : map)
        items << QString("%1;%2;%3").arg(e.x).arg(e.y).arg(e.type);
    return items.join(' ');
}

} // namespace

class TestDefectMapText : public QObject {
    Q_OBJECT

private slots:
    void writesOneLinePerEntry();
    void roundTripsRandomMaps();
    void parsesLine_data();
    void parsesLine();
    void readerKeepsFirstOfDuplicatesAndStopsAtCapacity();
    void readerSkipsMalformedLines();
};

void TestDefectMapText::writesOneLinePerEntry()
{
    const t_defpix map[] = {{5, 7, 0}, {100, 3, 111}, {4294967295u, 0, 4294967295u}};
    QCOMPARE(defectMapToText(map, 2), QByteArray("5;7;0\n100;3;111\n"));
    QCOMPARE(defectMapToText(map + 2, 1), QByteArray("4294967295;0;4294967295\n"));
    QCOMPARE(defectMapToText(map, 0), QByteArray());
    QCOMPARE(defectMapToText(nullptr, 3), QByteArray());
}

void TestDefectMapText::roundTripsRandomMaps()
{
    std::mt19937 random(7);
    for (unsigned int count : {1u, 17u, 10000u}) {
        std::vector<t_defpix> map;
        unsigned int used = 0;
        map.resize(count);
        DefectMapWriter writer(map.data(), count, used);
        while (used < count)
            writer.add(random(), random() % 2000, random());
        bool readToEnd = false;
        const std::vector<t_defpix> back = readText(defectMapToText(map.data(), count), count, &readToEnd);
        QVERIFY(readToEnd);
        QCOMPARE(back.size(), map.size());
        QVERIFY(std::equal(map.begin(), map.end(), back.begin(), [](const t_defpix& a, const t_defpix& b) {
            return a.x == b.x && a.y == b.y && a.type == b.type;
        }));
    }
}

void TestDefectMapText::parsesLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<quint32>("x");
    QTest::addColumn<quint32>("y");
    QTest::addColumn<quint32>("type");

    QTest::newRow("plain") << "1;2;3" << true << 1u << 2u << 3u;
    QTest::newRow("surrounding white space") << " \t1;2;3 \r" << true << 1u << 2u << 3u;
    QTest::newRow("largest unsigned") << "4294967295;0;1" << true << 4294967295u << 0u << 1u;
    QTest::newRow("negative wraps") << "-1;-2;-2147483648" << true << 4294967295u << 4294967294u << 2147483648u;
    QTest::newRow("empty") << "" << false << 0u << 0u << 0u;
    QTest::newRow("blank") << "   " << false << 0u << 0u << 0u;
    QTest::newRow("comment") << "#1;2;3" << false << 0u << 0u << 0u;
    QTest::newRow("indented comment") << "  # 1;2;3" << false << 0u << 0u << 0u;
    QTest::newRow("two fields") << "1;2" << false << 0u << 0u << 0u;
    QTest::newRow("four fields") << "1;2;3;4" << false << 0u << 0u << 0u;
    QTest::newRow("trailing separator") << "1;2;3;" << false << 0u << 0u << 0u;
    QTest::newRow("empty field") << "1;;3" << false << 0u << 0u << 0u;
    QTest::newRow("not a number") << "1;two;3" << false << 0u << 0u << 0u;
    QTest::newRow("hexadecimal") << "0x10;2;3" << false << 0u << 0u << 0u;
    QTest::newRow("above 32 bits") << "4294967296;2;3" << false << 0u << 0u << 0u;
    QTest::newRow("below 32 bits") << "1;-2147483649;3" << false << 0u << 0u << 0u;
    QTest::newRow("comma separated") << "1,2,3" << false << 0u << 0u << 0u;
}

void TestDefectMapText::parsesLine()
{
    QFETCH(QString, line);
    QFETCH(bool, accepted);

    t_defpix entry{9, 9, 9};
    QCOMPARE(parseDefectMapLine(QStringRef(&line), entry), accepted);
    if (!accepted) {
        QCOMPARE(entry.x, 9u);
        return;
    }
    QTEST(entry.x, "x");
    QTEST(entry.y, "y");
    QTEST(entry.type, "type");
}

void TestDefectMapText::readerKeepsFirstOfDuplicatesAndStopsAtCapacity()
{
    const QByteArray text("1;1;5\n1;1;6\n2;2;0\n1;1;7\n3;3;0\n2;2;9\n4;4;0\n");
    QCOMPARE(describe(readText(text, 10)), QString("1;1;5 2;2;0 3;3;0 4;4;0"));
    QCOMPARE(describe(readText(text, 3)), QString("1;1;5 2;2;0 3;3;0"));
    QCOMPARE(describe(readText(text, 0)), QString());
}

void TestDefectMapText::readerSkipsMalformedLines()
{
    const QByteArray text("# exported map\n\n1;2\n10;20;0\r\n1;2;3;4\n  \n 30;40;111  \nx;y;type\n50;60;112");
    bool readToEnd = false;
    QCOMPARE(describe(readText(text, 10, &readToEnd)), QString("10;20;0 30;40;111 50;60;112"));
    QVERIFY(readToEnd);
}

QTEST_GUILESS_MAIN(TestDefectMapText)
#include "tst_defectmaptext.moc"
