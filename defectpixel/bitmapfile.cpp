#include "bitmapfile.h"

#include "largebuffer.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>

#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr int kFileHeaderSize = 14;
constexpr int kInfoHeaderPrefix = 16; // header size, width, height, planes, bit count
constexpr int kHeaderBytes = kFileHeaderSize + kInfoHeaderPrefix + 4; // + compression
constexpr int kInfoHeaderSize = 40;
constexpr int kFullHeaderBytes = kFileHeaderSize + kInfoHeaderSize;
constexpr quint32 kCompressionNone = 0;
constexpr quint32 kCompressionRle8 = 1;
constexpr quint32 kCompressionRle4 = 2;
constexpr quint32 kCompressionBitFields = 3;
// Larger images go through the image reader, which has its own limits.
constexpr qint64 kMaxDirectPixels = qint64(16384) * 16384;

// The fields of a bitmap header as the image reader takes them: those of the
// Windows headers it knows, and the 16-bit ones of the old 12-byte header for a
// header of any other size.
struct HeaderFields {
    qint64 dataOffset = 0;
    qint64 width = 0;
    qint64 height = 0; // rows, whichever way they run
    int bitCount = 0;
    quint32 compression = kCompressionNone;
};

bool headerFields(const QByteArray& header, HeaderFields& fields)
{
    if (header.size() < kHeaderBytes || !header.startsWith("BM"))
        return false;
    const auto* bytes = reinterpret_cast<const uchar*>(header.constData());
    const quint32 infoSize = qFromLittleEndian<quint32>(bytes + 14);
    fields.dataOffset = qFromLittleEndian<quint32>(bytes + 10);
    if (infoSize == 40 || infoSize == 52 || infoSize == 56 || infoSize == 64 || infoSize == 108 || infoSize == 124) {
        fields.width = qFromLittleEndian<qint32>(bytes + 18);
        fields.height = std::llabs(qFromLittleEndian<qint32>(bytes + 22));
        fields.bitCount = qFromLittleEndian<quint16>(bytes + 28);
        fields.compression = qFromLittleEndian<quint32>(bytes + 30);
    } else {
        fields.width = qFromLittleEndian<qint16>(bytes + 18);
        fields.height = std::llabs(qFromLittleEndian<qint16>(bytes + 20));
        fields.bitCount = qFromLittleEndian<quint16>(bytes + 24);
    }
    return true;
}

// Bytes the header promises for an uncompressed bitmap, 0 when it promises no
// fixed size (compressed data, not a bitmap).
qint64 promisedBitmapSize(const QByteArray& header)
{
    HeaderFields fields;
    if (!headerFields(header, fields) || fields.width <= 0)
        return 0;
    if (fields.compression != kCompressionNone && fields.compression != kCompressionBitFields)
        return 0;
    const qint64 rowBytes = (fields.width * fields.bitCount + 31) / 32 * 4;
    // A header may promise more than any file can hold; the sum must not wrap.
    if (rowBytes > 0 && fields.height > (std::numeric_limits<qint64>::max() - fields.dataOffset) / rowBytes)
        return std::numeric_limits<qint64>::max();
    return fields.dataOffset + rowBytes * fields.height;
}

// A run-length bitmap whose codes stop in the middle of one: the image reader
// would take the missing bytes from memory it never wrote, a different image on
// every read. Data that ends between codes leaves the rest of the image alone.
bool runLengthCutShort(QFile& file, const QByteArray& header)
{
    HeaderFields fields;
    if (!headerFields(header, fields)
        || (fields.compression != kCompressionRle8 && fields.compression != kCompressionRle4))
        return false;
    if (fields.dataOffset >= file.size() || !file.seek(fields.dataOffset))
        return true;
    const QByteArray data = file.readAll();
    const auto* codes = reinterpret_cast<const uchar*>(data.constData());
    const qint64 size = data.size();
    for (qint64 at = 0; at < size;) {
        if (at + 2 > size)
            return true;
        const uchar count = codes[at], value = codes[at + 1];
        at += 2;
        if (count > 0 || value == 0)
            continue; // a run of one value, or the end of a line
        if (value == 1)
            return false; // the end of the image
        // A move by (dx, dy), or value pixels written out, padded to an even length.
        const qint64 bytes = value == 2 ? 2 : fields.compression == kCompressionRle8 ? value : (value + 1) / 2;
        if (at + bytes > size)
            return true;
        at += bytes + (value == 2 ? 0 : bytes % 2);
    }
    return false;
}

int headerBitCount(const QByteArray& header)
{
    HeaderFields fields;
    return headerFields(header, fields) ? fields.bitCount : 0;
}

// The layout of a plain bitmap, with its colour table entries; false when the
// bitmap is not one the straight read takes (other depths, compression, colour
// masks, newer headers, a data offset inside the colour table, odd sizes).
bool directLayout(const QByteArray& header, PlainBitmap& layout, int& colors)
{
    if (header.size() < kFullHeaderBytes || !header.startsWith("BM"))
        return false;
    const auto* bytes = reinterpret_cast<const uchar*>(header.constData());
    const quint32 dataOffset = qFromLittleEndian<quint32>(bytes + 10);
    const quint32 infoSize = qFromLittleEndian<quint32>(bytes + 14);
    const qint32 width = qFromLittleEndian<qint32>(bytes + 18);
    const qint32 height = qFromLittleEndian<qint32>(bytes + 22);
    const quint16 planes = qFromLittleEndian<quint16>(bytes + 26);
    const quint16 bitCount = qFromLittleEndian<quint16>(bytes + 28);
    const quint32 compression = qFromLittleEndian<quint32>(bytes + 30);
    const quint32 colorsUsed = qFromLittleEndian<quint32>(bytes + 46);
    if (infoSize != kInfoHeaderSize || planes != 1 || compression != kCompressionNone)
        return false;
    if (width <= 0 || height == 0 || height == INT_MIN || qint64(width) * std::abs(height) > kMaxDirectPixels)
        return false;
    qint64 tableBytes = 0;
    colors = 0;
    if (bitCount == 8) {
        const qint64 used = colorsUsed ? colorsUsed : 256;
        if (used > 256)
            return false;
        tableBytes = 4 * used;
        colors = int(used);
        layout.rgb32 = false;
    } else if (bitCount == 32 && colorsUsed == 0) {
        layout.rgb32 = true;
    } else {
        return false;
    }
    if (dataOffset < kFullHeaderBytes + tableBytes)
        return false;
    layout.width = width;
    layout.height = std::abs(height);
    layout.bottomUp = height > 0;
    layout.dataOffset = dataOffset;
    layout.stride = (qint64(width) * bitCount + 31) / 32 * 4;
    return true;
}

// Reads exactly the bytes the pieces ask for from offset on, piece after piece.
bool readPieces(int fd, std::vector<iovec>& pieces, off_t offset)
{
    iovec* piece = pieces.data();
    size_t left = pieces.size();
    while (left > 0) {
        const ssize_t got = preadv(fd, piece, int(std::min<size_t>(left, IOV_MAX)), offset);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        offset += got;
        size_t done = size_t(got);
        while (done > 0) {
            if (done >= piece->iov_len) {
                done -= piece->iov_len;
                ++piece;
                --left;
            } else {
                piece->iov_base = static_cast<char*>(piece->iov_base) + done;
                piece->iov_len -= done;
                done = 0;
            }
        }
    }
    return true;
}

// The file's rows go straight into the image's lines: a bitmap's row stride
// (4-byte aligned) is the image's, padding included.
bool readDirect(QFile& file, const QByteArray& header, QImage& image, QImage&& spare = QImage())
{
    PlainBitmap layout;
    int colors = 0;
    if (!directLayout(header, layout, colors) || layout.dataOffset + layout.stride * layout.height > file.size())
        return false;
    const QImage::Format format = layout.rgb32 ? QImage::Format_RGB32 : QImage::Format_Indexed8;
    // A spare of the same shape that nobody else holds takes the rows: its pages
    // are mapped already, where fresh 20 MB would fault in page by page.
    const bool reusable = !spare.isNull() && spare.isDetached() && spare.format() == format
                          && spare.width() == layout.width && spare.height() == layout.height;
    QImage lines = reusable ? std::move(spare) : newLargeImage(layout.width, layout.height, format);
    if (lines.isNull() || lines.bytesPerLine() != layout.stride)
        return false;
    if (!readBitmapRows(file.handle(), layout, 0, layout.height, lines.bits()))
        return false;
    // A first dark image of odd width is converted through its colours.
    if (colors > 0) {
        QByteArray table(4 * colors, Qt::Uninitialized);
        if (!file.seek(kFullHeaderBytes) || file.read(table.data(), table.size()) != table.size())
            return false;
        QVector<QRgb> entries(colors);
        const auto* entry = reinterpret_cast<const uchar*>(table.constData());
        for (int i = 0; i < colors; ++i, entry += 4)
            entries[i] = qRgb(entry[2], entry[1], entry[0]);
        lines.setColorTable(entries);
    }
    image = lines;
    return true;
}

} // namespace

ImageFile readImage(const QString& path, QImage&& spare)
{
    ImageFile result;
    result.path = path;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        result.problem = ImageFileProblem::Unreadable;
        return result;
    }
    if (file.size() == 0) {
        result.problem = ImageFileProblem::Empty;
        return result;
    }
    const QByteArray header = file.read(kFullHeaderBytes);
    result.bitCount = headerBitCount(header);
    if (promisedBitmapSize(header) > file.size()) {
        result.problem = ImageFileProblem::Truncated;
        return result;
    }
    if (readDirect(file, header, result.image, std::move(spare)))
        return result;
    if (runLengthCutShort(file, header)) {
        result.problem = ImageFileProblem::Truncated;
        return result;
    }
    if (!file.seek(0)) {
        result.problem = ImageFileProblem::Unreadable;
        return result;
    }
    // The reader leaves pixels that a run-length bitmap skips or never reaches
    // as it found the memory: on a canvas of zeros they are zeros every time.
    QImageReader reader(&file);
    // A top-down bitmap tells its height negative.
    const QSize size = reader.size();
    QImage canvas(size.width(), std::abs(size.height()), reader.imageFormat());
    if (!canvas.isNull())
        canvas.fill(0);
    if (!reader.read(&canvas))
        canvas = QImage();
    // The bytes after a line's pixels count in a series of such a width; the
    // reader may leave them as it found the memory.
    if (canvas.format() == QImage::Format_Indexed8) {
        for (int y = 0; y < canvas.height(); ++y)
            std::fill(canvas.scanLine(y) + canvas.width(), canvas.scanLine(y) + canvas.bytesPerLine(), uchar(0));
    }
    result.image = canvas;
    if (result.image.isNull())
        result.problem = ImageFileProblem::Unreadable;
    return result;
}

QImage readImageFile(const QString& path)
{
    return readImage(path).image;
}

bool readBitmapRows(int fd, const PlainBitmap& layout, int firstRow, int rows, unsigned char* into)
{
    if (firstRow < 0 || rows < 0 || firstRow + rows > layout.height)
        return false;
    const size_t stride = size_t(layout.stride);
    std::vector<iovec> pieces;
    if (!layout.bottomUp) {
        pieces.push_back(iovec{into, stride * size_t(rows)});
        return rows == 0 || readPieces(fd, pieces, off_t(layout.dataOffset + layout.stride * firstRow));
    }
    // Bottom-up, the rows lie in the file in reverse order: the kernel puts each
    // in its place.
    pieces.resize(size_t(rows));
    for (int row = 0; row < rows; ++row)
        pieces[size_t(row)] = iovec{into + stride * size_t(rows - 1 - row), stride};
    const int lastFileRow = layout.height - 1 - firstRow;
    return rows == 0 || readPieces(fd, pieces, off_t(layout.dataOffset + layout.stride * (lastFileRow - rows + 1)));
}

bool readPlainBitmapHeader(QFile& file, PlainBitmap& layout)
{
    if (!file.seek(0))
        return false;
    const QByteArray header = file.read(kFullHeaderBytes);
    int colors = 0;
    return promisedBitmapSize(header) <= file.size() && directLayout(header, layout, colors)
           && layout.dataOffset + layout.stride * layout.height <= file.size();
}

bool readBitmapDirect(const QString& path, QImage& image)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    return readDirect(file, file.read(kFullHeaderBytes), image);
}
