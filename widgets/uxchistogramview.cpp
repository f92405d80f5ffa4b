#include "uxchistogramview.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

UXCHistogramView::UXCHistogramView(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(200, 120);
}

void UXCHistogramView::setBins(const QVector<quint64>& counts, double firstValue, double binWidth)
{
    m_counts = counts;
    m_first = firstValue;
    m_binWidth = binWidth > 0 ? binWidth : 1;
    update();
}

void UXCHistogramView::setLimits(const QVector<double>& values)
{
    m_limits = values;
    update();
}

void UXCHistogramView::setTitle(const QString& title)
{
    m_title = title;
    update();
}

void UXCHistogramView::setAxisLabel(const QString& label)
{
    m_axisLabel = label;
    update();
}

void UXCHistogramView::setEmptyHint(const QString& hint)
{
    m_hint = hint;
    update();
}

QRectF UXCHistogramView::plotRect() const
{
    const int text = fontMetrics().height();
    return QRectF(text * 3.5, text * 1.5, width() - text * 4.0, height() - text * 4.0);
}

double UXCHistogramView::xOfValue(double value) const
{
    const QRectF plot = plotRect();
    const double span = m_binWidth * std::max(1, m_counts.size());
    return plot.left() + (value - m_first) / span * plot.width();
}

void UXCHistogramView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    painter.setPen(palette().text().color());
    const int text = fontMetrics().height();
    painter.drawText(QRectF(0, 0, width(), text * 1.4), Qt::AlignCenter, m_title);
    quint64 highest = 0;
    for (quint64 c : m_counts)
        highest = std::max(highest, c);
    if (m_counts.isEmpty() || highest == 0) {
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
        return;
    }
    const QRectF plot = plotRect();
    // Logarithmic count axis: a bar of count c is log10(c + 1) high.
    const double decades = std::ceil(std::log10(double(highest) + 1));
    auto yOfCount = [&](double count) { return plot.bottom() - std::log10(count + 1) / decades * plot.height(); };

    if (m_limits.size() >= 2) {
        const double low = xOfValue(*std::min_element(m_limits.begin(), m_limits.end()));
        const double high = xOfValue(*std::max_element(m_limits.begin(), m_limits.end()));
        const QColor shade(220, 60, 60, 40);
        painter.fillRect(QRectF(plot.left(), plot.top(), std::max(0.0, low - plot.left()), plot.height()), shade);
        painter.fillRect(QRectF(high, plot.top(), std::max(0.0, plot.right() - high), plot.height()), shade);
    }

    const QColor bar(70, 110, 180);
    const double barWidth = plot.width() / m_counts.size();
    for (int i = 0; i < m_counts.size(); ++i) {
        if (!m_counts[i])
            continue;
        const double top = yOfCount(double(m_counts[i]));
        painter.fillRect(QRectF(plot.left() + i * barWidth, top, std::max(1.0, barWidth), plot.bottom() - top), bar);
    }

    painter.setPen(palette().text().color());
    painter.drawRect(plot);
    for (int decade = 0; decade <= int(decades); ++decade) {
        const double y = yOfCount(std::pow(10.0, decade) - 1);
        painter.drawLine(QPointF(plot.left() - 4, y), QPointF(plot.left(), y));
        painter.drawText(QRectF(0, y - text / 2.0, plot.left() - 6, text), Qt::AlignRight | Qt::AlignVCenter,
                         decade == 0 ? QStringLiteral("0") : QStringLiteral("1e%1").arg(decade));
    }
    const double lastValue = m_first + m_binWidth * m_counts.size();
    for (int k = 0; k <= 4; ++k) {
        const double value = m_first + (lastValue - m_first) * k / 4;
        const double x = xOfValue(value);
        painter.drawLine(QPointF(x, plot.bottom()), QPointF(x, plot.bottom() + 4));
        painter.drawText(QRectF(x - 40, plot.bottom() + 4, 80, text), Qt::AlignCenter, QString::number(std::round(value)));
    }
    painter.drawText(QRectF(0, height() - text * 1.3, width(), text * 1.3), Qt::AlignCenter, m_axisLabel);

    painter.setPen(QPen(QColor(220, 40, 40), 2));
    for (double limit : m_limits) {
        const double x = xOfValue(limit);
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
}
