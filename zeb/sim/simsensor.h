#pragma once

#include "sim/simcontrol.h"
#include "sim/simdescription.h"

#include <vector>

namespace ZebCPP {

// The image sensor of a simulated camera: a uniform scene over a dark level, with
// temporal noise and defect pixels seeded from a fixed seed. The signal grows with
// light and exposure; gain amplifies signal, dark level and noise alike. Defects
// lie at least 16 pixels apart, so that each stands alone in a 21 x 21
// neighbourhood; all but the weak ones are strong enough for an absolute test of
// 16 grey levels on dark frames and a relative test of 12 % on bright frames.
class SimSensor {
public:
    explicit SimSensor(const SimSensorDescription& description);

    uint32_t width() const { return d_.width; }
    uint32_t height() const { return d_.height; }
    bool isColor() const { return d_.colorFilter != "None"; }
    const std::vector<SimControl::SimDefect>& defects() const { return defects_; }

    // One frame; the same frame index gives the same frame. light is in percent
    // of full light, exposure in microseconds (10000 = reference), gain in dB.
    // Deeper sensors give two bytes per pixel, little-endian, scaled so that
    // their top 8 bits are the 8-bit sensor's value.
    std::vector<uint8_t> frame(uint64_t frameIndex, double exposureUs, double lightPercent,
                               double gainDb = 0) const;

private:
    struct Defect {
        uint32_t index;  // y * width + x
        SimControl::DefectKind kind;
        double level;    // dark-current excess (hot, cluster, border), stuck value or response (weak)
    };

    void seedDefects();
    bool placeable(uint32_t x, uint32_t y, uint32_t length, uint32_t border = 2) const;
    void add(uint32_t x, uint32_t y, SimControl::DefectKind kind, double level);
    double response(uint32_t x, uint32_t y) const;

    SimSensorDescription d_;
    std::vector<SimControl::SimDefect> defects_;
    std::vector<Defect> pixels_;
};

} // namespace ZebCPP
