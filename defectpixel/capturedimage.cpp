#include "capturedimage.h"

#include "imageseries.h"

#include <QRegularExpression>

#include <cstring>

QImage imageOfFrame(const uint8_t* pixels, uint32_t width, uint32_t height)
{
    QImage image(int(width), int(height), QImage::Format_Indexed8);
    if (image.isNull() || pixels == nullptr)
        return QImage();
    static const QVector<QRgb> grey = [] {
        QVector<QRgb> table(256);
        for (int i = 0; i < 256; ++i)
            table[i] = qRgb(i, i, i);
        return table;
    }();
    image.setColorTable(grey);
    for (uint32_t y = 0; y < height; ++y)
        std::memcpy(image.scanLine(int(y)), pixels + size_t(y) * width, width);
    return image;
}

QString capturedImageName(const QString& serial, int kind, const QDateTime& time, int index)
{
    QString safeSerial = serial;
    safeSerial.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9._-]")), QStringLiteral("_"));
    return QStringLiteral("%1_%2_%3_%4.bmp")
        .arg(safeSerial.isEmpty() ? QStringLiteral("camera") : safeSerial,
             kind == BrightSeries ? QStringLiteral("bright") : QStringLiteral("dark"),
             time.toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")))
        .arg(index, 3, 10, QLatin1Char('0'));
}
