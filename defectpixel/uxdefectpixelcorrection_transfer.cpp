#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "defectmapfile.h"
#include "localmapcheck.h"
#include "maptransfer.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"
#include "uxdialogs.h"
#include "uxsettings.h"

#include <QApplication>
#include <QFileInfo>
#include <QProgressDialog>
#include <QtConcurrent>

#include <climits>
#include <utility>

namespace {

constexpr int kRoleChunkId = Qt::UserRole + 3;
constexpr unsigned long kCloseTimeoutMs = 180000;
constexpr qulonglong kMaxPlausibleMapSize = 1u << 20;

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

// Map quantities of the camera

bool UXCDefectPixelCorrection::GetRegValue(unsigned long address, uint32_t& value)
{
    return m_camera && m_camera->ReadRegister(address, &value);
}

bool UXCDefectPixelCorrection::SetRegValue(unsigned long address, uint32_t value)
{
    return m_camera && m_camera->WriteRegister(address, value);
}

bool UXCDefectPixelCorrection::isParamlocked()
{
    QVariant locked = 0;
    if (m_features)
        m_features->GetValue("TLParamsLocked", locked);
    return locked.toLongLong() == 1;
}

bool UXCDefectPixelCorrection::getPixelsCorrectionControlEnable(bool& enabled)
{
    if (m_registerMode) {
        uint32_t control = 0;
        if (!GetRegValue(kMapRegControl, control))
            return false;
        enabled = (control & 1) != 0;
        return true;
    }
    QVariant value;
    if (!m_features || !m_features->GetValue("DefectPixelCorrectionEnable_Control", value))
        return false;
    enabled = value.toLongLong() != 0;
    return true;
}

bool UXCDefectPixelCorrection::setPixelsCorrectionControlEnable(bool enabled)
{
    if (m_registerMode) {
        uint32_t control = 0;
        if (!GetRegValue(kMapRegControl, control))
            return false;
        return SetRegValue(kMapRegControl, enabled ? control | 1u : control & ~1u);
    }
    return m_features && m_features->SetValue("DefectPixelCorrectionEnable_Control", enabled);
}

bool UXCDefectPixelCorrection::setPixelsCorrectionControlMark(bool mark)
{
    return m_features
           && m_features->SetValue("DefectPixelCorrectionMark_Control", QString(mark ? "Mark" : "Off"));
}

bool UXCDefectPixelCorrection::getSelectedDefectPixelCorrectionMap(QVariant& slot)
{
    if (m_registerMode) {
        uint32_t value = 0;
        if (!GetRegValue(kMapRegSelectedSlot, value))
            return false;
        slot = value;
        return true;
    }
    return m_features && m_features->GetValue("DefectPixelCorrection_MapSelect", slot);
}

bool UXCDefectPixelCorrection::SelectDefectPixelCorrectionMap(const QVariant& slot)
{
    if (m_registerMode)
        return SetRegValue(kMapRegSelectedSlot, slot.toUInt());
    return m_features && m_features->SetValue("DefectPixelCorrection_MapSelect", slot);
}

bool UXCDefectPixelCorrection::getMaximalPixelsCorrectionMapSize(QVariant& size)
{
    QVariant reported;
    if (m_registerMode) {
        uint32_t value = 0;
        if (!GetRegValue(kMapRegMapMaxSize, value))
            return false;
        reported = value;
    } else if (!m_features || !m_features->GetValue("DefectPixelCorrection_MapMaxSize", reported)) {
        return false;
    }
    // The maximum sizes the map buffers, so a misbehaving camera must not choose it freely.
    bool isNumber = false;
    const qulonglong maximum = reported.toULongLong(&isNumber);
    if (!isNumber || maximum == 0 || maximum > kMaxPlausibleMapSize) {
        log(tr("The camera reports an implausible maximal map size: %1.").arg(reported.toString()), LogError);
        return false;
    }
    size = reported;
    return true;
}

bool UXCDefectPixelCorrection::getPixelsCorrectionMapSize(QVariant& size)
{
    if (m_registerMode) {
        uint32_t value = 0;
        if (!GetRegValue(kMapRegMapSize, value))
            return false;
        size = value;
        return true;
    }
    return m_features && m_features->GetValue("DefectPixelCorrection_MapSize", size);
}

bool UXCDefectPixelCorrection::getMapCoordinate(unsigned int index, unsigned int& x, unsigned int& y)
{
    if (m_registerMode) {
        uint32_t word = 0;
        if (!GetRegValue(mapEntryRegister(index), word))
            return false;
        x = word & 0xFFFF;
        y = word >> 16;
        return true;
    }
    QVariant vx;
    QVariant vy;
    if (!m_features || !m_features->SetValue("DefectPixelCorrection_MapIndex", index)
        || !m_features->GetValue("DefectPixelCorrection_X", vx) || !m_features->GetValue("DefectPixelCorrection_Y", vy))
        return false;
    x = vx.toUInt();
    y = vy.toUInt();
    return true;
}

bool UXCDefectPixelCorrection::setMapCoordinate(unsigned int index, unsigned int x, unsigned int y)
{
    if (m_registerMode)
        return SetRegValue(mapEntryRegister(index), x + (y << 16));
    return m_features && m_features->SetValue("DefectPixelCorrection_MapIndex", index)
           && m_features->SetValue("DefectPixelCorrection_X", x) && m_features->SetValue("DefectPixelCorrection_Y", y);
}

bool UXCDefectPixelCorrection::clearDefectPixelCorrectionMap(const QVariant& slot)
{
    return SetRegValue(kMapRegClearSlot, slot.toUInt());
}

// Transfer routines

bool UXCDefectPixelCorrection::upload_defpix_map_genicam(t_defpix* map, unsigned int count)
{
    if (!map || count == 0)
        return false;
    const QString title = tr("Upload Defect Pixel Map");
    QVariant slot;
    getSelectedDefectPixelCorrectionMap(slot);
    if (slot.toUInt() == 0) {
        dialogs().critical(this, title, tr("Upload failed: factory map is protected!"));
        log(tr("Upload failed: factory map is protected"), LogError);
        return false;
    }
    if (!clearDefectPixelCorrectionMap(slot)) {
        dialogs().critical(this, title, tr("Clear map failed"));
        log(tr("Upload failed: Clear map failed"), LogError);
        return false;
    }
    QVariant maximum;
    if (!getMaximalPixelsCorrectionMapSize(maximum)) {
        dialogs().critical(this, title, tr("Get maximal map size failed"));
        log(tr("Upload failed: Get maximal map size failed!"), LogError);
        return false;
    }
    m_maxMapSize = maximum.toUInt();
    if (count > m_maxMapSize) {
        dialogs().critical(this, title, tr("Upload failed: maximum number of defect pixels exceeded!"));
        log(tr("Upload failed: maximum number of defect pixels exceeded!"), LogError);
        return false;
    }
    const WaitCursor busy;
    for (unsigned int i = 0; i < count; ++i)
        setMapCoordinate(i, map[i].x, map[i].y);
    return true;
}

bool UXCDefectPixelCorrection::uploadMap_RegisterAccess(t_defpix* map, unsigned int count)
{
    const QString title = tr("Upload Defect Pixel Map");
    QVariant slot;
    if (!getSelectedDefectPixelCorrectionMap(slot)) {
        dialogs().critical(this, title, tr("Get selected map failed!"));
        log(tr("Upload Defect Pixel Map: Get selected map failed!"), LogError);
        return false;
    }
    if (slot.toUInt() == 0) {
        dialogs().critical(this, title, tr("Upload failed: upload to factory map is protected!"));
        log(tr("Upload Defect Pixel Map: upload to factory map is protected!"), LogError);
        return false;
    }
    if (!map || count == 0) {
        dialogs().critical(this, title, tr("Upload failed: empty map"));
        log(tr("Upload Defect Pixel Map: empty map!"), LogError);
        return false;
    }
    if (!clearDefectPixelCorrectionMap(slot)) {
        dialogs().critical(this, title, tr("Clear map failed (protected map)"));
        log(tr("Upload Defect Pixel Map: Clear map failed (protected map)!"), LogError);
        return false;
    }
    bool written = false;
    {
        const WaitCursor busy;
        std::vector<uint32_t> words =
            packRegisterMap(map, count, m_revision == kTypedMapRevision, m_bigEndian, m_maxMapSize,
                            [this](double percent) { emit actionViewerUpdateProcessBar(true, int(percent)); });
        const auto wanted = static_cast<unsigned int>(words.size() * sizeof(uint32_t));
        unsigned int bytes = wanted;
        // A short write leaves the map cut off in the camera: that is a failure too.
        written = m_camera
                  && m_camera->Write(kMapRegEntries, reinterpret_cast<const unsigned char*>(words.data()), &bytes)
                  && bytes == wanted;
    }
    if (written) {
        setPixelsCorrectionControlEnable(true);
        emit actionViewerUpdateProcessBar(true, 100);
    } else {
        dialogs().critical(this, title, tr("Upload failed"));
        log(tr("Upload Defect Pixel Map: Upload failed!"), LogError);
    }
    emit actionViewerUpdateProcessBar(false, 0);
    return written;
}

bool UXCDefectPixelCorrection::Gen_download_defpix_map(t_defpix* map, unsigned int& count)
{
    const QString title = tr("Download Map From Camera");
    count = 0;
    QVariant size;
    if (!getPixelsCorrectionMapSize(size)) {
        dialogs().critical(this, title, tr("Get map size failed"));
        log(tr("Download failed: Get map size failed!"), LogError);
        return false;
    }
    if (size.toULongLong() > m_maxMapSize) {
        dialogs().critical(this, title, tr("Download failed: invalid map size!"));
        log(tr("Download failed: invalid map size!"), LogError);
        return false;
    }
    const unsigned int entries = size.toUInt();
    const WaitCursor busy;
    for (unsigned int i = 0; i < entries; ++i) {
        unsigned int x = 0;
        unsigned int y = 0;
        if (getMapCoordinate(i, x, y))
            defpix_add(map, x, y, 0, count);
    }
    return true;
}

bool UXCDefectPixelCorrection::downloadMap_RegisterAccess()
{
    const QString title = tr("Download Map");
    defpix_reset();
    if (!m_map) {
        dialogs().critical(this, title, tr("Download failed: map not initialized"));
        log(tr("Download Map: map not initialized!"), LogError);
        return false;
    }
    QVariant slot;
    if (!getSelectedDefectPixelCorrectionMap(slot)) {
        dialogs().critical(this, title, tr("Get selected map failed"));
        log(tr("Download Map: Get selected map failed!"), LogError);
        return false;
    }
    QVariant size;
    if (!getPixelsCorrectionMapSize(size)) {
        dialogs().critical(this, title, tr("Get map size failed"));
        log(tr("Download Map: Get map size failed!"), LogError);
        return false;
    }
    // Words past the capacity (and the end word) would be dropped anyway.
    const auto wordCount = static_cast<unsigned int>(qMin<qulonglong>(size.toULongLong(), m_maxMapSize + 1ull));
    const WaitCursor busy;
    std::vector<uint32_t> words(wordCount, 0);
    unsigned int bytes = wordCount * sizeof(uint32_t);
    if (m_camera)
        m_camera->Read(kMapRegEntries, reinterpret_cast<unsigned char*>(words.data()), &bytes);
    unpackRegisterMap(words.data(), words.size(), typedMap(), m_bigEndian, m_map, m_maxMapSize, m_defectCount);
    return true;
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
    state.map = m_map;
    state.count = m_defectCount;
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
    if (!SaveMap(m_map, m_defectCount)) {
        dialogs().critical(this, tr("Save Map"), tr("Save to file failed!"));
        report(tr("Saving the map failed."), LogError);
    } else if (!m_savedFile.isEmpty()) {
        report(tr("Map of %n entry(s) saved to %1.", nullptr, int(m_defectCount)).arg(m_savedFile), LogInfo);
    }
}

// Transfer buttons

bool UXCDefectPixelCorrection::selectMapByName(const QString& name)
{
    if (m_features && m_features->SetValue("DefectPixelCorrection_MapSelect", name))
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
    if (!m_map || m_defectCount == 0) {
        dialogs().information(this, title, tr("Upload failed: empty map"));
        log(tr("Upload failed: empty map!"), LogError);
        return;
    }
    if (refuseFactorySlot(title, tr("Upload Map %1.").arg(tr(" failed"))) || !confirmStaleUpload())
        return;
    const QString name = ui->cmbDefectPixelMapSelector->currentText();
    const QString question = tr("The uploaded map would overwrite the selected map '%1'.\nStart upload?").arg(name);
    if (dialogs().question(this, title, question, QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
        return;
    const QString success = tr("Uploaded %n entry(s) to %1.", nullptr, int(m_defectCount)).arg(name);

    if (m_registerMode) {
        selectMapByName(name);
        const bool uploaded = uploadMap_RegisterAccess(m_map, m_defectCount);
        log(tr("Upload Map %1.").arg(uploaded ? tr(" succeeded") : tr(" failed")), uploaded ? LogInfo : LogError);
        report(uploaded ? success : tr("Upload to %1 failed.").arg(name), uploaded ? LogInfo : LogError);
        return;
    }
    m_transferSuccess = [success] { return success; };
    std::vector<unsigned char> container =
        buildDefPixContainerBuffer(static_cast<unsigned int>(m_revision), static_cast<ge3_chunk_id_t>(m_chunkId),
                                   m_defectCount, m_map, m_geometry.width, m_geometry.pixelCount);
    UxCamera* camera = m_camera;
    startFileTask(tr("Upload Generated Map"), [this, camera, container, name] {
        const QByteArray file = name.toUtf8();
        long written = 0;
        const bool uploaded = camera->UploadBuffer(container, file.constData(), file.constData(), &written)
                              && written > 0;
        log(tr("Upload Generated Map '%1'%2: %3 bytes written.")
                .arg(name, uploaded ? QString() : tr(" failed"))
                .arg(written),
            uploaded ? LogInfo : LogError);
        return uploaded;
    });
}

void UXCDefectPixelCorrection::on_btnUploadLocalMap_clicked()
{
    const QString title = tr("Upload Local Map");
    if (refuseFactorySlot(title, tr("Upload Local Map %1.").arg(tr(" failed"))))
        return;
    const QString name = ui->cmbDefectPixelMapSelector->currentText();
    const QString question =
        tr("The uploaded map would overwrite the selected map '%1'.\nDo you want to proceed?").arg(name);
    if (dialogs().question(this, title, question, QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
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
            && !confirmLocalMap(checkLocalTextMap(file, width, height, m_maxMapSize), file, name, width, height))
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
    if (!confirmLocalMap(check, path, name, width, height))
        return;
    const QString success = tr("Uploaded %n entry(s) to %1.", nullptr, int(check.entries.size())).arg(name);
    m_transferSuccess = [success] { return success; };
    UxCamera* camera = m_camera;
    startFileTask(tr("Upload Local File"), [this, camera, path, name] {
        const QByteArray file = name.toUtf8();
        long written = 0;
        const bool uploaded =
            camera->UploadLocalFile(path, file.constData(), file.constData(), &written) && written > 0;
        log(tr("Upload Local File '%1'%2: %3 bytes written.")
                .arg(name, uploaded ? QString() : tr(" failed"))
                .arg(written),
            uploaded ? LogInfo : LogError);
        return uploaded;
    });
    const QString chosenDir = QFileInfo(path).absolutePath();
    if (chosenDir != dir)
        UXCSettings::getInstance()->Set("Directory", "PDCSettingsFileDir", chosenDir);
}

void UXCDefectPixelCorrection::on_btnDownloadMapToFile_clicked()
{
    const QString name = ui->cmbDefectPixelMapSelector->currentText();
    if (m_registerMode) {
        if (m_features)
            m_features->SetValue("DefectPixelCorrection_MapSelect", name);
        std::vector<t_defpix> map(m_maxMapSize);
        unsigned int count = 0;
        const bool downloaded = Gen_download_defpix_map(map.data(), count) && SaveMap(map.data(), count);
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
    m_transferSuccess = [path, name, revision] {
        const LocalMapCheck got = checkLocalContainerMap(path, revision, UINT_MAX, UINT_MAX);
        return tr("Downloaded %n entry(s) from %1 to %2.", nullptr, int(got.entries.size())).arg(name, path);
    };
    UxCamera* camera = m_camera;
    startFileTask(tr("Download"), [this, camera, path, name] {
        const QByteArray file = name.toUtf8();
        long read = 0;
        const bool downloaded = camera->DownloadDeviceFile(path, file.constData(), file.constData(), &read);
        log(tr("Download device file %1: %2 bytes written.").arg(name).arg(read), downloaded ? LogInfo : LogError);
        return downloaded;
    });
}

// File tasks

void UXCDefectPixelCorrection::startFileTask(const QString& transferName, const std::function<bool()>& task)
{
    // One transfer at a time: the device file and the progress belong to it.
    if (!m_camera || m_fileTask.isRunning())
        return;
    ui->btnUploadMapToCam->setEnabled(false);
    ui->btnUploadLocalMap->setEnabled(false);
    ui->btnDownloadMapToFile->setEnabled(false);
    m_fileTaskWatcher.setObjectName(transferName);
    m_fileTaskUnreported = true;
    m_fileTask = QtConcurrent::run(task);
    m_fileTaskWatcher.setFuture(m_fileTask);
}

void UXCDefectPixelCorrection::closeDeviceFile()
{
    if (!m_features)
        return;
    if (m_features->SetValue("FileOperationSelector", QString("Close")))
        m_features->SetCommand("FileOperationExecute", kCloseTimeoutMs);
}

void UXCDefectPixelCorrection::finishFileTask()
{
    m_fileTaskUnreported = false;
    const QString transfer = m_fileTaskWatcher.objectName();
    const QString title = tr("File Access");
    const auto success = std::exchange(m_transferSuccess, nullptr);
    if (!m_fileTaskWatcher.isCanceled() && m_fileTaskWatcher.result()) {
        report(success ? success() : tr("%1 done.").arg(transfer), LogInfo);
        dialogs().information(this, title, tr("%1 task has been successfully done.").arg(transfer));
    } else {
        report(tr("%1 failed.").arg(transfer), LogError);
        dialogs().critical(this, title, tr("%1 Error occurs during File Access.").arg(transfer));
        closeDeviceFile();
    }
    enableButtons();
    if (m_progressDialog)
        m_progressDialog->reset();
    if (transfer.contains("Upload Local File"))
        ui->btnUploadMapToCam->setEnabled(false);
}

void UXCDefectPixelCorrection::releaseAfterUntrackedTask()
{
    if (m_finishFileTaskConnected)
        return;
    m_fileTaskUnreported = false;
    // Unreported, a failed transfer may still have left the camera's file open.
    if (m_fileTaskWatcher.isCanceled() || !m_fileTaskWatcher.result())
        closeDeviceFile();
    enableButtons();
    if (m_progressDialog)
        m_progressDialog->reset();
}
