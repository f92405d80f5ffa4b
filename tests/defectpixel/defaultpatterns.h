#pragma once

#include "defectmatch.h"
#include "uxsettings.h"

#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

// The default pattern table as the settings store writes it into a fresh
// configuration folder. Call before anything else touches the settings store.
inline bool loadDefaultPatterns(QTemporaryDir& home, DefectMatchPatterns& patterns)
{
    if (!home.isValid())
        return false;
    qputenv("HOME", home.path().toLocal8Bit());
    QStandardPaths::setTestModeEnabled(true);
    QSettings* file = UXCSettings::getInstance()->GetDeffMatchSettings();
    patterns.setupDefMatchSettings(file);
    return patterns.count() == 34;
}
