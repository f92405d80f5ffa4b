#include "bitmapfile.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>

#include <cstdlib>
#include <limits>

namespace {

constexpr int kFileHeaderSize = 14;
constexpr int kInfoHeaderPrefix = 16; // header size, width, height, planes, bit count
constexpr int kHeaderBytes = kFileHeaderSize + kInfoHeaderPrefix + 4; // + compression
constexpr quint32 kCompressionNone = 0;
constexpr quint32 kCompressionBitFields = 3;

// Bytes the header promises for an uncompressed bitmap, 0 when it promises no
// fixed size (compressed data, an older header, not a bitmap).
qint64 promisedBitmapSize(const QByteArray& header)
{
    if (header.size() < kHeaderBytes || !header.startsWith("BM"))
        return 0;
    const auto* bytes = reinterpret_cast<const uchar*>(header.constData());
    const quint32 dataOffset = qFromLittleEndian<quint32>(bytes + 10);
    const quint32 infoSize = qFromLittleEndian<quint32>(bytes + 14);
    if (infoSize < 40)
        return 0;
    const qint64 width = qFromLittleEndian<qint32>(bytes + 18);
    const qint64 height = std::llabs(qFromLittleEndian<qint32>(bytes + 22));
    const quint16 bitCount = qFromLittleEndian<quint16>(bytes + 28);
    const quint32 compression = qFromLittleEndian<quint32>(bytes + 30);
    if (compression != kCompressionNone && compression != kCompressionBitFields)
        return 0;
    if (width <= 0)
        return 0;
    const qint64 rowBytes = (width * bitCount + 31) / 32 * 4;
    // A header may promise more than any file can hold; the sum must not wrap.
    if (rowBytes > 0 && height > (std::numeric_limits<qint64>::max() - dataOffset) / rowBytes)
        return std::numeric_limits<qint64>::max();
    return qint64(dataOffset) + rowBytes * height;
}

} // namespace

QImage readImageFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QImage();
    const qint64 promised = promisedBitmapSize(file.read(kHeaderBytes));
    if (promised > file.size() || !file.seek(0))
        return QImage();
    QImageReader reader(&file);
    return reader.read();
}
