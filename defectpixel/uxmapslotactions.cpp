#include "uxmapslotactions.h"

#include "defectmapcontainer.h"
#include "imagegeometry.h"
#include "localmapcheck.h"
#include "mapslotbinding.h"
#include "uxdialogs.h"
#include "uxfiletaskrunner.h"
#include "uxmapfiles.h"
#include "uxmapstatus.h"
#include "uxmaptransfers.h"
#include "uxpanelmessages.h"

#include <QFile>
#include <QFileInfo>

#include <climits>

UXCMapSlotActions::UXCMapSlotActions(const Parts& parts, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
{
}

void UXCMapSlotActions::tell(bool done, const QString& logLine, const QString& success, const QString& failure) const
{
    m_parts.messages.log(logLine.arg(done ? tr(" succeeded") : tr(" failed")), done ? LogInfo : LogError);
    if (!done)
        m_parts.messages.report(failure, LogError);
    else if (!success.isEmpty())
        m_parts.messages.report(success, LogInfo);
}

void UXCMapSlotActions::startUpload(const QString& name, const QString& logLine, const QString& slot,
                                    const std::function<MapTransfer(FileAccessMapSlots&, long&)>& run,
                                    const QString& success)
{
    m_parts.fileTasks.start({name, slot, run,
                             [logLine, slot](bool uploaded, long written) {
                                 return logLine.arg(slot, uploaded ? QString() : tr(" failed")).arg(written);
                             },
                             [success] { return success; },
                             {}});
}

void UXCMapSlotActions::uploadGenerated(const QString& slot, const DefectMap& map, const ImageGeometry& geometry)
{
    UXCPanelMessages& messages = m_parts.messages;
    const MapSlotBinding& binding = m_parts.binding;
    if (binding.mapSlots && binding.mapSlots->paramsLocked()) {
        messages.dialogs().critical(messages.window(), tr("Upload Map"),
                                    tr("Stop streaming before uploading map to camera."));
        return;
    }
    const QString title = tr("Upload Defect Pixel Map");
    if (map.isEmpty()) {
        messages.dialogs().information(messages.window(), title, tr("Upload failed: empty map"));
        messages.log(tr("Upload failed: empty map!"), LogError);
        return;
    }
    if (m_parts.status.refuseFactorySlot(binding.registerMode, title, tr("Upload Map %1.").arg(tr(" failed")))
        || !m_parts.status.confirmStaleUpload()
        || !messages.ask(title, tr("The uploaded map would overwrite the selected map '%1'.\nStart upload?").arg(slot)))
        return;
    const QString success = tr("Uploaded %n entry(s) to %1.", nullptr, int(map.count())).arg(slot);
    if (binding.registerMode) {
        m_parts.transfers.selectByName(slot);
        tell(m_parts.transfers.uploadWords(map.data(), map.count()), tr("Upload Map %1."), success,
             tr("Upload to %1 failed.").arg(slot));
        return;
    }
    const std::vector<unsigned char> container =
        buildDefPixContainerBuffer(static_cast<unsigned int>(binding.revision),
                                   static_cast<ge3_chunk_id_t>(binding.chunkId), map.count(), map.data(),
                                   geometry.width, geometry.pixelCount);
    startUpload(tr("Upload Generated Map"), tr("Upload Generated Map '%1'%2: %3 bytes written."), slot,
                [container, slot](FileAccessMapSlots& files, long& written) {
                    return files.uploadContainer(container, slot, written);
                },
                success);
}

void UXCMapSlotActions::uploadLocal(const QString& slot)
{
    UXCPanelMessages& messages = m_parts.messages;
    const MapSlotBinding& binding = m_parts.binding;
    const QString title = tr("Upload Local Map");
    if (m_parts.status.refuseFactorySlot(binding.registerMode, title, tr("Upload Local Map %1.").arg(tr(" failed")))
        || !messages.ask(title,
                         tr("The uploaded map would overwrite the selected map '%1'.\nDo you want to proceed?").arg(slot)))
        return;
    unsigned int width = 0;
    unsigned int height = 0;
    if (binding.registerMode) {
        std::vector<t_defpix> map(binding.maxMapSize);
        unsigned int count = 0;
        const QString file = m_parts.files.chooseTextMap();
        sensorSize(width, height);
        // The file is judged before the map is loaded: nothing reaches the slot unseen.
        if (!file.isEmpty()
            && !messages.confirmLocalMap(checkLocalTextMap(file, width, height, binding.maxMapSize), file, slot, width,
                                         height))
            return;
        if (file.isEmpty() || !m_parts.files.load(file, map.data(), count)) {
            messages.log(tr("Upload Map: loading local map failed!"), LogError);
            if (!file.isEmpty())
                messages.report(tr("Loading %1 failed.").arg(file), LogError);
            return;
        }
        m_parts.transfers.selectByName(slot);
        const bool uploaded =
            m_parts.transfers.uploadEntries(map.data(), count) || m_parts.transfers.uploadWords(map.data(), count);
        tell(uploaded, tr("Upload Local Map %1."), tr("Uploaded %n entry(s) to %1.", nullptr, int(count)).arg(slot),
             tr("Upload to %1 failed.").arg(slot));
        return;
    }
    const QString path = messages.dialogs().getOpenFileName(messages.window(), title, UXCMapFiles::startDir(),
                                                            tr("Bin (*.bin)"));
    if (path.isEmpty())
        return;
    sensorSize(width, height);
    const LocalMapCheck check = checkLocalContainerMap(path, static_cast<unsigned int>(binding.revision), width, height);
    if (!messages.confirmLocalMap(check, path, slot, width, height))
        return;
    const QString success = tr("Uploaded %n entry(s) to %1.", nullptr, int(check.entries.size())).arg(slot);
    startUpload(tr("Upload Local File"), tr("Upload Local File '%1'%2: %3 bytes written."), slot,
                [path, slot](FileAccessMapSlots& files, long& written) {
                    return files.uploadLocalFile(path, slot, written);
                },
                success);
    UXCMapFiles::rememberDir(QFileInfo(path).absolutePath());
}

void UXCMapSlotActions::download(const QString& slot, const DefectMap& generated, const ImageGeometry& geometry)
{
    UXCPanelMessages& messages = m_parts.messages;
    const MapSlotBinding& binding = m_parts.binding;
    if (binding.registerMode) {
        if (binding.mapSlots)
            binding.mapSlots->selectSlotByName(slot);
        std::vector<t_defpix> map(binding.maxMapSize);
        unsigned int count = 0;
        const bool downloaded = m_parts.transfers.downloadEntries(map.data(), count)
                                && m_parts.files.save(map.data(), count, generated, geometry);
        if (downloaded) {
            map.resize(count);
            emit mapDownloaded(map, slot);
        }
        const QString savedFile = m_parts.files.savedFile();
        tell(downloaded, tr("Download device file %1."),
             savedFile.isEmpty() ? QString()
                                 : tr("Downloaded %n entry(s) from %1 to %2.", nullptr, int(count)).arg(slot, savedFile),
             tr("Download from %1 failed.").arg(slot));
        return;
    }
    QString path = messages.dialogs().getSaveFileName(messages.window(), tr("Download File As"),
                                                      UXCMapFiles::startDir(), tr("Bin (*.bin)"));
    if (path.isEmpty())
        return;
    if (!path.endsWith(".bin", Qt::CaseInsensitive))
        path += ".bin";
    const auto revision = static_cast<unsigned int>(binding.revision);
    m_parts.fileTasks.start(
        {tr("Download"), slot,
         [path, slot](FileAccessMapSlots& files, long& read) { return files.download(path, slot, read); },
         [slot](bool, long read) { return tr("Download device file %1: %2 bytes written.").arg(slot).arg(read); },
         [this, path, slot, revision] {
             const LocalMapCheck got = checkLocalContainerMap(path, revision, UINT_MAX, UINT_MAX);
             emit mapDownloaded(got.entries, slot);
             return tr("Downloaded %n entry(s) from %1 to %2.", nullptr, int(got.entries.size())).arg(slot, path);
         },
         [path] { QFile::remove(path); }});
}

void UXCMapSlotActions::sensorSize(unsigned int& width, unsigned int& height) const
{
    QVariant w;
    QVariant h;
    CameraPort* port = m_parts.binding.mapSlots ? &m_parts.binding.mapSlots->port() : nullptr;
    const bool known = port
                       && ((port->getFeature("WidthMax", w) && port->getFeature("HeightMax", h))
                           || (port->getFeature("Width", w) && port->getFeature("Height", h)));
    width = w.toUInt();
    height = h.toUInt();
    if (known && width > 0 && height > 0)
        return;
    // Without a size only the other checks can be made.
    width = UINT_MAX;
    height = UINT_MAX;
}
