#pragma once

#include <QImage>
#include <QLabel>
#include <QPixmap>

// Shows an image scaled to the label with its aspect ratio kept, sharp on
// high-density screens, and hands the original image back unchanged.
class UXCPixmapLabel : public QLabel {
    Q_OBJECT

public:
    explicit UXCPixmapLabel(QWidget* parent = nullptr);

    // A null image clears the label.
    void setImage(const QImage& image);
    QImage getImage() const;
    QPixmap scaledPixmap() const;

    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QImage m_image;
    QPixmap m_pixmap; // the image converted once; every resize scales from it
};

// A label that reports mouse presses and shows the pointing hand over it.
class UXCClickableLabel : public QLabel {
    Q_OBJECT

public:
    explicit UXCClickableLabel(QWidget* parent = nullptr);

signals:
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void enterEvent(QEvent* event) override;
};
