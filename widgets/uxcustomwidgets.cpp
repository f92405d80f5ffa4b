#include "uxcustomwidgets.h"

UXCPixmapLabel::UXCPixmapLabel(QWidget* parent)
    : QLabel(parent)
{
    setMinimumSize(1, 1);
    // The label scales by itself so that the aspect ratio is kept.
    setScaledContents(false);
}

void UXCPixmapLabel::setImage(const QImage& image)
{
    m_image = image;
    m_pixmap = QPixmap::fromImage(image);
    setPixmap(scaledPixmap());
}

QImage UXCPixmapLabel::getImage() const
{
    return m_image;
}

QPixmap UXCPixmapLabel::scaledPixmap() const
{
    if (m_pixmap.isNull())
        return QPixmap();
    // Scaling to device pixels keeps the picture sharp on high-density screens.
    const qreal ratio = devicePixelRatioF();
    const QSize target(qRound(width() * ratio), qRound(height() * ratio));
    QPixmap scaled = m_pixmap.scaled(target, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    return scaled;
}

int UXCPixmapLabel::heightForWidth(int width) const
{
    if (m_image.isNull())
        return QLabel::heightForWidth(width);
    return static_cast<int>(static_cast<double>(m_image.height()) * width / m_image.width());
}

QSize UXCPixmapLabel::sizeHint() const
{
    const int w = width();
    return QSize(w, heightForWidth(w));
}

void UXCPixmapLabel::resizeEvent(QResizeEvent* event)
{
    if (!m_image.isNull())
        setPixmap(scaledPixmap());
    QLabel::resizeEvent(event);
}

UXCClickableLabel::UXCClickableLabel(QWidget* parent)
    : QLabel(parent)
{
    setAttribute(Qt::WA_MouseTracking);
}

void UXCClickableLabel::mousePressEvent(QMouseEvent* event)
{
    emit clicked();
    QLabel::mousePressEvent(event);
}

void UXCClickableLabel::enterEvent(QEvent* event)
{
    setCursor(Qt::PointingHandCursor);
    QLabel::enterEvent(event);
}
