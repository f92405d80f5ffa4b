#pragma once

#include <cstdint>

// Unsigned 32-bit division by a divisor fixed for a whole image, done with a
// multiply and shifts so that a pixel loop vectorises. The quotient equals n / d
// for every 32-bit n and every d >= 1 (Granlund and Montgomery, "Division by
// invariant integers using multiplication", figure 4.1).
class ExactDivider {
public:
    explicit ExactDivider(uint32_t divisor)
    {
        int log2Ceil = 0;
        while ((uint64_t(1) << log2Ceil) < divisor)
            ++log2Ceil;
        const uint64_t excess = (uint64_t(1) << log2Ceil) - divisor;
        m_multiplier = uint32_t(((excess << 32) / divisor) + 1);
        m_shift1 = log2Ceil > 0 ? 1 : 0;
        m_shift2 = log2Ceil > 0 ? log2Ceil - 1 : 0;
    }

    uint32_t divide(uint32_t n) const
    {
        const uint32_t high = uint32_t((uint64_t(n) * m_multiplier) >> 32);
        return (high + ((n - high) >> m_shift1)) >> m_shift2;
    }

private:
    uint32_t m_multiplier;
    int m_shift1;
    int m_shift2;
};

// The same for 16-bit numerators and divisors, so that a loop can keep eight or
// sixteen lanes per vector: exact for every n < 2^16 and 1 <= d < 2^16.
class ExactDivider16 {
public:
    explicit ExactDivider16(uint16_t divisor)
    {
        int log2Ceil = 0;
        while ((uint32_t(1) << log2Ceil) < divisor)
            ++log2Ceil;
        const uint32_t excess = (uint32_t(1) << log2Ceil) - divisor;
        m_multiplier = uint16_t(((excess << 16) / divisor) + 1);
        m_shift1 = log2Ceil > 0 ? 1 : 0;
        m_shift2 = log2Ceil > 0 ? log2Ceil - 1 : 0;
    }

    uint16_t divide(uint16_t n) const
    {
        const uint16_t high = uint16_t((uint32_t(n) * m_multiplier) >> 16);
        return uint16_t((high + uint16_t((n - high) >> m_shift1)) >> m_shift2);
    }

private:
    uint16_t m_multiplier;
    int m_shift1;
    int m_shift2;
};

// Division of a box sum of at most 21 bytes (n <= 21 * 255) by a window size
// d in 1 ... 21 with one 16 x 16-bit multiply: q = (n * m) >> k where
// m = ceil(2^k / d) < 2^16. The rounding error n * (m * d - 2^k) stays below
// 2^k over that range, so the quotient is exact.
class WindowDivider {
public:
    explicit WindowDivider(uint32_t windowSize = 21)
    {
        m_shift = 31;
        while (((uint64_t(1) << m_shift) + windowSize - 1) / windowSize >= 65536)
            --m_shift;
        m_multiplier = uint16_t(((uint64_t(1) << m_shift) + windowSize - 1) / windowSize);
    }

    uint32_t divide(uint16_t n) const { return (uint32_t(n) * m_multiplier) >> m_shift; }

    static constexpr uint32_t maxSum = 21 * 255;

private:
    uint16_t m_multiplier;
    int m_shift;
};
