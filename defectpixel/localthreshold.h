#pragma once

#include <cstdint>
#include <functional>

// Fills mask (width * height bytes) from an 8-bit image of the same contiguous
// size: 255 where a pixel v leaves the margin t around the 21 x 21 average m of
// its neighbourhood (clipped at the borders, truncated after the row and after
// the column pass), i.e. v < m - t or v > m + t; 0 elsewhere. absolute: t is
// threshold; otherwise t is threshold percent of m, truncated toward zero.
// The rows are shared among the cores. False when scratch memory is short.
bool computeDefectMask(const unsigned char* image, uint32_t width, uint32_t height, bool absolute,
                       int32_t threshold, unsigned char* mask);

// Writes the 21 x 21 local average the mask is tested against, per pixel, with
// the same clipping and truncation. False when scratch memory is short.
bool computeLocalAverages(const unsigned char* image, uint32_t width, uint32_t height, unsigned char* averages);

// The same averages for rows firstRow ... endRow - 1 only (into the rows of the
// whole-image buffer averages), calling rowDone(y) as soon as row y is written.
// Disjoint row ranges may run on different threads.
bool computeLocalAverageRows(const unsigned char* image, uint32_t width, uint32_t height, uint32_t firstRow,
                             uint32_t endRow, unsigned char* averages, const std::function<void(uint32_t)>& rowDone);

// The margin of the test per local average (index 0 ... 255), clipped to -1
// (every pixel flagged) ... 255 (none): a pixel v with average m is flagged
// exactly when |v - m| > margins[m].
void defectMargins(bool absolute, int32_t threshold, int16_t margins[256]);
