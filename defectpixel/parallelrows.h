#pragma once

#include <cstdint>
#include <functional>

// Runs work(firstRow, endRow) over consecutive row bands that together cover
// 0 ... rows - 1, on the calling thread and up to one helper thread per further
// core. Images smaller than minPixelsPerBand * 2 stay on the calling thread.
// The bands must not depend on each other; the call returns when all are done.
void forEachRowBand(uint32_t rows, uint32_t width, uint64_t minPixelsPerBand,
                    const std::function<void(uint32_t, uint32_t)>& work);
