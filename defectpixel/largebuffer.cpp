#include "largebuffer.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstring>

namespace {

constexpr uintptr_t kLargePage = uintptr_t(2) << 20;

} // namespace

void adviseLargePages(void* data, size_t size)
{
#ifdef MADV_HUGEPAGE
    if (!data || size < 2 * kLargePage)
        return;
    const uintptr_t first = reinterpret_cast<uintptr_t>(data);
    const uintptr_t begin = (first + kLargePage - 1) & ~(kLargePage - 1);
    const uintptr_t end = (first + size) & ~(kLargePage - 1);
    // Only a hint: a refusal leaves the usual pages.
    if (end > begin)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#else
    (void)data;
    (void)size;
#endif
}

QImage newLargeImage(int width, int height, QImage::Format format)
{
    QImage image(width, height, format);
    if (!image.isNull())
        adviseLargePages(image.bits(), size_t(image.sizeInBytes()));
    return image;
}

QImage largeCopy(const QImage& image)
{
    if (image.isNull())
        return QImage();
    QImage copy = newLargeImage(image.width(), image.height(), image.format());
    if (copy.isNull())
        return copy;
    std::memcpy(copy.bits(), image.constBits(), size_t(image.sizeInBytes()));
    copy.setColorTable(image.colorTable());
    copy.setDotsPerMeterX(image.dotsPerMeterX());
    copy.setDotsPerMeterY(image.dotsPerMeterY());
    copy.setOffset(image.offset());
    for (const QString& key : image.textKeys())
        copy.setText(key, image.text(key));
    return copy;
}
