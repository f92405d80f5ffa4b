#include "filemapslots.h"

#include "defectmapcontainer.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

constexpr unsigned long kCloseTimeoutMs = 180000;
const char* const kMapSelect = "DefectPixelCorrection_MapSelect";

} // namespace

bool FileAccessMapSlots::correctionEnabled(bool& enabled)
{
    QVariant value;
    if (!m_port.getFeature("DefectPixelCorrectionEnable_Control", value))
        return false;
    enabled = value.toLongLong() != 0;
    return true;
}

bool FileAccessMapSlots::setCorrectionEnabled(bool enabled)
{
    return m_port.setFeature("DefectPixelCorrectionEnable_Control", enabled);
}

bool FileAccessMapSlots::selectedSlot(QVariant& slot)
{
    return m_port.getFeature(kMapSelect, slot);
}

bool FileAccessMapSlots::selectSlot(const QVariant& slot)
{
    return m_port.setFeature(kMapSelect, slot);
}

bool FileAccessMapSlots::reportedMaxMapSize(QVariant& size)
{
    return m_port.getFeature("DefectPixelCorrection_MapMaxSize", size);
}

bool FileAccessMapSlots::mapSize(QVariant& size)
{
    return m_port.getFeature("DefectPixelCorrection_MapSize", size);
}

bool FileAccessMapSlots::entry(unsigned int index, unsigned int& x, unsigned int& y)
{
    QVariant vx;
    QVariant vy;
    if (!m_port.setFeature("DefectPixelCorrection_MapIndex", index)
        || !m_port.getFeature("DefectPixelCorrection_X", vx) || !m_port.getFeature("DefectPixelCorrection_Y", vy))
        return false;
    x = vx.toUInt();
    y = vy.toUInt();
    return true;
}

bool FileAccessMapSlots::setEntry(unsigned int index, unsigned int x, unsigned int y)
{
    return m_port.setFeature("DefectPixelCorrection_MapIndex", index)
           && m_port.setFeature("DefectPixelCorrection_X", x) && m_port.setFeature("DefectPixelCorrection_Y", y);
}

MapTransfer FileAccessMapSlots::finish(bool moved, bool complete, MapTransfer failure)
{
    // A cancel that came after the last block changed nothing.
    if (m_cancel.exchange(false) && !complete)
        return MapTransfer::Cancelled;
    return moved ? MapTransfer::Done : failure;
}

MapTransfer FileAccessMapSlots::uploadContainer(const std::vector<unsigned char>& container, const QString& slot,
                                                long& written)
{
    if (container.empty()) {
        m_cancel = false;
        return MapTransfer::EmptyMap;
    }
    // Nothing written counts as a failure even when the camera closed the file.
    const bool moved = m_port.uploadFile(container, slot, written, &m_cancel) && written > 0;
    return finish(moved, moved && size_t(written) == container.size(), MapTransfer::WriteFailed);
}

MapTransfer FileAccessMapSlots::uploadLocalFile(const QString& path, const QString& slot, long& written)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_cancel = false;
        return MapTransfer::ReadFailed;
    }
    const QByteArray content = file.readAll();
    return uploadContainer(std::vector<unsigned char>(content.begin(), content.end()), slot, written);
}

MapTransfer FileAccessMapSlots::download(const QString& path, const QString& slot, long& read)
{
    const bool moved = m_port.downloadFile(path, slot, read, &m_cancel);
    return finish(moved, moved, MapTransfer::ReadFailed);
}

MapTransfer FileAccessMapSlots::readBack(const QString& slot, unsigned int revision, std::vector<t_defpix>& entries)
{
    entries.clear();
    QTemporaryDir scratch;
    const QString path = scratch.filePath("slot.bin");
    long read = 0;
    if (!scratch.isValid() || download(path, slot, read) != MapTransfer::Done)
        return MapTransfer::ReadFailed;
    QFile file(path);
    const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    DefPixContainer container;
    if (!checkDefPixContainerBuffer(reinterpret_cast<const unsigned char*>(content.constData()),
                                    size_t(content.size()), revision, &container))
        return MapTransfer::InvalidSize;
    entries = container.entries;
    return MapTransfer::Done;
}

void FileAccessMapSlots::closeDeviceFile()
{
    if (m_port.setFeature("FileOperationSelector", QString("Close")))
        m_port.runCommand("FileOperationExecute", kCloseTimeoutMs);
}
