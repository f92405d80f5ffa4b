#pragma once

#include "sim/simcontrol.h"

#include <array>
#include <optional>

namespace ZebCPP {

// Faults armed on one simulated camera by the test control.
class SimFaults {
public:
    void arm(SimControl::FaultKind kind, uint32_t nth, ZebErrorType code);
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
    };
    std::array<Armed, 9> armed_{};
    std::optional<uint64_t> byteBudget_;
};

} // namespace ZebCPP
