// orvel-dpc-quality: measures how well the whole chain finds defect pixels. For
// simulated cameras it captures dark and bright series through the camera SDK,
// generates the map as the assistant does and compares it with the seeded
// defects of each sensor.

#include "capturedimage.h"
#include "defectmapgenerator.h"
#include "framecapture.h"
#include "imageseries.h"
#include "sim/simcontrol.h"
#include "simcameralookup.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <cstdlib>
#include <map>
#include <set>

using namespace ZebCPP;

namespace {

const char* const kDescription =
    "Captures a dark series (and, for monochrome cameras, a bright series) from each\n"
    "named simulated camera, generates the defect map with the given thresholds and\n"
    "compares it with the seeded defects: found and missed per kind, false positives,\n"
    "and how many flagged pixels the camera's map capacity cuts off.\n"
    "Without --camera the three built-in cameras with map slots are measured.";

const char* const kDefaultCameras[] = {"KV1230001", "PM5000002", "RY1300003"};

using Pixel = std::pair<uint32_t, uint32_t>;

struct Options {
    int frames = 16;
    int absolute = 16;
    int relative = 12;
    double brightLight = 50;
};

struct Series {
    DefectPixelParams params;
    QImage mean;
};

unsigned int mapCapacity(const CameraPtr& camera)
{
    FeaturePtr feature;
    int64_t value = 0;
    if (camera->GetFeatureByName("DefectPixelCorrection_MapMaxSize", feature) == ZebErrorSuccess
        && feature->GetValue(value) == ZebErrorSuccess && value > 0)
        return unsigned(value);
    return 10000; // what the assistant assumes of a camera that does not say
}

bool captureSeries(FrameCapture& capture, const std::string& serial, double light, int kind, int frames,
                   ImageGeometry& geometry, Series& series, bool& bayer, QTextStream& err)
{
    SimControl::SetIllumination(serial, light);
    FrameCaptureSettings settings;
    settings.frames = frames;
    const CaptureOutcome outcome = capture.run(settings, [&](const CapturedFrame& frame, int) {
        bayer = frame.bayer;
        const QImage image = imageOfFrame(frame.pixels.data(), frame.width, frame.height);
        return addImageToSeries(image, kind, geometry, series.params, series.mean) == SeriesChange::Accepted;
    });
    if (outcome.end != CaptureEnd::Completed) {
        err << QString::fromStdString(serial) << ": " << outcome.message << '\n';
        return false;
    }
    return true;
}

// Measures one camera; null on failure.
QJsonObject measure(const QString& name, const Options& options, QTextStream& err)
{
    CameraPtr camera = findCameraBySerialOrModel(name);
    if (!camera) {
        err << "No camera with serial number or model " << name << ".\n";
        return {};
    }
    std::string serial;
    camera->GetSerialNumber(serial);
    std::vector<SimControl::SimDefect> seeded;
    if (SimControl::GetDefects(serial, seeded) != ZebErrorSuccess) {
        err << name << " is not a simulated camera: it has no seeded defects to compare with.\n";
        return {};
    }
    if (camera->Open(AccessModeFull) != ZebErrorSuccess) {
        err << name << " cannot be opened with full access.\n";
        return {};
    }
    FrameCapture capture(camera);
    ImageGeometry geometry;
    Series dark, bright;
    bool bayer = false;
    dark.params.absoluteThreshold = options.absolute;
    bright.params.relativeThreshold = options.relative;
    bool ok = captureSeries(capture, serial, 0, DarkSeries, options.frames, geometry, dark, bayer, err);
    if (ok && !bayer)
        ok = captureSeries(capture, serial, options.brightLight, BrightSeries, options.frames, geometry, bright,
                           bayer, err);
    const unsigned int capacity = mapCapacity(camera);
    SimControl::SetIllumination(serial, 0);
    camera->Close();
    if (!ok)
        return {};

    // Generated without a limit first, so that the capacity's cut can be told.
    DefectMap map(geometry.pixelCount);
    if (bayer)
        create_defpix_map_color(dark.mean, dark.params, geometry, map);
    else
        create_defpix_map(dark.mean, bright.mean, dark.params, bright.params, geometry, map);
    const unsigned int kept = std::min(map.count(), capacity);
    std::set<Pixel> found;
    for (unsigned int i = 0; i < kept; ++i)
        found.insert({map[i].x, map[i].y});

    std::map<QString, std::pair<int, int>> kinds; // seeded, found
    std::set<Pixel> known;
    for (const SimControl::SimDefect& d : seeded) {
        auto& entry = kinds[SimControl::DefectKindName(d.kind)];
        ++entry.first;
        entry.second += found.count({d.x, d.y}) ? 1 : 0;
        known.insert({d.x, d.y});
    }
    int falsePositives = 0;
    for (const Pixel& p : found)
        falsePositives += known.count(p) ? 0 : 1;

    QJsonArray rows;
    for (const auto& [kind, counts] : kinds)
        rows.append(QJsonObject{{"kind", kind}, {"seeded", counts.first}, {"found", counts.second},
                                {"missed", counts.first - counts.second}});
    return QJsonObject{{"camera", QString::fromStdString(serial)},
                       {"series", bayer ? "dark" : "dark+bright"},
                       {"frames", options.frames},
                       {"absoluteThreshold", options.absolute},
                       {"relativeThreshold", options.relative},
                       {"kinds", rows},
                       {"falsePositives", falsePositives},
                       {"flagged", int(map.count())},
                       {"mapCapacity", int(capacity)},
                       {"cutByCapacity", int(map.count() - kept)}};
}

void printTable(const QJsonArray& results, QTextStream& out)
{
    out << QString("%1 %2 %3 %4 %5\n").arg("camera", -10).arg("kind", -8).arg("seeded", 6).arg("found", 6)
               .arg("missed", 6);
    for (const QJsonValue& value : results) {
        const QJsonObject r = value.toObject();
        for (const QJsonValue& row : r["kinds"].toArray()) {
            const QJsonObject k = row.toObject();
            out << QString("%1 %2 %3 %4 %5\n").arg(r["camera"].toString(), -10).arg(k["kind"].toString(), -8)
                       .arg(k["seeded"].toInt(), 6).arg(k["found"].toInt(), 6).arg(k["missed"].toInt(), 6);
        }
        out << QString("%1 series %2, %3 frames, thresholds %4 / %5 %: false positives %6, flagged %7, "
                       "map capacity %8, cut %9\n")
                   .arg(r["camera"].toString(), -10).arg(r["series"].toString()).arg(r["frames"].toInt())
                   .arg(r["absoluteThreshold"].toInt()).arg(r["relativeThreshold"].toInt())
                   .arg(r["falsePositives"].toInt()).arg(r["flagged"].toInt()).arg(r["mapCapacity"].toInt())
                   .arg(r["cutByCapacity"].toInt());
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(kDescription);
    parser.addHelpOption();
    parser.addOption({"camera", "Serial number or model of a simulated camera (repeatable).", "camera"});
    parser.addOption({"frames", "Frames per series.", "N", "16"});
    parser.addOption({"absolute", "Absolute threshold of the dark series, grey levels.", "N", "16"});
    parser.addOption({"relative", "Relative threshold of the bright series, percent.", "N", "12"});
    parser.addOption({"light", "Light level of the bright series, percent of full light.", "N", "50"});
    parser.addOption({"json", "Also write the results as JSON to this file.", "file"});
    parser.process(app);

    QTextStream out(stdout), err(stderr);
    Options options;
    bool framesOk = false, absoluteOk = false, relativeOk = false, lightOk = false;
    options.frames = parser.value("frames").toInt(&framesOk);
    options.absolute = parser.value("absolute").toInt(&absoluteOk);
    options.relative = parser.value("relative").toInt(&relativeOk);
    options.brightLight = parser.value("light").toDouble(&lightOk);
    if (!framesOk || !absoluteOk || !relativeOk || !lightOk || options.frames < 1 || options.absolute > 255
        || options.relative > 100 || options.brightLight < 0 || options.brightLight > 100) {
        err << "Give --frames of at least 1, --absolute up to 255, --relative up to 100 and --light of "
               "0 to 100; see --help.\n";
        return 1;
    }
    QStringList cameras = parser.values("camera");
    if (cameras.isEmpty()) {
        for (const char* serial : kDefaultCameras)
            cameras << serial;
    }

    setenv("ZEB_SIM_CAMERAS", "default", 0); // the SDK reads it at start-up
    ZebSystem& system = ZebSystem::GetInstance();
    if (system.Startup() != ZebErrorSuccess) {
        err << "The camera SDK did not start (check ZEB_SIM_CAMERAS).\n";
        return 2;
    }
    QJsonArray results;
    bool failed = false;
    for (const QString& camera : cameras) {
        const QJsonObject result = measure(camera, options, err);
        failed = failed || result.isEmpty();
        if (!result.isEmpty())
            results.append(result);
    }
    system.Shutdown();
    printTable(results, out);
    if (parser.isSet("json")) {
        QFile file(parser.value("json"));
        if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(results).toJson()) < 0) {
            err << "Cannot write " << parser.value("json") << ".\n";
            return 2;
        }
    }
    return failed ? 2 : 0;
}
