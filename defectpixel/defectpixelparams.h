#pragma once

#include <QImage>

#include <cstdint>

// Accumulation state of one image series (dark = kind 0, bright = kind 1).
// The running sum of the series is mean * count + remainder per pixel, so that
// images can be added and removed again without rounding drift (up to 256
// images; the remainder is kept in one byte on purpose).
// Per-pixel arrays are addressed as one run of width * height bytes from the
// first byte of the image, without regard to line padding.
class DefectPixelParams {
public:
    DefectPixelParams() = default;
    ~DefectPixelParams();
    DefectPixelParams(const DefectPixelParams&) = delete;
    DefectPixelParams& operator=(const DefectPixelParams&) = delete;

    // Releases both buffers and empties the series; thresholds and defectCount stay.
    void clear();

    // Adds (weight 1) or removes (weight -1) image to or from the series and
    // updates mean in place. False, with nothing changed, when the sizes differ
    // or the images are too small for the contiguous addressing; false after
    // the count has moved when the remainder buffer cannot be had.
    bool update(QImage& mean, QImage& image, int weight);

    // Lends the remainder buffer of size bytes out, to be read on another thread
    // while nothing else touches it: the series keeps its count but holds no
    // buffer until adoptRemainder. Null (nothing lent) without such a buffer.
    unsigned char* lendRemainder(size_t size);
    // Takes buffer (from malloc, size bytes) as the remainder of a series of
    // count images, and frees the one held.
    void adoptRemainder(unsigned char* buffer, size_t size, uint32_t count);

    // Fills defectMask from mean: 255 where a pixel leaves the margin around its
    // 21 x 21 local average (clipped at the borders), 0 elsewhere. absolute
    // selects absoluteThreshold (grey levels), otherwise relativeThreshold
    // (percent of the local average). False for a null mean or without memory.
    // The mask is reused from call to call, and replaced if it is too small.
    bool localThreshold(const QImage& mean, bool absolute);

    unsigned char* remainder = nullptr;  // remainder of the running sum per pixel
    unsigned char* defectMask = nullptr; // 255 = flagged by the last localThreshold
    uint32_t count = 0;                  // images in the series
    int32_t absoluteThreshold = 16;      // grey-level margin of the dark test
    int32_t relativeThreshold = 12;      // percent margin of the bright test
    uint32_t defectCount = 0;            // flagged pixels counted by map generation

private:
    // Sizes of the two buffers, so that an image of another size never runs past them.
    size_t m_remainderSize = 0;
    size_t m_maskSize = 0;
};

// While true, every threshold step fails as without memory: how a test meets a
// machine that has none left.
void failDefectMaskMemory(bool fail);
