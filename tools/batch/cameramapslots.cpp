#include "cameramapslots.h"

#include "defectmapcontainer.h"
#include "filemapslots.h"
#include "mapformat.h"
#include "mapslotprofile.h"
#include "maptransfer.h"
#include "registermapslots.h"
#include "uxcamera.h"

namespace {

bool typedSlot(const BatchMapProfile& profile, const BatchMapSlot& slot)
{
    return isTypedMap(profile.revision, profile.registerMode ? 0 : slot.chunkId);
}

} // namespace

bool CameraMapSlots::readProfile(BatchMapProfile& profile, QString& error)
{
    const MapSlotProfile found = inspectMapSlots(m_camera);
    profile = BatchMapProfile();
    profile.registerMode = found.registerMode;
    profile.revision = found.revision;
    profile.isColor = found.color;
    profile.bigEndian = found.bigEndian;
    if (found.maxMapSize != 0)
        profile.maxMapSize = found.maxMapSize;
    for (const MapSlot& slot : found.mapSlots)
        profile.slotList.append(BatchMapSlot{slot.name, found.registerMode ? kDefaultChunkId : slot.chunkId,
                                             slot.cannotRead, slot.cannotWrite});
    if (profile.slotList.isEmpty()) {
        error = tr("The camera offers no defect pixel map slot.");
        return false;
    }
    return true;
}

bool CameraMapSlots::isStreaming()
{
    return RegisterMapSlots(m_camera).paramsLocked();
}

bool CameraMapSlots::selectRegisterSlot(const BatchMapSlot& slot, QString& error)
{
    QVariant number;
    RegisterMapSlots registers(m_camera);
    if (!registers.selectSlotByName(slot.name) || !registers.selectedSlot(number)) {
        error = tr("The map slot '%1' cannot be selected.").arg(slot.name);
        return false;
    }
    return true;
}

bool CameraMapSlots::upload(const BatchMapProfile& profile, const BatchMapSlot& slot, const t_defpix* map,
                            unsigned int count, unsigned int imageWidth, unsigned int imagePixelCount,
                            qint64& bytes, QString& error)
{
    bytes = 0;
    if (profile.registerMode) {
        if (!selectRegisterSlot(slot, error))
            return false;
        unsigned int written = 0;
        const MapTransfer outcome = RegisterMapSlots(m_camera).uploadWords(
            map, count, profile.revision == kTypedMapRevision, profile.bigEndian, profile.maxMapSize, written);
        bytes = written;
        switch (outcome) {
        case MapTransfer::Done:
            return true;
        case MapTransfer::FactoryProtected:
            error = tr("Upload failed: upload to factory map is protected!");
            break;
        case MapTransfer::EmptyMap:
            error = tr("Upload failed: empty map");
            break;
        case MapTransfer::ClearFailed:
            error = tr("Clear map failed (protected map)");
            break;
        case MapTransfer::WriteFailed:
            error = tr("Writing the map registers failed.");
            break;
        default:
            error = tr("The camera did not take the whole map.");
            break;
        }
        return false;
    }
    if (slot.cannotWrite) {
        error = tr("The map slot '%1' is write-protected (factory map).").arg(slot.name);
        return false;
    }
    const std::vector<unsigned char> container = buildDefPixContainerBuffer(
        unsigned(profile.revision), ge3_chunk_id_t(slot.chunkId), count, map, imageWidth, imagePixelCount);
    if (container.empty()) {
        error = tr("The map container could not be built.");
        return false;
    }
    FileAccessMapSlots files(m_camera);
    long written = 0;
    const MapTransfer outcome = files.uploadContainer(container, slot.name, written);
    bytes = written;
    if (outcome != MapTransfer::Done) {
        files.closeDeviceFile();
        error = tr("The transfer into '%1' failed.").arg(slot.name);
        return false;
    }
    if (qint64(written) != qint64(container.size())) {
        error = tr("Only %1 of %2 bytes reached '%3'.").arg(written).arg(container.size()).arg(slot.name);
        return false;
    }
    return true;
}

bool CameraMapSlots::readBack(const BatchMapProfile& profile, const BatchMapSlot& slot,
                              std::vector<t_defpix>& entries, QString& error)
{
    entries.clear();
    if (profile.registerMode) {
        if (!selectRegisterSlot(slot, error))
            return false;
        switch (RegisterMapSlots(m_camera).readSlot(typedSlot(profile, slot), profile.bigEndian, profile.maxMapSize,
                                                    entries)) {
        case MapTransfer::Done:
            return true;
        case MapTransfer::ReadFailed:
            error = tr("Reading the map registers failed.");
            return false;
        default:
            error = tr("The map size of '%1' cannot be read.").arg(slot.name);
            return false;
        }
    }
    if (slot.cannotRead) {
        error = tr("The map slot '%1' cannot be read.").arg(slot.name);
        return false;
    }
    switch (FileAccessMapSlots(m_camera).readBack(slot.name, unsigned(profile.revision), entries)) {
    case MapTransfer::Done:
        return true;
    case MapTransfer::ReadFailed:
        error = tr("The download of '%1' failed.").arg(slot.name);
        return false;
    default:
        error = tr("The map read back from '%1' is not a valid container.").arg(slot.name);
        return false;
    }
}

std::vector<t_defpix> CameraMapSlots::expectedEntries(const BatchMapProfile& profile, const BatchMapSlot& slot,
                                                      const t_defpix* map, unsigned int count) const
{
    std::vector<t_defpix> expected;
    if (profile.registerMode) {
        const std::vector<uint32_t> words =
            packRegisterMap(map, count, profile.revision == kTypedMapRevision, profile.bigEndian, profile.maxMapSize);
        DefectMap unpacked(profile.maxMapSize);
        unsigned int used = 0;
        unpackRegisterMap(words.data(), words.size(), typedSlot(profile, slot), profile.bigEndian, unpacked.data(),
                          unpacked.capacity(), used);
        unpacked.setCount(used);
        return unpacked.entries();
    }
    const bool typed = profile.revision == kTypedMapRevision;
    for (unsigned int i = 0; i < count; ++i)
        expected.push_back({map[i].x, map[i].y, typed ? map[i].type : 0u});
    return expected;
}
