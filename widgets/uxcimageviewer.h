#pragma once

#include <QImage>
#include <QPointF>
#include <QRgb>
#include <QVector>
#include <QWidget>

// A point of the image to be marked, in image pixels, with its colour.
struct UXCViewerMarker {
    int x = 0;
    int y = 0;
    QRgb color = 0;
};

// Shows an 8-bit image for close inspection: from fit-to-window up to kMaxZoom
// screen pixels per image pixel with sharp (nearest) pixels, panned by dragging
// and by the arrow keys, zoomed at the cursor by the wheel and by +/- (0 fits).
// An optional contrast stretch spreads the image's occupied grey range. Marked
// points are drawn in two layers (filled squares and open frames) that stay a
// few screen pixels wide at any zoom. Only the visible part is drawn, from a
// display copy made once per image or contrast change.
class UXCImageViewer : public QWidget {
    Q_OBJECT

public:
    static constexpr double kMaxZoom = 32.0;
    static constexpr int kLayers = 2;

    explicit UXCImageViewer(QWidget* parent = nullptr);

    // 8-bit images are read as grey values (bytes); others are shown converted.
    // A null image shows the empty hint. A new image of another size fits the view.
    void setImage(const QImage& image);
    QImage image() const { return m_source; }
    void setEmptyHint(const QString& hint);

    void setContrastStretch(bool on);
    bool contrastStretch() const { return m_stretch; }

    void setMarkers(int layer, QVector<UXCViewerMarker> markers);
    void setMarkersVisible(int layer, bool visible);
    bool markersVisible(int layer) const;
    // A pixel drawn with a frame of its own, e.g. the selected one; (-1, -1) for none.
    void setHighlight(const QPoint& pixel);

    double zoom() const { return m_zoom; }
    bool isFitted() const { return m_fitted; }
    void fitToWindow();
    // Zooms keeping the image point under anchor (widget coordinates) in place.
    void setZoom(double zoom, const QPointF& anchor);
    void setZoom(double zoom) { setZoom(zoom, QPointF(width() / 2.0, height() / 2.0)); }
    // Image point shown at the widget's centre.
    QPointF center() const { return m_center; }
    void centerOn(const QPointF& imagePoint);

    QPointF imageToWidget(const QPointF& imagePoint) const;
    QPointF widgetToImage(const QPointF& widgetPoint) const;

    // Screen positions drawn at the last paint: the centres of the markers of a layer.
    int markersDrawn(int layer) const { return m_drawn[layer]; }

signals:
    // The image pixel under the cursor; inside false when the cursor left the image.
    void hoverChanged(const QPoint& pixel, bool inside);
    void viewChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    double fitZoom() const;
    void clampCenter();
    void rebuildDisplay();
    void drawMarkers(class QPainter& painter, int layer, const QRectF& visible);
    void updateHover(const QPointF& widgetPoint);

    QImage m_source;
    QImage m_display; // m_source with the contrast applied, ready to draw
    QString m_hint;
    bool m_stretch = true;
    bool m_fitted = true;
    double m_zoom = 1.0;
    QPointF m_center;
    QVector<UXCViewerMarker> m_markers[kLayers]; // sorted by row, then column
    bool m_markersVisible[kLayers] = {true, true};
    int m_drawn[kLayers] = {0, 0};
    QPoint m_highlight{-1, -1};
    bool m_dragging = false;
    QPointF m_dragStart;
    QPointF m_dragCenter;
    QPoint m_hover{-1, -1};
};
