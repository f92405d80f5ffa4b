#include "defectmapcontainer.h"
#include "localmapcheck.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

// Local map files judged against a sensor before they reach a camera.
class TestLocalMapCheck : public QObject {
    Q_OBJECT

private slots:
    void textMaps();
    void containers();
};

void TestLocalMapCheck::textMaps()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("map.txt");
    // A long line is one skipped line, however many pieces it is read in.
    QVERIFY(writeFile(path, "# comment\n\n1;1;0\nbad\n2;2;0\n1;1;7\n" + QByteArray(9000, 'x') + "\n3;3;0\n4;4;0\n"));
    LocalMapCheck check = checkLocalTextMap(path, 3, 3, 3);
    QVERIFY(check.readable);
    QCOMPARE(check.entries.size(), size_t(3));
    QCOMPARE(check.skippedLines, 2u);
    QCOMPARE(check.duplicates, 1u);
    QCOMPARE(check.beyondCapacity, 1u);
    QCOMPARE(check.outsideSensor, 1u); // 3;3 on a 3 x 3 sensor
    QVERIFY(check.refused());

    check = checkLocalTextMap(path, 4, 4, 3);
    QCOMPARE(check.outsideSensor, 0u);
    QVERIFY(!check.refused());

    QVERIFY(writeFile(path, "junk\n"));
    QVERIFY(checkLocalTextMap(path, 4, 4, 10).refused());
    QVERIFY(checkLocalTextMap(dir.filePath("missing.txt"), 4, 4, 10).refused());
}

void TestLocalMapCheck::containers()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("map.bin");
    const t_defpix map[] = {{1, 1, 0}, {9, 2, 0}, {1, 1, 0}};
    std::vector<unsigned char> bytes = buildDefPixContainerBuffer(3, 4096, 3, map, 10, 100);
    QVERIFY(writeFile(path, QByteArray(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()))));
    LocalMapCheck check = checkLocalContainerMap(path, 3, 10, 10);
    QVERIFY(check.readable);
    QCOMPARE(check.entries.size(), size_t(3));
    QCOMPARE(check.duplicates, 1u);
    QCOMPARE(check.outsideSensor, 0u);
    QCOMPARE(checkLocalContainerMap(path, 3, 9, 10).outsideSensor, 1u);

    bytes[bytes.size() - 1] ^= 1; // the checksum no longer holds
    QVERIFY(writeFile(path, QByteArray(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()))));
    QVERIFY(checkLocalContainerMap(path, 3, 10, 10).refused());
}

QTEST_MAIN(TestLocalMapCheck)
#include "tst_localmapcheck.moc"
