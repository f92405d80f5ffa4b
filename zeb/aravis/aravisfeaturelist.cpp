#include "aravis/aravisfeaturelist.h"

#include "aravis/aravisfeature.h"

namespace ZebCPP {

ZebErrorType aravisFeatureByName(const std::shared_ptr<AravisSession>& session, const std::string& name,
                                 FeatureBackendPtr& feature)
{
    return session->run([&](ArvDevice* device, GError**) {
        const FeatureDataType type = aravisDataTypeOf(arv_gc_get_node(arv_device_get_genicam(device), name.c_str()));
        if (type == FeatureDataUnknown)
            return ZebErrorNotFound;
        feature = std::make_shared<AravisFeature>(session, name, type);
        return ZebErrorSuccess;
    });
}

ZebErrorType aravisFeatureList(const std::shared_ptr<AravisSession>& session, std::vector<FeatureBackendPtr>& features,
                               bool (*keep)(const std::string& name))
{
    return session->run([&](ArvDevice* device, GError**) {
        std::vector<FeatureBackendPtr> list;
        ArvDomElement* root = arv_dom_document_get_document_element(ARV_DOM_DOCUMENT(arv_device_get_genicam(device)));
        for (ArvDomNode* child = root != nullptr ? arv_dom_node_get_first_child(ARV_DOM_NODE(root)) : nullptr;
             child != nullptr; child = arv_dom_node_get_next_sibling(child)) {
            if (!ARV_IS_GC_FEATURE_NODE(child))
                continue;
            const FeatureDataType type = aravisDataTypeOf(ARV_GC_NODE(child));
            const std::string name = arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(child));
            if (type != FeatureDataUnknown && type != FeatureDataNone && keep(name))
                list.push_back(std::make_shared<AravisFeature>(session, name, type));
        }
        features = std::move(list);
        return ZebErrorSuccess;
    });
}

} // namespace ZebCPP
