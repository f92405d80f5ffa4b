#pragma once

#include <cstdint>

// Fills mask (width * height bytes) from an 8-bit image of the same contiguous
// size: 255 where a pixel v leaves the margin t around the 21 x 21 average m of
// its neighbourhood (clipped at the borders, truncated after the row and after
// the column pass), i.e. v < m - t or v > m + t; 0 elsewhere. absolute: t is
// threshold; otherwise t is threshold percent of m, truncated toward zero.
// The rows are shared among the cores. False when scratch memory is short.
bool computeDefectMask(const unsigned char* image, uint32_t width, uint32_t height, bool absolute,
                       int32_t threshold, unsigned char* mask);
