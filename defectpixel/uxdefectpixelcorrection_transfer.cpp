#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "defectmapfile.h"
#include "defectviewerbinding.h"
#include "filemapslots.h"
#include "localmapcheck.h"
#include "mapformat.h"
#include "registermapslots.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"
#include "uxdialogs.h"
#include "uxmapstatus.h"
#include "uxpanelmessages.h"
#include "uxsettings.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>

#include <climits>

namespace {

// Register transfers run on the GUI thread, entry by entry; the cursor says the
// window is busy. Scoped so that no message box ever shows under it.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

QString settingsMapDir()
{
    return UXCSettings::getInstance()->Get("Directory", "PDCSettingsFileDir").toString();
}

// The folder of the last map file becomes the dialogs' start folder.
void storeMapDir(const QString& dir)
{
    if (dir != settingsMapDir())
        UXCSettings::getInstance()->Set(QStringLiteral("Directory"), QStringLiteral("PDCSettingsFileDir"), dir);
}

} // namespace

// Map quantities of the camera: forwards to the camera's map slots

bool UXCDefectPixelCorrection::GetRegValue(unsigned long address, uint32_t& value)
{
    return m_camera && m_camera->readRegister(address, value);
}

bool UXCDefectPixelCorrection::SetRegValue(unsigned long address, uint32_t value)
{
    return m_camera && m_camera->writeRegister(address, value);
}

bool UXCDefectPixelCorrection::isParamlocked()
{
    return m_mapSlots && m_mapSlots->paramsLocked();
}

bool UXCDefectPixelCorrection::getPixelsCorrectionControlEnable(bool& enabled)
{
    return m_mapSlots && m_mapSlots->correctionEnabled(enabled);
}

bool UXCDefectPixelCorrection::setPixelsCorrectionControlEnable(bool enabled)
{
    return m_mapSlots && m_mapSlots->setCorrectionEnabled(enabled);
}

bool UXCDefectPixelCorrection::setPixelsCorrectionControlMark(bool mark)
{
    return m_mapSlots && m_mapSlots->setCorrectionMark(mark);
}

bool UXCDefectPixelCorrection::getSelectedDefectPixelCorrectionMap(QVariant& slot)
{
    return m_mapSlots && m_mapSlots->selectedSlot(slot);
}

bool UXCDefectPixelCorrection::SelectDefectPixelCorrectionMap(const QVariant& slot)
{
    return m_mapSlots && m_mapSlots->selectSlot(slot);
}

bool UXCDefectPixelCorrection::getMaximalPixelsCorrectionMapSize(QVariant& size)
{
    unsigned int maximum = 0;
    QString reported;
    const MaxMapSize read = m_mapSlots ? m_mapSlots->maxMapSize(maximum, reported) : MaxMapSize::Unreadable;
    if (read == MaxMapSize::Implausible)
        log(tr("The camera reports an implausible maximal map size: %1.").arg(reported), LogError);
    if (read == MaxMapSize::Read)
        size = maximum;
    return read == MaxMapSize::Read;
}

bool UXCDefectPixelCorrection::getPixelsCorrectionMapSize(QVariant& size)
{
    return m_mapSlots && m_mapSlots->mapSize(size);
}

bool UXCDefectPixelCorrection::getMapCoordinate(unsigned int index, unsigned int& x, unsigned int& y)
{
    return m_mapSlots && m_mapSlots->entry(index, x, y);
}

bool UXCDefectPixelCorrection::setMapCoordinate(unsigned int index, unsigned int x, unsigned int y)
{
    return m_mapSlots && m_mapSlots->setEntry(index, x, y);
}

bool UXCDefectPixelCorrection::clearDefectPixelCorrectionMap(const QVariant& slot)
{
    return m_mapSlots && m_mapSlots->clearSlot(slot);
}

// Transfer routines: the sequences run in the map slots; the panel words their ends.

bool UXCDefectPixelCorrection::upload_defpix_map_genicam(t_defpix* map, unsigned int count)
{
    if (!map || count == 0 || !m_mapSlots)
        return false;
    QString reported;
    MapTransfer outcome;
    {
        const WaitCursor busy;
        outcome = uploadMapEntries(*m_mapSlots, map, count, m_maxMapSize, reported);
    }
    if (outcome == MapTransfer::MaxSizeFailed && !reported.isNull())
        log(tr("The camera reports an implausible maximal map size: %1.").arg(reported), LogError);
    return reportTransfer(outcome, tr("Upload Defect Pixel Map"), TransferRoutine::EntryUpload);
}

bool UXCDefectPixelCorrection::uploadMap_RegisterAccess(t_defpix* map, unsigned int count)
{
    if (!m_mapSlots || !m_registerMode)
        return false;
    MapTransfer outcome;
    {
        const WaitCursor busy;
        unsigned int bytes = 0;
        outcome = static_cast<RegisterMapSlots&>(*m_mapSlots)
                      .uploadWords(map, count, m_revision == kTypedMapRevision, m_bigEndian, m_maxMapSize, bytes,
                                   [this](double percent) { emit actionViewerUpdateProcessBar(true, int(percent)); });
    }
    // Enabling the correction afterwards is tried, its failure not reported.
    const bool written = outcome == MapTransfer::Done || outcome == MapTransfer::EnableFailed;
    if (written)
        emit actionViewerUpdateProcessBar(true, 100);
    else if (outcome == MapTransfer::ShortWrite)
        reportTransfer(MapTransfer::WriteFailed, tr("Upload Defect Pixel Map"), TransferRoutine::WordUpload);
    else if (!reportTransfer(outcome, tr("Upload Defect Pixel Map"), TransferRoutine::WordUpload)
             && outcome != MapTransfer::WriteFailed)
        return false; // refused before anything was written: the bar was never shown
    emit actionViewerUpdateProcessBar(false, 0);
    return written;
}

bool UXCDefectPixelCorrection::Gen_download_defpix_map(t_defpix* map, unsigned int& count)
{
    count = 0;
    MapTransfer outcome = MapTransfer::SizeFailed;
    if (m_mapSlots) {
        const WaitCursor busy;
        outcome = downloadMapEntries(*m_mapSlots, map, m_maxMapSize, count);
    }
    return reportTransfer(outcome, tr("Download Map From Camera"), TransferRoutine::EntryDownload);
}

bool UXCDefectPixelCorrection::downloadMap_RegisterAccess()
{
    const QString title = tr("Download Map");
    defpix_reset();
    if (!m_map.data() || !m_mapSlots || !m_registerMode) {
        dialogs().critical(this, title, tr("Download failed: map not initialized"));
        log(tr("Download Map: map not initialized!"), LogError);
        return false;
    }
    unsigned int count = 0;
    MapTransfer outcome;
    {
        const WaitCursor busy;
        outcome = static_cast<RegisterMapSlots&>(*m_mapSlots)
                      .downloadWords(typedMap(), m_bigEndian, m_map.data(), m_maxMapSize, count);
    }
    m_map.setCount(count);
    return reportTransfer(outcome, title, TransferRoutine::WordDownload);
}

namespace {

// How each transfer routine words a refusal: the box's text and the log line.
struct TransferText {
    UXCDefectPixelCorrection::TransferRoutine routine;
    MapTransfer outcome;
    const char* box;
    const char* line;
};

using Routine = UXCDefectPixelCorrection::TransferRoutine;
const TransferText kTransferTexts[] = {
    {Routine::EntryUpload, MapTransfer::FactoryProtected,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed: factory map is protected!"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed: factory map is protected")},
    {Routine::EntryUpload, MapTransfer::ClearFailed, QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Clear map failed"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed: Clear map failed")},
    {Routine::EntryUpload, MapTransfer::MaxSizeFailed,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Get maximal map size failed"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed: Get maximal map size failed!")},
    {Routine::EntryUpload, MapTransfer::TooManyEntries,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed: maximum number of defect pixels exceeded!"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed: maximum number of defect pixels exceeded!")},
    {Routine::WordUpload, MapTransfer::SlotUnknown,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Get selected map failed!"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload Defect Pixel Map: Get selected map failed!")},
    {Routine::WordUpload, MapTransfer::FactoryProtected,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed: upload to factory map is protected!"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload Defect Pixel Map: upload to factory map is protected!")},
    {Routine::WordUpload, MapTransfer::EmptyMap,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed: empty map"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload Defect Pixel Map: empty map!")},
    {Routine::WordUpload, MapTransfer::ClearFailed,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Clear map failed (protected map)"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload Defect Pixel Map: Clear map failed (protected map)!")},
    {Routine::WordUpload, MapTransfer::WriteFailed, QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload failed"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Upload Defect Pixel Map: Upload failed!")},
    {Routine::EntryDownload, MapTransfer::SizeFailed,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Get map size failed"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Download failed: Get map size failed!")},
    {Routine::EntryDownload, MapTransfer::InvalidSize,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Download failed: invalid map size!"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Download failed: invalid map size!")},
    {Routine::WordDownload, MapTransfer::SlotUnknown,
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Get selected map failed"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Download Map: Get selected map failed!")},
    {Routine::WordDownload, MapTransfer::SizeFailed, QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Get map size failed"),
     QT_TRANSLATE_NOOP("UXCDefectPixelCorrection", "Download Map: Get map size failed!")},
};

} // namespace

bool UXCDefectPixelCorrection::reportTransfer(MapTransfer outcome, const QString& title, TransferRoutine routine)
{
    if (outcome == MapTransfer::Done)
        return true;
    for (const TransferText& text : kTransferTexts) {
        if (text.routine == routine && text.outcome == outcome) {
            dialogs().critical(this, title, tr(text.box));
            log(tr(text.line), LogError);
        }
    }
    return false;
}

// Map files

bool UXCDefectPixelCorrection::SaveMap(t_defpix* map, unsigned int count)
{
    m_mapDir = settingsMapDir();
    const QString extension = defectMapFileExtension(m_registerMode);
    const QString filter = m_registerMode ? tr("Text (*%1)") : tr("Bin (*%1)");
    const QString name = dialogs().getSaveFileName(this, tr("Export Map"), m_mapDir, filter.arg(extension));
    DefectMapFilePanelState state;
    state.registerMode = m_registerMode;
    state.revision = static_cast<unsigned int>(m_revision);
    state.chunkId = static_cast<ge3_chunk_id_t>(m_chunkId);
    state.map = m_map.data();
    state.count = m_map.count();
    state.imageWidth = m_geometry.width;
    state.imagePixelCount = m_geometry.pixelCount;
    m_savedFile = name.isEmpty() ? QString() : defectMapFileName(name, m_registerMode);
    const bool saved = saveDefectMapFile(name, map, count, state, m_mapDir);
    storeMapDir(m_mapDir);
    return saved;
}

bool UXCDefectPixelCorrection::LoadMap(t_defpix* map, unsigned int& count)
{
    if (!map || m_maxMapSize == 0)
        return false;
    m_mapDir = settingsMapDir();
    const QString name = dialogs().getOpenFileName(this, tr("Import Map"), m_mapDir, tr("Text (*.txt)"));
    return loadMapFile(name, map, count);
}

bool UXCDefectPixelCorrection::loadMapFile(const QString& name, t_defpix* map, unsigned int& count)
{
    if (!map || name.isEmpty())
        return false;
    const bool loaded = loadDefectMapFile(name, map, m_maxMapSize, count, static_cast<unsigned int>(m_revision),
                                          static_cast<ge3_chunk_id_t>(m_chunkId), m_patterns, m_mapDir);
    storeMapDir(m_mapDir);
    return loaded;
}

void UXCDefectPixelCorrection::on_btnSaveMapToFile_clicked()
{
    if (!SaveMap(m_map.data(), m_map.count())) {
        dialogs().critical(this, tr("Save Map"), tr("Save to file failed!"));
        report(tr("Saving the map failed."), LogError);
    } else if (!m_savedFile.isEmpty()) {
        report(tr("Map of %n entry(s) saved to %1.", nullptr, int(m_map.count())).arg(m_savedFile), LogInfo);
    }
}

// Transfer buttons

bool UXCDefectPixelCorrection::selectMapByName(const QString& name)
{
    if (m_mapSlots && m_mapSlots->selectSlotByName(name))
        return true;
    log(tr("Upload Map: setting DefectPixelCorrection_MapSelect to '%1' failed!").arg(name), LogError);
    return false;
}

void UXCDefectPixelCorrection::on_btnUploadMapToCam_clicked()
{
    if (isParamlocked()) {
        dialogs().critical(this, tr("Upload Map"), tr("Stop streaming before uploading map to camera."));
        return;
    }
    const QString title = tr("Upload Defect Pixel Map");
    if (m_map.isEmpty()) {
        dialogs().information(this, title, tr("Upload failed: empty map"));
        log(tr("Upload failed: empty map!"), LogError);
        return;
    }
    if (m_mapStatus->refuseFactorySlot(m_registerMode, title, tr("Upload Map %1.").arg(tr(" failed")))
        || !m_mapStatus->confirmStaleUpload())
        return;
    const QString name = ui->cmbDefectPixelMapSelector->currentText();
    if (!m_messages->ask(title, tr("The uploaded map would overwrite the selected map '%1'.\nStart upload?").arg(name)))
        return;
    const QString success = tr("Uploaded %n entry(s) to %1.", nullptr, int(m_map.count())).arg(name);

    if (m_registerMode) {
        selectMapByName(name);
        const bool uploaded = uploadMap_RegisterAccess(m_map.data(), m_map.count());
        log(tr("Upload Map %1.").arg(uploaded ? tr(" succeeded") : tr(" failed")), uploaded ? LogInfo : LogError);
        report(uploaded ? success : tr("Upload to %1 failed.").arg(name), uploaded ? LogInfo : LogError);
        return;
    }
    const std::vector<unsigned char> container =
        buildDefPixContainerBuffer(static_cast<unsigned int>(m_revision), static_cast<ge3_chunk_id_t>(m_chunkId),
                                   m_map.count(), m_map.data(), m_geometry.width, m_geometry.pixelCount);
    startFileTask({tr("Upload Generated Map"), name,
                   [container, name](FileAccessMapSlots& files, long& written) {
                       return files.uploadContainer(container, name, written);
                   },
                   [name](bool uploaded, long written) {
                       return tr("Upload Generated Map '%1'%2: %3 bytes written.")
                           .arg(name, uploaded ? QString() : tr(" failed"))
                           .arg(written);
                   },
                   [success] { return success; },
                   {}});
}

void UXCDefectPixelCorrection::on_btnUploadLocalMap_clicked()
{
    const QString title = tr("Upload Local Map");
    if (m_mapStatus->refuseFactorySlot(m_registerMode, title, tr("Upload Local Map %1.").arg(tr(" failed"))))
        return;
    const QString name = ui->cmbDefectPixelMapSelector->currentText();
    if (!m_messages->ask(title,
                         tr("The uploaded map would overwrite the selected map '%1'.\nDo you want to proceed?").arg(name)))
        return;

    if (m_registerMode) {
        std::vector<t_defpix> map(m_maxMapSize);
        unsigned int count = 0;
        m_mapDir = settingsMapDir();
        const QString file = dialogs().getOpenFileName(this, tr("Import Map"), m_mapDir, tr("Text (*.txt)"));
        unsigned int width = 0;
        unsigned int height = 0;
        sensorSize(width, height);
        // The file is judged before the map is loaded: nothing reaches the slot unseen.
        if (!file.isEmpty()
            && !m_messages->confirmLocalMap(checkLocalTextMap(file, width, height, m_maxMapSize), file, name, width,
                                            height))
            return;
        if (file.isEmpty() || !loadMapFile(file, map.data(), count)) {
            log(tr("Upload Map: loading local map failed!"), LogError);
            if (!file.isEmpty())
                report(tr("Loading %1 failed.").arg(file), LogError);
            return;
        }
        selectMapByName(name);
        const bool uploaded =
            upload_defpix_map_genicam(map.data(), count) || uploadMap_RegisterAccess(map.data(), count);
        log(tr("Upload Local Map %1.").arg(uploaded ? tr(" succeeded") : tr(" failed")),
            uploaded ? LogInfo : LogError);
        report(uploaded ? tr("Uploaded %n entry(s) to %1.", nullptr, int(count)).arg(name)
                        : tr("Upload to %1 failed.").arg(name),
               uploaded ? LogInfo : LogError);
        return;
    }
    const QString dir = settingsMapDir();
    const QString path = dialogs().getOpenFileName(this, title, dir, tr("Bin (*.bin)"));
    if (path.isEmpty())
        return;
    unsigned int width = 0;
    unsigned int height = 0;
    sensorSize(width, height);
    const LocalMapCheck check = checkLocalContainerMap(path, static_cast<unsigned int>(m_revision), width, height);
    if (!m_messages->confirmLocalMap(check, path, name, width, height))
        return;
    const QString success = tr("Uploaded %n entry(s) to %1.", nullptr, int(check.entries.size())).arg(name);
    startFileTask({tr("Upload Local File"), name,
                   [path, name](FileAccessMapSlots& files, long& written) {
                       return files.uploadLocalFile(path, name, written);
                   },
                   [name](bool uploaded, long written) {
                       return tr("Upload Local File '%1'%2: %3 bytes written.")
                           .arg(name, uploaded ? QString() : tr(" failed"))
                           .arg(written);
                   },
                   [success] { return success; },
                   {}});
    const QString chosenDir = QFileInfo(path).absolutePath();
    if (chosenDir != dir)
        UXCSettings::getInstance()->Set("Directory", "PDCSettingsFileDir", chosenDir);
}

void UXCDefectPixelCorrection::on_btnDownloadMapToFile_clicked()
{
    const QString name = ui->cmbDefectPixelMapSelector->currentText();
    if (m_registerMode) {
        if (m_mapSlots)
            m_mapSlots->selectSlotByName(name);
        std::vector<t_defpix> map(m_maxMapSize);
        unsigned int count = 0;
        const bool downloaded = Gen_download_defpix_map(map.data(), count) && SaveMap(map.data(), count);
        if (downloaded) {
            map.resize(count);
            m_viewerBinding->showDownloadedMap(map, name);
        }
        log(tr("Download device file %1.").arg(downloaded ? tr(" succeeded") : tr(" failed")),
            downloaded ? LogInfo : LogError);
        if (!downloaded)
            report(tr("Download from %1 failed.").arg(name), LogError);
        else if (!m_savedFile.isEmpty())
            report(tr("Downloaded %n entry(s) from %1 to %2.", nullptr, int(count)).arg(name, m_savedFile), LogInfo);
        return;
    }
    QString path = dialogs().getSaveFileName(this, tr("Download File As"), settingsMapDir(), tr("Bin (*.bin)"));
    if (path.isEmpty())
        return;
    if (!path.endsWith(".bin", Qt::CaseInsensitive))
        path += ".bin";
    const unsigned int revision = static_cast<unsigned int>(m_revision);
    startFileTask({tr("Download"), name,
                   [path, name](FileAccessMapSlots& files, long& read) { return files.download(path, name, read); },
                   [name](bool, long read) { return tr("Download device file %1: %2 bytes written.").arg(name).arg(read); },
                   [this, path, name, revision] {
                       const LocalMapCheck got = checkLocalContainerMap(path, revision, UINT_MAX, UINT_MAX);
                       m_viewerBinding->showDownloadedMap(got.entries, name);
                       return tr("Downloaded %n entry(s) from %1 to %2.", nullptr, int(got.entries.size()))
                           .arg(name, path);
                   },
                   [path] { QFile::remove(path); }});
}

// File tasks

void UXCDefectPixelCorrection::startFileTask(UXCFileTaskRunner::Task task)
{
    if (!m_camera || !m_fileTasks->start(std::move(task)))
        return;
    ui->btnUploadMapToCam->setEnabled(false);
    ui->btnUploadLocalMap->setEnabled(false);
    ui->btnDownloadMapToFile->setEnabled(false);
}

bool UXCDefectPixelCorrection::sensorSize(unsigned int& width, unsigned int& height) const
{
    QVariant w;
    QVariant h;
    const bool known = m_features
                       && ((m_features->GetValue("WidthMax", w) && m_features->GetValue("HeightMax", h))
                           || (m_features->GetValue("Width", w) && m_features->GetValue("Height", h)));
    width = w.toUInt();
    height = h.toUInt();
    if (known && width > 0 && height > 0)
        return true;
    // Without a size only the other checks can be made.
    width = UINT_MAX;
    height = UINT_MAX;
    return false;
}
