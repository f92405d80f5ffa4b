// The pattern file that gives defect pixels their correction codes: any ini
// text must load without harm, and the quick bit matcher must agree with the
// cell-by-cell one on every grid of zeros and ones, whatever codes the file gives.
#include "fuzzsupport.h"

#include "defectmatch.h"

#include <QSettings>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = FuzzSupport::writeScratchFile(QStringLiteral("deffmatch.ini"), data, size);
    FUZZ_CHECK(!path.isEmpty());
    DefectMatchPatterns patterns;
    {
        QSettings settings(path, QSettings::IniFormat);
        patterns.setupDefMatchSettings(&settings);
    }
    // A spread of grids: the lone pixel, full and empty grids and pseudo-random
    // ones seeded from the input, so that every input tries different shapes.
    uint32_t seed = 2166136261u;
    for (size_t i = 0; i < size; ++i)
        seed = (seed ^ data[i]) * 16777619u;
    uint32_t grids[64] = {1u << 12, 0, (1u << 25) - 1};
    for (int i = 3; i < 64; ++i) {
        seed = seed * 1664525u + 1013904223u;
        grids[i] = (seed >> 7) & ((1u << 25) - 1);
    }
    for (const uint32_t bits : grids) {
        int grid[5][5];
        for (int r = 0; r < 5; ++r) {
            for (int c = 0; c < 5; ++c)
                grid[r][c] = (bits >> (r * 5 + c)) & 1;
        }
        // Any integer of the file is a code, negative ones included.
        FUZZ_CHECK(patterns.matchBits(bits) == patterns.match(grid));
    }
    return 0;
}
