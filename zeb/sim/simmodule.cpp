#include "sim/simmodule.h"

#include "sim/simworld.h"

#include <fstream>
#include <sstream>

namespace ZebCPP {

namespace {

class SimModule : public TransportModule {
public:
    explicit SimModule(std::shared_ptr<SimWorld> world) : world_(std::move(world)) {}

    std::vector<TransportLayerBackendPtr> transportLayers() override { return world_->transportLayers(); }
    void shutdown() override { world_->shutdown(); }

private:
    std::shared_ptr<SimWorld> world_;
};

bool readText(const std::string& path, std::string& text)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return false;
    std::ostringstream content;
    content << file.rdbuf();
    text = content.str();
    return true;
}

} // namespace

std::unique_ptr<TransportModule> loadSimModule(const std::string& config, ZebErrorType* error)
{
    std::string text = simDefaultCameraSetJson();
    if (config != "default" && !readText(config, text)) {
        *error = ZebErrorNotFound;
        return nullptr;
    }
    SimCameraSet set;
    std::shared_ptr<SimWorld> world;
    if (parseSimCameraSet(text, set, nullptr))
        world = SimWorld::create(set);
    if (!world) {
        *error = ZebErrorInvalidValue;
        return nullptr;
    }
    return std::make_unique<SimModule>(std::move(world));
}

} // namespace ZebCPP
