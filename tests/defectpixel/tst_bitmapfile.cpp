#include "bitmapfile.h"
#include "capturedimage.h"
#include "imageseries.h"
#include "seriesfileloader.h"

#include <QtEndian>
#include <QtTest>

#include <random>

namespace {

// A bitmap file laid out byte by byte, padding and gaps filled with noise so
// that a reader taking the wrong bytes shows.
QByteArray bitmapBytes(int width, int height, int bitCount, bool topDown, int colors, int gap, unsigned seed)
{
    std::mt19937 random(seed);
    auto noise = [&random] { return char(random() & 0xff); };
    const int stride = (width * bitCount + 31) / 32 * 4;
    const int table = bitCount <= 8 ? 4 * (colors ? colors : 1 << bitCount) : 0;
    const int dataOffset = 54 + table + gap;
    QByteArray bytes(dataOffset + stride * height, '\0');
    auto* b = reinterpret_cast<uchar*>(bytes.data());
    b[0] = 'B';
    b[1] = 'M';
    qToLittleEndian<quint32>(quint32(bytes.size()), b + 2);
    qToLittleEndian<quint32>(quint32(dataOffset), b + 10);
    qToLittleEndian<quint32>(40, b + 14);
    qToLittleEndian<qint32>(width, b + 18);
    qToLittleEndian<qint32>(topDown ? -height : height, b + 22);
    qToLittleEndian<quint16>(1, b + 26);
    qToLittleEndian<quint16>(quint16(bitCount), b + 28);
    qToLittleEndian<quint32>(quint32(colors), b + 46);
    for (int i = 0; i < table / 4; ++i)
        qToLittleEndian<quint32>(qRgb(i, 255 - i, i / 2), b + 54 + 4 * i);
    for (int i = 54 + table; i < bytes.size(); ++i)
        bytes[i] = noise();
    // Indices stay inside a short colour table: beyond it even the image
    // reader's own conversion is undefined.
    if (bitCount == 8 && colors > 0) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                b[dataOffset + y * stride + x] %= colors;
    }
    return bytes;
}

struct Series {
    ImageGeometry geometry;
    DefectPixelParams params;
    QImage mean;
};

// Every pixel of the mean counts, and the remainder over the run. The padding
// after a line is left out: the image reader leaves it uninitialised, so it
// differs from run to run there.
void compareSeries(const Series& fast, const Series& reference)
{
    QCOMPARE(fast.params.count, reference.params.count);
    QCOMPARE(fast.geometry.pixelCount, reference.geometry.pixelCount);
    QCOMPARE(fast.mean.format(), reference.mean.format());
    QCOMPARE(fast.mean.size(), reference.mean.size());
    const int lineBytes = fast.mean.width() * fast.mean.depth() / 8;
    for (int y = 0; y < fast.mean.height(); ++y)
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(fast.mean.constScanLine(y)), lineBytes),
                 QByteArray(reinterpret_cast<const char*>(reference.mean.constScanLine(y)), lineBytes));
    const int pixels = int(fast.geometry.pixelCount);
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(fast.params.remainder), pixels),
             QByteArray(reinterpret_cast<const char*>(reference.params.remainder), pixels));
}

// Runs the loader's steps to the end; the outcomes in order.
QVector<OfferedFile> load(const QStringList& paths, int kind, int maxBatchFiles, Series& series)
{
    QVector<OfferedFile> outcomes;
    SeriesFileLoader loader(paths, kind, maxBatchFiles);
    while (!loader.atEnd()) {
        loader.start(series.geometry, series.params, series.mean);
        outcomes += loader.finish(series.geometry, series.params, series.mean);
    }
    return outcomes;
}

} // namespace

// The straight bitmap read and the series file loader against the image reader.
class TestBitmapFile : public QObject {
    Q_OBJECT

private slots:
    void straightReadAccumulatesAsImageReader_data();
    void straightReadAccumulatesAsImageReader();
    void loaderKeepsOrderAndReasons();
    void seriesEmptiedOrStoppedDuringStep();
    void runLengthGapsReadAsZeros();
    void frameBitmapIsTheImageWritersFile();

private:
    QString write(const QString& name, const QByteArray& bytes);
    QTemporaryDir m_dir;
};

QString TestBitmapFile::write(const QString& name, const QByteArray& bytes)
{
    QFile file(m_dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return QString();
    return file.fileName();
}

void TestBitmapFile::straightReadAccumulatesAsImageReader_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("bitCount");
    QTest::addColumn<bool>("topDown");
    QTest::addColumn<int>("colors");
    QTest::addColumn<int>("gap");
    QTest::addColumn<bool>("direct");
    QTest::newRow("8-bit bottom-up") << 64 << 9 << 8 << false << 0 << 0 << true;
    QTest::newRow("8-bit top-down") << 64 << 9 << 8 << true << 0 << 0 << true;
    QTest::newRow("8-bit odd width, padding") << 37 << 11 << 8 << false << 0 << 0 << true;
    QTest::newRow("8-bit odd width top-down") << 1 << 5 << 8 << true << 0 << 0 << true;
    QTest::newRow("8-bit short palette, gap") << 30 << 7 << 8 << false << 16 << 10 << true;
    QTest::newRow("32-bit bottom-up") << 13 << 6 << 32 << false << 0 << 0 << true;
    QTest::newRow("32-bit top-down, gap") << 16 << 3 << 32 << true << 0 << 3 << true;
    QTest::newRow("24-bit goes to the reader") << 13 << 6 << 24 << false << 0 << 0 << false;
    QTest::newRow("4-bit goes to the reader") << 13 << 6 << 4 << false << 0 << 0 << false;
}

void TestBitmapFile::straightReadAccumulatesAsImageReader()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, bitCount);
    QFETCH(bool, topDown);
    QFETCH(int, colors);
    QFETCH(int, gap);
    QFETCH(bool, direct);
    QStringList paths;
    for (int i = 0; i < 6; ++i)
        paths << write(QString("s%1.bmp").arg(i), bitmapBytes(width, height, bitCount, topDown, colors, gap, 10 + i));
    const QString first = paths[0], second = paths[1];
    QImage straight;
    QCOMPARE(readBitmapDirect(first, straight), direct);

    for (int kind : {DarkSeries, BrightSeries}) {
        Series fast, reference;
        // The second file is read into the lines of the first, and its mean is
        // shown meanwhile, as the display holds it: the shown one must not change.
        QImage spare, shown, shownBefore;
        for (const QString& path : {first, second}) {
            ImageFile file = readImage(path, std::move(spare));
            QCOMPARE(addImageToSeries(file.image, kind, fast.geometry, fast.params, fast.mean),
                     SeriesChange::Accepted);
            spare = std::move(file.image);
            if (shown.isNull()) {
                shown = fast.mean;
                shownBefore = shown.copy();
            }
            QCOMPARE(addImageToSeries(QImage(path), kind, reference.geometry, reference.params, reference.mean),
                     SeriesChange::Accepted);
        }
        QCOMPARE(shown, shownBefore);
        compareSeries(fast, reference);

        // The file loader's batches of every size, from an empty series and from
        // one begun, against all six images added one by one.
        for (const QString& path : paths.mid(2))
            QCOMPARE(addImageToSeries(QImage(path), kind, reference.geometry, reference.params, reference.mean),
                     SeriesChange::Accepted);
        for (int maxBatchFiles : {1, 4, 256}) {
            Series whole, begun;
            load(paths, kind, maxBatchFiles, whole);
            compareSeries(whole, reference);
            QCOMPARE(load(paths.mid(0, 1), kind, maxBatchFiles, begun).first().change, SeriesChange::Accepted);
            const QImage shownFirst = begun.mean, shownFirstBefore = shownFirst.copy();
            for (const OfferedFile& offered : load(paths.mid(1), kind, maxBatchFiles, begun))
                QCOMPARE(offered.change, SeriesChange::Accepted);
            QCOMPARE(shownFirst, shownFirstBefore);
            compareSeries(begun, reference);
        }
    }
}

// Refused files in between, other depths and a full series: the outcomes, the
// reasons and the series are those of one file after the other.
void TestBitmapFile::loaderKeepsOrderAndReasons()
{
    const QByteArray good = bitmapBytes(20, 10, 8, false, 0, 0, 3);
    QStringList paths{write("good.bmp", good),
                      write("empty.bmp", QByteArray()),
                      write("rgb.bmp", bitmapBytes(20, 10, 32, true, 0, 0, 6)),
                      write("cut.bmp", good.left(good.size() - 7)),
                      write("text.bmp", "not an image"),
                      write("wide.bmp", bitmapBytes(21, 10, 8, false, 0, 0, 4)),
                      write("mono.bmp", bitmapBytes(16, 10, 1, false, 2, 0, 5)),
                      write("colour.bmp", bitmapBytes(20, 10, 24, false, 0, 0, 7)),
                      m_dir.filePath("missing.bmp")};
    // Past 256 images the remainder no longer holds the sum: single adds again.
    for (int i = 0; i < 260; ++i)
        paths << write(QString("n%1.bmp").arg(i), bitmapBytes(20, 10, i % 3 ? 8 : 32, i % 2, 0, 0, 100 + i));

    Series fast, reference;
    const QVector<OfferedFile> outcomes = load(paths, DarkSeries, 256, fast);
    QCOMPARE(outcomes.size(), paths.size());
    QStringList reasons;
    for (int i = 0; i < paths.size(); ++i) {
        const ImageFile file = readImage(paths[i]);
        const ImageGeometry before = reference.geometry;
        const SeriesChange change =
            addImageToSeries(file.image, DarkSeries, reference.geometry, reference.params, reference.mean);
        QCOMPARE(outcomes[i].file.path, paths[i]);
        QCOMPARE(outcomes[i].change, change);
        QCOMPARE(refusalReason(outcomes[i].file, outcomes[i].change, outcomes[i].before),
                 refusalReason(file, change, before));
        if (i < 9)
            reasons << refusalReason(file, change, before);
    }
    QCOMPARE(reasons, (QStringList{QString(), "The file is empty.", QString(),
                                   "The file is truncated: its pixel data is cut short.", "Not a readable bitmap.",
                                   "Size 21×10 differs from the series' 20×10.",
                                   "Bit depth 1 is not supported for this camera.", QString(),
                                   "Not a readable bitmap."}));
    QCOMPARE(reference.params.count, 263u);
    compareSeries(fast, reference);
}

// A reset empties the series while a step reads its remainder: the step keeps
// the remainder it borrowed alive until it is dropped. Cancel stops the loader.
void TestBitmapFile::seriesEmptiedOrStoppedDuringStep()
{
    QStringList paths;
    for (int i = 0; i < 4; ++i)
        paths << write(QString("r%1.bmp").arg(i), bitmapBytes(512, 512, 8, false, 0, 0, 40 + i));
    Series series;
    SeriesFileLoader loader(paths, BrightSeries, 2);
    loader.start(series.geometry, series.params, series.mean);
    loader.finish(series.geometry, series.params, series.mean);
    QCOMPARE(series.params.count, 2u);
    loader.start(series.geometry, series.params, series.mean);
    series.params.clear();
    series.mean = QImage();
    series.geometry = ImageGeometry();
    loader.abandon();
    QVERIFY(loader.atEnd());
    QCOMPARE(series.params.count, 0u);
    QVERIFY(!series.params.remainder);

    // Stopped, a loader offers nothing more and hands the remainder back.
    SeriesFileLoader first(paths.mid(0, 2), BrightSeries), rest(paths.mid(2), BrightSeries);
    first.start(series.geometry, series.params, series.mean);
    first.finish(series.geometry, series.params, series.mean);
    const QByteArray remainder(reinterpret_cast<const char*>(series.params.remainder), 512 * 512);
    rest.stop();
    rest.start(series.geometry, series.params, series.mean);
    QVERIFY(rest.finish(series.geometry, series.params, series.mean).isEmpty());
    QVERIFY(rest.atEnd());
    QCOMPARE(series.params.count, 2u);
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(series.params.remainder), 512 * 512), remainder);
}

// Bitmaps that only the image reader takes: a run-length one whose runs end
// early reads the same every time, the pixels never reached as zeros; one whose
// data lies past its end or stops inside a code, and an old-header one a row
// short, are cut short.
void TestBitmapFile::runLengthGapsReadAsZeros()
{
    QByteArray bytes = bitmapBytes(20, 10, 8, false, 0, 0, 50);
    auto* b = reinterpret_cast<uchar*>(bytes.data());
    qToLittleEndian<quint32>(1, b + 30); // 8-bit runs
    const int dataOffset = int(qFromLittleEndian<quint32>(b + 10));
    const QString path = write("runs.bmp", bytes.left(dataOffset) + QByteArray::fromHex("1407") + QByteArray::fromHex("0001"));
    const ImageFile file = readImage(path);
    QCOMPARE(file.image.size(), QSize(20, 10));
    QCOMPARE(file.image.pixelIndex(5, 9), 7);
    QCOMPARE(file.image.pixelIndex(5, 0), 0);
    QCOMPARE(readImage(path).image, file.image);

    const ImageFile past = readImage(write("past.bmp", bytes.left(dataOffset)));
    QVERIFY(past.image.isNull());
    QCOMPARE(refusalReason(past, SeriesChange::NullImage, ImageGeometry()),
             QString("The file is truncated: its pixel data is cut short."));
    // A run's count without its value, and 5 pixels written out of which 4 came.
    for (const char* codes : {"140714", "14070005010203"})
        QCOMPARE(readImage(write("cut.bmp", bytes.left(dataOffset) + QByteArray::fromHex(codes))).problem,
                 ImageFileProblem::Truncated);

    // The old 12-byte header keeps its sizes in 16 bits; the reader takes any
    // header of a size it does not know for one. Whole, the image is read; a
    // row short, the file is cut short.
    const QByteArray old = QByteArray::fromHex("424d" "00000000" "00000000" "1a000000" // file header, data at 26
                                               "0c000000" "0400" "0200" "0100" "1800")   // 4 x 2, 24-bit
                           + QByteArray(24, '\x40');
    QCOMPARE(readImage(write("old.bmp", old)).image.size(), QSize(4, 2));
    const ImageFile oldCut = readImage(write("oldcut.bmp", old.left(old.size() - 12)));
    QVERIFY(oldCut.image.isNull());
    QCOMPARE(oldCut.problem, ImageFileProblem::Truncated);
    QCOMPARE(oldCut.bitCount, 24);
}

// The image writer's file byte for byte, its row padding set to zeros (it
// otherwise writes whatever the image's line holds there).
void TestBitmapFile::frameBitmapIsTheImageWritersFile()
{
    std::mt19937 random(16);
    for (const QSize size : {QSize(8, 3), QSize(64, 17), QSize(5, 7), QSize(33, 2)}) {
        std::vector<uint8_t> pixels(size_t(size.width()) * size.height());
        for (uint8_t& pixel : pixels)
            pixel = uint8_t(random());
        const QString mine = m_dir.filePath("frame.bmp"), theirs = m_dir.filePath("image.bmp");
        QVERIFY(writeFrameBitmap(mine, pixels.data(), size.width(), size.height()));
        QImage image = imageOfFrame(pixels.data(), size.width(), size.height());
        for (int y = 0; y < image.height(); ++y)
            std::fill(image.scanLine(y) + image.width(), image.scanLine(y) + image.bytesPerLine(), uchar(0));
        QVERIFY(image.save(theirs, "BMP"));
        QFile a(mine), b(theirs);
        QVERIFY(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly));
        QCOMPARE(a.readAll(), b.readAll());
    }
    QVERIFY(!writeFrameBitmap(m_dir.filePath("none/frame.bmp"), nullptr, 8, 8));
}

QTEST_MAIN(TestBitmapFile)
#include "tst_bitmapfile.moc"
