#pragma once

#include "defectmap.h"
#include "mapformat.h"

#include <QString>
#include <QVector>

#include <vector>

// A map slot of a camera as the assistant's selector offers it.
struct BatchMapSlot {
    QString name;             // "DefPixMap<n>" or an entry of the map select enumeration
    int chunkId = kDefaultChunkId; // the slot's chunk id (file-access slotList)
    bool cannotRead = false;  // downloads from it are refused
    bool cannotWrite = false; // uploads into it are refused (the factory map)
};

// What the batch needs to know of a camera's maps before it generates one.
struct BatchMapProfile {
    bool registerMode = false;        // maps through device registers, else device files
    int revision = kDefaultMapRevision; // map format revision
    bool isColor = false;             // dark series only
    bool bigEndian = true;            // device byte order
    unsigned int maxMapSize = 10000;  // capacity of a map (the camera's, when it tells a plausible one)
    QVector<BatchMapSlot> slotList;      // in the order the camera lists them
};

// The camera side of one batch job: slot discovery, the map upload and reading
// a slot back. Kept behind this interface so that the job does not depend on
// how the camera is reached.
class BatchMapSlots {
public:
    virtual ~BatchMapSlots() = default;

    // False, with the reason, when the camera offers no map slot.
    virtual bool readProfile(BatchMapProfile& profile, QString& error) = 0;
    // The camera streams: its parameters are locked.
    virtual bool isStreaming() = 0;
    // Writes the map into the slot and makes the camera use it. bytes is what
    // went to the camera. False, with the reason, unless all of it arrived.
    virtual bool upload(const BatchMapProfile& profile, const BatchMapSlot& slot, const t_defpix* map,
                        unsigned int count, unsigned int imageWidth, unsigned int imagePixelCount,
                        qint64& bytes, QString& error) = 0;
    // The entries the slot holds now, in the form the camera keeps them.
    virtual bool readBack(const BatchMapProfile& profile, const BatchMapSlot& slot,
                          std::vector<t_defpix>& entries, QString& error) = 0;
    // The entries the slot should hold after upload() of this map.
    virtual std::vector<t_defpix> expectedEntries(const BatchMapProfile& profile, const BatchMapSlot& slot,
                                                  const t_defpix* map, unsigned int count) const = 0;
};
