#pragma once

#include <QString>
#include <QVector>
#include <QWidget>

// Bars of counts over equal bins on a logarithmic count axis, so that a few
// outliers stay visible beside millions of ordinary values, with vertical lines
// at chosen values (e.g. limits) and the region beyond them shaded.
class UXCHistogramView : public QWidget {
    Q_OBJECT

public:
    explicit UXCHistogramView(QWidget* parent = nullptr);

    // Bin i covers [firstValue + i * binWidth, firstValue + (i + 1) * binWidth).
    void setBins(const QVector<quint64>& counts, double firstValue, double binWidth);
    // Values outside (lower, upper) are shaded; an empty list draws no lines.
    void setLimits(const QVector<double>& values);
    void setTitle(const QString& title);
    void setAxisLabel(const QString& label);
    void setEmptyHint(const QString& hint);

    const QVector<quint64>& counts() const { return m_counts; }
    // Widget x of a value on the value axis (for tests and overlays).
    double xOfValue(double value) const;

    QSize sizeHint() const override { return QSize(420, 200); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF plotRect() const;

    QVector<quint64> m_counts;
    double m_first = 0;
    double m_binWidth = 1;
    QVector<double> m_limits;
    QString m_title;
    QString m_axisLabel;
    QString m_hint;
};
