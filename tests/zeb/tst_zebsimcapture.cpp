#include <QImage>
#include "childprocess.h"

#include <QTemporaryDir>
#include <QtTest>

// Runs the capture tool as a user would and loads what it wrote.
class TestZebSimCapture : public QObject {
    Q_OBJECT

private slots:
    void seriesLoadAsBitmaps_data();
    void seriesLoadAsBitmaps();
    void badArgumentsFail_data();
    void badArgumentsFail();

private:
    int run(const QStringList& arguments, QByteArray* errors = nullptr);
};

int TestZebSimCapture::run(const QStringList& arguments, QByteArray* errors)
{
    qunsetenv("ZEB_SIM_CAMERAS"); // the tool falls back to the built-in set
    qunsetenv("ZEB_GEV_ADDRESSES");
#ifdef ZEB_SIM_CAPTURE_EMULATOR
    const QString program = ZEB_SIM_CAPTURE_EMULATOR;
    const QStringList programArguments = QStringList(ZEB_SIM_CAPTURE) + arguments;
#else
    const QString program = ZEB_SIM_CAPTURE;
    const QStringList programArguments = arguments;
#endif
    ChildProcess tool;
    if (!tool.start(program, programArguments, true) || !tool.waitForFinished(60000))
        return -1;
    if (errors)
        *errors = tool.errors();
    return tool.exitCode();
}

void TestZebSimCapture::seriesLoadAsBitmaps_data()
{
    QTest::addColumn<QString>("camera");
    QTest::addColumn<int>("format");
    QTest::newRow("mono by serial") << "KV1230001" << int(QImage::Format_Indexed8);
    QTest::newRow("colour by model") << "pmq5CCX" << int(QImage::Format_RGB32);
}

void TestZebSimCapture::seriesLoadAsBitmaps()
{
    QFETCH(QString, camera);
    QFETCH(int, format);
    QTemporaryDir dir;
    const QString out = dir.filePath("series");
    QByteArray errors;
    QCOMPARE(run({"--camera", camera, "--dark", "2", "--bright", "1", "--out", out}, &errors), 0);
    QVERIFY2(errors.isEmpty(), errors.constData());
    for (const char* name : {"dark_000.bmp", "dark_001.bmp", "bright_000.bmp"}) {
        QImage image(QDir(out).filePath(name));
        QVERIFY2(!image.isNull(), name);
        QCOMPARE(int(image.format()), format);
        QCOMPARE(image.size(), QSize(640, 480));
    }
    QVERIFY(!QFile::exists(QDir(out).filePath("bright_001.bmp")));

    QFile defects(QDir(out).filePath("defects.txt"));
    QVERIFY(defects.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromUtf8(defects.readAll()).split('\n', Qt::SkipEmptyParts);
    QVERIFY(lines.size() > 10);
    const QImage dark(QDir(out).filePath("dark_000.bmp"));
    for (const QString& line : lines) {
        const QStringList fields = line.split(';');
        QCOMPARE(fields.size(), 3);
        QVERIFY(QStringList({"hot", "dead", "stuck", "cluster", "weak", "border"}).contains(fields[2]));
        const QPoint pixel(fields[0].toInt(), fields[1].toInt());
        QVERIFY(dark.rect().contains(pixel));
        const QRgb rgb = dark.pixel(pixel);
        if (fields[2] == "hot") // well above the dark level in its own channel
            QVERIFY(std::max({qRed(rgb), qGreen(rgb), qBlue(rgb)}) > 30);
    }
}

void TestZebSimCapture::badArgumentsFail_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no camera") << QStringList{"--dark", "1", "--out", "x"};
    QTest::newRow("unknown camera") << QStringList{"--camera", "nope", "--dark", "1", "--out", "x"};
    QTest::newRow("held by another application") << QStringList{"--camera", "TB2000005", "--dark", "1", "--out", "x"};
    QTest::newRow("count is not a number") << QStringList{"--camera", "KV1230001", "--dark", "many", "--out", "x"};
}

void TestZebSimCapture::badArgumentsFail()
{
    QFETCH(QStringList, arguments);
    QTemporaryDir dir;
    const int index = arguments.indexOf("--out");
    arguments[index + 1] = dir.filePath(arguments[index + 1]);
    QByteArray errors;
    QVERIFY(run(arguments, &errors) > 0);
    QVERIFY(!errors.isEmpty());
    QVERIFY(!QFile::exists(QDir(arguments[index + 1]).filePath("dark_000.bmp")));
}

QTEST_GUILESS_MAIN(TestZebSimCapture)
#include "tst_zebsimcapture.moc"
