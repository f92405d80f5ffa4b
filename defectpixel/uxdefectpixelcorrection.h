#pragma once

#include "defectmap.h"
#include "defectmapcontainer.h"
#include "defectmapgenerator.h"
#include "defectmatch.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"
#include "logtype.h"
#include "mapformat.h"
#include "mapslots.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class QLabel;
class QListWidgetItem;
struct LocalMapCheck;
class QProgressDialog;
class QSettings;
class DefectViewerBinding;
class FileAccessMapSlots;
class UXCDialogs;
class UXCFrameCaptureControl;
class UxCamera;
class UxCameraFeature;

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
    unsigned int maxMapSize() const { return m_maxMapSize; }
    const ImageGeometry& imageGeometry() const { return m_geometry; }
    const DefectPixelParams& darkParams() const { return m_darkParams; }
    const DefectPixelParams& brightParams() const { return m_brightParams; }
    bool isColor() const { return m_isColor; }
    bool isRegisterMode() const { return m_registerMode; }
    int revision() const { return m_revision; }
    int chunkId() const { return m_chunkId; }
    bool isBigEndian() const { return m_bigEndian; }
    bool isFileTaskRunning() const { return m_fileTask.isRunning(); }
    bool isMapStale() const { return m_mapStale; }

    // The transfer routines whose refusals are worded alike.
    enum class TransferRoutine { EntryUpload, WordUpload, EntryDownload, WordDownload };
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
    void finishFileTask();

private:
    bool generate(bool color);
    // The camera's map slots; null in register mode or without camera.
    FileAccessMapSlots* fileSlots() const;
    // Shows the box and the log line of a refused transfer; true when it was done.
    bool reportTransfer(MapTransfer outcome, const QString& title, TransferRoutine routine);
    void addImages(int kind);
    void deleteImages(int kind);
    bool selectedSlotNumber(QVariant& slot);
    bool selectMapByName(const QString& name);
    bool typedMap() const;
    void startFileTask(const QString& transferName, const std::function<bool()>& task);
    void releaseAfterUntrackedTask();
    // Stops a running file-access transfer before its next block.
    void cancelFileTask();
    // Hides the progress window and takes its Cancel button away again.
    void resetProgressWindow();
    void closeDeviceFile();
    void log(const QString& message, LogType type);
    UXCDialogs& dialogs() const;
    // Capture from the camera (uxdefectpixelcorrection_capture.cpp).
    void bindCaptureControls();
    void bindCaptureCamera();
    void stopCapture();
    void addCapturedImage(const QString& path, int kind);
    void finishCapture(int kind, int end, int frames, const QString& message);

    // Feedback beside the log lines (uxdefectpixelcorrection_feedback.cpp).
    void setupFeedback();
    void report(const QString& text, LogType type);
    void showMapNote(const QString& text);
    void setMapStale(bool stale);
    bool confirmStaleUpload();
    void noteGeneratedMap(unsigned int flagged);
    bool isFactorySlotSelected() const;
    void updateSlotHints();
    bool refuseFactorySlot(const QString& title, const QString& failedLine);
    bool sensorSize(unsigned int& width, unsigned int& height) const;
    bool confirmLocalMap(const LocalMapCheck& check, const QString& fileName, const QString& slot,
                         unsigned int width, unsigned int height);

    std::unique_ptr<Ui::UXCDefectPixelCorrection> ui;
    UxCamera* m_camera = nullptr;
    UxCameraFeature* m_features = nullptr;
    ImageGeometry m_geometry;
    static constexpr unsigned int kDefaultMaxMapSize = 10000;
    unsigned int m_maxMapSize = kDefaultMaxMapSize;
    DefectMap m_map;
    std::unique_ptr<MapSlots> m_mapSlots;
    MapGeneration m_generation = MapGeneration::Generated; // how the last generation ended
    DefectPixelParams m_darkParams;
    DefectPixelParams m_brightParams;
    bool m_bigEndian = true;
    bool m_registerMode = false;
    int m_revision = kDefaultMapRevision;
    bool m_mapSlotAvailable = false;
    int m_chunkId = kDefaultChunkId;
    QString m_saveImageDir;
    QString m_mapDir;
    bool m_isColor = false;
    QFuture<bool> m_fileTask;
    QFutureWatcher<bool> m_fileTaskWatcher;
    unsigned int m_transferTotal = 0;
    unsigned int m_resets = 0; // tells a running image batch that the panel was reset
    QProgressDialog* m_progressDialog = nullptr;

    DefectMatchPatterns m_patterns;
    std::unique_ptr<UXCDialogs> m_defaultDialogs;
    UXCDialogs* m_dialogs = nullptr;
    bool m_finishFileTaskConnected = false;
    bool m_fileTaskUnreported = false; // a transfer was started; nobody has looked at its end yet
    std::atomic<bool> m_fileTaskCancelled{false}; // the running transfer was cancelled by the user
    bool m_mapStale = false;       // inputs changed after the shown map was generated
    QLabel* m_mapNote = nullptr;   // out-of-date or cut-short note beside the count
    QString m_savedFile;           // file the last save wrote, empty when cancelled
    std::function<QString()> m_transferSuccess; // status line of the running file task when it succeeds
    UXCFrameCaptureControl* m_captureDark = nullptr;
    UXCFrameCaptureControl* m_captureBright = nullptr;
    std::unique_ptr<DefectViewerBinding> m_viewerBinding;
};
