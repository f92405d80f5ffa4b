#include "sim/simmodule.h"

namespace ZebCPP {

std::unique_ptr<TransportModule> loadSimModule(const std::string&, ZebErrorType* error)
{
    *error = ZebErrorNotImplemented;
    return nullptr;
}

} // namespace ZebCPP
