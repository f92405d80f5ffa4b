#pragma once

#include "defectmap.h"

#include <QCoreApplication>
#include <QString>

class DefectMatchPatterns;
struct ImageGeometry;
struct MapSlotBinding;
class UXCPanelMessages;

// The map files the user chooses: maps saved as text or as container, text
// maps loaded, and the folder the map dialogs start in.
class UXCMapFiles {
    Q_DECLARE_TR_FUNCTIONS(UXCMapFiles)

public:
    UXCMapFiles(const MapSlotBinding& binding, const DefectMatchPatterns& patterns, UXCPanelMessages& messages);

    // The folder the map dialogs start in, kept in the settings.
    static QString startDir();
    static void rememberDir(const QString& dir);

    // Text in register mode; otherwise the container of generated, the panel's own map.
    bool save(const t_defpix* map, unsigned int count, const DefectMap& generated, const ImageGeometry& geometry);
    // Saves the generated map and tells how that went.
    void saveGenerated(const DefectMap& generated, const ImageGeometry& geometry);
    // The file the last save wrote; empty when its dialog was cancelled.
    const QString& savedFile() const { return m_savedFile; }

    // Asks for a text map file; empty when cancelled.
    QString chooseTextMap();
    bool load(const QString& fileName, t_defpix* map, unsigned int& count);

private:
    const MapSlotBinding& m_binding;
    const DefectMatchPatterns& m_patterns;
    UXCPanelMessages& m_messages;
    QString m_dir;       // folder of the last map file
    QString m_savedFile;
};
