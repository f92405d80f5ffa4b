#include "uxcustomwidgets.h"

#include <QtTest>

class TestUXCCustomWidgets : public QObject {
    Q_OBJECT

private slots:
    void pixmapFitsLabelFollowsResizeAndClears();
    void heightFollowsImageAspect_data();
    void heightFollowsImageAspect();
    void clickableLabelReportsPresses();
};

void TestUXCCustomWidgets::pixmapFitsLabelFollowsResizeAndClears()
{
    UXCPixmapLabel label;
    label.resize(200, 200);
    QImage image(1000, 500, QImage::Format_Grayscale8);
    image.fill(7);
    label.setImage(image);
    QCOMPARE(label.pixmap(Qt::ReturnByValue).size(), QSize(200, 100));
    QCOMPARE(label.getImage(), image);
    label.show();
    label.resize(100, 300);
    QCOMPARE(label.pixmap(Qt::ReturnByValue).size(), QSize(100, 50));
    QCOMPARE(label.sizeHint(), QSize(100, 50));

    label.setImage(QImage());
    QVERIFY(label.pixmap(Qt::ReturnByValue).isNull());
}

void TestUXCCustomWidgets::heightFollowsImageAspect_data()
{
    QTest::addColumn<QSize>("imageSize");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("half as high") << QSize(1000, 500) << 300 << 150;
    QTest::newRow("fraction truncated") << QSize(3, 2) << 10 << 6;
    QTest::newRow("taller than wide") << QSize(2, 7) << 3 << 10;
}

void TestUXCCustomWidgets::heightFollowsImageAspect()
{
    QFETCH(QSize, imageSize);
    QFETCH(int, width);
    QFETCH(int, height);

    UXCPixmapLabel label;
    label.setImage(QImage(imageSize, QImage::Format_RGB32));
    QCOMPARE(label.heightForWidth(width), height);
}

void TestUXCCustomWidgets::clickableLabelReportsPresses()
{
    UXCClickableLabel label;
    QSignalSpy clicked(&label, &UXCClickableLabel::clicked);
    QTest::mousePress(&label, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QTest::mouseRelease(&label, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1); // on the press only
}

QTEST_MAIN(TestUXCCustomWidgets)
#include "tst_uxcustomwidgets.moc"
