#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace ZebCPP {

// The SDK thread that calls the list observers: jobs run one at a time in the
// order they were posted, never on the poster's thread.
class Notifier {
public:
    Notifier();
    ~Notifier();
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;

    void post(std::function<void()> job);
    bool isOwnThread() const { return std::this_thread::get_id() == thread_.get_id(); }
    // Runs what was posted, then ends the thread.
    void stop();

private:
    void run();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> jobs_;
    bool stopping_ = false;
    std::thread thread_;
};

} // namespace ZebCPP
