#include "batchrun.h"

#include "ApiController.h"
#include "cameramapslots.h"
#include "cameramodels.h"
#include "defectmatch.h"
#include "uxcamera.h"
#include "uxcameramanager.h"
#include "uxsettings.h"

#include <ZebCPP.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QMutex>
#include <QRegularExpression>
#include <QSaveFile>

#include <atomic>
#include <thread>
#include <unistd.h>

namespace {

const QString kExtendedId = CameraInfoKey::ExtendedId;
const QString kCameraId = CameraInfoKey::CameraId;
const QString kSerial = CameraInfoKey::SerialNumber;
const QString kModel = CameraInfoKey::ModelName;
const QString kName = CameraInfoKey::CameraName;
const QString kFullAccess = CameraInfoKey::FullAccess;

QVector<CameraInfoMap> listCameras(ApiController& controller)
{
    controller.UpdateCamerasList();
    QVector<CameraInfoMap> cameras;
    for (const ZebCPP::CameraPtr& camera : controller.GetCameraModel()) {
        const CameraInfoMap info = controller.GetCameraInfo(camera);
        if (!info.isEmpty())
            cameras.append(info);
    }
    return cameras;
}

bool isCompatible(const CameraInfoMap& info)
{
    QString family;
    return IsCameraModelCompatible(info.value(kModel).toString(), family);
}

// The selected cameras, each once, in the order the SDK lists them; a
// selection that finds no camera becomes a failed result of its own.
QVector<CameraInfoMap> selectCameras(const QVector<CameraInfoMap>& cameras, const BatchOptions& options,
                                     QVector<BatchCameraResult>& unknown)
{
    QSet<QString> chosen;
    auto fail = [&unknown](const QString& what, const QString& error) {
        BatchCameraResult result;
        result.info.insert(kExtendedId, what);
        result.errors << error;
        result.upload = QStringLiteral("skipped");
        result.verify = QStringLiteral("skipped");
        unknown.append(result);
    };
    for (const QString& wanted : options.cameras) {
        bool found = false;
        for (const CameraInfoMap& info : cameras) {
            if (info.value(kExtendedId).toString() == wanted || info.value(kCameraId).toString() == wanted
                || info.value(kSerial).toString() == wanted) {
                chosen.insert(info.value(kExtendedId).toString());
                found = true;
            }
        }
        if (!found)
            fail(wanted, BatchRun::tr("No camera has the ID or serial number '%1'.").arg(wanted));
    }
    for (const QString& pattern : options.models) {
        const QRegularExpression model(QRegularExpression::wildcardToRegularExpression(pattern));
        bool found = false;
        for (const CameraInfoMap& info : cameras) {
            if (model.match(info.value(kModel).toString()).hasMatch()) {
                chosen.insert(info.value(kExtendedId).toString());
                found = true;
            }
        }
        if (!found)
            fail(pattern, BatchRun::tr("No camera model matches '%1'.").arg(pattern));
    }
    if (options.all) {
        for (const CameraInfoMap& info : cameras) {
            if (isCompatible(info))
                chosen.insert(info.value(kExtendedId).toString());
        }
        if (chosen.isEmpty())
            fail(QStringLiteral("--all"), BatchRun::tr("No compatible camera was found."));
    }
    QVector<CameraInfoMap> selected;
    for (const CameraInfoMap& info : cameras) {
        if (chosen.contains(info.value(kExtendedId).toString()))
            selected.append(info);
    }
    return selected;
}

QString shortName(const CameraInfoMap& info)
{
    const QString serial = info.value(kSerial).toString();
    return serial.isEmpty() ? info.value(kExtendedId).toString() : serial;
}

// The progress display: on a terminal one line that is redrawn, otherwise one
// line per step.
class ProgressDisplay {
public:
    ProgressDisplay(QTextStream& err, int total, bool quiet)
        : m_err(err), m_total(total), m_quiet(quiet), m_terminal(isatty(STDERR_FILENO) == 1) {}

    void step(const QString& camera, const QString& step, bool detail)
    {
        if (m_quiet || (detail && !m_terminal)) // image by image would flood a log file
            return;
        QMutexLocker lock(&m_mutex);
        if (!m_terminal) {
            m_err << camera << ": " << step << '\n';
            m_err.flush();
            return;
        }
        m_steps[camera] = step;
        QStringList parts;
        for (auto it = m_steps.cbegin(); it != m_steps.cend(); ++it)
            parts << it.key() + ": " + it.value();
        QString line = QStringLiteral("[%1/%2] ").arg(m_done).arg(m_total) + parts.join(QStringLiteral(" | "));
        if (line.size() > 150)
            line = line.left(147) + QStringLiteral("...");
        m_err << "\r\033[K" << line;
        m_err.flush();
    }

    void finished(const QString& camera, const QString& summary, QTextStream& out)
    {
        QMutexLocker lock(&m_mutex);
        ++m_done;
        m_steps.remove(camera);
        if (m_terminal && !m_quiet) {
            m_err << "\r\033[K";
            m_err.flush();
        }
        out << summary << '\n';
        out.flush();
    }

private:
    QTextStream& m_err;
    QMutex m_mutex;
    QMap<QString, QString> m_steps;
    int m_total;
    int m_done = 0;
    bool m_quiet;
    bool m_terminal;
};

QJsonObject optionsJson(const BatchOptions& options)
{
    return QJsonObject{{"cameras", QJsonArray::fromStringList(options.cameras)},
                       {"models", QJsonArray::fromStringList(options.models)},
                       {"all", options.all},
                       {"darkFolder", options.darkDir},
                       {"brightFolder", options.brightDir},
                       {"absoluteThreshold", options.absoluteThreshold},
                       {"relativeThreshold", options.relativeThreshold},
                       {"slot", options.slot},
                       {"confirmed", options.confirmed},
                       {"saveFolder", options.saveDir},
                       {"jobs", options.jobs},
                       {"dryRun", options.dryRun},
                       {"verify", options.verify}};
}

} // namespace

void BatchRun::list(ApiController& controller, QTextStream& out)
{
    const QVector<CameraInfoMap> cameras = listCameras(controller);
    for (const CameraInfoMap& info : cameras) {
        out << info.value(kExtendedId).toString() << '\t' << info.value(kSerial).toString() << '\t'
            << info.value(kModel).toString() << '\t' << info.value(kName).toString() << '\t'
            << (info.value(kFullAccess).toBool() ? tr("full access") : tr("busy")) << '\t'
            << (isCompatible(info) ? tr("compatible") : tr("not compatible")) << '\n';
    }
    out << tr("%n camera(s) found.", nullptr, cameras.size()) << '\n';
    out.flush();
}

int BatchRun::run(const BatchOptions& options, QTextStream& out, QTextStream& err, QJsonObject* report)
{
    auto controller = std::make_shared<ApiController>();
    if (options.list) {
        list(*controller, out);
        return 0;
    }
    const QDateTime started = QDateTime::currentDateTimeUtc();
    QElapsedTimer clock;
    clock.start();

    QVector<BatchCameraResult> results;
    const QVector<CameraInfoMap> selected = selectCameras(listCameras(*controller), options, results);
    for (const BatchCameraResult& result : results)
        out << result.summary() << '\n';

    DefectMatchPatterns patterns;
    patterns.setupDefMatchSettings(UXCSettings::getInstance()->GetDeffMatchSettings());
    UxCameraManager manager(controller);
    QMap<QString, bool> fullAccess;
    for (const CameraInfoMap& info : selected)
        fullAccess.insert(info.value(kExtendedId).toString(), info.value(kFullAccess).toBool());

    BatchJobContext context;
    context.options = &options;
    context.patterns = &patterns;
    context.openCamera = [&](const QString& id, QString& error) {
        if (!fullAccess.value(id)) {
            error = tr("The camera is busy: another application holds it (no full access).");
            return std::unique_ptr<UxCamera>();
        }
        std::unique_ptr<UxCamera> camera(manager.Open(id));
        if (!camera)
            error = tr("The camera cannot be opened (busy or gone).");
        return camera;
    };
    context.closeCamera = [&](const QString& id) { manager.Close(id); };
    context.mapSlots = [](UxCamera& camera) { return std::unique_ptr<BatchMapSlots>(new CameraMapSlots(camera)); };

    ProgressDisplay progress(err, selected.size(), options.quiet);
    std::vector<BatchCameraResult> done(size_t(selected.size())); // one element per worker's camera
    std::atomic<int> next{0};
    auto worker = [&] {
        for (int i = next++; i < selected.size(); i = next++) {
            const QString name = shortName(selected[i]);
            BatchJob job(context, selected[i]);
            BatchCameraResult& result = done[size_t(i)];
            result = job.run([&](const QString& step, bool detail) { progress.step(name, step, detail); });
            progress.finished(name, result.summary(), out);
        }
    };
    std::vector<std::thread> workers;
    const int count = qMin(options.jobs, selected.size());
    for (int i = 0; i < count; ++i)
        workers.emplace_back(worker);
    for (std::thread& thread : workers)
        thread.join();
    results += QVector<BatchCameraResult>(done.begin(), done.end());

    QJsonArray cameras;
    int succeeded = 0;
    for (const BatchCameraResult& result : results) {
        cameras.append(result.toJson());
        succeeded += result.succeeded() ? 1 : 0;
    }
    const QJsonObject document{{"tool", QStringLiteral("orvel-dpc-batch")},
                               {"started", started.toString(Qt::ISODateWithMs)},
                               {"durationMs", double(clock.nsecsElapsed() / 100000) / 10.0},
                               {"options", optionsJson(options)},
                               {"succeeded", succeeded},
                               {"failed", results.size() - succeeded},
                               {"cameras", cameras}};
    if (report)
        *report = document;
    bool reportWritten = true;
    if (!options.reportPath.isEmpty()) {
        QSaveFile file(options.reportPath);
        const QByteArray json = QJsonDocument(document).toJson();
        reportWritten = file.open(QIODevice::WriteOnly) && file.write(json) == json.size() && file.commit();
        if (!reportWritten)
            err << tr("The report cannot be written to '%1'.").arg(options.reportPath) << '\n';
    }
    out << tr("%1 of %2 cameras succeeded.").arg(succeeded).arg(results.size()) << '\n';
    out.flush();
    err.flush();
    return reportWritten && succeeded == results.size() && !results.isEmpty() ? 0 : 1;
}

int BatchRun::main(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    BatchOptions options;
    QString message;
    int exitCode = 0;
    if (!BatchCommandLine::parse(arguments, options, message, exitCode)) {
        (exitCode == 0 ? out : err) << message << '\n';
        return exitCode;
    }
    ZebCPP::ZebSystem& system = ZebCPP::ZebSystem::GetInstance();
    const ZebCPP::ZebErrorType started = system.Startup();
    if (started != ZebCPP::ZebErrorSuccess) {
        err << tr("The camera SDK did not start: %1").arg(ApiController::ErrorCodeToMessage(started)) << '\n';
        return 1;
    }
    const int result = run(options, out, err);
    system.Shutdown();
    return result;
}
