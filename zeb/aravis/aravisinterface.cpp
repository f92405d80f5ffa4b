#include "aravis/aravisinterface.h"

namespace ZebCPP {

AravisInterface::AravisInterface(std::string id, std::string name, InterfaceType type)
    : id_(std::move(id)), name_(std::move(name)), type_(type)
{
}

ZebErrorType AravisInterface::feature(const std::string&, FeatureBackendPtr&)
{
    return ZebErrorNotFound;
}

ZebErrorType AravisInterface::features(std::vector<FeatureBackendPtr>& features)
{
    features.clear();
    return ZebErrorSuccess;
}

} // namespace ZebCPP
