#include "parallelrows.h"

#include <algorithm>
#include <exception>
#include <thread>
#include <vector>

namespace {

constexpr unsigned int kMaxBands = 8;

} // namespace

void forEachRowBand(uint32_t rows, uint32_t width, uint64_t minPixelsPerBand,
                    const std::function<void(uint32_t, uint32_t)>& work)
{
    const uint64_t pixels = uint64_t(rows) * width;
    const uint64_t bySize = minPixelsPerBand ? pixels / minPixelsPerBand : rows;
    unsigned int bands = std::min<uint64_t>({std::max(1u, std::thread::hardware_concurrency()),
                                             kMaxBands, std::max<uint64_t>(1, bySize), std::max(1u, rows)});

    std::vector<std::thread> helpers;
    // Reserved before any thread runs, so that adding one never reallocates.
    helpers.reserve(bands);
    uint32_t first = 0;
    for (unsigned int band = 1; band < bands; ++band) {
        const uint32_t end = uint32_t(uint64_t(rows) * band / bands);
        try {
            helpers.emplace_back(work, first, end);
        } catch (const std::exception&) {
            // No helper thread (or no memory for one): this band joins the calling thread's share.
            continue;
        }
        first = end;
    }
    work(first, rows);
    for (std::thread& helper : helpers)
        helper.join();
}
