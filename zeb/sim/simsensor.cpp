#include "sim/simsensor.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

namespace ZebCPP {

namespace {

using SimControl::DefectKind;

constexpr uint32_t kSpacing = 16;

// Noise must be reproducible per frame and pixel without a stored generator.
uint64_t mix(uint64_t x)
{
    x += 0x9E3779B97F4A7C15ull;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ull;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBull;
    return x ^ (x >> 31);
}

} // namespace

SimSensor::SimSensor(const SimSensorDescription& description) : d_(description)
{
    seedDefects();
}

bool SimSensor::placeable(uint32_t x, uint32_t y, uint32_t length, uint32_t border) const
{
    if (x < border || y < border || x + length + border > d_.width || y + border >= d_.height)
        return false;
    for (const SimControl::SimDefect& other : defects_) {
        const uint32_t dx = other.x + kSpacing > x && other.x < x + length + kSpacing
                                ? 0 : kSpacing;
        const uint32_t dy = static_cast<uint32_t>(std::abs(int64_t(other.y) - int64_t(y)));
        if (dx == 0 && dy < kSpacing)
            return false;
    }
    return true;
}

void SimSensor::add(uint32_t x, uint32_t y, DefectKind kind, double level)
{
    defects_.push_back({x, y, kind});
    pixels_.push_back({y * d_.width + x, kind, level});
}

void SimSensor::seedDefects()
{
    std::mt19937_64 random(d_.seed);
    // A defect that finds no room means the sensor is full: no later one will.
    bool full = false;
    auto place = [&](uint32_t length, auto&& onPlaced) {
        for (int attempt = 0; attempt < 2000 && !full; ++attempt) {
            const uint32_t x = static_cast<uint32_t>(random() % d_.width);
            const uint32_t y = static_cast<uint32_t>(random() % d_.height);
            if (placeable(x, y, length)) {
                onPlaced(x, y);
                return;
            }
        }
        full = true;
    };
    // Hot pixels of a colour sensor stay weak enough that the demosaiced
    // neighbours of a hot pixel stay below the dark test's margin.
    const double hotLow = isColor() ? 60 : 40;
    const double hotSpan = isColor() ? 10 : 50;
    auto hotLevel = [&] { return hotLow + double(random() % 1000) / 1000.0 * hotSpan; };
    for (uint32_t i = 0; i < d_.hot; ++i)
        place(1, [&](uint32_t x, uint32_t y) { add(x, y, DefectKind::Hot, hotLevel()); });
    for (uint32_t i = 0; i < d_.dead; ++i)
        place(1, [&](uint32_t x, uint32_t y) { add(x, y, DefectKind::Dead, 0); });
    for (uint32_t i = 0; i < d_.stuck; ++i)
        place(1, [&](uint32_t x, uint32_t y) { add(x, y, DefectKind::Stuck, 230); });
    for (uint32_t i = 0; i < d_.clusters; ++i) {
        const uint32_t length = isColor() ? 2 : 2 + static_cast<uint32_t>(random() % 2);
        place(length, [&](uint32_t x, uint32_t y) {
            for (uint32_t k = 0; k < length; ++k)
                add(x + k, y, DefectKind::Cluster, hotLevel());
        });
    }
    // Kinds added later are seeded after the others, so that sensors described
    // before keep their defects where they were.
    for (uint32_t i = 0; i < d_.weak; ++i)
        place(1, [&](uint32_t x, uint32_t y) { add(x, y, DefectKind::Weak, 0.9); });
    for (uint32_t i = 0; i < d_.border; ++i) {
        for (int attempt = 0; attempt < 2000; ++attempt) {
            const uint32_t along = static_cast<uint32_t>(random());
            const uint32_t side = static_cast<uint32_t>(random() % 4);
            const uint32_t x = side == 0 ? 0 : side == 1 ? d_.width - 1 : along % d_.width;
            const uint32_t y = side == 2 ? 0 : side == 3 ? d_.height - 1 : along % d_.height;
            if (placeable(x, y, 1, 0)) {
                add(x, y, DefectKind::Border, hotLevel());
                break;
            }
        }
    }
}

// Bayer channels differ a little in sensitivity, as behind a real filter.
double SimSensor::response(uint32_t x, uint32_t y) const
{
    if (!isColor())
        return 1.0;
    static const char* const kOrders[] = {"BayerRG", "BayerGR", "BayerGB", "BayerBG"};
    static const char kChannels[4][5] = {"RGGB", "GRBG", "GBRG", "BGGR"};
    const auto order = std::find(std::begin(kOrders), std::end(kOrders), d_.colorFilter) - std::begin(kOrders);
    switch (kChannels[order][(y % 2) * 2 + x % 2]) {
    case 'R':
        return 0.85;
    case 'B':
        return 0.75;
    default:
        return 1.0;
    }
}

std::vector<uint8_t> SimSensor::frame(uint64_t frameIndex, double exposureUs, double lightPercent,
                                      double gainDb) const
{
    const double signal = d_.brightLevel * (lightPercent / 100.0) * (exposureUs / 10000.0);
    const double gain = gainDb == 0 ? 1.0 : std::pow(10.0, gainDb / 20.0);
    std::vector<double> value(size_t(d_.width) * d_.height);
    for (uint32_t y = 0; y < d_.height; ++y) {
        const double rowSignal[2] = {signal * response(0, y), signal * response(1, y)};
        for (uint32_t x = 0; x < d_.width; ++x)
            value[size_t(y) * d_.width + x] = d_.darkLevel + rowSignal[x % 2];
    }
    for (const Defect& p : pixels_) {
        switch (p.kind) {
        case DefectKind::Hot:
        case DefectKind::Cluster:
        case DefectKind::Border:
            value[p.index] += p.level;
            break;
        case DefectKind::Weak:
            value[p.index] = d_.darkLevel + (value[p.index] - d_.darkLevel) * p.level;
            break;
        case DefectKind::Dead:
            value[p.index] = d_.darkLevel;
            break;
        case DefectKind::Stuck:
            value[p.index] = p.level;
            break;
        }
    }
    const uint64_t frameSeed = mix(d_.seed ^ mix(frameIndex));
    const bool wide = d_.bitDepth > 8;
    const double scale = double(1u << (d_.bitDepth - 8));
    const long top = (1l << d_.bitDepth) - 1;
    std::vector<uint8_t> pixels(value.size() * (wide ? 2 : 1));
    for (size_t i = 0; i < value.size(); ++i) {
        const double unit = double(mix(frameSeed + i) >> 11) / double(1ull << 53); // [0, 1)
        const double v = (value[i] + (unit * 2.0 - 1.0) * d_.noise) * gain;
        if (!wide) {
            pixels[i] = static_cast<uint8_t>(std::clamp(std::lround(v), 0l, 255l));
            continue;
        }
        const auto w = static_cast<uint16_t>(std::clamp(std::lround(v * scale), 0l, top));
        pixels[2 * i] = static_cast<uint8_t>(w & 0xFF);
        pixels[2 * i + 1] = static_cast<uint8_t>(w >> 8);
    }
    return pixels;
}

} // namespace ZebCPP
