#pragma once

#include "transportmodule.h"
#include "zebtypes.h"

#include <string>

namespace ZebCPP {

// Loads the simulated cameras: "default" for the built-in set, else the path of
// a JSON camera set. Null with *error set when the set cannot be loaded.
std::unique_ptr<TransportModule> loadSimModule(const std::string& config, ZebErrorType* error);

} // namespace ZebCPP
