#include "imageseries.h"
#include "thresholdinput.h"

#include <QtTest>

namespace {

QImage indexed(int width, int height, int value)
{
    QImage image(width, height, QImage::Format_Indexed8);
    image.setColorCount(256);
    for (int i = 0; i < 256; ++i)
        image.setColor(i, qRgb(255 - i, 255 - i, 255 - i));
    image.fill(uint(value));
    return image;
}

QByteArray firstBytes(const QImage& image, int size)
{
    return QByteArray(reinterpret_cast<const char*>(image.constBits()), size);
}

} // namespace

class TestImageSeries : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void refusedImagesChangeNothing_data();
    void refusedImagesChangeNothing();
    void firstImageSetsGeometryAndMean_data();
    void firstImageSetsGeometryAndMean();
    void failedUpdateIsOutOfMemory();
    void removalUsesImageAsMeanWithoutDisplay();
    void removalIgnoresUnreadableOrForeignFiles();
    void cutShortBitmapsAreRefused();
    void thresholdText_data();
    void thresholdText();

private:
    QTemporaryDir m_dir;
};

void TestImageSeries::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QVERIFY(indexed(8, 4, 40).save(m_dir.filePath("dark.bmp")));
    QImage mono(8, 4, QImage::Format_Mono);
    mono.fill(1);
    QVERIFY(mono.save(m_dir.filePath("mono.bmp")));
}

void TestImageSeries::refusedImagesChangeNothing_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("result");
    QImage grey(8, 4, QImage::Format_Grayscale8), rgb888(8, 4, QImage::Format_RGB888);
    for (int kind : {DarkSeries, BrightSeries}) {
        QTest::addRow("null, kind %d", kind) << QImage() << kind << int(SeriesChange::NullImage);
        QTest::addRow("missing file, kind %d", kind)
            << QImage(m_dir.filePath("none.bmp")) << kind << int(SeriesChange::NullImage);
        QTest::addRow("1-bit file, kind %d", kind)
            << QImage(m_dir.filePath("mono.bmp")) << kind << int(SeriesChange::UnsupportedFormat);
        QTest::addRow("grayscale, kind %d", kind) << grey << kind << int(SeriesChange::UnsupportedFormat);
        QTest::addRow("rgb888, kind %d", kind) << rgb888 << kind << int(SeriesChange::UnsupportedFormat);
        QTest::addRow("other width, kind %d", kind) << indexed(12, 4, 1) << kind << int(SeriesChange::IncompatibleSize);
        QTest::addRow("other height, kind %d", kind) << indexed(8, 5, 1) << kind << int(SeriesChange::IncompatibleSize);
    }
}

void TestImageSeries::refusedImagesChangeNothing()
{
    QFETCH(QImage, image);
    QFETCH(int, kind);
    QFETCH(int, result);
    ImageGeometry geometry{8, 4, 32};
    DefectPixelParams params;
    QImage mean = indexed(8, 4, 9);
    QCOMPARE(int(addImageToSeries(image, kind, geometry, params, mean)), result);
    QCOMPARE(geometry.width, 8u);
    QCOMPARE(geometry.height, 4u);
    QCOMPARE(params.count, 0u);
    QCOMPARE(firstBytes(mean, 32), QByteArray(32, 9));
}

void TestImageSeries::firstImageSetsGeometryAndMean_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("meanFormat");
    QTest::newRow("dark") << int(DarkSeries) << int(QImage::Format_Grayscale8);
    QTest::newRow("bright") << int(BrightSeries) << int(QImage::Format_Indexed8);
}

void TestImageSeries::firstImageSetsGeometryAndMean()
{
    QFETCH(int, kind);
    QFETCH(int, meanFormat);
    ImageGeometry geometry;
    DefectPixelParams params;
    QImage mean;
    QCOMPARE(addImageToSeries(m_dir.filePath("dark.bmp"), kind, geometry, params, mean), SeriesChange::Accepted);
    QCOMPARE(geometry.pixelCount, 32u);
    QCOMPARE(int(mean.format()), meanFormat);
    // The dark mean starts as the converted image, through its palette; the
    // series itself works on the palette indices, so one image gives them back.
    QCOMPARE(firstBytes(mean, 32), QByteArray(32, 40));
    QCOMPARE(addImageToSeries(indexed(8, 4, 42), kind, geometry, params, mean), SeriesChange::Accepted);
    QCOMPARE(params.count, 2u);
    QCOMPARE(firstBytes(mean, 32), QByteArray(32, 41));
    QCOMPARE(removeImageFromSeries(indexed(8, 4, 42), kind, geometry, params, mean), SeriesChange::Accepted);
    QCOMPARE(firstBytes(mean, 32), QByteArray(32, 40));
}

void TestImageSeries::failedUpdateIsOutOfMemory()
{
    // With both series emptied the geometry is free again, while a display may
    // still show the mean of an earlier size; update refuses it.
    ImageGeometry geometry;
    DefectPixelParams params;
    QImage mean = indexed(16, 4, 9);
    QCOMPARE(addImageToSeries(indexed(8, 4, 1), DarkSeries, geometry, params, mean), SeriesChange::OutOfMemory);
    QCOMPARE(geometry.pixelCount, 32u);
    QCOMPARE(params.count, 0u);
    QCOMPARE(mean.width(), 16);
}

void TestImageSeries::removalUsesImageAsMeanWithoutDisplay()
{
    const ImageGeometry geometry{8, 4, 32};
    DefectPixelParams params;
    params.count = 2;
    QImage mean;
    const QImage image = indexed(8, 4, 30);
    QCOMPARE(removeImageFromSeries(image, BrightSeries, geometry, params, mean), SeriesChange::Accepted);
    QCOMPARE(params.count, 1u);
    // sum 30 * 2 - 30 over one image; the file's image itself is left as it was.
    QCOMPARE(firstBytes(mean, 32), QByteArray(32, 30));
    QCOMPARE(firstBytes(image, 32), QByteArray(32, 30));
    QVERIFY(mean.constBits() != image.constBits());
}

void TestImageSeries::removalIgnoresUnreadableOrForeignFiles()
{
    const ImageGeometry geometry{8, 4, 32};
    DefectPixelParams params;
    params.count = 2;
    QImage mean = indexed(8, 4, 5);
    QCOMPARE(removeImageFromSeries(m_dir.filePath("none.bmp"), DarkSeries, geometry, params, mean),
             SeriesChange::NullImage);
    QCOMPARE(removeImageFromSeries(indexed(9, 4, 1), DarkSeries, geometry, params, mean),
             SeriesChange::IncompatibleSize);
    QCOMPARE(removeImageFromSeries(indexed(8, 4, 1), 5, geometry, params, mean), SeriesChange::InvalidKind);
    QCOMPARE(params.count, 2u);
    QCOMPARE(firstBytes(mean, 32), QByteArray(32, 5));
}

void TestImageSeries::cutShortBitmapsAreRefused()
{
    // Rows of 3 pixels are padded to 4 bytes; the whole file must still be accepted.
    QFile whole(m_dir.filePath("padded.bmp"));
    QVERIFY(indexed(3, 4, 7).save(whole.fileName()));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    ImageGeometry geometry;
    DefectPixelParams params;
    QImage mean;
    QCOMPARE(addImageToSeries(whole.fileName(), DarkSeries, geometry, params, mean), SeriesChange::Accepted);

    // One byte of the last row missing: the reader would fill it from nowhere.
    QFile cut(m_dir.filePath("cut.bmp"));
    QVERIFY(cut.open(QIODevice::WriteOnly));
    QCOMPARE(cut.write(bytes.left(bytes.size() - 1)), qint64(bytes.size() - 1));
    cut.close();
    QCOMPARE(addImageToSeries(cut.fileName(), DarkSeries, geometry, params, mean), SeriesChange::NullImage);
    QCOMPARE(removeImageFromSeries(cut.fileName(), DarkSeries, geometry, params, mean), SeriesChange::NullImage);
    QCOMPARE(params.count, 1u);
    QCOMPARE(firstBytes(mean, 3), QByteArray(3, 7));
}

void TestImageSeries::thresholdText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("shown");
    QTest::newRow("empty") << "" << 255 << 16 << "16";
    QTest::newRow("at limit") << "255" << 255 << 255 << "255";
    QTest::newRow("above limit") << "300" << 255 << 16 << "16";
    QTest::newRow("negative") << "-5" << 255 << -5 << "-5";
    QTest::newRow("zero") << "0" << 100 << 0 << "0";
    QTest::newRow("relative above limit") << "101" << 100 << 16 << "16";
    QTest::newRow("not a number") << "12a" << 255 << 16 << "16";
    QTest::newRow("hexadecimal") << "0x10" << 255 << 16 << "16";
    QTest::newRow("beyond int") << "-99999999999" << 255 << 16 << "16";
}

void TestImageSeries::thresholdText()
{
    QFETCH(QString, text);
    QFETCH(int, limit);
    QFETCH(int, value);
    QFETCH(QString, shown);
    const ThresholdInput input = acceptThresholdText(text, 16, limit);
    QCOMPARE(input.value, value);
    QCOMPARE(input.text, shown);
}

QTEST_GUILESS_MAIN(TestImageSeries)
#include "tst_imageseries.moc"
