#pragma once

#include "zebtypes.h"

#include <mutex>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace ZebCPP {

class FeatureBackend;

// One named, typed value of a camera, interface or stream.
//
// Calls of another type than the feature's return ZebErrorWrongType, reads of an
// unreadable and writes of an unwritable feature ZebErrorInvalidAccess, values
// outside the range or not among the entries ZebErrorInvalidValue. Features of a
// camera that was closed return ZebErrorDeviceNotOpen, of an unplugged camera
// ZebErrorBadHandle.
class Feature {
public:
    explicit Feature(std::shared_ptr<FeatureBackend> backend);
    Feature(const Feature&) = delete;
    Feature& operator=(const Feature&) = delete;
    ~Feature();

    ZebErrorType GetName(char* name, uint32_t& length) const;
    ZebErrorType GetDataType(FeatureDataType& type) const;
    ZebErrorType IsReadable(bool& readable) const;
    ZebErrorType IsWritable(bool& writable) const;

    // Integer features; enumerations read and write their current entry's value.
    ZebErrorType GetValue(int64_t& value) const;
    ZebErrorType SetValue(int64_t value);
    ZebErrorType GetRange(int64_t& minimum, int64_t& maximum) const;
    ZebErrorType GetIncrement(int64_t& increment) const;

    // Float features. A float without an increment reports 0.
    ZebErrorType GetValue(double& value) const;
    ZebErrorType SetValue(double value);
    ZebErrorType GetRange(double& minimum, double& maximum) const;
    ZebErrorType GetIncrement(double& increment) const;

    ZebErrorType GetValue(bool& value) const;
    ZebErrorType SetValue(bool value);

    // String features, and the current entry's name of an enumeration.
    ZebErrorType GetValue(char* value, uint32_t& length) const;
    ZebErrorType SetValue(const char* value);

    // Names of an enumeration's entries: a null array asks for the count. The
    // names stay valid as long as this feature object lives.
    ZebErrorType GetEntries(const char** names, uint32_t& size) const;
    // Integer value of an entry, and whether the device accepts it now.
    ZebErrorType GetEntryValue(const char* name, int64_t& value) const;
    ZebErrorType IsEntryAvailable(const char* name, bool& available) const;

    ZebErrorType RunCommand();
    ZebErrorType IsCommandDone(bool& done) const;

    // Raw (register) features. A read copies min(size, raw length) bytes, so a
    // shorter buffer reads the first bytes of the register; a write may be
    // shorter than the register and sets its first bytes.
    ZebErrorType GetRawData(uint8_t* buffer, uint32_t size, uint32_t& sizeFilled) const;
    ZebErrorType SetRawData(const uint8_t* buffer, uint32_t size);
    ZebErrorType GetRawLength(uint32_t& length) const;

    // std::string and std::vector forms of the calls above.
    ZebErrorType GetName(std::string& name) const;
    ZebErrorType GetValue(std::string& value) const;
    ZebErrorType SetValue(const std::string& value) { return SetValue(value.c_str()); }
    ZebErrorType GetEntries(std::vector<std::string>& names) const;

    // Any other integer type is written as int64_t, so that SetValue(5) is not
    // ambiguous between the integer, float and bool forms.
    template <typename T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>
                                               && !std::is_same_v<T, int64_t>, int> = 0>
    ZebErrorType SetValue(T value)
    {
        return SetValue(static_cast<int64_t>(value));
    }
    template <typename T, std::enable_if_t<std::is_integral_v<T> && std::is_signed_v<T>
                                               && sizeof(T) == sizeof(int64_t)
                                               && !std::is_same_v<T, int64_t>, int> = 0>
    ZebErrorType GetValue(T& value) const
    {
        int64_t v = 0;
        const ZebErrorType err = GetValue(v);
        if (err == ZebErrorSuccess)
            value = v;
        return err;
    }

private:
    std::shared_ptr<FeatureBackend> backend_;
    mutable std::mutex namesMutex_;
    mutable std::set<std::string> names_; // grows only: handed-out pointers stay valid
};

} // namespace ZebCPP
