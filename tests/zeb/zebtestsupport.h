#pragma once

#include "ZebCPP.h"
#include "sim/simcontrol.h"

#include <QtTest>

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

// Shared steps of the SDK and camera suites: start the SDK on a simulated camera
// set, open cameras of the built-in set, and read what their map slots hold.

namespace ZebTest {

// Serial numbers of the built-in set.
inline const char* const kMonoFile = "KV1230001";     // file access, revision 3, big-endian GigE
inline const char* const kColorFile = "PM5000002";    // file access, revision 4, USB3, read-only length
inline const char* const kRegister = "RY1300003";     // register mode, big-endian GigE
inline const char* const kHeld = "TB2000005";         // read-only permitted access

// Only the simulated cameras: without GigE Vision addresses the SDK loads no
// real transport layer next to them, so the counts below are the set's own.
inline ZebCPP::ZebErrorType startSdk(const char* cameraSet = "default")
{
    qunsetenv("ZEB_GEV_ADDRESSES");
    qputenv("ZEB_SIM_CAMERAS", cameraSet);
    return ZebCPP::ZebSystem::GetInstance().Startup();
}

inline void stopSdk()
{
    ZebCPP::ZebSystem::GetInstance().Shutdown();
}

// By serial number, or by plain or extended ID.
inline ZebCPP::CameraPtr cameraBySerial(const std::string& serial)
{
    ZebCPP::CameraPtr byId;
    if (ZebCPP::ZebSystem::GetInstance().GetCameraByID(serial.c_str(), byId) == ZebCPP::ZebErrorSuccess)
        return byId;
    std::vector<ZebCPP::CameraPtr> cameras;
    ZebCPP::ZebSystem::GetInstance().GetCameras(cameras);
    for (const ZebCPP::CameraPtr& camera : cameras) {
        std::string s;
        camera->GetSerialNumber(s);
        if (s == serial)
            return camera;
    }
    return nullptr;
}

// Null when the camera is unknown or cannot be opened.
inline ZebCPP::CameraPtr openCamera(const std::string& serial)
{
    ZebCPP::CameraPtr camera = cameraBySerial(serial);
    if (camera && camera->Open(ZebCPP::AccessModeFull) != ZebCPP::ZebErrorSuccess)
        return nullptr;
    return camera;
}

// What a simulated camera's map slot holds now (slot 0 is the factory map).
inline std::vector<ZebCPP::SimControl::SimMapEntry> storedMap(const std::string& camera, uint32_t slot)
{
    std::vector<ZebCPP::SimControl::SimMapEntry> entries;
    ZebCPP::SimControl::GetStoredMap(camera, slot, entries);
    return entries;
}

inline ZebCPP::FeaturePtr feature(const ZebCPP::CameraPtr& camera, const char* name)
{
    ZebCPP::FeaturePtr f;
    if (camera)
        camera->GetFeatureByName(name, f);
    return f;
}

// Records what the SDK reported about cameras, and on which thread; `serial`
// keeps only the reports of that camera.
class ListRecorder : public ZebCPP::ICameraListObserver {
public:
    struct Call {
        std::string serial;
        ZebCPP::UpdateTriggerType reason;
        std::thread::id thread;
    };

    explicit ListRecorder(std::string serial = {}) : only_(std::move(serial)) {}

    void CameraListChanged(ZebCPP::CameraPtr camera, ZebCPP::UpdateTriggerType reason) override
    {
        std::string serial;
        camera->GetSerialNumber(serial);
        if (!only_.empty() && serial != only_)
            return;
        std::lock_guard<std::mutex> lock(mutex);
        calls.push_back({serial, reason, std::this_thread::get_id()});
        changed_.notify_all();
    }

    // Waits for the next report of this reason (the SDK thread may lag behind);
    // false after the timeout.
    bool waitFor(ZebCPP::UpdateTriggerType reason, int timeoutMs = 5000, std::thread::id* thread = nullptr)
    {
        std::unique_lock<std::mutex> lock(mutex);
        return changed_.wait_for(lock, std::chrono::milliseconds(timeoutMs), [&] {
            for (; consumed_ < calls.size(); ++consumed_) {
                if (calls[consumed_].reason == reason) {
                    if (thread != nullptr)
                        *thread = calls[consumed_].thread;
                    ++consumed_;
                    return true;
                }
            }
            return false;
        });
    }

    std::mutex mutex;
    std::vector<Call> calls;

private:
    std::condition_variable changed_;
    std::string only_;
    size_t consumed_ = 0;
};

} // namespace ZebTest

namespace ZebCPP::SimControl {
inline bool operator==(const SimMapEntry& a, const SimMapEntry& b)
{
    return a.x == b.x && a.y == b.y && a.type == b.type;
}
} // namespace ZebCPP::SimControl
