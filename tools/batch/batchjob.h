#pragma once

#include "CameraInfoMap.h"
#include "batchmapslots.h"
#include "batchoptions.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"

#include <QCoreApplication>
#include <QImage>
#include <QJsonObject>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>

class DefectMatchPatterns;
class UxCamera;

// What became of one camera; the report entry and the summary line are made from it.
struct BatchCameraResult {
    CameraInfoMap info;               // identity as the camera list gives it
    QString darkDir;                  // folders used, with the placeholders filled in
    QString brightDir;
    QStringList darkFiles;            // images accepted into the series
    QStringList brightFiles;
    bool brightIgnored = false;       // colour camera: the bright series is not used
    bool captured = false;            // the series were captured from the camera
    int darkFrames = 0;               // captured frames accepted into each series
    int brightFrames = 0;
    int absoluteThreshold = 0;
    int relativeThreshold = 0;
    BatchMapProfile profile;          // the camera's maps
    bool profileRead = false;
    QString slot;                     // slot written into, empty for none
    unsigned int darkFlagged = 0;     // pixels flagged by each series
    unsigned int brightFlagged = 0;
    unsigned int flagged = 0;         // distinct flagged pixels
    unsigned int written = 0;         // entries of the map
    bool capacityCut = false;         // more pixels flagged than the map holds
    QStringList savedFiles;
    QString upload;                   // "done", "failed", "skipped", "dry-run", "not asked"
    qint64 uploadBytes = 0;
    QString verify;                   // "passed", "failed", "skipped", "not asked"
    QJsonObject durations;            // milliseconds per step
    QStringList errors;               // why the camera failed, in order
    QStringList notes;                // what else the user should know

    bool succeeded() const { return errors.isEmpty(); }
    QJsonObject toJson() const;
    // One line for the terminal.
    QString summary() const;
};

// Everything a job shares with the others; read only while jobs run.
struct BatchJobContext {
    const BatchOptions* options = nullptr;
    const DefectMatchPatterns* patterns = nullptr;
    // Opens the camera by extended ID; null with the reason when it cannot.
    std::function<std::unique_ptr<UxCamera>(const QString& extendedId, QString& error)> openCamera;
    // Releases the camera again.
    std::function<void(const QString& extendedId)> closeCamera;
    // Makes the map-slot access of an opened camera.
    std::function<std::unique_ptr<BatchMapSlots>(UxCamera&)> mapSlots;
};

// One camera's whole job: open, series, map, save, upload, verify, close.
// Never throws; every failure ends up in the result.
class BatchJob {
    Q_DECLARE_TR_FUNCTIONS(BatchJob)

public:
    // detail: a step within a step (image by image), worth showing only on a terminal.
    using Progress = std::function<void(const QString& step, bool detail)>;

    BatchJob(const BatchJobContext& context, const CameraInfoMap& info) : m_context(context) { m_result.info = info; }

    BatchCameraResult run(const Progress& progress);

private:
    bool prepareSeries();
    bool captureSeries(ImageGeometry& geometry, DefectPixelParams& dark, DefectPixelParams& bright,
                       QImage& darkMean, QImage& brightMean);
    bool generate();
    bool save();
    bool uploadAndVerify(BatchMapSlots& access);
    QString fillPlaceholders(const QString& pattern) const;

    const BatchJobContext& m_context;
    BatchCameraResult m_result;
    UxCamera* m_camera = nullptr; // while the job has it open
    Progress m_progress;
    std::vector<t_defpix> m_map;
    unsigned int m_count = 0;
    unsigned int m_width = 0;
    unsigned int m_pixelCount = 0;
    const BatchMapSlot* m_slot = nullptr;
};
