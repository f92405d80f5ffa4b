#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "defectclassification.h"
#include "defectviewerbinding.h"
#include "imageseries.h"
#include "mapformat.h"
#include "mapslotprofile.h"
#include "thresholdinput.h"
#include "uxcamera.h"
#include "uxfiletaskrunner.h"
#include "uxmapfiles.h"
#include "uxmapgeneration.h"
#include "uxmapslotactions.h"
#include "uxmapstatus.h"
#include "uxmaptransfers.h"
#include "uxpanelkeyboard.h"
#include "uxpanelmessages.h"
#include "uxseriescapture.h"
#include "uxsettings.h"

#include <QApplication>

namespace {

constexpr int kAbsoluteThresholdLimit = 255;
constexpr int kRelativeThresholdLimit = 100;

} // namespace

UXCDefectPixelCorrection::UXCDefectPixelCorrection(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::UXCDefectPixelCorrection>())
    , m_messages(std::make_unique<UXCPanelMessages>(
          this, [this](const QString& text, LogType type) { emit sendLogMessage(text, type); },
          [this](const QString& text, LogType type) { emit actionOutcome(text, type); }))
{
    qRegisterMetaType<LogType>("LogType");
    ui->setupUi(this);
    m_transfers = std::make_unique<UXCMapTransfers>(
        m_slots, *m_messages, [this](bool visible, int value) { emit actionViewerUpdateProcessBar(visible, value); });
    m_mapFiles = std::make_unique<UXCMapFiles>(m_slots, m_patterns, *m_messages);
    m_generator = std::make_unique<UXCMapGeneration>(m_slots, *m_transfers, *m_messages);
    m_fileTasks = new UXCFileTaskRunner(this, *m_messages, [this] { return m_slots.fileSlots(); });
    m_mapStatus = new UXCMapStatus({this, ui->txtDefectPixelCount, ui->horizontalLayout, ui->cmbDefectPixelMapSelector,
                                    ui->btnUploadMapToCam, ui->btnUploadLocalMap},
                                   *m_messages);
    m_capture = new UXCSeriesCapture(this, ui->verticalLayout, ui->verticalLayout_4, *m_messages);
    m_slotActions = new UXCMapSlotActions({m_slots, *m_messages, *m_mapStatus, *m_transfers, *m_mapFiles, *m_fileTasks},
                                          this);

    connect(ui->listDarkImagePath, &QListWidget::itemSelectionChanged, this,
            [this] { ui->btnDeleteDarkImage->setEnabled(!ui->listDarkImagePath->selectedItems().isEmpty()); });
    connect(ui->listBrightImagePath, &QListWidget::itemSelectionChanged, this,
            [this] { ui->btnDeleteBrightImage->setEnabled(!ui->listBrightImagePath->selectedItems().isEmpty()); });
    connect(m_fileTasks, &UXCFileTaskRunner::started, this, [this] {
        ui->btnUploadMapToCam->setEnabled(false);
        ui->btnUploadLocalMap->setEnabled(false);
        ui->btnDownloadMapToFile->setEnabled(false);
    });
    connect(m_fileTasks, &UXCFileTaskRunner::ended, this, &UXCDefectPixelCorrection::finishFileTask);
    connect(ui->cmbDefectPixelMapSelector, QOverload<int>::of(&QComboBox::activated), this,
            &UXCDefectPixelCorrection::enableButtons);
    connect(m_capture, &UXCSeriesCapture::frameCaptured, this, &UXCDefectPixelCorrection::addCapturedImage);
    UXCPanelKeyboard::setUp(*ui, this, [this](int kind) { deleteImages(kind); });
    m_viewerBinding = std::make_unique<DefectViewerBinding>(DefectViewerBinding::PanelParts{
        this, ui->lblMeanImageDark, ui->lblMeanImageBright, ui->txtAbsoluteThreshold, ui->txtRelativeThreshold,
        ui->horizontalLayout});
    connect(m_slotActions, &UXCMapSlotActions::mapDownloaded, m_viewerBinding.get(),
            &DefectViewerBinding::showDownloadedMap);
}

UXCDefectPixelCorrection::~UXCDefectPixelCorrection()
{
    Reset();
}

void UXCDefectPixelCorrection::focusFirstAction()
{
    ui->tabWidget->setCurrentIndex(0);
    ui->btnAddDarkImage->setFocus(Qt::OtherFocusReason);
}

void UXCDefectPixelCorrection::setDialogs(UXCDialogs* dialogs)
{
    m_messages->setDialogs(dialogs);
}

UXCDialogs& UXCDefectPixelCorrection::dialogs() const
{
    return m_messages->dialogs();
}

void UXCDefectPixelCorrection::log(const QString& message, LogType type)
{
    m_messages->log(message, type);
}

void UXCDefectPixelCorrection::report(const QString& text, LogType type)
{
    m_messages->report(text, type);
}

void UXCDefectPixelCorrection::setMapStale(bool stale)
{
    m_mapStatus->setStale(stale);
}

bool UXCDefectPixelCorrection::isMapStale() const
{
    return m_mapStatus->isStale();
}

bool UXCDefectPixelCorrection::isFileTaskRunning() const
{
    return m_fileTasks->isRunning();
}

UXCFrameCaptureControl* UXCDefectPixelCorrection::captureControl(int kind) const
{
    return m_capture->control(kind);
}

void UXCDefectPixelCorrection::setEndianess(bool bigEndian)
{
    m_slots.bigEndian = bigEndian;
}

bool UXCDefectPixelCorrection::Init(UxCamera* camera)
{
    if (!camera)
        return false;
    ui->lblCameraName->setText(camera->GetCameraName() + "\n" + tr("Firmware: ")
                               + camera->GetCameraManufacturerInfo() + "\n");
    m_camera = camera;
    setEndianess(camera->IsBigEndian());
    m_saveImageDir = UXCSettings::getInstance()->Get("Directory", "SaveImageDir").toString();
    m_capture->bindCamera(*camera);

    const MapSlotProfile profile = inspectMapSlots(*camera);
    m_isColor = profile.color;
    m_slots.revision = profile.revision;
    m_slots.registerMode = profile.registerMode;
    m_slots.mapSlots = makeMapSlots(*camera, m_slots.registerMode);
    ui->tabWidget->setTabVisible(1, !m_isColor);
    ui->btnGenerateMap->setToolTip(
        tr("Generate map from the resulting dark%1 mean images.").arg(m_isColor ? QString() : tr(" and bright")));

    setupDefMatchSettings(UXCSettings::getInstance()->GetDeffMatchSettings());

    QComboBox* selector = ui->cmbDefectPixelMapSelector;
    for (const MapSlot& slot : profile.mapSlots) {
        selector->addItem(slot.name);
        if (m_slots.registerMode)
            continue;
        selector->setItemData(selector->count() - 1, slot.chunkId, kSlotRoleChunkId);
        selector->setItemData(selector->count() - 1, slot.cannotRead, kSlotRoleCannotRead);
        selector->setItemData(selector->count() - 1, slot.cannotWrite, kSlotRoleCannotWrite);
    }
    m_mapSlotAvailable = ui->cmbDefectPixelMapSelector->count() > 0
                         && ui->cmbDefectPixelMapSelector->currentIndex() >= 0;
    if (ui->cmbDefectPixelMapSelector->count() == 0)
        return false;
    ui->txtDefectPixelCount->clear();
    m_mapStatus->clear();
    enableButtons();
    initTranferProgress();
    return true;
}

void UXCDefectPixelCorrection::Reset()
{
    ++m_resets;
    m_fileTasks->stop();
    m_capture->stop();
    m_slots.mapSlots.reset();
    delete m_camera;
    m_camera = nullptr;
    m_darkParams.clear();
    m_brightParams.clear();
    ui->listDarkImagePath->clear();
    ui->listBrightImagePath->clear();
    ui->lblMeanImageDark->setImage(QImage());
    ui->lblMeanImageBright->setImage(QImage());
    ui->cmbDefectPixelMapSelector->clear();
    m_mapSlotAvailable = false;
    m_map = DefectMap();
    ui->txtDefectPixelCount->clear();
    m_mapStatus->clear();
    m_slots.chunkId = kDefaultChunkId;
    m_slots.maxMapSize = MapSlotBinding::kDefaultMaxMapSize;
    m_geometry = ImageGeometry();
    if (m_viewerBinding)
        m_viewerBinding->clear();
}

void UXCDefectPixelCorrection::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
}

void UXCDefectPixelCorrection::enableButtons()
{
    const bool countShown = !ui->txtDefectPixelCount->text().isEmpty();
    const QComboBox* selector = ui->cmbDefectPixelMapSelector;
    const bool cannotRead = selector->currentData(kSlotRoleCannotRead).toBool();
    const bool cannotWrite = selector->currentData(kSlotRoleCannotWrite).toBool();
    if (m_slots.registerMode) {
        ui->btnDownloadMapToFile->setEnabled(true);
        ui->btnUploadLocalMap->setEnabled(m_mapSlotAvailable);
        ui->btnUploadMapToCam->setEnabled(countShown && m_mapSlotAvailable);
    } else {
        ui->btnDownloadMapToFile->setEnabled(!cannotRead);
        ui->btnUploadLocalMap->setEnabled(!cannotWrite && m_mapSlotAvailable);
        ui->btnUploadMapToCam->setEnabled(countShown && !cannotWrite && m_mapSlotAvailable);
    }
    ui->btnSaveMapToFile->setEnabled(countShown);
    const bool darkMean = !ui->lblMeanImageDark->getImage().isNull();
    const bool brightMean = !ui->lblMeanImageBright->getImage().isNull();
    ui->btnGenerateMap->setEnabled(m_isColor ? darkMean : darkMean || brightMean);
    m_viewerBinding->refresh();
}

// Image series

void UXCDefectPixelCorrection::addCapturedImage(const QString& path, int kind)
{
    QListWidget* list = kind == BrightSeries ? ui->listBrightImagePath : ui->listDarkImagePath;
    if (!m_camera || !list->findItems(path, Qt::MatchExactly | Qt::MatchCaseSensitive).isEmpty())
        return;
    if (loadImagefromFile(path, kind))
        list->addItem(path);
    enableButtons();
}

void UXCDefectPixelCorrection::addImages(int kind)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    _addSelectedFiles(kind);
    enableButtons();
    QApplication::restoreOverrideCursor();
}

void UXCDefectPixelCorrection::on_btnAddDarkImage_clicked()
{
    addImages(DarkSeries);
}

void UXCDefectPixelCorrection::on_btnAddBrightImage_clicked()
{
    addImages(BrightSeries);
}

void UXCDefectPixelCorrection::on_btnDeleteDarkImage_clicked()
{
    deleteImages(DarkSeries);
}

void UXCDefectPixelCorrection::on_btnDeleteBrightImage_clicked()
{
    deleteImages(BrightSeries);
}

void UXCDefectPixelCorrection::on_listDarkImagePath_itemPressed(QListWidgetItem* item)
{
    ui->btnDeleteDarkImage->setEnabled(true);
    ui->listDarkImagePath->setCurrentItem(item, QItemSelectionModel::NoUpdate);
}

void UXCDefectPixelCorrection::on_listBrightImagePath_itemPressed(QListWidgetItem* item)
{
    ui->btnDeleteBrightImage->setEnabled(true);
    ui->listBrightImagePath->setCurrentItem(item, QItemSelectionModel::NoUpdate);
}

void UXCDefectPixelCorrection::on_txtAbsoluteThreshold_editingFinished()
{
    const ThresholdInput input = acceptThresholdText(ui->txtAbsoluteThreshold->text(),
                                                     m_darkParams.absoluteThreshold, kAbsoluteThresholdLimit);
    if (m_darkParams.absoluteThreshold != input.value)
        setMapStale(true);
    m_darkParams.absoluteThreshold = input.value;
    if (ui->txtAbsoluteThreshold->text() != input.text)
        ui->txtAbsoluteThreshold->setText(input.text);
}

void UXCDefectPixelCorrection::on_txtRelativeThreshold_editingFinished()
{
    const ThresholdInput input = acceptThresholdText(ui->txtRelativeThreshold->text(),
                                                     m_brightParams.relativeThreshold, kRelativeThresholdLimit);
    if (m_brightParams.relativeThreshold != input.value)
        setMapStale(true);
    m_brightParams.relativeThreshold = input.value;
    if (ui->txtRelativeThreshold->text() != input.text)
        ui->txtRelativeThreshold->setText(input.text);
}

// The generated map

void UXCDefectPixelCorrection::defpix_reset()
{
    m_generator->refreshMaxMapSize();
    m_map = DefectMap(m_slots.maxMapSize);
    ui->btnSaveMapToFile->setEnabled(false);
    ui->btnUploadMapToCam->setEnabled(false);
    ui->txtDefectPixelCount->clear();
}

bool UXCDefectPixelCorrection::defpix_avail(t_defpix* map, unsigned int count, unsigned int x,
                                            unsigned int y) const
{
    return ::defpix_avail(map, count, x, y);
}

bool UXCDefectPixelCorrection::defpix_add(t_defpix* map, unsigned int x, unsigned int y, unsigned int type,
                                          unsigned int& count)
{
    return ::defpix_add(map, m_slots.maxMapSize, x, y, type, count);
}

bool UXCDefectPixelCorrection::create_defpix_map()
{
    return generate(false);
}

bool UXCDefectPixelCorrection::create_defpix_map_color()
{
    return generate(true);
}

bool UXCDefectPixelCorrection::generate(bool color)
{
    m_generation = m_generator->generate(ui->lblMeanImageDark->getImage(),
                                         color ? QImage() : ui->lblMeanImageBright->getImage(), color,
                                         {m_darkParams, m_brightParams, m_geometry}, m_map);
    return m_generation == MapGeneration::Generated;
}

void UXCDefectPixelCorrection::setupDefMatchSettings(QSettings* settings)
{
    m_patterns.setupDefMatchSettings(settings);
}

int UXCDefectPixelCorrection::match(int (*grid)[5]) const
{
    return m_patterns.match(grid);
}

void UXCDefectPixelCorrection::conv_defpix_map_990(t_defpix* map, unsigned int count)
{
    ::conv_defpix_map_990(map, count, m_patterns);
}

std::vector<unsigned char> UXCDefectPixelCorrection::buildDefPixContainerBuffer(
    unsigned int revision, ge3_chunk_id_t chunkId, unsigned long count, const t_defpix* map,
    unsigned int imageWidth, unsigned int imagePixelCount) const
{
    return ::buildDefPixContainerBuffer(revision, chunkId, count, map, imageWidth, imagePixelCount);
}

void UXCDefectPixelCorrection::on_btnGenerateMap_clicked()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ui->btnSaveMapToFile->setEnabled(false);
    ui->btnUploadMapToCam->setEnabled(false);
    const QString shownCount = ui->txtDefectPixelCount->text();
    const bool wasStale = isMapStale();
    ui->txtDefectPixelCount->clear();
    setMapStale(false);
    const auto flaggedBefore = qulonglong(m_darkParams.defectCount) + m_brightParams.defectCount;

    const bool generated = m_isColor ? create_defpix_map_color() : create_defpix_map();
    if (!generated && m_generation == MapGeneration::NoMemory) {
        // The previous map stays, and so does what was shown of it.
        ui->txtDefectPixelCount->setText(shownCount);
        setMapStale(wasStale);
        enableButtons();
        report(tr("Generate map failed: out of memory."), LogError);
        return;
    }
    if (!generated) {
        QApplication::restoreOverrideCursor();
        report(tr("Generate map failed: missing image parameters."), LogError);
        return;
    }
    const auto flagged = unsigned(qulonglong(m_darkParams.defectCount) + m_brightParams.defectCount - flaggedBefore);
    if (!m_slots.registerMode)
        m_slots.chunkId = ui->cmbDefectPixelMapSelector->currentData(kSlotRoleChunkId).toInt();
    if (m_slots.typedMap())
        conv_defpix_map_990(m_map.data(), m_map.count());

    if (m_map.count() > m_slots.maxMapSize) {
        m_generator->refuseOverMaximum(m_map.count());
        return;
    }
    log(tr("Map successfully generated."), LogInfo);
    ui->btnSaveMapToFile->setEnabled(true);
    ui->txtDefectPixelCount->setText(QString::number(m_map.count()));
    m_mapStatus->noteGenerated(m_map.count(), m_slots.maxMapSize, flagged);
    enableButtons();
    QApplication::restoreOverrideCursor();
}

void UXCDefectPixelCorrection::on_btnCloseCamera_clicked()
{
    ui->lblCameraName->setText(QString());
    emit cameraCloseRequested();
}

// Progress of file transfers

void UXCDefectPixelCorrection::initTranferProgress()
{
    m_fileTasks->prepareProgressWindow();
    if (m_camera)
        connect(m_camera, &UxCamera::updateTransferProcess, this, &UXCDefectPixelCorrection::progressBar_valueChanged);
}

void UXCDefectPixelCorrection::progressBar_valueChanged(long remaining, QString fileName, QString fileOperation)
{
    m_fileTasks->showProgress(remaining, std::move(fileName), std::move(fileOperation));
}

void UXCDefectPixelCorrection::finishFileTask(const QString& transfer)
{
    enableButtons();
    if (transfer.contains("Upload Local File"))
        ui->btnUploadMapToCam->setEnabled(false);
}
