#pragma once

#include "cameraport.h"
#include "defectmap.h"

#include <QString>
#include <QVariant>

#include <memory>

enum class MaxMapSize {
    Read,        // a number from 1 to kMaxPlausibleMapSize
    Unreadable,  // the camera did not tell
    Implausible, // told, but not believed
};

// How an upload or download ended; the callers word each outcome.
enum class MapTransfer {
    Done,
    EmptyMap,
    SlotUnknown,      // the selected slot could not be read
    FactoryProtected, // slot 0 holds the factory map
    ClearFailed,
    MaxSizeFailed,
    TooManyEntries,
    SizeFailed,       // the slot's map size could not be read
    InvalidSize,      // the slot reports more entries than the maximum
    WriteFailed,
    ShortWrite,       // the camera took only part of the map
    ReadFailed,
    EnableFailed,     // written, but the correction could not be switched on
    Cancelled,        // stopped between two blocks; the camera keeps the slot's previous map
};

// The map quantities of the selected slot: registers on register cameras,
// features on file-access cameras.
class MapSlots {
public:
    explicit MapSlots(CameraPort& port) : m_port(port) {}
    virtual ~MapSlots() = default;
    MapSlots(const MapSlots&) = delete;
    MapSlots& operator=(const MapSlots&) = delete;

    virtual bool correctionEnabled(bool& enabled) = 0;
    virtual bool setCorrectionEnabled(bool enabled) = 0;
    virtual bool selectedSlot(QVariant& slot) = 0;
    virtual bool selectSlot(const QVariant& slot) = 0;
    virtual bool reportedMaxMapSize(QVariant& size) = 0;
    virtual bool mapSize(QVariant& size) = 0;
    virtual bool entry(unsigned int index, unsigned int& x, unsigned int& y) = 0;
    virtual bool setEntry(unsigned int index, unsigned int x, unsigned int y) = 0;

    // The same on both kinds of camera.
    bool setCorrectionMark(bool mark);
    bool clearSlot(const QVariant& slot);
    bool paramsLocked();
    bool selectSlotByName(const QString& name);
    // size is only set when Read; reported holds what the camera told.
    MaxMapSize maxMapSize(unsigned int& size, QString& reported);

    CameraPort& port() { return m_port; }

protected:
    CameraPort& m_port;
};

std::unique_ptr<MapSlots> makeMapSlots(CameraPort& port, bool registerMode);

// Entry by entry into the selected slot after clearing it; an unreadable slot
// counts as the factory slot. maxMapSize is set from the camera when it tells a
// plausible one, reported is what it told. Entries the camera refuses are skipped.
MapTransfer uploadMapEntries(MapSlots& mapSlots, const t_defpix* map, unsigned int count, unsigned int& maxMapSize,
                             QString& reported);

// Adds the slot's entries to map (rules of defpix_add); count starts at 0.
MapTransfer downloadMapEntries(MapSlots& mapSlots, t_defpix* map, unsigned int capacity, unsigned int& count);
