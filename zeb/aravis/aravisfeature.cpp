#include "aravis/aravisfeature.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace ZebCPP {

namespace {

// No camera register is this large; a description claiming more is broken, and
// its figure must not size a buffer.
constexpr guint64 kMaxRegisterLength = 16u << 20;

bool isType(FeatureDataType type, std::initializer_list<FeatureDataType> types)
{
    return std::find(types.begin(), types.end(), type) != types.end();
}

// What the description allows now: implemented, available, and the access mode
// (a write also needs the control channel and an unlocked node).
bool accessible(ArvGcNode* node, bool write, bool control, GError** error)
{
    ArvGcFeatureNode* feature = ARV_GC_FEATURE_NODE(node);
    if (!arv_gc_feature_node_is_implemented(feature, error) || *error != nullptr)
        return false;
    if (!arv_gc_feature_node_is_available(feature, error) || *error != nullptr)
        return false;
    const ArvGcAccessMode mode = arv_gc_feature_node_get_actual_access_mode(feature);
    if (!write)
        return mode == ARV_GC_ACCESS_MODE_RO || mode == ARV_GC_ACCESS_MODE_RW;
    if (!control || (mode != ARV_GC_ACCESS_MODE_WO && mode != ARV_GC_ACCESS_MODE_RW))
        return false;
    return !arv_gc_feature_node_is_locked(feature, error) && *error == nullptr;
}

ArvGcEnumEntry* entryOf(ArvGcNode* node, const std::string& name)
{
    for (const GSList* it = arv_gc_enumeration_get_entries(ARV_GC_ENUMERATION(node)); it != nullptr; it = it->next) {
        auto* entry = ARV_GC_ENUM_ENTRY(it->data);
        if (name == arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(entry)))
            return entry;
    }
    return nullptr;
}

} // namespace

FeatureDataType aravisDataTypeOf(ArvGcNode* node)
{
    if (node == nullptr || !ARV_IS_GC_FEATURE_NODE(node) || ARV_IS_GC_ENUM_ENTRY(node))
        return FeatureDataUnknown;
    // Enumerations also offer the integer and string interfaces, registers
    // with a value the integer or string one: the most specific type wins.
    if (ARV_IS_GC_COMMAND(node))
        return FeatureDataCommand;
    if (ARV_IS_GC_ENUMERATION(node))
        return FeatureDataEnum;
    if (ARV_IS_GC_BOOLEAN(node))
        return FeatureDataBool;
    if (ARV_IS_GC_INTEGER(node))
        return FeatureDataInt;
    if (ARV_IS_GC_FLOAT(node))
        return FeatureDataFloat;
    if (ARV_IS_GC_STRING(node))
        return FeatureDataString;
    if (ARV_IS_GC_REGISTER(node))
        return FeatureDataRaw;
    if (ARV_IS_GC_CATEGORY(node))
        return FeatureDataNone;
    return FeatureDataUnknown;
}

AravisFeature::AravisFeature(std::shared_ptr<AravisSession> session, std::string name, FeatureDataType type)
    : session_(std::move(session)), name_(std::move(name)), type_(type)
{
}

ZebErrorType AravisFeature::call(std::initializer_list<FeatureDataType> types, Use use, const NodeBody& body)
{
    if (!isType(type_, types))
        return ZebErrorWrongType;
    const bool control = session_->hasControl();
    return session_->run([&](ArvDevice* device, GError** error) {
        ArvGcNode* node = arv_gc_get_node(arv_device_get_genicam(device), name_.c_str());
        if (aravisDataTypeOf(node) != type_)
            return ZebErrorNotFound;
        if (use != Use::Query && !accessible(node, use == Use::Write, control, error))
            return ZebErrorInvalidAccess;
        return body(device, node, error);
    });
}

ZebErrorType AravisFeature::isReadable(bool& readable)
{
    const bool control = session_->hasControl();
    return session_->run([&](ArvDevice* device, GError** error) {
        ArvGcNode* node = arv_gc_get_node(arv_device_get_genicam(device), name_.c_str());
        if (node == nullptr)
            return ZebErrorNotFound;
        readable = type_ != FeatureDataCommand && type_ != FeatureDataNone && accessible(node, false, control, error);
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::isWritable(bool& writable)
{
    const bool control = session_->hasControl();
    return session_->run([&](ArvDevice* device, GError** error) {
        ArvGcNode* node = arv_gc_get_node(arv_device_get_genicam(device), name_.c_str());
        if (node == nullptr)
            return ZebErrorNotFound;
        writable = type_ != FeatureDataNone && accessible(node, true, control, error);
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::getInt(int64_t& value)
{
    return call({FeatureDataInt, FeatureDataEnum}, Use::Read, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const gint64 v = type_ == FeatureDataEnum ? arv_gc_enumeration_get_int_value(ARV_GC_ENUMERATION(node), error)
                                                  : arv_gc_integer_get_value(ARV_GC_INTEGER(node), error);
        if (*error == nullptr)
            value = v;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::setInt(int64_t value)
{
    return call({FeatureDataInt, FeatureDataEnum}, Use::Write, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        if (type_ == FeatureDataEnum)
            arv_gc_enumeration_set_int_value(ARV_GC_ENUMERATION(node), value, error);
        else
            arv_gc_integer_set_value(ARV_GC_INTEGER(node), value, error);
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::intRange(int64_t& minimum, int64_t& maximum)
{
    return call({FeatureDataInt}, Use::Query, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const gint64 low = arv_gc_integer_get_min(ARV_GC_INTEGER(node), error);
        const gint64 high = *error == nullptr ? arv_gc_integer_get_max(ARV_GC_INTEGER(node), error) : 0;
        if (*error == nullptr) {
            minimum = low;
            maximum = high;
        }
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::intIncrement(int64_t& increment)
{
    return call({FeatureDataInt}, Use::Query, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const gint64 inc = arv_gc_integer_get_inc(ARV_GC_INTEGER(node), error);
        if (*error == nullptr)
            increment = inc;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::getFloat(double& value)
{
    return call({FeatureDataFloat}, Use::Read, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const double v = arv_gc_float_get_value(ARV_GC_FLOAT(node), error);
        if (*error == nullptr)
            value = v;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::setFloat(double value)
{
    return call({FeatureDataFloat}, Use::Write, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        arv_gc_float_set_value(ARV_GC_FLOAT(node), value, error);
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::floatRange(double& minimum, double& maximum)
{
    return call({FeatureDataFloat}, Use::Query, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const double low = arv_gc_float_get_min(ARV_GC_FLOAT(node), error);
        const double high = *error == nullptr ? arv_gc_float_get_max(ARV_GC_FLOAT(node), error) : 0;
        if (*error == nullptr) {
            minimum = low;
            maximum = high;
        }
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::floatIncrement(double& increment)
{
    return call({FeatureDataFloat}, Use::Query, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const double inc = arv_gc_float_get_inc(ARV_GC_FLOAT(node), error);
        if (*error == nullptr)
            increment = inc;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::getBool(bool& value)
{
    return call({FeatureDataBool}, Use::Read, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const gboolean v = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), error);
        if (*error == nullptr)
            value = v != FALSE;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::setBool(bool value)
{
    return call({FeatureDataBool}, Use::Write, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        arv_gc_boolean_set_value(ARV_GC_BOOLEAN(node), value ? TRUE : FALSE, error);
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::getString(std::string& value)
{
    return call({FeatureDataString, FeatureDataEnum}, Use::Read, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const char* text = type_ == FeatureDataEnum
            ? arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(node), error)
            : arv_gc_string_get_value(ARV_GC_STRING(node), error);
        if (*error == nullptr)
            value = text != nullptr ? text : "";
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::setString(const std::string& value)
{
    return call({FeatureDataString, FeatureDataEnum}, Use::Write, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        if (type_ != FeatureDataEnum) {
            arv_gc_string_set_value(ARV_GC_STRING(node), value.c_str(), error);
            return ZebErrorSuccess;
        }
        // libaravis would pass an unknown entry on as an error of the node tree.
        if (entryOf(node, value) == nullptr)
            return ZebErrorInvalidValue;
        arv_gc_enumeration_set_string_value(ARV_GC_ENUMERATION(node), value.c_str(), error);
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::entries(std::vector<std::string>& names)
{
    return call({FeatureDataEnum}, Use::Query, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        // In the order of the description: the entry list of the node is not.
        std::vector<std::string> list;
        for (ArvDomNode* child = arv_dom_node_get_first_child(ARV_DOM_NODE(node)); child != nullptr;
             child = arv_dom_node_get_next_sibling(child)) {
            if (!ARV_IS_GC_ENUM_ENTRY(child))
                continue;
            auto* entry = ARV_GC_FEATURE_NODE(child);
            if (arv_gc_feature_node_is_implemented(entry, error))
                list.emplace_back(arv_gc_feature_node_get_name(entry));
            if (*error != nullptr)
                return ZebErrorSuccess;
        }
        names = std::move(list);
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::entryValue(const std::string& name, int64_t& value)
{
    return call({FeatureDataEnum}, Use::Query, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        ArvGcEnumEntry* entry = entryOf(node, name);
        if (entry == nullptr)
            return ZebErrorInvalidValue;
        const gint64 v = arv_gc_enum_entry_get_value(entry, error);
        if (*error == nullptr)
            value = v;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::entryAvailable(const std::string& name, bool& available)
{
    return call({FeatureDataEnum}, Use::Query, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        ArvGcEnumEntry* entry = entryOf(node, name);
        if (entry == nullptr)
            return ZebErrorInvalidValue;
        auto* feature = ARV_GC_FEATURE_NODE(entry);
        const bool v = arv_gc_feature_node_is_implemented(feature, error) && *error == nullptr
            && arv_gc_feature_node_is_available(feature, error);
        if (*error == nullptr)
            available = v;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::runCommand()
{
    return call({FeatureDataCommand}, Use::Write, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        arv_gc_command_execute(ARV_GC_COMMAND(node), error);
        return ZebErrorSuccess;
    });
}

// The node tree offers no IsDone for commands: a command counts as done once
// its execution (the acknowledged register write) returned.
ZebErrorType AravisFeature::commandDone(bool& done)
{
    return call({FeatureDataCommand}, Use::Query, [&](ArvDevice*, ArvGcNode*, GError**) {
        done = true;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::getRaw(uint8_t* buffer, uint32_t size, uint32_t& filled)
{
    return call({FeatureDataRaw}, Use::Read, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        auto* reg = ARV_GC_REGISTER(node);
        const guint64 length = arv_gc_register_get_length(reg, error);
        if (*error != nullptr)
            return ZebErrorSuccess;
        if (length > kMaxRegisterLength)
            return ZebErrorInvalidValue;
        // The node only reads whole registers.
        std::vector<uint8_t> whole(length);
        arv_gc_register_get(reg, whole.data(), length, error);
        if (*error != nullptr)
            return ZebErrorSuccess;
        const auto n = static_cast<uint32_t>(std::min<guint64>(size, length));
        if (n > 0)
            std::memcpy(buffer, whole.data(), n);
        filled = n;
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::setRaw(const uint8_t* buffer, uint32_t size)
{
    return call({FeatureDataRaw}, Use::Write, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        auto* reg = ARV_GC_REGISTER(node);
        const guint64 length = arv_gc_register_get_length(reg, error);
        if (*error != nullptr)
            return ZebErrorSuccess;
        if (size > length || length > kMaxRegisterLength)
            return ZebErrorInvalidValue;
        // A short block (the last one of a file transfer) replaces only its own
        // bytes: the node moves whole registers, so the rest is read back first.
        std::vector<uint8_t> whole(length);
        if (size < length)
            arv_gc_register_get(reg, whole.data(), length, error);
        if (*error != nullptr)
            return ZebErrorSuccess;
        if (size > 0)
            std::memcpy(whole.data(), buffer, size);
        arv_gc_register_set(reg, whole.data(), length, error);
        return ZebErrorSuccess;
    });
}

ZebErrorType AravisFeature::rawLength(uint32_t& length)
{
    return call({FeatureDataRaw}, Use::Query, [&](ArvDevice*, ArvGcNode* node, GError** error) {
        const guint64 n = arv_gc_register_get_length(ARV_GC_REGISTER(node), error);
        if (*error != nullptr)
            return ZebErrorSuccess;
        if (n > kMaxRegisterLength)
            return ZebErrorInvalidValue;
        length = static_cast<uint32_t>(n);
        return ZebErrorSuccess;
    });
}

} // namespace ZebCPP
