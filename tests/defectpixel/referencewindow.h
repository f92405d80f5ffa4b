#pragma once

#include <QtGlobal>

#include <algorithm>
#include <vector>

// The 21 x 21 local average taken directly over a contiguous w x h run,
// truncated after the row and after the column average.
inline std::vector<int> referenceAverages(const uchar* p, int w, int h)
{
    std::vector<int> rows(size_t(w) * h), averages(size_t(w) * h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            int sum = 0, n = 0;
            for (int k = std::max(0, x - 10); k <= std::min(w - 1, x + 10); ++k, ++n)
                sum += p[y * w + k];
            rows[y * w + x] = sum / n;
        }
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            int sum = 0, n = 0;
            for (int k = std::max(0, y - 10); k <= std::min(h - 1, y + 10); ++k, ++n)
                sum += rows[k * w + x];
            averages[y * w + x] = sum / n;
        }
    return averages;
}
