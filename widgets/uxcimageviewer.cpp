#include "uxcimageviewer.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

constexpr double kWheelStep = 1.25;     // zoom factor per wheel notch
constexpr int kMinMarkerSide = 5;       // screen pixels of a filled marker when zoomed out
constexpr int kFrameWidth = 2;          // screen pixels of an open frame
constexpr double kPanFraction = 0.125;  // of the view per arrow key
constexpr double kStretchTail = 0.001;  // share of pixels left out at each end by the stretch

// Grey value to display colour: the occupied range (without the outer tails)
// spread over 0 ... 255, or the identity.
QVector<QRgb> greyTable(const QImage& image, bool stretch)
{
    int low = 0, high = 255;
    if (stretch) {
        uint64_t histogram[256] = {};
        const int width = image.width();
        for (int y = 0; y < image.height(); ++y) {
            const uchar* line = image.constScanLine(y);
            for (int x = 0; x < width; ++x)
                ++histogram[line[x]];
        }
        const uint64_t total = uint64_t(width) * uint64_t(image.height());
        const uint64_t tail = uint64_t(double(total) * kStretchTail);
        uint64_t seen = 0;
        for (low = 0; low < 255 && seen + histogram[low] <= tail; ++low)
            seen += histogram[low];
        seen = 0;
        for (high = 255; high > low && seen + histogram[high] <= tail; --high)
            seen += histogram[high];
    }
    QVector<QRgb> table(256);
    for (int v = 0; v < 256; ++v) {
        const int g = high > low ? std::clamp((v - low) * 255 / (high - low), 0, 255) : (v > low ? 255 : v < low ? 0 : 128);
        table[v] = qRgb(g, g, g);
    }
    return table;
}

void fillFrame(QPainter& painter, const QRectF& outer, double lineWidth, const QColor& color)
{
    painter.fillRect(QRectF(outer.left(), outer.top(), outer.width(), lineWidth), color);
    painter.fillRect(QRectF(outer.left(), outer.bottom() - lineWidth, outer.width(), lineWidth), color);
    painter.fillRect(QRectF(outer.left(), outer.top(), lineWidth, outer.height()), color);
    painter.fillRect(QRectF(outer.right() - lineWidth, outer.top(), lineWidth, outer.height()), color);
}

} // namespace

UXCImageViewer::UXCImageViewer(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(64, 64);
}

void UXCImageViewer::setImage(const QImage& image)
{
    const bool sameSize = image.size() == m_source.size();
    m_source = image;
    rebuildDisplay();
    if (!sameSize || m_fitted) {
        m_fitted = true;
        m_zoom = fitZoom();
        m_center = QPointF(m_source.width() / 2.0, m_source.height() / 2.0);
    }
    update();
    emit viewChanged();
}

void UXCImageViewer::setEmptyHint(const QString& hint)
{
    m_hint = hint;
    update();
}

void UXCImageViewer::setContrastStretch(bool on)
{
    if (on == m_stretch)
        return;
    m_stretch = on;
    rebuildDisplay();
    update();
}

void UXCImageViewer::rebuildDisplay()
{
    // Done once per image or contrast change; painting then only samples the
    // visible part of this copy.
    if (m_source.isNull()) {
        m_display = QImage();
        return;
    }
    if (m_source.depth() != 8) {
        m_display = m_source.convertToFormat(QImage::Format_RGB32);
        return;
    }
    const QVector<QRgb> table = greyTable(m_source, m_stretch);
    m_display = QImage(m_source.size(), QImage::Format_RGB32);
    const int width = m_source.width();
    for (int y = 0; y < m_source.height(); ++y) {
        const uchar* in = m_source.constScanLine(y);
        QRgb* out = reinterpret_cast<QRgb*>(m_display.scanLine(y));
        for (int x = 0; x < width; ++x)
            out[x] = table[in[x]];
    }
}

void UXCImageViewer::setMarkers(int layer, QVector<UXCViewerMarker> markers)
{
    if (layer < 0 || layer >= kLayers)
        return;
    std::stable_sort(markers.begin(), markers.end(), [](const UXCViewerMarker& a, const UXCViewerMarker& b) {
        return a.y != b.y ? a.y < b.y : a.x < b.x;
    });
    m_markers[layer] = std::move(markers);
    update();
}

void UXCImageViewer::setMarkersVisible(int layer, bool visible)
{
    if (layer < 0 || layer >= kLayers)
        return;
    m_markersVisible[layer] = visible;
    update();
}

bool UXCImageViewer::markersVisible(int layer) const
{
    return layer >= 0 && layer < kLayers && m_markersVisible[layer];
}

void UXCImageViewer::setHighlight(const QPoint& pixel)
{
    m_highlight = pixel;
    update();
}

double UXCImageViewer::fitZoom() const
{
    if (m_source.isNull() || width() < 1 || height() < 1)
        return 1.0;
    return std::min(kMaxZoom, std::min(double(width()) / m_source.width(), double(height()) / m_source.height()));
}

void UXCImageViewer::fitToWindow()
{
    m_fitted = true;
    m_zoom = fitZoom();
    m_center = QPointF(m_source.width() / 2.0, m_source.height() / 2.0);
    update();
    emit viewChanged();
}

void UXCImageViewer::setZoom(double zoom, const QPointF& anchor)
{
    if (m_source.isNull())
        return;
    const double lowest = std::min(1.0, fitZoom());
    zoom = std::clamp(zoom, lowest, kMaxZoom);
    const QPointF fixed = widgetToImage(anchor);
    m_zoom = zoom;
    m_fitted = false;
    // The image point under the anchor stays there.
    m_center = fixed - (anchor - QPointF(width() / 2.0, height() / 2.0)) / m_zoom;
    clampCenter();
    update();
    emit viewChanged();
}

void UXCImageViewer::centerOn(const QPointF& imagePoint)
{
    m_center = imagePoint;
    m_fitted = false;
    clampCenter();
    update();
    emit viewChanged();
}

void UXCImageViewer::clampCenter()
{
    m_center.setX(std::clamp(m_center.x(), 0.0, double(m_source.width())));
    m_center.setY(std::clamp(m_center.y(), 0.0, double(m_source.height())));
}

QPointF UXCImageViewer::imageToWidget(const QPointF& imagePoint) const
{
    return (imagePoint - m_center) * m_zoom + QPointF(width() / 2.0, height() / 2.0);
}

QPointF UXCImageViewer::widgetToImage(const QPointF& widgetPoint) const
{
    return (widgetPoint - QPointF(width() / 2.0, height() / 2.0)) / m_zoom + m_center;
}

void UXCImageViewer::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(48, 48, 48));
    m_drawn[0] = m_drawn[1] = 0;
    if (m_display.isNull()) {
        painter.setPen(QColor(210, 210, 210));
        painter.drawText(rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
        return;
    }
    // Whole image pixels that reach into the widget.
    const QPointF topLeft = widgetToImage(QPointF(0, 0));
    const QPointF bottomRight = widgetToImage(QPointF(width(), height()));
    const int x0 = std::max(0, int(std::floor(topLeft.x())));
    const int y0 = std::max(0, int(std::floor(topLeft.y())));
    const int x1 = std::min(m_display.width(), int(std::ceil(bottomRight.x())));
    const int y1 = std::min(m_display.height(), int(std::ceil(bottomRight.y())));
    if (x1 <= x0 || y1 <= y0)
        return;
    const QRectF source(x0, y0, x1 - x0, y1 - y0);
    const QRectF target(imageToWidget(source.topLeft()), imageToWidget(source.bottomRight()));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(target, m_display, source);

    // Under the markers, so that it never hides a neighbour's marker.
    if (m_highlight.x() >= 0 && source.contains(m_highlight)) {
        // Around the pixel and its direct neighbours, so the pixel itself stays in sight.
        const double side = 3 * std::max(m_zoom, 1.0) + 8;
        const QPointF c = imageToWidget(QPointF(m_highlight) + QPointF(0.5, 0.5));
        const QRectF frame(c.x() - side / 2, c.y() - side / 2, side, side);
        fillFrame(painter, frame.adjusted(-1, -1, 1, 1), kFrameWidth + 2, Qt::black);
        fillFrame(painter, frame, kFrameWidth, Qt::white);
    }
    for (int layer = 0; layer < kLayers; ++layer)
        if (m_markersVisible[layer])
            drawMarkers(painter, layer, source);
}

void UXCImageViewer::drawMarkers(QPainter& painter, int layer, const QRectF& visible)
{
    const QVector<UXCViewerMarker>& markers = m_markers[layer];
    const int top = int(visible.top());
    const int bottom = int(visible.bottom());
    const int left = int(visible.left());
    const int right = int(visible.right());
    // Rows above the view are skipped by a binary search on the sorted list.
    auto it = std::lower_bound(markers.begin(), markers.end(), top,
                               [](const UXCViewerMarker& m, int row) { return m.y < row; });
    // A zoomed-out filled marker is a square of kMinMarkerSide; when zoomed in,
    // filled markers frame their pixel so that it stays visible.
    const double pixel = m_zoom;
    const bool framed = layer == 1 || pixel >= kMinMarkerSide;
    const double side = layer == 1 ? std::max(pixel, 1.0) + 6 : std::max(pixel, double(kMinMarkerSide));
    int drawn = 0;
    QPoint lastScreen(INT_MIN, INT_MIN);
    QRgb lastColor = 0;
    for (; it != markers.end() && it->y < bottom; ++it) {
        if (it->x < left || it->x >= right)
            continue;
        const QPointF c = imageToWidget(QPointF(it->x + 0.5, it->y + 0.5));
        // Zoomed out, neighbours of a cluster fall on the same screen spot.
        const QPoint screen = c.toPoint();
        if (screen == lastScreen && it->color == lastColor)
            continue;
        lastScreen = screen;
        lastColor = it->color;
        const QRectF square(c.x() - side / 2, c.y() - side / 2, side, side);
        if (framed)
            fillFrame(painter, square, kFrameWidth, QColor::fromRgb(it->color));
        else
            painter.fillRect(square, QColor::fromRgb(it->color));
        ++drawn;
    }
    m_drawn[layer] = drawn;
}

void UXCImageViewer::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_fitted)
        m_zoom = fitZoom();
    emit viewChanged();
}

void UXCImageViewer::wheelEvent(QWheelEvent* event)
{
    const int notches = event->angleDelta().y() / 120;
    if (notches == 0 || m_source.isNull())
        return;
    setZoom(m_zoom * std::pow(kWheelStep, notches), event->position());
    event->accept();
}

void UXCImageViewer::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && !m_source.isNull()) {
        m_dragging = true;
        m_dragStart = event->localPos();
        m_dragCenter = m_center;
        setCursor(Qt::ClosedHandCursor);
    }
    QWidget::mousePressEvent(event);
}

void UXCImageViewer::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging) {
        m_center = m_dragCenter - (event->localPos() - m_dragStart) / m_zoom;
        m_fitted = false;
        clampCenter();
        update();
        emit viewChanged();
    }
    updateHover(event->localPos());
}

void UXCImageViewer::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && m_dragging) {
        m_dragging = false;
        unsetCursor();
    }
    QWidget::mouseReleaseEvent(event);
}

void UXCImageViewer::keyPressEvent(QKeyEvent* event)
{
    const QPointF step(width() * kPanFraction / m_zoom, height() * kPanFraction / m_zoom);
    switch (event->key()) {
    case Qt::Key_Left: centerOn(m_center - QPointF(step.x(), 0)); break;
    case Qt::Key_Right: centerOn(m_center + QPointF(step.x(), 0)); break;
    case Qt::Key_Up: centerOn(m_center - QPointF(0, step.y())); break;
    case Qt::Key_Down: centerOn(m_center + QPointF(0, step.y())); break;
    case Qt::Key_Plus:
    case Qt::Key_Equal: setZoom(m_zoom * 2); break;
    case Qt::Key_Minus: setZoom(m_zoom / 2); break;
    case Qt::Key_0:
    case Qt::Key_Home: fitToWindow(); break;
    default: QWidget::keyPressEvent(event); return;
    }
    event->accept();
}

void UXCImageViewer::leaveEvent(QEvent* event)
{
    if (m_hover.x() >= 0) {
        m_hover = QPoint(-1, -1);
        emit hoverChanged(m_hover, false);
    }
    QWidget::leaveEvent(event);
}

void UXCImageViewer::updateHover(const QPointF& widgetPoint)
{
    const QPointF p = widgetToImage(widgetPoint);
    QPoint pixel(int(std::floor(p.x())), int(std::floor(p.y())));
    const bool inside = m_source.rect().contains(pixel);
    if (!inside)
        pixel = QPoint(-1, -1);
    if (pixel == m_hover)
        return;
    m_hover = pixel;
    emit hoverChanged(pixel, inside);
}
