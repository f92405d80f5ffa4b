#pragma once

#include "transportbackend.h"

namespace ZebCPP {

// A network interface (GigE Vision) or the USB host (USB3 Vision) cameras were
// found on; it has no features of its own.
class AravisInterface : public InterfaceBackend {
public:
    AravisInterface(std::string id, std::string name, InterfaceType type);

    std::string id() const override { return id_; }
    std::string name() const override { return name_; }
    InterfaceType type() const override { return type_; }
    ZebErrorType feature(const std::string& name, FeatureBackendPtr& feature) override;
    ZebErrorType features(std::vector<FeatureBackendPtr>& features) override;

private:
    std::string id_;
    std::string name_;
    InterfaceType type_;
};

} // namespace ZebCPP
