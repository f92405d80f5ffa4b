#include "sim/siminterface.h"

namespace ZebCPP {

SimInterface::SimInterface(SimInterfaceDescription description, InterfaceType type)
    : description_(std::move(description)), type_(type)
{
}

ZebErrorType SimInterface::feature(const std::string&, FeatureBackendPtr&)
{
    return ZebErrorNotFound;
}

ZebErrorType SimInterface::features(std::vector<FeatureBackendPtr>& features)
{
    features.clear();
    return ZebErrorSuccess;
}

} // namespace ZebCPP
