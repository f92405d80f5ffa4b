#pragma once

#include "filemapslots.h"
#include "mapformat.h"
#include "mapslots.h"

#include <memory>

// What the panel knows of the map slots of its camera: set when a camera is
// bound, read by every transfer.
struct MapSlotBinding {
    static constexpr unsigned int kDefaultMaxMapSize = 10000;

    std::unique_ptr<MapSlots> mapSlots;           // null without camera
    bool registerMode = false;                    // maps travel through registers, not device files
    int revision = kDefaultMapRevision;           // the camera's map revision
    int chunkId = kDefaultChunkId;                // chunk id of the slot the map was generated for
    bool bigEndian = true;                        // device byte order
    unsigned int maxMapSize = kDefaultMaxMapSize; // entries the camera accepts

    // Maps of the typed revision or chunk carry correction codes.
    bool typedMap() const { return isTypedMap(revision, chunkId); }
    // The camera's file-access slots; null in register mode or without camera.
    FileAccessMapSlots* fileSlots() const
    {
        return registerMode ? nullptr : static_cast<FileAccessMapSlots*>(mapSlots.get());
    }
};
