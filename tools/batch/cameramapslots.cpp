#include "cameramapslots.h"

#include "defectmapcontainer.h"
#include "maptransfer.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

const char* const kSlotPrefix = "DefPixMap";
constexpr int kDefaultChunkId = 4096;
constexpr int kTypedChunkId = 4100;
constexpr unsigned long kCloseTimeoutMs = 180000;
// The maximum sizes the map buffer, so an implausible claim is not taken.
constexpr qulonglong kMaxPlausibleMapSize = 1u << 20;

bool isOfferedChunkId(long long id)
{
    return id == 4096 || id == 4097 || id == kTypedChunkId;
}

bool typedSlot(const BatchMapProfile& profile, const BatchMapSlot& slot)
{
    return profile.revision == kTypedMapRevision || (!profile.registerMode && slot.chunkId == kTypedChunkId);
}

} // namespace

bool CameraMapSlots::detectColor()
{
    UxCameraFeature& features = *m_camera.GetFeatureContainer();
    QVariant filter;
    if (features.GetValue("PixelColorFilter", filter))
        return !filter.toString().contains("none", Qt::CaseInsensitive);
    QStringList formats;
    features.GetSubFeatures("PixelFormat", formats);
    for (const QString& format : formats) {
        if (!format.startsWith("mono", Qt::CaseInsensitive))
            return true;
    }
    return false;
}

void CameraMapSlots::readFileSlots(BatchMapProfile& profile, const QStringList& files)
{
    UxCameraFeature& features = *m_camera.GetFeatureContainer();
    for (const QString& file : files) {
        if (!file.startsWith(kSlotPrefix) || !features.SetValue("FileSelector", file))
            continue;
        QVariant chunkId;
        const long long id = features.GetValue("FileChunkId", chunkId)
                                 ? chunkId.toLongLong()
                                 : (profile.revision == kTypedMapRevision ? kTypedChunkId : kDefaultChunkId);
        if (!isOfferedChunkId(id))
            continue;
        BatchMapSlot slot;
        slot.name = file;
        slot.chunkId = int(id);
        m_camera.GetFileAccessMode(&slot.cannotRead, &slot.cannotWrite);
        profile.slotList.append(slot);
    }
}

bool CameraMapSlots::readMaxMapSize(bool registerMode, unsigned int& size)
{
    qulonglong reported = 0;
    if (registerMode) {
        uint32_t value = 0;
        if (!m_camera.ReadRegister(kMapRegMapMaxSize, &value))
            return false;
        reported = value;
    } else {
        QVariant value;
        bool isNumber = false;
        if (!m_camera.GetFeatureContainer()->GetValue("DefectPixelCorrection_MapMaxSize", value))
            return false;
        reported = value.toULongLong(&isNumber);
        if (!isNumber)
            return false;
    }
    if (reported == 0 || reported > kMaxPlausibleMapSize)
        return false;
    size = static_cast<unsigned int>(reported);
    return true;
}

bool CameraMapSlots::readProfile(BatchMapProfile& profile, QString& error)
{
    UxCameraFeature& features = *m_camera.GetFeatureContainer();
    profile = BatchMapProfile();
    profile.bigEndian = m_camera.IsBigEndian();
    profile.isColor = detectColor();
    QVariant revision = 3;
    if (features.GetValue("DefectPixelCorrection_Revision", revision))
        profile.revision = revision.toInt();

    QStringList files;
    features.GetSubFeatures("FileSelector", files);
    profile.registerMode = !files.contains(QString(kSlotPrefix) + "0");
    if (profile.registerMode) {
        QStringList names;
        features.GetSubFeatures("DefectPixelCorrection_MapSelect", names);
        for (const QString& name : names) {
            BatchMapSlot slot;
            slot.name = name;
            profile.slotList.append(slot);
        }
    } else {
        readFileSlots(profile, files);
    }
    readMaxMapSize(profile.registerMode, profile.maxMapSize);
    if (profile.slotList.isEmpty()) {
        error = tr("The camera offers no defect pixel map slot.");
        return false;
    }
    return true;
}

bool CameraMapSlots::isStreaming()
{
    QVariant locked = 0;
    m_camera.GetFeatureContainer()->GetValue("TLParamsLocked", locked);
    return locked.toLongLong() == 1;
}

void CameraMapSlots::closeDeviceFile()
{
    UxCameraFeature& features = *m_camera.GetFeatureContainer();
    if (features.SetValue("FileOperationSelector", QString("Close")))
        features.SetCommand("FileOperationExecute", kCloseTimeoutMs);
}

bool CameraMapSlots::uploadFile(const BatchMapProfile& profile, const BatchMapSlot& slot, const t_defpix* map,
                                unsigned int count, unsigned int imageWidth, unsigned int imagePixelCount,
                                qint64& bytes, QString& error)
{
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
    const QByteArray name = slot.name.toUtf8();
    long written = 0;
    const bool closed = m_camera.UploadBuffer(container, name.constData(), name.constData(), &written);
    bytes = written;
    if (!closed) {
        closeDeviceFile();
        error = tr("The transfer into '%1' failed.").arg(slot.name);
        return false;
    }
    if (qint64(written) != qint64(container.size())) {
        error = tr("Only %1 of %2 bytes reached '%3'.").arg(written).arg(container.size()).arg(slot.name);
        return false;
    }
    return true;
}

bool CameraMapSlots::selectRegisterSlot(const BatchMapSlot& slot, uint32_t& number, QString& error)
{
    if (!m_camera.GetFeatureContainer()->SetValue("DefectPixelCorrection_MapSelect", slot.name)
        || !m_camera.ReadRegister(kMapRegSelectedSlot, &number)) {
        error = tr("The map slot '%1' cannot be selected.").arg(slot.name);
        return false;
    }
    return true;
}

bool CameraMapSlots::uploadRegisters(const BatchMapProfile& profile, const BatchMapSlot& slot, const t_defpix* map,
                                     unsigned int count, qint64& bytes, QString& error)
{
    uint32_t number = 0;
    if (!selectRegisterSlot(slot, number, error))
        return false;
    if (number == 0) {
        error = tr("Upload failed: upload to factory map is protected!");
        return false;
    }
    if (!map || count == 0) {
        error = tr("Upload failed: empty map");
        return false;
    }
    if (!m_camera.WriteRegister(kMapRegClearSlot, number)) {
        error = tr("Clear map failed (protected map)");
        return false;
    }
    std::vector<uint32_t> words =
        packRegisterMap(map, count, profile.revision == kTypedMapRevision, profile.bigEndian, profile.maxMapSize);
    unsigned int size = static_cast<unsigned int>(words.size() * sizeof(uint32_t));
    const unsigned int wanted = size;
    if (size != 0 && !m_camera.Write(kMapRegEntries, reinterpret_cast<const unsigned char*>(words.data()), &size)) {
        bytes = 0;
        error = tr("Writing the map registers failed.");
        return false;
    }
    bytes = size;
    uint32_t control = 0;
    if (size != wanted || !m_camera.ReadRegister(kMapRegControl, &control)
        || !m_camera.WriteRegister(kMapRegControl, control | 1u)) {
        error = tr("The camera did not take the whole map.");
        return false;
    }
    return true;
}

bool CameraMapSlots::upload(const BatchMapProfile& profile, const BatchMapSlot& slot, const t_defpix* map,
                            unsigned int count, unsigned int imageWidth, unsigned int imagePixelCount,
                            qint64& bytes, QString& error)
{
    bytes = 0;
    if (profile.registerMode)
        return uploadRegisters(profile, slot, map, count, bytes, error);
    return uploadFile(profile, slot, map, count, imageWidth, imagePixelCount, bytes, error);
}

bool CameraMapSlots::readBack(const BatchMapProfile& profile, const BatchMapSlot& slot,
                              std::vector<t_defpix>& entries, QString& error)
{
    entries.clear();
    if (profile.registerMode) {
        uint32_t number = 0;
        uint32_t size = 0;
        if (!selectRegisterSlot(slot, number, error))
            return false;
        if (!m_camera.ReadRegister(kMapRegMapSize, &size) || size > profile.maxMapSize) {
            error = tr("The map size of '%1' cannot be read.").arg(slot.name);
            return false;
        }
        std::vector<uint32_t> words(size, 0);
        unsigned int bytes = size * sizeof(uint32_t);
        if (size != 0 && !m_camera.Read(kMapRegEntries, reinterpret_cast<unsigned char*>(words.data()), &bytes)) {
            error = tr("Reading the map registers failed.");
            return false;
        }
        entries.resize(profile.maxMapSize);
        unsigned int count = 0;
        unpackRegisterMap(words.data(), words.size(), typedSlot(profile, slot), profile.bigEndian, entries.data(),
                          profile.maxMapSize, count);
        entries.resize(count);
        return true;
    }
    if (slot.cannotRead) {
        error = tr("The map slot '%1' cannot be read.").arg(slot.name);
        return false;
    }
    QTemporaryDir scratch;
    const QString path = scratch.filePath("slot.bin");
    const QByteArray name = slot.name.toUtf8();
    long read = 0;
    if (!scratch.isValid() || !m_camera.DownloadDeviceFile(path, name.constData(), name.constData(), &read)) {
        error = tr("The download of '%1' failed.").arg(slot.name);
        return false;
    }
    QFile file(path);
    const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    DefPixContainer container;
    if (!checkDefPixContainerBuffer(reinterpret_cast<const unsigned char*>(content.constData()),
                                    size_t(content.size()), unsigned(profile.revision), &container)) {
        error = tr("The map read back from '%1' is not a valid container.").arg(slot.name);
        return false;
    }
    entries = container.entries;
    return true;
}

std::vector<t_defpix> CameraMapSlots::expectedEntries(const BatchMapProfile& profile, const BatchMapSlot& slot,
                                                      const t_defpix* map, unsigned int count) const
{
    std::vector<t_defpix> expected;
    if (profile.registerMode) {
        const std::vector<uint32_t> words =
            packRegisterMap(map, count, profile.revision == kTypedMapRevision, profile.bigEndian, profile.maxMapSize);
        expected.resize(profile.maxMapSize);
        unsigned int unpacked = 0;
        unpackRegisterMap(words.data(), words.size(), typedSlot(profile, slot), profile.bigEndian, expected.data(),
                          profile.maxMapSize, unpacked);
        expected.resize(unpacked);
        return expected;
    }
    const bool typed = profile.revision == kTypedMapRevision;
    for (unsigned int i = 0; i < count; ++i)
        expected.push_back({map[i].x, map[i].y, typed ? map[i].type : 0u});
    return expected;
}
