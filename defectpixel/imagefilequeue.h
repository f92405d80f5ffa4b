#pragma once

#include "bitmapfile.h"

#include <QStringList>

#include <chrono>
#include <future>
#include <utility>

// Reads the image files of a batch in order, one file ahead on a worker thread,
// so that the caller can fold file i into a series while file i + 1 is read.
// Used from one thread; needs no widgets.
class ImageFileQueue {
public:
    explicit ImageFileQueue(const QStringList& paths);
    ~ImageFileQueue(); // waits for a read still under way
    ImageFileQueue(const ImageFileQueue&) = delete;
    ImageFileQueue& operator=(const ImageFileQueue&) = delete;

    bool atEnd() const { return m_next >= m_paths.size(); }
    // Path of the file takeNext returns next; empty at the end.
    QString nextPath() const;
    // True when the next file has been read, waiting up to timeout for it.
    bool waitForNext(std::chrono::milliseconds timeout);
    // The next file, once read; the read of the one after it starts at once.
    ImageFile takeNext();
    // Hands back the image of a file taken before, once the caller no longer
    // needs it: the next read fills it rather than new memory.
    void recycle(QImage&& image) { m_spare = std::move(image); }

private:
    void startRead();

    QStringList m_paths;
    int m_next = 0;
    std::future<ImageFile> m_pending; // the read of m_paths[m_next]
    QImage m_spare;
};
