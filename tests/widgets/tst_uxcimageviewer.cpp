#include "uxcimageviewer.h"

#include <QtTest>

namespace {

constexpr QRgb kRed = 0xffff0000;
constexpr QRgb kGreen = 0xff00ff00;

QImage blackImage(int w, int h)
{
    QImage image(w, h, QImage::Format_Grayscale8);
    image.fill(0);
    return image;
}

QRgb shownAt(UXCImageViewer& view, const QPointF& widgetPoint)
{
    return view.grab().toImage().pixel(widgetPoint.toPoint());
}

} // namespace

class TestUXCImageViewer : public QObject {
    Q_OBJECT

private slots:
    void zoomKeepsPointUnderCursor();
    void panByDragAndKeys();
    void markersAtScreenPositions_data();
    void markersAtScreenPositions();
    void emptyStateAndHover();
};

void TestUXCImageViewer::zoomKeepsPointUnderCursor()
{
    UXCImageViewer view;
    view.resize(400, 400);
    view.setImage(blackImage(200, 100));
    view.show();
    QVERIFY(view.isFitted());
    QCOMPARE(view.zoom(), 2.0);
    QCOMPARE(view.center(), QPointF(100, 50));

    const QPointF cursor(300, 220);
    const QPointF under = view.widgetToImage(cursor);
    QWheelEvent wheel(cursor, view.mapToGlobal(cursor.toPoint()), QPoint(), QPoint(0, 240), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &wheel);
    QCOMPARE(view.zoom(), 2.0 * 1.25 * 1.25);
    QVERIFY(!view.isFitted());
    QVERIFY((view.widgetToImage(cursor) - under).manhattanLength() < 1e-9);

    view.setZoom(1000);
    QCOMPARE(view.zoom(), UXCImageViewer::kMaxZoom);
    view.setZoom(0.001);
    QCOMPARE(view.zoom(), 1.0); // never below what shows the image whole or 1:1
    QTest::keyClick(&view, Qt::Key_0);
    QVERIFY(view.isFitted());
    view.resize(800, 800);
    QCOMPARE(view.zoom(), 4.0); // a fitted view follows the window
}

void TestUXCImageViewer::panByDragAndKeys()
{
    UXCImageViewer view;
    view.resize(400, 400);
    view.setImage(blackImage(1000, 1000));
    view.show();
    view.setZoom(4);
    view.centerOn(QPointF(500, 500));
    auto send = [&view](QEvent::Type type, QPoint at, Qt::MouseButtons buttons) {
        QMouseEvent event(type, at, Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(&view, &event);
    };
    send(QEvent::MouseButtonPress, QPoint(200, 200), Qt::LeftButton);
    send(QEvent::MouseMove, QPoint(160, 240), Qt::LeftButton);
    send(QEvent::MouseButtonRelease, QPoint(160, 240), Qt::NoButton);
    QCOMPARE(view.center(), QPointF(510, 490)); // the image follows the hand
    QTest::keyClick(&view, Qt::Key_Right);
    QCOMPARE(view.center(), QPointF(510 + 400 * 0.125 / 4, 490));
    view.centerOn(QPointF(-50, 5000));
    QCOMPARE(view.center(), QPointF(0, 1000)); // cannot be pushed off the image
}

void TestUXCImageViewer::markersAtScreenPositions_data()
{
    QTest::addColumn<double>("zoom");
    QTest::newRow("zoomed out") << 0.5;
    QTest::newRow("fit") << 0.0;
    QTest::newRow("3x") << 3.0;
    QTest::newRow("16x") << 16.0;
}

void TestUXCImageViewer::markersAtScreenPositions()
{
    QFETCH(double, zoom);
    UXCImageViewer view;
    view.resize(300, 300);
    QImage image = blackImage(600, 600);
    image.scanLine(299)[301] = 255; // the pixel of the framed marker, to see it stays visible
    view.setImage(image);
    view.setContrastStretch(false);
    view.show();
    if (zoom > 0)
        view.setZoom(zoom);
    view.centerOn(QPointF(300, 300));
    view.setMarkers(0, {{301, 299, kRed}, {599, 0, kRed}, {2, 590, kRed}});
    view.setMarkers(1, {{292, 308, kGreen}});

    const QImage shot = view.grab().toImage();
    const QPointF filled = view.imageToWidget(QPointF(301.5, 299.5));
    const double z = view.zoom();
    if (z >= 5) {
        // A frame around the pixel, which itself stays visible.
        const double half = z / 2;
        QCOMPARE(shot.pixel(QPointF(filled.x() - half + 0.5, filled.y()).toPoint()), kRed);
        QCOMPARE(shot.pixel(filled.toPoint()), 0xffffffff);
    } else {
        QCOMPARE(shot.pixel(filled.toPoint()), kRed);
        QCOMPARE(shot.pixel((filled + QPointF(1.4, 1.4)).toPoint()), kRed); // still 5 screen pixels wide
    }
    // The second map is an open frame: 3 screen pixels beyond its pixel's edge.
    const QPointF ring = view.imageToWidget(QPointF(292.5, 308.5));
    const double half = std::max(z, 1.0) / 2 + 3;
    QCOMPARE(shot.pixel(QPointF(ring.x() - half + 0.5, ring.y()).toPoint()), kGreen);
    QVERIFY(shot.pixel(ring.toPoint()) != kGreen);
    // Markers out of the view are not drawn.
    QCOMPARE(view.markersDrawn(0), z * 600 <= 300 ? 3 : 1);

    view.setMarkersVisible(0, false);
    QCOMPARE(shownAt(view, filled) == kRed, false);
}

void TestUXCImageViewer::emptyStateAndHover()
{
    UXCImageViewer view;
    view.resize(200, 200);
    view.setEmptyHint("nothing yet");
    view.show();
    QVERIFY(!view.grab().isNull());
    view.setZoom(4); // ignored without an image
    QCOMPARE(view.zoom(), 1.0);

    view.setImage(blackImage(100, 100)); // fitted at 2x
    QSignalSpy hover(&view, &UXCImageViewer::hoverChanged);
    QTest::mouseMove(&view, QPoint(21, 41));
    QCOMPARE(hover.count(), 1);
    QCOMPARE(hover.last().at(0).toPoint(), QPoint(10, 20));
    QCOMPARE(hover.last().at(1).toBool(), true);
}

QTEST_MAIN(TestUXCImageViewer)
#include "tst_uxcimageviewer.moc"
