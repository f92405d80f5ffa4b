#pragma once

// Ownership helpers for the GLib objects of libaravis: a strong reference that
// unrefs itself, and a GError that frees itself.

#include <arv.h>

#include <utility>

namespace ZebCPP {

template <typename T>
class GObjectRef {
public:
    GObjectRef() = default;
    // Takes over a reference the caller owns (as returned by *_new).
    explicit GObjectRef(T* owned) : object_(owned) {}
    GObjectRef(const GObjectRef&) = delete;
    GObjectRef& operator=(const GObjectRef&) = delete;
    GObjectRef(GObjectRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    GObjectRef& operator=(GObjectRef&& other) noexcept
    {
        reset(std::exchange(other.object_, nullptr));
        return *this;
    }
    ~GObjectRef() { reset(); }

    T* get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    void reset(T* owned = nullptr)
    {
        if (object_ != nullptr)
            g_object_unref(object_);
        object_ = owned;
    }

private:
    T* object_ = nullptr;
};

class GErrorHolder {
public:
    GErrorHolder() = default;
    GErrorHolder(const GErrorHolder&) = delete;
    GErrorHolder& operator=(const GErrorHolder&) = delete;
    ~GErrorHolder() { g_clear_error(&error_); }

    GError** out()
    {
        g_clear_error(&error_);
        return &error_;
    }
    const GError* get() const { return error_; }
    explicit operator bool() const { return error_ != nullptr; }

private:
    GError* error_ = nullptr;
};

} // namespace ZebCPP
