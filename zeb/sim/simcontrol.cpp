#include "sim/simcontrol.h"

#include "sim/simworld.h"

namespace ZebCPP {
namespace SimControl {

namespace {

// The world of the running SDK, or why there is none.
ZebErrorType world(std::shared_ptr<SimWorld>& out)
{
    out = SimWorld::current();
    return out ? ZebErrorSuccess : ZebErrorNoTransportLayer;
}

template <typename Call>
ZebErrorType onCamera(const std::string& name, Call&& call)
{
    try {
        std::shared_ptr<SimWorld> w;
        const ZebErrorType err = world(w);
        if (err != ZebErrorSuccess)
            return err;
        const std::shared_ptr<SimCamera> camera = w->find(name);
        return camera ? call(*camera) : ZebErrorNotFound;
    } catch (...) {
        return ZebErrorInternalFault;
    }
}

} // namespace

const char* DefaultCameraSet()
{
    return simDefaultCameraSetJson();
}

ZebErrorType PlugCamera(const std::string& cameraJson)
{
    try {
        std::shared_ptr<SimWorld> w;
        const ZebErrorType err = world(w);
        if (err != ZebErrorSuccess)
            return err;
        SimCameraDescription description;
        if (!parseSimCamera(cameraJson, description, nullptr))
            return ZebErrorBadParameter;
        return w->plug(description);
    } catch (...) {
        return ZebErrorInternalFault;
    }
}

ZebErrorType UnplugCamera(const std::string& camera)
{
    std::shared_ptr<SimWorld> w;
    const ZebErrorType err = world(w);
    return err == ZebErrorSuccess ? w->unplug(camera) : err;
}

ZebErrorType ReplugCamera(const std::string& camera)
{
    std::shared_ptr<SimWorld> w;
    const ZebErrorType err = world(w);
    return err == ZebErrorSuccess ? w->replug(camera) : err;
}

ZebErrorType SetPermittedAccess(const std::string& camera, AccessModeType access)
{
    return onCamera(camera, [&](SimCamera& c) { return c.setPermittedAccess(access); });
}

ZebErrorType SetStreaming(const std::string& camera, bool streaming)
{
    return onCamera(camera, [&](SimCamera& c) { return c.setStreaming(streaming); });
}

ZebErrorType SetIllumination(const std::string& camera, double percent)
{
    if (!(percent >= 0 && percent <= 100))
        return ZebErrorInvalidValue;
    return onCamera(camera, [&](SimCamera& c) { return c.setIllumination(percent); });
}

ZebErrorType InjectFault(const std::string& camera, FaultKind kind, uint32_t nth, ZebErrorType code,
                         uint32_t times)
{
    if (nth == 0 || times == 0 || code == ZebErrorSuccess || kind < FaultKind::FeatureRead
        || kind > FaultKind::Acquisition)
        return ZebErrorBadParameter;
    return onCamera(camera, [&](SimCamera& c) { return c.injectFault(kind, nth, code, times); });
}

ZebErrorType DisconnectAfterBytes(const std::string& camera, uint64_t bytes)
{
    return onCamera(camera, [&](SimCamera& c) { return c.disconnectAfterBytes(bytes); });
}

ZebErrorType ClearFaults(const std::string& camera)
{
    return onCamera(camera, [&](SimCamera& c) { return c.clearFaults(); });
}

const char* DefectKindName(DefectKind kind)
{
    switch (kind) {
    case DefectKind::Hot:
        return "hot";
    case DefectKind::Dead:
        return "dead";
    case DefectKind::Stuck:
        return "stuck";
    case DefectKind::Cluster:
        return "cluster";
    case DefectKind::Weak:
        return "weak";
    case DefectKind::Border:
        return "border";
    }
    return "";
}

ZebErrorType GetDefects(const std::string& camera, std::vector<SimDefect>& defects)
{
    return onCamera(camera, [&](SimCamera& c) {
        defects = c.defects();
        return ZebErrorSuccess;
    });
}

ZebErrorType GetStoredMap(const std::string& camera, uint32_t slot, std::vector<SimMapEntry>& entries)
{
    return onCamera(camera, [&](SimCamera& c) { return c.storedMap(slot, entries); });
}

ZebErrorType GetDeviceFile(const std::string& camera, const std::string& fileName, std::vector<uint8_t>& content)
{
    return onCamera(camera, [&](SimCamera& c) { return c.deviceFile(fileName, content); });
}

} // namespace SimControl
} // namespace ZebCPP
