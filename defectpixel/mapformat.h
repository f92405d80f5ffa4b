#pragma once

#include <qnamespace.h>

// The facts of map slots every map path agrees on: revisions, chunk ids and
// what a slot selector's items carry.

// Revision of cameras that do not report one.
constexpr int kDefaultMapRevision = 3;
// Revision of the maps whose entries carry correction codes from 100 on.
constexpr int kTypedMapRevision = 4;

// Chunk ids of map slots: the plain map, its second kind, and the typed map.
constexpr int kDefaultChunkId = 4096;
constexpr int kSecondChunkId = 4097;
constexpr int kTypedChunkId = 4100;

// Device files of file-access map slots are "DefPixMap<n>"; slot 0 is the factory map.
constexpr const char* kMapSlotPrefix = "DefPixMap";

// Maps of a typed revision or of a typed slot carry correction codes.
constexpr bool isTypedMap(int revision, int chunkId)
{
    return revision == kTypedMapRevision || chunkId == kTypedChunkId;
}

// Item-data roles of a slot selector's entries.
constexpr int kSlotRoleCannotRead = Qt::UserRole + 1;  // downloads from it are refused
constexpr int kSlotRoleCannotWrite = Qt::UserRole + 2; // uploads into it are refused (the factory map)
constexpr int kSlotRoleChunkId = Qt::UserRole + 3;     // the slot's chunk id
