#pragma once

#include "defectmap.h"
#include "defectmapcontainer.h"
#include "defectmapgenerator.h"
#include "defectmatch.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"
#include "logtype.h"
#include "mapformat.h"
#include "mapslotbinding.h"

#include <QString>
#include <QVariant>
#include <QWidget>

#include <memory>
#include <vector>

class QListWidgetItem;
class QSettings;
class DefectViewerBinding;
class UXCDialogs;
class UXCFileTaskRunner;
class UXCFrameCaptureControl;
class UXCSeriesEditor;
class UXCMapFiles;
class UXCMapGeneration;
class UXCMapSlotActions;
class UXCMapStatus;
class UXCMapTransfers;
class UXCPanelMessages;
class UXCSeriesCapture;
class UxCamera;

namespace Ui {
class UXCDefectPixelCorrection;
}

// The assistant's working panel: binds to one opened camera, gathers the dark
// and bright image series, generates the defect map and moves maps between the
// program, files and the camera's map slots. The members named after the
// routines they stand for gather the panel's state, call the detection core and
// word the messages; the computing is done in the core.
class UXCDefectPixelCorrection : public QWidget {
    Q_OBJECT

public:
    explicit UXCDefectPixelCorrection(QWidget* parent = nullptr);
    ~UXCDefectPixelCorrection() override;

    // Takes ownership of the camera; false for a null camera or one without map slots.
    bool Init(UxCamera* camera);
    // Back to the empty state; deletes the camera.
    void Reset();
    void enableButtons();
    void initTranferProgress();
    void setEndianess(bool bigEndian);

    // Not owned; null brings back the standard dialogs.
    void setDialogs(UXCDialogs* dialogs);
    // Puts the keyboard on the first thing a user does with a freshly opened camera.
    void focusFirstAction();

    // Image series.
    bool loadImagefromFile(const QString& path, int kind);
    void deleteImagefromParams(const QString& path, int kind);
    void _addSelectedFiles(int kind);
    void _deleteSelectedFiles(int kind);

    // The generated map.
    void defpix_reset();
    bool defpix_avail(t_defpix* map, unsigned int count, unsigned int x, unsigned int y) const;
    bool defpix_add(t_defpix* map, unsigned int x, unsigned int y, unsigned int type, unsigned int& count);
    bool create_defpix_map();
    bool create_defpix_map_color();
    void setupDefMatchSettings(QSettings* settings);
    int match(int (*grid)[5]) const;
    void conv_defpix_map_990(t_defpix* map, unsigned int count);
    std::vector<unsigned char> buildDefPixContainerBuffer(unsigned int revision, ge3_chunk_id_t chunkId,
                                                          unsigned long count, const t_defpix* map,
                                                          unsigned int imageWidth,
                                                          unsigned int imagePixelCount) const;
    bool SaveMap(t_defpix* map, unsigned int count);
    bool LoadMap(t_defpix* map, unsigned int& count);
    bool loadMapFile(const QString& fileName, t_defpix* map, unsigned int& count);

    // Map quantities of the camera: registers in register mode, features otherwise.
    bool isParamlocked();
    bool getPixelsCorrectionControlEnable(bool& enabled);
    bool setPixelsCorrectionControlEnable(bool enabled);
    bool setPixelsCorrectionControlMark(bool mark);
    bool getSelectedDefectPixelCorrectionMap(QVariant& slot);
    bool SelectDefectPixelCorrectionMap(const QVariant& slot);
    bool getMaximalPixelsCorrectionMapSize(QVariant& size);
    bool getPixelsCorrectionMapSize(QVariant& size);
    bool getMapCoordinate(unsigned int index, unsigned int& x, unsigned int& y);
    bool setMapCoordinate(unsigned int index, unsigned int x, unsigned int y);
    bool clearDefectPixelCorrectionMap(const QVariant& slot);
    bool GetRegValue(unsigned long address, uint32_t& value);
    bool SetRegValue(unsigned long address, uint32_t value);

    // Map transfers.
    bool upload_defpix_map_genicam(t_defpix* map, unsigned int count);
    bool uploadMap_RegisterAccess(t_defpix* map, unsigned int count);
    bool Gen_download_defpix_map(t_defpix* map, unsigned int& count);
    bool downloadMap_RegisterAccess();

    // State read by the host and the tests.
    UxCamera* camera() const { return m_camera; }
    const t_defpix* defectMap() const { return m_map.data(); }
    unsigned int defectCount() const { return m_map.count(); }
    unsigned int maxMapSize() const { return m_slots.maxMapSize; }
    const ImageGeometry& imageGeometry() const { return m_geometry; }
    const DefectPixelParams& darkParams() const { return m_darkParams; }
    const DefectPixelParams& brightParams() const { return m_brightParams; }
    bool isColor() const { return m_isColor; }
    bool isRegisterMode() const { return m_slots.registerMode; }
    int revision() const { return m_slots.revision; }
    int chunkId() const { return m_slots.chunkId; }
    bool isBigEndian() const { return m_slots.bigEndian; }
    bool isFileTaskRunning() const;
    bool isMapStale() const;

    // The capture control of a series tab.
    UXCFrameCaptureControl* captureControl(int kind) const;
    DefectViewerBinding* viewerBinding() const { return m_viewerBinding.get(); }

public slots:
    void progressBar_valueChanged(long remaining, QString fileName, QString fileOperation);

signals:
    void sendLogMessage(const QString& message, LogType type);
    void cameraCloseRequested();
    void actionViewerUpdateProcessBar(bool visible, int value);
    // The outcome of a user's action, in one line for the window's status bar.
    void actionOutcome(const QString& text, LogType type);

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void on_btnCloseCamera_clicked();
    void on_btnAddDarkImage_clicked();
    void on_btnAddBrightImage_clicked();
    void on_btnDeleteDarkImage_clicked();
    void on_btnDeleteBrightImage_clicked();
    void on_listDarkImagePath_itemPressed(QListWidgetItem* item);
    void on_listBrightImagePath_itemPressed(QListWidgetItem* item);
    void on_txtAbsoluteThreshold_editingFinished();
    void on_txtRelativeThreshold_editingFinished();
    void on_btnGenerateMap_clicked();
    void on_btnUploadMapToCam_clicked();
    void on_btnSaveMapToFile_clicked();
    void on_btnUploadLocalMap_clicked();
    void on_btnDownloadMapToFile_clicked();
    // transfer is empty when the end went unreported.
    void finishFileTask(const QString& transfer);
    // A captured frame enters its series as a chosen bitmap file does.
    void addCapturedImage(const QString& path, int kind);

private:
    bool generate(bool color);
    void addImages(int kind);
    void deleteImages(int kind);
    UXCSeriesEditor seriesEditor();
    void log(const QString& message, LogType type);
    UXCDialogs& dialogs() const;
    void report(const QString& text, LogType type);
    void setMapStale(bool stale);

    std::unique_ptr<Ui::UXCDefectPixelCorrection> ui;
    UxCamera* m_camera = nullptr;
    ImageGeometry m_geometry;
    MapSlotBinding m_slots;
    DefectMap m_map;
    MapGeneration m_generation = MapGeneration::Generated; // how the last generation ended
    DefectPixelParams m_darkParams;
    DefectPixelParams m_brightParams;
    bool m_mapSlotAvailable = false;
    QString m_saveImageDir;
    bool m_isColor = false;
    unsigned int m_resets = 0; // tells a running image batch that the panel was reset
    DefectMatchPatterns m_patterns;
    std::unique_ptr<UXCPanelMessages> m_messages;
    std::unique_ptr<UXCMapTransfers> m_transfers;
    std::unique_ptr<UXCMapFiles> m_mapFiles;
    std::unique_ptr<UXCMapGeneration> m_generator;
    // Children of the panel.
    UXCFileTaskRunner* m_fileTasks = nullptr;
    UXCMapStatus* m_mapStatus = nullptr;
    UXCSeriesCapture* m_capture = nullptr;
    UXCMapSlotActions* m_slotActions = nullptr;
    std::unique_ptr<DefectViewerBinding> m_viewerBinding;
};
