#include "uxcustomwidgets.h"

#include <QtTest>

class TestUXCPixmapLabelHighDensity : public QObject {
    Q_OBJECT

private slots:
    void pixmapUsesDevicePixels();
};

void TestUXCPixmapLabelHighDensity::pixmapUsesDevicePixels()
{
    UXCPixmapLabel label;
    QCOMPARE(label.devicePixelRatioF(), 2.0);
    label.resize(200, 200);
    label.setImage(QImage(1000, 500, QImage::Format_RGB32));

    const QPixmap shown = label.pixmap(Qt::ReturnByValue);
    QCOMPARE(shown.size(), QSize(400, 200));
    QCOMPARE(shown.devicePixelRatio(), 2.0);
}

int main(int argc, char** argv)
{
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    TestUXCPixmapLabelHighDensity test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_uxpixmaplabel_highdensity.moc"
