#pragma once

#include <QImage>
#include <QString>

class QFile;

// Why an image file gave no image.
enum class ImageFileProblem {
    None,       // the image was read
    Unreadable, // cannot be opened or is not an image the reader knows
    Empty,      // the file holds no byte
    Truncated,  // a bitmap whose pixel data is cut short
};

// An image file as read for a series.
struct ImageFile {
    QString path;
    QImage image;                                 // null when the file was refused
    ImageFileProblem problem = ImageFileProblem::None;
    int bitCount = 0; // bits per pixel the file's header states, 0 when not a bitmap
};

// Loads an image file as QImage does, but refuses (null image) a bitmap whose
// uncompressed pixel data is cut short: the image reader would accept it and
// leave the missing rows uninitialised. Plain 8-bit and 32-bit bitmaps are read
// straight into the image's lines; everything else goes through the image reader.
// A spare image of the bitmap's shape that nobody else holds receives the rows
// of the straight read instead of a new one.
ImageFile readImage(const QString& path, QImage&& spare = QImage());
QImage readImageFile(const QString& path);

// The straight read alone: false (image untouched) when the file is not a
// plain 8-bit or 32-bit bitmap the image reader would take the same way. The
// result holds what the image reader gives in every byte the series read (for
// 32-bit pixels the fourth byte is left as the file has it).
bool readBitmapDirect(const QString& path, QImage& image);

// Where the rows of a plain 8-bit or 32-bit bitmap lie in its file, so that a
// series can read them a few at a time without the image in memory.
struct PlainBitmap {
    int width = 0;
    int height = 0;
    bool rgb32 = false;   // 32-bit pixels, otherwise 8-bit indices
    bool bottomUp = true; // the file's first row is the image's last
    qint64 dataOffset = 0;
    qint64 stride = 0; // bytes per row, padding included: those of the image's lines
};

// True when the open file is a plain bitmap the straight read takes and holds
// all the rows its header promises; layout then tells where they are.
bool readPlainBitmapHeader(QFile& file, PlainBitmap& layout);

// Reads image rows firstRow ... firstRow + rows - 1 top-down into into, stride
// bytes each, whatever order the file keeps them in; false on a short read.
bool readBitmapRows(int fd, const PlainBitmap& layout, int firstRow, int rows, unsigned char* into);
