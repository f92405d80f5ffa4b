#include "sim/simfaults.h"

namespace ZebCPP {

void SimFaults::arm(SimControl::FaultKind kind, uint32_t nth, ZebErrorType code, uint32_t times)
{
    armed_[static_cast<size_t>(kind)] = {nth, code, times == 0 ? 1 : times};
}

void SimFaults::clear()
{
    armed_ = {};
    byteBudget_.reset();
}

ZebErrorType SimFaults::hit(SimControl::FaultKind kind)
{
    Armed& armed = armed_[static_cast<size_t>(kind)];
    if (armed.remaining == 0 || --armed.remaining > 0)
        return ZebErrorSuccess;
    if (--armed.times > 0)
        armed.remaining = 1; // the next one fails too
    return armed.code;
}

bool SimFaults::transfer(uint64_t bytes)
{
    if (!byteBudget_)
        return true;
    if (bytes > *byteBudget_) {
        byteBudget_ = 0;
        return false;
    }
    *byteBudget_ -= bytes;
    return true;
}

} // namespace ZebCPP
