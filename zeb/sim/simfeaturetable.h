#pragma once

#include "sim/simcamerastate.h"
#include "sim/simfeature.h"

#include <memory>
#include <vector>

namespace ZebCPP {

// The features of a simulated camera and of its stream, wired to its state.
std::vector<std::unique_ptr<SimFeatureDef>> buildSimFeatureTable(SimCameraState& state, InterfaceType type);

} // namespace ZebCPP
