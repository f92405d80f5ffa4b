#include "aravis/aravisfeaturelist.h"

#include "aravis/aravisfeature.h"

namespace ZebCPP {

namespace {

// Feature nodes below parent; descriptions may gather them in <Group> elements,
// which are nameless feature nodes themselves.
void collectFeatures(const std::shared_ptr<AravisSession>& session, ArvDomNode* parent,
                     bool (*keep)(const std::string& name), std::vector<FeatureBackendPtr>& list)
{
    for (ArvDomNode* child = arv_dom_node_get_first_child(parent); child != nullptr;
         child = arv_dom_node_get_next_sibling(child)) {
        if (ARV_IS_GC_GROUP_NODE(child)) {
            collectFeatures(session, child, keep, list);
            continue;
        }
        if (!ARV_IS_GC_FEATURE_NODE(child))
            continue;
        const char* name = arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(child));
        const FeatureDataType type = aravisDataTypeOf(ARV_GC_NODE(child));
        if (name != nullptr && type != FeatureDataUnknown && type != FeatureDataNone && keep(name))
            list.push_back(std::make_shared<AravisFeature>(session, name, type));
    }
}

} // namespace

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
        if (root != nullptr)
            collectFeatures(session, ARV_DOM_NODE(root), keep, list);
        features = std::move(list);
        return ZebErrorSuccess;
    });
}

} // namespace ZebCPP
