#include "mapslotprofile.h"

#include "mapformat.h"
#include "mapslots.h"

#include <algorithm>

bool isOfferedChunkId(long long chunkId)
{
    return chunkId == kDefaultChunkId || chunkId == kSecondChunkId || chunkId == kTypedChunkId;
}

bool detectColor(CameraPort& port)
{
    QVariant filter;
    if (port.getFeature("PixelColorFilter", filter))
        return !filter.toString().contains("none", Qt::CaseInsensitive);
    QStringList formats;
    port.featureEntries("PixelFormat", formats);
    return std::any_of(formats.begin(), formats.end(),
                       [](const QString& format) { return !format.startsWith("mono", Qt::CaseInsensitive); });
}

MapSlotProfile inspectMapSlots(CameraPort& port)
{
    MapSlotProfile profile;
    profile.bigEndian = port.isBigEndian();
    profile.color = detectColor(port);
    QVariant revision = kDefaultMapRevision;
    if (port.getFeature("DefectPixelCorrection_Revision", revision))
        profile.revision = revision.toInt();

    QStringList files;
    port.featureEntries("FileSelector", files);
    profile.registerMode = !files.contains(QString(kMapSlotPrefix) + "0");
    if (profile.registerMode) {
        QStringList names;
        port.featureEntries("DefectPixelCorrection_MapSelect", names);
        for (const QString& name : names)
            profile.mapSlots.push_back(MapSlot{name});
    } else {
        const int fallbackId = profile.revision == kTypedMapRevision ? kTypedChunkId : kDefaultChunkId;
        for (const QString& file : files) {
            if (!file.startsWith(kMapSlotPrefix) || !port.setFeature("FileSelector", file))
                continue;
            QVariant chunkId;
            const long long id = port.getFeature("FileChunkId", chunkId) ? chunkId.toLongLong() : fallbackId;
            if (!isOfferedChunkId(id))
                continue;
            MapSlot slot{file, int(id)};
            port.fileAccessMode(slot.cannotRead, slot.cannotWrite);
            profile.mapSlots.push_back(slot);
        }
    }
    QString reported;
    if (makeMapSlots(port, profile.registerMode)->maxMapSize(profile.maxMapSize, reported) != MaxMapSize::Read)
        profile.maxMapSize = 0;
    return profile;
}
