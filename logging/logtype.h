#pragma once

#include <QMetaType>

// The kind of a log line; registered as the meta-type "LogType" so that log
// messages can travel through queued signals.
enum LogType {
    LogInfo = 0,
    LogWarning = 1, // shown in yellow
    LogError = 2    // shown in red; brings the log dock up
};

Q_DECLARE_METATYPE(LogType)
