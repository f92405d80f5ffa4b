#pragma once

// Internal helpers of the public objects: the exception border and the
// (buffer, length) string convention.

#include "zebtypes.h"

#include <cstring>
#include <string>

namespace ZebCPP {

// Runs one SDK call; nothing escapes it but a status code.
template <typename Call>
ZebErrorType guarded(Call&& call) noexcept
{
    try {
        return call();
    } catch (...) {
        return ZebErrorInternalFault;
    }
}

// length counts the terminating NUL; a null buffer only asks for it.
inline ZebErrorType copyOut(const std::string& text, char* buffer, uint32_t& length)
{
    const auto needed = static_cast<uint32_t>(text.size() + 1);
    if (buffer == nullptr) {
        length = needed;
        return ZebErrorSuccess;
    }
    if (length < needed) {
        length = needed;
        return ZebErrorMoreData;
    }
    std::memcpy(buffer, text.c_str(), needed);
    length = needed;
    return ZebErrorSuccess;
}

// The two-step read for the std::string helpers. A value that grew between the
// two steps is read again with the length it gives.
template <typename Get>
ZebErrorType fetchString(std::string& out, Get&& get)
{
    constexpr int kAttempts = 3;
    uint32_t length = 0;
    ZebErrorType err = get(nullptr, length);
    for (int attempt = 0; err == ZebErrorSuccess && attempt < kAttempts; ++attempt) {
        std::string text(length, '\0');
        err = get(text.data(), length);
        if (err == ZebErrorMoreData) {
            err = ZebErrorSuccess;
            continue;
        }
        if (err != ZebErrorSuccess)
            return err;
        text.resize(length > 0 ? length - 1 : 0);
        out = std::move(text);
        return ZebErrorSuccess;
    }
    return err == ZebErrorSuccess ? ZebErrorMoreData : err;
}

// Copies a list into a caller's array; a null array asks for the count.
template <typename T, typename List>
ZebErrorType copyList(const List& list, T* out, uint32_t& size)
{
    const auto count = static_cast<uint32_t>(list.size());
    if (out == nullptr) {
        size = count;
        return ZebErrorSuccess;
    }
    if (size < count) {
        size = count;
        return ZebErrorMoreData;
    }
    for (uint32_t i = 0; i < count; ++i)
        out[i] = list[i];
    size = count;
    return ZebErrorSuccess;
}

} // namespace ZebCPP
