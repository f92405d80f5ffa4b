#include "registermapslots.h"

#include "maptransfer.h"

#include <algorithm>

namespace {

bool readRegister(CameraPort& port, unsigned long address, QVariant& value)
{
    uint32_t word = 0;
    if (!port.readRegister(address, word))
        return false;
    value = word;
    return true;
}

} // namespace

bool RegisterMapSlots::correctionEnabled(bool& enabled)
{
    uint32_t control = 0;
    if (!m_port.readRegister(kMapRegControl, control))
        return false;
    enabled = (control & 1) != 0;
    return true;
}

bool RegisterMapSlots::setCorrectionEnabled(bool enabled)
{
    uint32_t control = 0;
    return m_port.readRegister(kMapRegControl, control)
           && m_port.writeRegister(kMapRegControl, enabled ? control | 1u : control & ~1u);
}

bool RegisterMapSlots::selectedSlot(QVariant& slot)
{
    return readRegister(m_port, kMapRegSelectedSlot, slot);
}

bool RegisterMapSlots::selectSlot(const QVariant& slot)
{
    return m_port.writeRegister(kMapRegSelectedSlot, slot.toUInt());
}

bool RegisterMapSlots::reportedMaxMapSize(QVariant& size)
{
    return readRegister(m_port, kMapRegMapMaxSize, size);
}

bool RegisterMapSlots::mapSize(QVariant& size)
{
    return readRegister(m_port, kMapRegMapSize, size);
}

bool RegisterMapSlots::entry(unsigned int index, unsigned int& x, unsigned int& y)
{
    uint32_t word = 0;
    if (!m_port.readRegister(mapEntryRegister(index), word))
        return false;
    const t_defpix entry = unpackMapWord(word, false);
    x = entry.x;
    y = entry.y;
    return true;
}

bool RegisterMapSlots::setEntry(unsigned int index, unsigned int x, unsigned int y)
{
    return m_port.writeRegister(mapEntryRegister(index), packMapWord(t_defpix{x, y, 0}, false));
}

MapTransfer RegisterMapSlots::uploadWords(const t_defpix* map, unsigned int count, bool typed, bool bigEndian,
                                          unsigned int capacity, unsigned int& bytes,
                                          const std::function<void(double)>& progress)
{
    bytes = 0;
    QVariant slot;
    if (!selectedSlot(slot))
        return MapTransfer::SlotUnknown;
    if (slot.toUInt() == 0)
        return MapTransfer::FactoryProtected;
    if (!map || count == 0)
        return MapTransfer::EmptyMap;
    if (!clearSlot(slot))
        return MapTransfer::ClearFailed;
    std::vector<uint32_t> words = packRegisterMap(map, count, typed, bigEndian, capacity, progress);
    const auto wanted = static_cast<unsigned int>(words.size() * sizeof(uint32_t));
    bytes = wanted;
    if (!m_port.writeMemory(kMapRegEntries, reinterpret_cast<const unsigned char*>(words.data()), bytes)) {
        bytes = 0;
        return MapTransfer::WriteFailed;
    }
    // A short write leaves the map cut off in the camera: that is a failure too.
    if (bytes != wanted)
        return MapTransfer::ShortWrite;
    return setCorrectionEnabled(true) ? MapTransfer::Done : MapTransfer::EnableFailed;
}

MapTransfer RegisterMapSlots::downloadWords(bool typed, bool bigEndian, t_defpix* map, unsigned int capacity,
                                            unsigned int& count)
{
    QVariant slot;
    if (!selectedSlot(slot))
        return MapTransfer::SlotUnknown;
    QVariant size;
    if (!mapSize(size))
        return MapTransfer::SizeFailed;
    // Words past the capacity (and the end word) would be dropped anyway.
    const auto wordCount = static_cast<unsigned int>(std::min<qulonglong>(size.toULongLong(), capacity + 1ull));
    std::vector<uint32_t> words(wordCount, 0);
    unsigned int bytes = wordCount * sizeof(uint32_t);
    m_port.readMemory(kMapRegEntries, reinterpret_cast<unsigned char*>(words.data()), bytes);
    unpackRegisterMap(words.data(), words.size(), typed, bigEndian, map, capacity, count);
    return MapTransfer::Done;
}

MapTransfer RegisterMapSlots::readSlot(bool typed, bool bigEndian, unsigned int capacity,
                                       std::vector<t_defpix>& entries)
{
    entries.clear();
    QVariant size;
    if (!mapSize(size))
        return MapTransfer::SizeFailed;
    if (size.toULongLong() > capacity)
        return MapTransfer::InvalidSize;
    const unsigned int wordCount = size.toUInt();
    std::vector<uint32_t> words(wordCount, 0);
    unsigned int bytes = wordCount * sizeof(uint32_t);
    if (wordCount != 0 && !m_port.readMemory(kMapRegEntries, reinterpret_cast<unsigned char*>(words.data()), bytes))
        return MapTransfer::ReadFailed;
    entries.resize(capacity);
    unsigned int count = 0;
    unpackRegisterMap(words.data(), words.size(), typed, bigEndian, entries.data(), capacity, count);
    entries.resize(count);
    return MapTransfer::Done;
}
