#pragma once

#include "sim/simcamera.h"
#include "transportbackend.h"

namespace ZebCPP {

// The single stream of a simulated camera; its features live in the camera.
class SimStream : public StreamBackend {
public:
    SimStream(std::shared_ptr<SimCamera> camera, uint64_t connection, std::string id);

    std::string id() const override { return id_; }
    ZebErrorType feature(const std::string& name, FeatureBackendPtr& feature) override;
    ZebErrorType features(std::vector<FeatureBackendPtr>& features) override;

private:
    std::shared_ptr<SimCamera> camera_;
    uint64_t connection_;
    std::string id_;
};

} // namespace ZebCPP
