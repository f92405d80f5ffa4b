#pragma once

#include <cstddef>
#include <cstdint>

// One image added to or removed from a series, over contiguous runs of bytes.
struct MeanUpdate {
    unsigned char* mean;        // width * height bytes, updated in place
    const unsigned char* image; // width * height bytes, or 4-byte pixels when rgb32
    unsigned char* remainder;   // width * height bytes, updated in place
    bool rgb32;                 // the image's grey values are averages of three bytes
    int weight;                 // 1 adds, -1 removes
    uint32_t oldCount;          // images before the change
    uint32_t count;             // images after the change, at least 1
};

// For every pixel: s = remainder + mean * oldCount + contribution * weight in
// 32-bit arithmetic, mean = s / count and remainder = s % count, both kept in a
// byte. The rows are shared among the cores unless mean and image overlap.
void applyMeanUpdate(const MeanUpdate& update, uint32_t width, uint32_t height);
