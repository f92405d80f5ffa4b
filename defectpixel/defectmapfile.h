#pragma once

#include "defectmap.h"
#include "defectmapcontainer.h"

#include <QString>

class DefectMatchPatterns;

// What the map files need from the panel besides the map they are given.
struct DefectMapFilePanelState {
    bool registerMode = false;         // maps travel through registers: files are text
    unsigned int revision = 0;         // the camera's map revision
    ge3_chunk_id_t chunkId = 0;        // chunk id of the selected map slot
    const t_defpix* map = nullptr;     // the panel's own map: a binary file always holds it
    unsigned int count = 0;            // entries in the panel's map
    unsigned int imageWidth = 0;       // width of the images the map was made from
    unsigned int imagePixelCount = 0;  // width times height of those images
};

// ".txt" in register mode, ".bin" otherwise.
QString defectMapFileExtension(bool registerMode);

// The typed name with the mode's extension appended unless it already ends with
// it (in any case): "map" -> "map.txt", "MAP.TXT" stays as typed.
QString defectMapFileName(const QString& typedName, bool registerMode);

// Writes a map file under the typed name (extension added as above). In register
// mode the file holds the given map as text; otherwise the container of the
// panel's own map. A failed write leaves any previous file untouched. An empty
// name (the dialog was cancelled) writes nothing and succeeds. On success the
// file's folder becomes the remembered one.
bool saveDefectMapFile(const QString& typedName, const t_defpix* map, unsigned int count,
                       const DefectMapFilePanelState& panel, QString& rememberedDir);

// Adds the entries of a text map file to the map, with the duplicate and capacity
// rules of DefectMapWriter, then classifies the map when the camera takes
// correction codes (revision 4 or chunk id 4100). False for a null map, a capacity
// of 0 or below the count, or a file that cannot be opened or read to its end. On success the file's
// folder becomes the remembered one.
bool loadDefectMapFile(const QString& fileName, t_defpix* map, unsigned int capacity, unsigned int& count,
                       unsigned int revision, ge3_chunk_id_t chunkId, const DefectMatchPatterns& patterns,
                       QString& rememberedDir);

// The file's folder becomes the remembered one. Nothing here writes settings:
// the panel stores the remembered folder as the start folder of its dialogs.
void rememberDefectMapFileDir(const QString& fileName, QString& rememberedDir);
