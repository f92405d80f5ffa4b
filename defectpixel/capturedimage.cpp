#include "capturedimage.h"

#include "imageseries.h"

#include <QByteArray>
#include <QRegularExpression>
#include <QSaveFile>

#include <climits>
#include <cstdint>
#include <cstring>
#include <new>

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

namespace {

constexpr uint32_t kFileHeaderSize = 14;
constexpr uint32_t kInfoHeaderSize = 40;
constexpr uint32_t kPaletteSize = 256 * 4;
constexpr int32_t kPixelsPerMeter = 3780; // 96 dpi, what the image writer states for a new image

void put16(unsigned char*& at, uint16_t value)
{
    *at++ = uint8_t(value);
    *at++ = uint8_t(value >> 8);
}

void put32(unsigned char*& at, uint32_t value)
{
    put16(at, uint16_t(value));
    put16(at, uint16_t(value >> 16));
}

} // namespace

bool writeFrameBitmap(const QString& path, const uint8_t* pixels, uint32_t width, uint32_t height)
{
    if (pixels == nullptr || width == 0 || height == 0 || width > uint32_t(INT32_MAX) || height > uint32_t(INT32_MAX))
        return false;
    const uint64_t stride = (uint64_t(width) + 3) / 4 * 4;
    const uint64_t offset = kFileHeaderSize + kInfoHeaderSize + kPaletteSize;
    const uint64_t size = offset + stride * height;
    if (size > uint64_t(UINT32_MAX))
        return false;
    QByteArray bytes;
    try {
        bytes.resize(int(size));
    } catch (const std::bad_alloc&) {
        return false;
    }
    unsigned char* at = reinterpret_cast<unsigned char*>(bytes.data());
    *at++ = 'B';
    *at++ = 'M';
    put32(at, uint32_t(size));
    put32(at, 0);
    put32(at, uint32_t(offset));
    put32(at, kInfoHeaderSize);
    put32(at, width);
    put32(at, height);
    put16(at, 1);
    put16(at, 8);
    put32(at, 0); // uncompressed
    put32(at, uint32_t(stride * height));
    put32(at, uint32_t(kPixelsPerMeter));
    put32(at, uint32_t(kPixelsPerMeter));
    put32(at, 256);
    put32(at, 256);
    for (uint32_t i = 0; i < 256; ++i) {
        *at++ = uint8_t(i);
        *at++ = uint8_t(i);
        *at++ = uint8_t(i);
        *at++ = 0;
    }
    for (uint32_t y = height; y-- > 0;) {
        std::memcpy(at, pixels + size_t(y) * width, width);
        std::memset(at + width, 0, size_t(stride - width));
        at += stride;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
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
