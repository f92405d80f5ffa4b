#include "imagefilequeue.h"

#include <new>
#include <system_error>

ImageFileQueue::ImageFileQueue(const QStringList& paths)
    : m_paths(paths)
{
    startRead();
}

ImageFileQueue::~ImageFileQueue()
{
    if (m_pending.valid())
        m_pending.wait();
}

QString ImageFileQueue::nextPath() const
{
    return atEnd() ? QString() : m_paths[m_next];
}

bool ImageFileQueue::waitForNext(std::chrono::milliseconds timeout)
{
    return !m_pending.valid() || m_pending.wait_for(timeout) == std::future_status::ready;
}

ImageFile ImageFileQueue::takeNext()
{
    if (atEnd())
        return ImageFile();
    ImageFile file = m_pending.valid() ? m_pending.get() : readImage(m_paths[m_next], std::move(m_spare));
    ++m_next;
    startRead();
    return file;
}

void ImageFileQueue::startRead()
{
    if (atEnd())
        return;
    const QString path = m_paths[m_next];
    try {
        m_pending = std::async(std::launch::async, [path, spare = std::move(m_spare)]() mutable {
            try {
                return readImage(path, std::move(spare));
            } catch (const std::bad_alloc&) {
                ImageFile refused;
                refused.path = path;
                refused.problem = ImageFileProblem::Unreadable;
                return refused;
            }
        });
    } catch (const std::system_error&) {
        // No thread to be had: takeNext reads on the calling thread.
        m_pending = std::future<ImageFile>();
    }
}
