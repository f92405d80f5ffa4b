#pragma once

#include "cameraport.h"

#include <QString>
#include <QVector>

// One map slot of a camera as a slot selector offers it.
struct MapSlot {
    QString name;             // "DefPixMap<n>" or an entry of the map select enumeration
    int chunkId = 0;          // the slot's chunk id; 0 in register mode
    bool cannotRead = false;  // the device file refuses reading
    bool cannotWrite = false; // the device file refuses writing (the factory map)
};

// What a camera offers for defect maps, read once when it is opened.
struct MapSlotProfile {
    bool registerMode = false;   // maps travel through registers, not device files
    int revision = 3;            // the camera's map revision
    bool color = false;          // a colour sensor: dark series only
    bool bigEndian = true;       // device byte order
    unsigned int maxMapSize = 0; // the camera's maximal map size when plausible, else 0
    QVector<MapSlot> mapSlots;   // in the order the camera lists them
};

// The largest maximal map size a camera is believed: the maximum sizes map buffers.
constexpr unsigned long long kMaxPlausibleMapSize = 1ull << 20;

// Map slots are only offered for map chunks.
bool isOfferedChunkId(long long chunkId);

// A colour filter other than "none", or without that feature a pixel format
// that is not "Mono...".
bool detectColor(CameraPort& port);

// File-access slots when the camera has the device file "DefPixMap0", otherwise
// the map registers with the slots of the map select enumeration.
MapSlotProfile inspectMapSlots(CameraPort& port);
