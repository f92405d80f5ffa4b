#pragma once

#include "sim/simcontrol.h"

#include <array>
#include <optional>

namespace ZebCPP {

// Faults armed on one simulated camera by the test control.
class SimFaults {
public:
    void arm(SimControl::FaultKind kind, uint32_t nth, ZebErrorType code, uint32_t times = 1);
    void disconnectAfter(uint64_t bytes) { byteBudget_ = bytes; }
    void clear();

    // Counts one operation of the kind; the armed one gets its error code.
    ZebErrorType hit(SimControl::FaultKind kind);
    // Counts bytes moved; false once the budget is spent (the camera is gone).
    bool transfer(uint64_t bytes);

private:
    struct Armed {
        uint32_t remaining = 0; // 0 = nothing armed
        ZebErrorType code = ZebErrorSuccess;
        uint32_t times = 1;     // operations in a row that fail
    };
    std::array<Armed, 10> armed_{};
    std::optional<uint64_t> byteBudget_;
};

} // namespace ZebCPP
