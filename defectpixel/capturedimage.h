#pragma once

#include <QDateTime>
#include <QImage>
#include <QString>

#include <cstdint>

// An 8-bit frame of a camera as an image a series accepts: 8-bit indexed with a
// grey palette, the same as a monochrome bitmap file gives. A colour mosaic
// stays a mosaic. Null when the image cannot be allocated.
QImage imageOfFrame(const uint8_t* pixels, uint32_t width, uint32_t height);

// Writes the frame as the 8-bit grey bitmap file imageOfFrame(...).save(path,
// "BMP") gives (rows bottom-up, padded with zeros to four bytes), in one write
// instead of the image writer's row by row. False when the file cannot be written.
bool writeFrameBitmap(const QString& path, const uint8_t* pixels, uint32_t width, uint32_t height);

// "<serial>_<dark|bright>_<yyyyMMdd-hhmmss>_<index, 3 digits>.bmp": captured
// series can be told apart by camera, kind and time, and sort in capture order.
QString capturedImageName(const QString& serial, int kind, const QDateTime& time, int index);
