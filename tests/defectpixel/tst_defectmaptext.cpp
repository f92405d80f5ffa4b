#include "defectmaptext.h"

#include <QtTest>

#include <random>
#include <vector>

namespace {

// The entries read from the text as "x;y;type" items, "!" appended when the
// reader did not reach the end.
QString readText(const QByteArray& text, unsigned int capacity)
{
    std::vector<t_defpix> map(capacity);
    unsigned int count = 0;
    DefectMapWriter writer(map.data(), capacity, count);
    QBuffer device;
    device.setData(text);
    device.open(QIODevice::ReadOnly | QIODevice::Text);
    const bool readToEnd = readDefectMapText(device, writer);
    QStringList items;
    for (unsigned int i = 0; i < count; ++i)
        items << QString("%1;%2;%3").arg(map[i].x).arg(map[i].y).arg(map[i].type);
    return items.join(' ') + (readToEnd ? "" : "!");
}

} // namespace

class TestDefectMapText : public QObject {
    Q_OBJECT

private slots:
    void writesOneLinePerEntry();
    void roundTripsRandomMaps();
    void readsAcceptedLinesOnly_data();
    void readsAcceptedLinesOnly();
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
    for (unsigned int count : {1u, 10000u}) {
        std::vector<t_defpix> map(count);
        unsigned int used = 0;
        DefectMapWriter writer(map.data(), count, used);
        while (used < count)
            writer.add(random(), random() % 2000, random());
        const QByteArray text = defectMapToText(map.data(), count);
        QCOMPARE(readText(text, count).toLatin1(), text.trimmed().replace('\n', ' '));
    }
}

void TestDefectMapText::readsAcceptedLinesOnly_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<unsigned int>("capacity");
    QTest::addColumn<QString>("entries");

    QTest::newRow("white space, CR LF, no final newline") << QByteArray(" \t1;2;3 \r\n\n   \n4;5;6") << 9u << "1;2;3 4;5;6";
    QTest::newRow("comments") << QByteArray("#1;2;3\n  # 4;5;6\n7;8;9\n") << 9u << "7;8;9";
    QTest::newRow("field counts") << QByteArray("1;2\n1;2;3;4\n1;2;3;\n;1;2\n5;6;7\n") << 9u << "5;6;7";
    QTest::newRow("fields that are not decimal integers")
        << QByteArray("1;;3\n1;two;3\n0x10;2;3\n1,2,3\n1.0;2;3\n5;6;7\n") << 9u << "5;6;7";
    QTest::newRow("32-bit range, negatives wrap")
        << QByteArray("-1;-2;-2147483648\n4294967295;0;1\n4294967296;2;3\n1;-2147483649;3\n") << 9u
        << "4294967295;4294967294;2147483648 4294967295;0;1";
    QTest::newRow("duplicates keep the first") << QByteArray("1;1;5\n1;1;6\n2;2;0\n1;1;7\n") << 9u << "1;1;5 2;2;0";
    QTest::newRow("capacity keeps the first distinct") << QByteArray("1;1;5\n1;1;6\n2;2;0\n3;3;0\n2;2;9\n4;4;0\n") << 3u
                                                       << "1;1;5 2;2;0 3;3;0";
    QTest::newRow("no room") << QByteArray("1;1;5\n") << 0u << "";
    QTest::newRow("lines far too long are skipped whole")
        << QByteArray("1;1;5\n" + QByteArray(5000, ' ') + "2;2;0\n" + QByteArray(2 * 4097, '#') + "\n3;3;0\n"
                      + QByteArray(4091, ' ') + "4;4;0\n")
        << 9u << "1;1;5 3;3;0 4;4;0";
}

void TestDefectMapText::readsAcceptedLinesOnly()
{
    QFETCH(QByteArray, text);
    QFETCH(unsigned int, capacity);
    QFETCH(QString, entries);
    QCOMPARE(readText(text, capacity), entries);
}

QTEST_GUILESS_MAIN(TestDefectMapText)
#include "tst_defectmaptext.moc"
