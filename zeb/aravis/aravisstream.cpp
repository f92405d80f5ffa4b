#include "aravis/aravisstream.h"

#include "aravis/aravisfeature.h"
#include "aravis/aravisfeaturelist.h"

namespace ZebCPP {

AravisStream::AravisStream(std::shared_ptr<AravisSession> session, std::string id)
    : session_(std::move(session)), id_(std::move(id))
{
}

bool AravisStream::isStreamFeature(const std::string& name)
{
    return name.rfind("GVSP", 0) == 0 || name.rfind("GevSCP", 0) == 0;
}

ZebErrorType AravisStream::feature(const std::string& name, FeatureBackendPtr& feature)
{
    // Through the session all the same: a closed camera answers DeviceNotOpen.
    if (!isStreamFeature(name))
        return session_->run([](ArvDevice*, GError**) { return ZebErrorNotFound; });
    return aravisFeatureByName(session_, name, feature);
}

ZebErrorType AravisStream::features(std::vector<FeatureBackendPtr>& features)
{
    return aravisFeatureList(session_, features, &AravisStream::isStreamFeature);
}

} // namespace ZebCPP
