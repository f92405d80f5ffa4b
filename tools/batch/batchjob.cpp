#include "batchjob.h"

#include "CameraInfoMap.h"
#include "capturedimage.h"
#include "defectclassification.h"
#include "defectmapcontainer.h"
#include "defectmapgenerator.h"
#include "defectmaptext.h"
#include "framecapture.h"
#include "imageseries.h"
#include "mapformat.h"
#include "seriesfileloader.h"
#include "sim/simcontrol.h"
#include "uxcamera.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QSaveFile>

namespace {

const QString kSerial = CameraInfoKey::SerialNumber;
const QString kModel = CameraInfoKey::ModelName;
const QString kExtendedId = CameraInfoKey::ExtendedId;
const QString kCameraId = CameraInfoKey::CameraId;

QJsonArray toArray(const QStringList& list)
{
    return QJsonArray::fromStringList(list);
}

bool writeWhole(const QString& fileName, const QByteArray& data)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

// Times one step into the result's durations.
class StepTimer {
public:
    StepTimer(QJsonObject& durations, const char* step) : m_durations(durations), m_step(step) { m_timer.start(); }
    ~StepTimer() { m_durations.insert(m_step, double(m_timer.nsecsElapsed() / 100000) / 10.0); }

private:
    QJsonObject& m_durations;
    QString m_step;
    QElapsedTimer m_timer;
};

} // namespace

QJsonObject BatchCameraResult::toJson() const
{
    QJsonObject identity;
    for (auto it = info.begin(); it != info.end(); ++it)
        identity.insert(it.key(), QJsonValue::fromVariant(it.value()));
    QJsonObject series{{"darkFolder", darkDir},
                       {"brightFolder", brightDir},
                       {"darkImages", toArray(darkFiles)},
                       {"brightImages", toArray(brightFiles)},
                       {"brightIgnored", brightIgnored},
                       {"captured", captured},
                       {"darkFrames", darkFrames},
                       {"brightFrames", brightFrames}};
    QJsonObject thresholds{{"absolute", absoluteThreshold}, {"relative", relativeThreshold}};
    QJsonObject camera{{"registerMode", profile.registerMode},
                       {"revision", profile.revision},
                       {"colour", profile.isColor},
                       {"maxMapSize", qint64(profile.maxMapSize)}};
    QJsonObject map{{"darkFlagged", qint64(darkFlagged)},
                    {"brightFlagged", qint64(brightFlagged)},
                    {"flagged", qint64(flagged)},
                    {"written", qint64(written)},
                    {"capacityCut", capacityCut},
                    {"savedFiles", toArray(savedFiles)}};
    return QJsonObject{{"camera", identity},
                       {"maps", profileRead ? QJsonValue(camera) : QJsonValue()},
                       {"series", series},
                       {"thresholds", thresholds},
                       {"map", map},
                       {"slot", slot},
                       {"upload", upload},
                       {"uploadBytes", uploadBytes},
                       {"verify", verify},
                       {"durationsMs", durations},
                       {"succeeded", succeeded()},
                       {"errors", toArray(errors)},
                       {"notes", toArray(notes)}};
}

QString BatchCameraResult::summary() const
{
    const QString who = info.value(kSerial).toString().isEmpty() ? info.value(kExtendedId).toString()
                                                                  : info.value(kSerial).toString();
    const QString state = succeeded() ? BatchJob::tr("OK") : BatchJob::tr("FAILED");
    QString line = BatchJob::tr("%1 %2: %3 flagged, %4 written%5, upload %6, verify %7")
                       .arg(state, who)
                       .arg(flagged)
                       .arg(written)
                       .arg(capacityCut ? BatchJob::tr(" (capacity cut)") : QString())
                       .arg(upload, verify);
    if (!errors.isEmpty())
        line += QStringLiteral(" - ") + errors.join(QStringLiteral("; "));
    return line;
}

QString BatchJob::fillPlaceholders(const QString& pattern) const
{
    QString path = pattern;
    path.replace(QLatin1String("{serial}"), m_result.info.value(kSerial).toString());
    path.replace(QLatin1String("{model}"), m_result.info.value(kModel).toString());
    path.replace(QLatin1String("{id}"), m_result.info.value(kCameraId).toString());
    return path;
}

BatchCameraResult BatchJob::run(const Progress& progress)
{
    m_progress = progress ? progress : [](const QString&, bool) {};
    const BatchOptions& options = *m_context.options;
    m_result.absoluteThreshold = options.absoluteThreshold;
    m_result.relativeThreshold = options.relativeThreshold;
    m_result.darkDir = options.darkDir.isEmpty() ? QString() : fillPlaceholders(options.darkDir);
    m_result.brightDir = options.brightDir.isEmpty() ? QString() : fillPlaceholders(options.brightDir);
    m_result.upload = QStringLiteral("not asked");
    m_result.verify = QStringLiteral("not asked");
    QElapsedTimer total;
    total.start();

    const QString id = m_result.info.value(kExtendedId).toString();
    std::unique_ptr<UxCamera> camera;
    {
        StepTimer timer(m_result.durations, "open");
        m_progress(tr("opening"), false);
        QString error;
        camera = m_context.openCamera(id, error);
        if (!camera)
            m_result.errors << error;
    }
    if (camera) {
        std::unique_ptr<BatchMapSlots> access = m_context.mapSlots(*camera);
        QString error;
        {
            StepTimer timer(m_result.durations, "slots");
            m_result.profileRead = access->readProfile(m_result.profile, error);
        }
        if (!m_result.profileRead)
            m_result.errors << error;
        else {
            m_camera = camera.get();
            if (prepareSeries() && generate() && save())
                uploadAndVerify(*access);
            m_camera = nullptr;
        }
        access.reset();
        camera.reset();
        m_context.closeCamera(id);
    }
    if (m_result.upload == QLatin1String("not asked") && !options.slot.isEmpty() && !m_result.succeeded())
        m_result.upload = QStringLiteral("skipped");
    if (m_result.verify == QLatin1String("not asked") && !options.slot.isEmpty() && options.verify)
        m_result.verify = QStringLiteral("skipped");
    m_result.durations.insert("total", double(total.nsecsElapsed() / 100000) / 10.0);
    m_progress(m_result.succeeded() ? tr("done") : tr("failed"), false);
    return m_result;
}

bool BatchJob::prepareSeries()
{
    StepTimer timer(m_result.durations, "series");
    m_progress(tr("checking the series"), false);
    if (m_context.options->capture) {
        m_result.captured = true;
        if (m_result.profile.isColor)
            m_result.notes << tr("Colour camera: the bright series is not used.");
        return true;
    }
    // A folder, or a folder and a file name pattern such as dark_*.bmp.
    auto listFolder = [this](const QString& path, QStringList& files) {
        const QFileInfo given(path);
        const bool pattern = given.fileName().contains('*') || given.fileName().contains('?');
        const QDir folder(pattern ? given.path() : path);
        const QStringList filters = pattern ? QStringList{given.fileName()}
                                            : QStringList{QStringLiteral("*.bmp"), QStringLiteral("*.BMP")};
        if (!folder.exists()) {
            m_result.errors << tr("The folder '%1' does not exist.").arg(folder.path());
            return false;
        }
        const QStringList names = folder.entryList(filters, QDir::Files, QDir::Name);
        if (names.isEmpty()) {
            m_result.errors << tr("No image in '%1' matches %2.").arg(folder.path(), filters.join(' '));
            return false;
        }
        for (const QString& name : names)
            files << folder.filePath(name);
        return true;
    };
    bool ok = true;
    if (!m_result.darkDir.isEmpty())
        ok = listFolder(m_result.darkDir, m_result.darkFiles) && ok;
    if (m_result.profile.isColor) {
        m_result.brightIgnored = !m_result.brightDir.isEmpty();
        m_result.brightFiles.clear();
        if (m_result.darkDir.isEmpty()) {
            m_result.errors << tr("A colour camera needs a dark series (--dark).");
            return false;
        }
    } else if (!m_result.brightDir.isEmpty()) {
        ok = listFolder(m_result.brightDir, m_result.brightFiles) && ok;
    }
    if (m_result.brightIgnored)
        m_result.notes << tr("Colour camera: the bright series is not used.");
    return ok;
}

// The assistant's capture: its frame count, the camera's own exposure time and
// gain, each frame into the series as an added bitmap would go.
bool BatchJob::captureSeries(ImageGeometry& geometry, DefectPixelParams& dark, DefectPixelParams& bright,
                             QImage& darkMean, QImage& brightMean)
{
    StepTimer timer(m_result.durations, "capture");
    const BatchOptions& options = *m_context.options;
    const std::string serial = m_result.info.value(kSerial).toString().toStdString();
    FrameCapture capture(m_camera->GetCameraPtr());
    auto take = [&](int kind, double light, DefectPixelParams& params, QImage& mean, int& frames) {
        const QString series = kind == DarkSeries ? tr("dark") : tr("bright");
        // Only a simulated camera has a light to set; a real one is lit by the user.
        ZebCPP::SimControl::SetIllumination(serial, light);
        FrameCaptureSettings settings;
        settings.frames = options.frames;
        SeriesChange refused = SeriesChange::Accepted;
        const CaptureOutcome outcome = capture.run(settings, [&](const CapturedFrame& frame, int index) {
            m_progress(tr("capturing %1 %2/%3").arg(series).arg(index + 1).arg(settings.frames), true);
            const QImage image = imageOfFrame(frame.pixels.data(), frame.width, frame.height);
            refused = addImageToSeries(image, kind, geometry, params, mean);
            frames += refused == SeriesChange::Accepted ? 1 : 0;
            return refused == SeriesChange::Accepted;
        });
        if (refused != SeriesChange::Accepted) {
            m_result.errors << tr("Captured %1 frame %2 was refused by the series.").arg(series).arg(frames + 1);
            return false;
        }
        if (outcome.end != CaptureEnd::Completed) {
            m_result.errors << tr("Capture of the %1 series: %2").arg(series, outcome.message);
            return false;
        }
        return true;
    };
    m_progress(tr("capturing"), false);
    const bool ok = take(DarkSeries, 0, dark, darkMean, m_result.darkFrames)
                    && (m_result.profile.isColor
                        || take(BrightSeries, options.brightLight, bright, brightMean, m_result.brightFrames));
    ZebCPP::SimControl::SetIllumination(serial, 0);
    return ok;
}

bool BatchJob::generate()
{
    const BatchMapProfile& profile = m_result.profile;
    const BatchOptions& options = *m_context.options;
    if (!options.slot.isEmpty()) {
        for (const BatchMapSlot& slot : profile.slotList) {
            if (slot.name == options.slot)
                m_slot = &slot;
        }
    }
    DefectPixelParams dark;
    DefectPixelParams bright;
    dark.absoluteThreshold = options.absoluteThreshold;
    bright.relativeThreshold = options.relativeThreshold;
    ImageGeometry geometry;
    QImage darkMean;
    QImage brightMean;
    if (options.capture) {
        if (!captureSeries(geometry, dark, bright, darkMean, brightMean))
            return false;
    } else {
        StepTimer timer(m_result.durations, "loading");
        // Plain bitmaps go from disk straight into the mean, a series' files
        // in one pass over it on all cores.
        auto load = [&](const QStringList& files, int kind, DefectPixelParams& params, QImage& mean) {
            SeriesFileLoader loader(files, kind);
            while (!loader.atEnd()) {
                m_progress(tr("loading %1 %2/%3")
                               .arg(kind == DarkSeries ? tr("dark") : tr("bright"))
                               .arg(loader.offered() + 1)
                               .arg(files.size()),
                           true);
                loader.start(geometry, params, mean);
                for (const OfferedFile& offered : loader.finish(geometry, params, mean)) {
                    const QString& path = offered.file.path;
                    switch (offered.change) {
                    case SeriesChange::Accepted:
                        continue;
                    case SeriesChange::NullImage:
                        m_result.errors << tr("Loading image '%1' failed.").arg(path);
                        return false;
                    case SeriesChange::UnsupportedFormat:
                        m_result.errors << tr("Loading '%1': Image format not supported.").arg(path);
                        return false;
                    case SeriesChange::IncompatibleSize:
                        m_result.errors << tr("Loading '%1': incompatible image.").arg(path);
                        return false;
                    case SeriesChange::OutOfMemory:
                    case SeriesChange::InvalidKind:
                        m_result.errors << tr("Loading '%1': out of memory.").arg(path);
                        return false;
                    }
                }
            }
            return true;
        };
        if (!load(m_result.darkFiles, DarkSeries, dark, darkMean)
            || !load(m_result.brightFiles, BrightSeries, bright, brightMean))
            return false;
    }

    StepTimer timer(m_result.durations, "generate");
    m_progress(tr("generating"), false);
    DefectMap map(profile.maxMapSize);
    const MapGeneration generated = profile.isColor
                                        ? create_defpix_map_color(darkMean, dark, geometry, map)
                                        : create_defpix_map(darkMean, brightMean, dark, bright, geometry, map);
    m_count = map.count();
    if (generated != MapGeneration::Generated) {
        m_result.errors << (generated == MapGeneration::NoMemory ? tr("Generate map failed: out of memory!")
                                                                  : tr("Generate map failed: missing image parameters"));
        return false;
    }
    m_width = geometry.width;
    m_pixelCount = geometry.pixelCount;
    // The chunk id is the selected slot's, as in the assistant (its first slot when none is chosen).
    int chunkId = kDefaultChunkId;
    if (!profile.registerMode)
        chunkId = m_slot ? m_slot->chunkId : profile.slotList.first().chunkId;
    if (isTypedMap(profile.revision, chunkId))
        conv_defpix_map_990(map.data(), m_count, *m_context.patterns);

    const unsigned char* darkMask = darkMean.isNull() ? nullptr : dark.defectMask;
    const unsigned char* brightMask = brightMean.isNull() || profile.isColor ? nullptr : bright.defectMask;
    unsigned int flagged = 0;
    for (uint32_t i = 0; i < geometry.pixelCount; ++i)
        flagged += ((darkMask && darkMask[i]) || (brightMask && brightMask[i])) ? 1 : 0;
    m_result.darkFlagged = dark.defectCount;
    m_result.brightFlagged = bright.defectCount;
    m_result.flagged = flagged;
    m_result.written = m_count;
    m_result.capacityCut = flagged > m_count;
    m_map = map.entries();
    if (m_result.capacityCut)
        m_result.notes << tr("The map holds the first %1 of %2 flagged pixels (the camera's maximum).")
                              .arg(m_count)
                              .arg(flagged);
    if (m_count > profile.maxMapSize) {
        m_result.errors << tr("The resulting number of defect pixels: %1; the maximum allowed is: %2.")
                               .arg(m_count)
                               .arg(profile.maxMapSize);
        return false;
    }
    return true;
}

bool BatchJob::save()
{
    const BatchOptions& options = *m_context.options;
    if (options.saveDir.isEmpty())
        return true;
    StepTimer timer(m_result.durations, "save");
    m_progress(tr("saving"), false);
    const QString dir = fillPlaceholders(options.saveDir);
    const QString serial = m_result.info.value(kSerial).toString();
    const QString base = serial.isEmpty() ? m_result.info.value(kCameraId).toString() : serial;
    if (!QDir().mkpath(dir)) {
        m_result.errors << tr("The folder '%1' cannot be created.").arg(dir);
        return false;
    }
    const BatchMapProfile& profile = m_result.profile;
    const int chunkId = profile.registerMode ? kDefaultChunkId
                                             : (m_slot ? m_slot->chunkId : profile.slotList.first().chunkId);
    const std::vector<unsigned char> container = buildDefPixContainerBuffer(
        unsigned(profile.revision), ge3_chunk_id_t(chunkId), m_count, m_map.data(), m_width, m_pixelCount);
    const QString text = QDir(dir).filePath(base + QStringLiteral(".txt"));
    const QString binary = QDir(dir).filePath(base + QStringLiteral(".bin"));
    if (!writeWhole(text, defectMapToText(m_map.data(), m_count))
        || !writeWhole(binary, QByteArray(reinterpret_cast<const char*>(container.data()), int(container.size())))) {
        m_result.errors << tr("Save to file failed!") + QStringLiteral(" (") + dir + QStringLiteral(")");
        return false;
    }
    m_result.savedFiles << text << binary;
    return true;
}

bool BatchJob::uploadAndVerify(BatchMapSlots& access)
{
    const BatchOptions& options = *m_context.options;
    if (options.slot.isEmpty())
        return true;
    const BatchMapProfile& profile = m_result.profile;
    if (!m_slot) {
        QStringList names;
        for (const BatchMapSlot& slot : profile.slotList)
            names << slot.name;
        m_result.errors << tr("The camera has no map slot '%1' (it offers %2).").arg(options.slot, names.join(", "));
        return false;
    }
    m_result.slot = m_slot->name;
    if (options.dryRun) {
        m_result.upload = QStringLiteral("dry-run");
        m_result.verify = QStringLiteral("dry-run");
        if (!profile.registerMode && m_slot->cannotWrite)
            m_result.errors << tr("The map slot '%1' is write-protected (factory map).").arg(m_slot->name);
        return m_result.succeeded();
    }
    if (!options.confirmed) {
        m_result.errors << tr("Not uploaded: confirm with --yes that the map overwrites the selected map '%1'.")
                               .arg(m_slot->name);
        return false;
    }
    if (access.isStreaming()) {
        m_result.errors << tr("Stop streaming before uploading map to camera.");
        return false;
    }
    if (m_count == 0) {
        m_result.errors << tr("Upload failed: empty map");
        return false;
    }
    {
        StepTimer timer(m_result.durations, "upload");
        m_progress(tr("uploading"), false);
        QString error;
        const bool uploaded = access.upload(profile, *m_slot, m_map.data(), m_count, m_width, m_pixelCount,
                                           m_result.uploadBytes, error);
        m_result.upload = uploaded ? QStringLiteral("done") : QStringLiteral("failed");
        if (!uploaded) {
            m_result.errors << error;
            return false;
        }
    }
    if (!options.verify)
        return true;
    StepTimer timer(m_result.durations, "verify");
    m_progress(tr("verifying"), false);
    std::vector<t_defpix> stored;
    QString error;
    if (!access.readBack(profile, *m_slot, stored, error)) {
        m_result.verify = QStringLiteral("failed");
        m_result.errors << error;
        return false;
    }
    const std::vector<t_defpix> expected = access.expectedEntries(profile, *m_slot, m_map.data(), m_count);
    size_t same = 0;
    while (same < stored.size() && same < expected.size() && stored[same].x == expected[same].x
           && stored[same].y == expected[same].y && stored[same].type == expected[same].type)
        ++same;
    if (same != stored.size() || same != expected.size()) {
        m_result.verify = QStringLiteral("failed");
        m_result.errors << tr("The slot '%1' holds %2 entries, %3 expected; they first differ at entry %4.")
                               .arg(m_slot->name)
                               .arg(stored.size())
                               .arg(expected.size())
                               .arg(same);
        return false;
    }
    m_result.verify = QStringLiteral("passed");
    return true;
}
