#include "mapslots.h"

#include "filemapslots.h"
#include "mapslotprofile.h"
#include "maptransfer.h"
#include "registermapslots.h"

bool MapSlots::setCorrectionMark(bool mark)
{
    return m_port.setFeature("DefectPixelCorrectionMark_Control", QString(mark ? "Mark" : "Off"));
}

bool MapSlots::clearSlot(const QVariant& slot)
{
    return m_port.writeRegister(kMapRegClearSlot, slot.toUInt());
}

bool MapSlots::paramsLocked()
{
    QVariant locked = 0;
    m_port.getFeature("TLParamsLocked", locked);
    return locked.toLongLong() == 1;
}

bool MapSlots::selectSlotByName(const QString& name)
{
    return m_port.setFeature("DefectPixelCorrection_MapSelect", name);
}

MaxMapSize MapSlots::maxMapSize(unsigned int& size, QString& reported)
{
    QVariant value;
    if (!reportedMaxMapSize(value))
        return MaxMapSize::Unreadable;
    reported = value.toString();
    bool isNumber = false;
    const qulonglong maximum = value.toULongLong(&isNumber);
    if (!isNumber || maximum == 0 || maximum > kMaxPlausibleMapSize)
        return MaxMapSize::Implausible;
    size = static_cast<unsigned int>(maximum);
    return MaxMapSize::Read;
}

std::unique_ptr<MapSlots> makeMapSlots(CameraPort& port, bool registerMode)
{
    if (registerMode)
        return std::make_unique<RegisterMapSlots>(port);
    return std::make_unique<FileAccessMapSlots>(port);
}

MapTransfer uploadMapEntries(MapSlots& mapSlots, const t_defpix* map, unsigned int count, unsigned int& maxMapSize,
                             QString& reported)
{
    if (!map || count == 0)
        return MapTransfer::EmptyMap;
    QVariant slot;
    mapSlots.selectedSlot(slot);
    if (slot.toUInt() == 0)
        return MapTransfer::FactoryProtected;
    if (!mapSlots.clearSlot(slot))
        return MapTransfer::ClearFailed;
    if (mapSlots.maxMapSize(maxMapSize, reported) != MaxMapSize::Read)
        return MapTransfer::MaxSizeFailed;
    if (count > maxMapSize)
        return MapTransfer::TooManyEntries;
    for (unsigned int i = 0; i < count; ++i)
        mapSlots.setEntry(i, map[i].x, map[i].y);
    return MapTransfer::Done;
}

MapTransfer downloadMapEntries(MapSlots& mapSlots, t_defpix* map, unsigned int capacity, unsigned int& count)
{
    count = 0;
    QVariant size;
    if (!mapSlots.mapSize(size))
        return MapTransfer::SizeFailed;
    if (size.toULongLong() > capacity)
        return MapTransfer::InvalidSize;
    const unsigned int entries = size.toUInt();
    for (unsigned int i = 0; i < entries; ++i) {
        unsigned int x = 0;
        unsigned int y = 0;
        if (mapSlots.entry(i, x, y))
            defpix_add(map, capacity, x, y, 0, count);
    }
    return MapTransfer::Done;
}
