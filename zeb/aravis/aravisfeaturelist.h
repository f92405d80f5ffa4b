#pragma once

#include "aravis/aravissession.h"
#include "featurebackend.h"

#include <memory>

namespace ZebCPP {

// Feature lookup shared by cameras and streams of one session.
ZebErrorType aravisFeatureByName(const std::shared_ptr<AravisSession>& session, const std::string& name,
                                 FeatureBackendPtr& feature);
// The features of the session's description whose names pass `keep`.
ZebErrorType aravisFeatureList(const std::shared_ptr<AravisSession>& session, std::vector<FeatureBackendPtr>& features,
                               bool (*keep)(const std::string& name));

} // namespace ZebCPP
