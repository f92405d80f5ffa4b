#pragma once

#include "aravis/aravissession.h"
#include "transportbackend.h"

#include <memory>

namespace ZebCPP {

// The image channel of an opened camera. Its features are the stream channel
// features of the camera's own description ("GVSPProtocol", "GevSCPSPacketSize"
// ...): GigE Vision keeps them in the device's register map.
class AravisStream : public StreamBackend {
public:
    AravisStream(std::shared_ptr<AravisSession> session, std::string id);

    std::string id() const override { return id_; }
    ZebErrorType feature(const std::string& name, FeatureBackendPtr& feature) override;
    ZebErrorType features(std::vector<FeatureBackendPtr>& features) override;

    static bool isStreamFeature(const std::string& name);

private:
    std::shared_ptr<AravisSession> session_;
    std::string id_;
};

} // namespace ZebCPP
