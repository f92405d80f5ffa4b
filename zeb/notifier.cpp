#include "notifier.h"

namespace ZebCPP {

Notifier::Notifier() : thread_([this] { run(); }) {}

Notifier::~Notifier()
{
    stop();
}

void Notifier::post(std::function<void()> job)
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (stopping_)
            return;
        jobs_.push_back(std::move(job));
    }
    wake_.notify_one();
}

void Notifier::stop()
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable() && thread_.get_id() != std::this_thread::get_id())
        thread_.join();
}

void Notifier::run()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
        if (jobs_.empty())
            return;
        std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        try {
            job();
        } catch (...) {
            // An observer's exception must not end the SDK's thread.
        }
        lock.lock();
    }
}

} // namespace ZebCPP
