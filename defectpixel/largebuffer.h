#pragma once

#include <QImage>

#include <cstddef>

// A 20 MPixel buffer is first touched page by page, and on a virtual machine
// each of its five thousand page faults is dear. Asked for large pages, the
// system maps it in a few dozen steps; where it has none, nothing changes.
void adviseLargePages(void* data, size_t size);

// A new image whose pixel memory is so advised before anything touches it.
QImage newLargeImage(int width, int height, QImage::Format format);

// What QImage::copy() gives, in such memory; null without memory.
QImage largeCopy(const QImage& image);
