#pragma once

#include <ZebCPP.h>

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <vector>

// Typed access to the features of an SDK feature container (camera, interface,
// stream) by GenICam name, with QVariant values:
//   integer <-> long long, float <-> double, enumeration and string <-> QString,
//   boolean <-> bool; commands, raw, none and unknown features cannot be read or
//   written as values (raw ones only through the register functions).
// Every function returns false for an empty container, a null name or a feature
// the container does not know; out values are only written on success. Nothing
// is shown or logged.
class UxFeatureContainerUtil {
public:
    using ContainerPtr = std::shared_ptr<ZebCPP::FeatureContainer>;

    static bool GetFeatureValue(const ContainerPtr& container, const char* name, QVariant& value);
    static bool GetFeatureValueEnum(const ContainerPtr& container, const char* name, QVariant& value);
    static bool SetFeatureValue(const ContainerPtr& container, const char* name, const QVariant& value);
    // An integer value selects the entry with that value, anything else the entry of that name.
    static bool SetFeatureValueEnum(const ContainerPtr& container, const char* name, const QVariant& value);

    // Runs a command. A timeout of 0 returns once it is fired; otherwise the
    // command is polled every 2 seconds until it is done (true) or the timeout
    // in milliseconds is reached (false).
    static bool SetFeatureCommand(const ContainerPtr& container, const char* name, unsigned long timeoutMs);

    // Writes the first length bytes of data to a raw feature.
    static bool SetFeatureRegister(const ContainerPtr& container, const char* name,
                                   const std::vector<unsigned char>& data, int length);
    // Reads length bytes of a raw feature into data; a register shorter than that fails.
    static bool GetFeatureRegister(const ContainerPtr& container, const char* name,
                                   std::vector<unsigned char>& data, int length);

    // Integer (long long) and float (double) features only.
    static bool GetFeatureRegisterLength(const ContainerPtr& container, const char* name, long long& length);
    static bool GetFeatureRange(const ContainerPtr& container, const char* name, QVariant& minimum,
                                QVariant& maximum, QVariant& increment);

    // The answer is also the result: has is false and the call fails for an
    // unknown name (has stays untouched for an empty container or a null name).
    static bool HasFeature(const ContainerPtr& container, const char* name, bool& has);
    static bool IsWritable(const ContainerPtr& container, const char* name, bool& writable);
    static bool IsReadable(const ContainerPtr& container, const char* name, bool& readable);

    // The entry names of an enumeration, in the device's order.
    static bool GetSubFeatures(const ContainerPtr& container, const char* name, QStringList& entries);

    static double StringToDouble(const QString& text, bool* ok = nullptr);
};

// Parses a number as typed by a user: German conventions (decimal comma) first,
// then English. 0.0 when neither fits; *ok tells whether one did.
double StringToDouble(const QString& text, bool* ok = nullptr);
