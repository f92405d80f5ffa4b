#include "aravis/aravismodule.h"

#include "aravis/aravisdiscovery.h"
#include "aravis/aravistransportlayer.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <sstream>
#include <thread>

namespace ZebCPP {

namespace {

constexpr std::chrono::seconds kPollInterval{1};

std::vector<std::string> addressList(const std::string& text)
{
    std::vector<std::string> addresses;
    std::istringstream stream(text);
    std::string item;
    while (std::getline(stream, item, ',')) {
        const size_t first = item.find_first_not_of(" \t");
        const size_t last = item.find_last_not_of(" \t");
        if (first != std::string::npos)
            addresses.push_back(item.substr(first, last - first + 1));
    }
    return addresses;
}

class AravisModule : public TransportModule {
public:
    // broadcast false: GigE Vision only at `addresses`.
    AravisModule(bool broadcast, std::vector<std::string> addresses)
        : broadcast_(broadcast), addresses_(std::move(addresses)),
          gigE_(std::make_shared<AravisTransportLayer>(InterfaceTypeGigEVision)),
          usb3_(std::make_shared<AravisTransportLayer>(InterfaceTypeUsb3Vision))
    {
        // The first round completes before the SDK reads the lists.
        poll(true);
        thread_ = std::thread([this] { run(); });
    }

    ~AravisModule() override { stop(); }

    std::vector<TransportLayerBackendPtr> transportLayers() override { return {gigE_, usb3_}; }

    void shutdown() override
    {
        stop();
        arv_shutdown(); // drops libaravis's interface lists
    }

private:
    void stop()
    {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            stopping_ = true;
        }
        wake_.notify_all();
        if (thread_.joinable())
            thread_.join();
    }

    void run()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        while (!wake_.wait_for(lock, kPollInterval, [this] { return stopping_; })) {
            lock.unlock();
            poll(false);
            lock.lock();
        }
    }

    // Rounds wait for the SDK's event sink: a camera found between the SDK
    // reading the lists and connecting the sink would never be reported.
    void poll(bool initial)
    {
        if (initial || gigE_->hasEvents()) {
            const auto started = std::chrono::steady_clock::now();
            gigE_->update(broadcast_ ? discoverGigEVisionByBroadcast() : discoverGigEVisionAt(addresses_), started);
        }
        if (initial || usb3_->hasEvents()) {
            const auto started = std::chrono::steady_clock::now();
            usb3_->update(discoverUsb3Vision(), started);
        }
    }

    const bool broadcast_;
    const std::vector<std::string> addresses_;
    std::shared_ptr<AravisTransportLayer> gigE_;
    std::shared_ptr<AravisTransportLayer> usb3_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    std::thread thread_;
};

} // namespace

std::unique_ptr<TransportModule> loadAravisModule()
{
    const char* addresses = std::getenv("ZEB_GEV_ADDRESSES");
    if (addresses == nullptr && std::getenv("ZEB_SIM_CAMERAS") != nullptr)
        return nullptr;
    if (addresses == nullptr)
        return std::make_unique<AravisModule>(true, std::vector<std::string>());
    return std::make_unique<AravisModule>(false, addressList(addresses));
}

} // namespace ZebCPP
