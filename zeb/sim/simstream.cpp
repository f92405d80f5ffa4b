#include "sim/simstream.h"

namespace ZebCPP {

SimStream::SimStream(std::shared_ptr<SimCamera> camera, uint64_t connection, std::string id)
    : camera_(std::move(camera)), connection_(connection), id_(std::move(id))
{
}

ZebErrorType SimStream::feature(const std::string& name, FeatureBackendPtr& feature)
{
    return camera_->feature(connection_, true, name, feature);
}

ZebErrorType SimStream::features(std::vector<FeatureBackendPtr>& features)
{
    return camera_->features(connection_, true, features);
}

} // namespace ZebCPP
