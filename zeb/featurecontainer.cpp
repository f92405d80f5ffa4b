#include "featurecontainer.h"

#include "feature.h"
#include "featurebackend.h"
#include "zebboundary.h"

namespace ZebCPP {

FeatureContainer::FeatureContainer(std::shared_ptr<FeatureContainerBackend> backend)
    : containerBackend_(std::move(backend))
{
}

FeatureContainer::~FeatureContainer() = default;

ZebErrorType FeatureContainer::GetFeatureByName(const char* name, FeaturePtr& feature)
{
    if (name == nullptr)
        return ZebErrorBadParameter;
    return guarded([&] {
        FeatureBackendPtr backend;
        const ZebErrorType err = containerBackend_->feature(name, backend);
        if (err == ZebErrorSuccess)
            feature = std::make_shared<Feature>(std::move(backend));
        return err;
    });
}

ZebErrorType FeatureContainer::GetFeatures(FeaturePtr* features, uint32_t& size)
{
    return guarded([&] {
        std::vector<FeaturePtr> list;
        const ZebErrorType err = GetFeatures(list);
        return err == ZebErrorSuccess ? copyList(list, features, size) : err;
    });
}

ZebErrorType FeatureContainer::GetFeatures(std::vector<FeaturePtr>& features)
{
    return guarded([&] {
        std::vector<FeatureBackendPtr> backends;
        const ZebErrorType err = containerBackend_->features(backends);
        if (err != ZebErrorSuccess)
            return err;
        std::vector<FeaturePtr> list;
        for (FeatureBackendPtr& backend : backends)
            list.push_back(std::make_shared<Feature>(std::move(backend)));
        features = std::move(list);
        return ZebErrorSuccess;
    });
}

} // namespace ZebCPP
