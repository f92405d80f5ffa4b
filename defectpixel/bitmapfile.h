#pragma once

#include <QImage>
#include <QString>

// Loads an image file as QImage does, but refuses (null image) a bitmap whose
// uncompressed pixel data is cut short: the image reader would accept it and
// leave the missing rows uninitialised.
QImage readImageFile(const QString& path);
