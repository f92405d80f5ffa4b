#pragma once

#include <cstdint>

// Size of the images of both series. The first accepted image sets it; it is
// 0 x 0 while no image is loaded.
struct ImageGeometry {
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t pixelCount = 0; // width * height
};
