#pragma once

#include "zebtypes.h"

#include <vector>

namespace ZebCPP {

class FeatureContainerBackend;

// An object that carries features: camera, interface, stream.
class FeatureContainer {
public:
    FeatureContainer(const FeatureContainer&) = delete;
    FeatureContainer& operator=(const FeatureContainer&) = delete;
    virtual ~FeatureContainer();

    // ZebErrorNotFound for a name the container does not know; ZebErrorBadParameter
    // for a null name.
    ZebErrorType GetFeatureByName(const char* name, FeaturePtr& feature);
    // A null array asks for the count.
    ZebErrorType GetFeatures(FeaturePtr* features, uint32_t& size);
    ZebErrorType GetFeatures(std::vector<FeaturePtr>& features);

protected:
    explicit FeatureContainer(std::shared_ptr<FeatureContainerBackend> backend);

private:
    std::shared_ptr<FeatureContainerBackend> containerBackend_;
};

} // namespace ZebCPP
