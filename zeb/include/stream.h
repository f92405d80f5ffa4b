#pragma once

#include "featurecontainer.h"

#include <string>

namespace ZebCPP {

class StreamBackend;

// An image channel of a camera; its features tune the transport (packet size,
// protocol). Its calls follow the camera: closed gives ZebErrorDeviceNotOpen.
class Stream : public FeatureContainer {
public:
    explicit Stream(std::shared_ptr<StreamBackend> backend);
    ~Stream() override;

    ZebErrorType GetID(char* id, uint32_t& length) const;
    ZebErrorType GetID(std::string& id) const;

private:
    std::shared_ptr<StreamBackend> backend_;
};

} // namespace ZebCPP
