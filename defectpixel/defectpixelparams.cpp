#include "defectpixelparams.h"

#include "largebuffer.h"
#include "localthreshold.h"
#include "meanaccumulation.h"

#include <atomic>
#include <cstdlib>

namespace {

std::atomic<bool> g_masksFail{false};

// Fresh pages come zeroed from the system: no pass over 20 MB to clear them.
unsigned char* allocateZeroed(size_t size)
{
    auto* buffer = static_cast<unsigned char*>(std::calloc(size ? size : 1, 1));
    adviseLargePages(buffer, size);
    return buffer;
}

// True when the image holds the size * bytesPerPixel bytes that the
// contiguous addressing of a width * height run reads or writes.
bool coversRun(const QImage& image, size_t size, size_t bytesPerPixel)
{
    return size == 0 || (image.depth() >= 8 && size_t(image.sizeInBytes()) >= size * bytesPerPixel);
}

} // namespace

DefectPixelParams::~DefectPixelParams()
{
    clear();
}

void DefectPixelParams::clear()
{
    std::free(defectMask);
    std::free(remainder);
    defectMask = nullptr;
    remainder = nullptr;
    m_maskSize = 0;
    m_remainderSize = 0;
    count = 0;
}

bool DefectPixelParams::update(QImage& mean, QImage& image, int weight)
{
    if (mean.size() != image.size())
        return false;
    const bool rgb32 = image.format() == QImage::Format_RGB32;
    const size_t size = size_t(mean.width()) * size_t(mean.height());
    if (!coversRun(mean, size, 1) || !coversRun(image, size, rgb32 ? 4 : 1))
        return false;

    if (weight == 1) {
        ++count;
    } else if (weight == -1) {
        if (count == 0) {
            clear();
            return true;
        }
        --count;
    }
    if (count == 0) {
        clear();
        return true;
    }

    if (remainder && m_remainderSize != size) {
        std::free(remainder);
        remainder = nullptr;
    }
    if (!remainder) {
        remainder = allocateZeroed(size);
        if (!remainder)
            return false;
        m_remainderSize = size;
    }
    if (size == 0)
        return true;

    // bits() first: it may copy a shared mean, and the image may be that same object.
    unsigned char* meanBytes = mean.bits();
    const MeanUpdate change{meanBytes, image.constBits(), remainder, rgb32, weight, count - uint32_t(weight), count};
    applyMeanUpdate(change, uint32_t(mean.width()), uint32_t(mean.height()));
    return true;
}

unsigned char* DefectPixelParams::lendRemainder(size_t size)
{
    if (!remainder || m_remainderSize != size)
        return nullptr;
    unsigned char* lent = remainder;
    remainder = nullptr;
    m_remainderSize = 0;
    return lent;
}

void DefectPixelParams::adoptRemainder(unsigned char* buffer, size_t size, uint32_t newCount)
{
    std::free(remainder);
    remainder = buffer;
    m_remainderSize = buffer ? size : 0;
    count = newCount;
}

void failDefectMaskMemory(bool fail)
{
    g_masksFail = fail;
}

bool DefectPixelParams::localThreshold(const QImage& mean, bool absolute)
{
    if (mean.isNull() || g_masksFail)
        return false;
    const uint32_t width = uint32_t(mean.width());
    const uint32_t height = uint32_t(mean.height());
    const size_t size = size_t(width) * height;
    if (!coversRun(mean, size, 1))
        return false;

    if (defectMask && m_maskSize < size) {
        std::free(defectMask);
        defectMask = nullptr;
    }
    if (!defectMask) {
        defectMask = allocateZeroed(size);
        if (!defectMask)
            return false;
        m_maskSize = size;
    }

    return computeDefectMask(mean.constBits(), width, height, absolute,
                             absolute ? absoluteThreshold : relativeThreshold, defectMask);
}
