#pragma once

#include "sim/simdescription.h"
#include "transportbackend.h"

namespace ZebCPP {

// A simulated network card or USB controller; it has no features of its own.
class SimInterface : public InterfaceBackend {
public:
    SimInterface(SimInterfaceDescription description, InterfaceType type);

    std::string id() const override { return description_.id; }
    std::string name() const override { return description_.name; }
    InterfaceType type() const override { return type_; }
    ZebErrorType feature(const std::string& name, FeatureBackendPtr& feature) override;
    ZebErrorType features(std::vector<FeatureBackendPtr>& features) override;

private:
    SimInterfaceDescription description_;
    InterfaceType type_;
};

} // namespace ZebCPP
