#pragma once

#include <cstdint>
#include <functional>
#include <vector>

// One image of a batch, whose lines come a few at a time: 4 * width bytes each
// for 32-bit pixels, otherwise width bytes padded to a multiple of 4.
struct BatchImage {
    bool rgb32; // the image's grey values are averages of three bytes
    // Reads lines first ... first + lines - 1 top-down into into; false when
    // they cannot be had.
    std::function<bool(int first, int lines, unsigned char* into)> readLines;
};

// A series' running sum before and after a batch, width * height bytes each.
struct MeanBatch {
    const unsigned char* mean;      // not read when oldCount is 0
    const unsigned char* remainder; // not read when oldCount is 0
    unsigned char* newMean;      // apart from the others
    unsigned char* newRemainder; // apart from the others
    uint32_t oldCount;           // images before the batch
};

// The most images a series may hold after a batch: the remainder of a mean
// over more does not fit its byte.
constexpr uint32_t kMaxBatchCount = 256;

// Adds the images to the series in one pass over its mean, tile by tile on all
// cores, reading each image's lines only as the tile needs them. The result
// equals adding them one after the other with applyMeanUpdate, provided
// oldCount + images.size() <= kMaxBatchCount: while the remainder keeps its
// exact value, mean * count + remainder is the sum of all images so far. The
// pixels follow the contiguous addressing of applyMeanUpdate. Returns -1 when
// all were added; otherwise the index of the first image whose lines could not
// be read, or 0 without memory for a tile, and newMean and newRemainder are
// undefined.
int applyMeanBatch(const MeanBatch& batch, const std::vector<BatchImage>& images, uint32_t width, uint32_t height);
