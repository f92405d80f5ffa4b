#include "uxcustomwidgets.h"

namespace {

// Longest side kept for display. A label never shows more device pixels than
// this, so a 20 MPixel mean is thinned (nearest pixel, cheap) before the
// costly conversion to a pixmap and the smooth scaling.
constexpr int kMaxPreviewSide = 2048;

QImage previewOf(const QImage& image)
{
    if (image.width() <= kMaxPreviewSide && image.height() <= kMaxPreviewSide)
        return image;
    return image.scaled(kMaxPreviewSide, kMaxPreviewSide, Qt::KeepAspectRatio, Qt::FastTransformation);
}

} // namespace

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
    m_pixmap = QPixmap::fromImage(previewOf(image));
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
    // The size follows the image itself, not its thinned preview.
    const QSize size = m_image.size().scaled(target, Qt::KeepAspectRatio);
    QPixmap scaled = m_pixmap.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
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
