#include "batchoptions.h"

#include "thresholdinput.h"

#include <QCommandLineParser>
#include <QThread>

namespace {

constexpr int kAbsoluteThresholdLimit = 255;
constexpr int kRelativeThresholdLimit = 100;

} // namespace

bool BatchCommandLine::parse(const QStringList& arguments, BatchOptions& options, QString& message, int& exitCode)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(tr(
        "Generates the defect pixel map of many cameras at once, as the assistant does for one:\n"
        "reads each camera's dark and bright bitmap series from folders or captures them from\n"
        "the camera, builds the map with the assistant's thresholds and correction codes,\n"
        "optionally saves it, uploads it into a map slot and reads the slot back to verify it.\n"
        "One worker per camera; a failing camera does not stop the others.\n"
        "Writes a JSON report of the run and one line per camera.\n"
        "Exit status: 0 when every camera succeeded, 1 when one failed, 2 for a wrong command line.\n"
        "Paths may contain {serial}, {model} and {id} (the camera's plain ID).\n"
        "Cameras come from the camera SDK: ZEB_SIM_CAMERAS names simulated cameras,\n"
        "ZEB_GEV_ADDRESSES limits GigE Vision discovery to the given addresses."));
    const QCommandLineOption help({"h", "help"}, tr("Shows this help and exits."));
    const QCommandLineOption list("list", tr("Lists every camera the SDK finds, with its extended ID, serial number, "
                                             "model, access and compatibility, and exits."));
    const QCommandLineOption camera({"c", "camera"},
                                    tr("Selects a camera by extended ID, plain ID or serial number (repeatable)."),
                                    tr("ID"));
    const QCommandLineOption model({"m", "model"}, tr("Selects the cameras whose model name matches the pattern "
                                                      "(* and ? wildcards; repeatable)."),
                                   tr("pattern"));
    const QCommandLineOption all({"a", "all"}, tr("Selects every compatible camera."));
    const QCommandLineOption dark({"d", "dark"}, tr("The camera's dark bitmaps: a folder (all *.bmp in it) or a folder and a "
                                     "file name pattern such as images/{serial}/dark_*.bmp; taken in name order."),
                                  tr("path"));
    const QCommandLineOption bright({"b", "bright"},
                                    tr("The camera's bright bitmaps, given like --dark (monochrome cameras; colour "
                                       "cameras use the dark series only)."),
                                    tr("path"));
    const QCommandLineOption capture("capture",
                                     tr("Captures the series from each camera instead of reading bitmaps, as the "
                                        "assistant's capture does: 16 frames each at the camera's exposure time and "
                                        "gain, dark with the lens covered, bright under uniform light at about half "
                                        "of full scale (a simulated camera gets no light, then half light)."));
    const QCommandLineOption absolute("absolute-threshold",
                                      tr("Grey-level margin of the dark test, at most 255 (default 16)."),
                                      tr("N"), QString::number(options.absoluteThreshold));
    const QCommandLineOption relative("relative-threshold",
                                      tr("Margin of the bright test in percent of the local average, at most 100 "
                                         "(default 12)."),
                                      tr("N"), QString::number(options.relativeThreshold));
    const QCommandLineOption slot({"s", "slot"}, tr("Uploads the map into this map slot (for example DefPixMap1) and "
                                                    "verifies it. The factory map is never written."),
                                  tr("name"));
    const QCommandLineOption yes({"y", "yes"}, tr("Confirms that the map overwrites the selected slot; without it "
                                                  "no camera is written."));
    const QCommandLineOption save("save", tr("Saves each map as <serial>.txt (text form) and <serial>.bin "
                                             "(container form) in this folder."),
                                  tr("folder"));
    const QCommandLineOption report({"r", "report"}, tr("Writes the JSON report of the run to this file "
                                                        "(default dpc-batch-report.json)."),
                                    tr("file"), QStringLiteral("dpc-batch-report.json"));
    const QCommandLineOption jobs({"j", "jobs"}, tr("Cameras worked on at once (default: the number of cores)."),
                                  tr("N"), QString::number(qMax(1, QThread::idealThreadCount())));
    const QCommandLineOption dryRun("dry-run", tr("Does everything but write to the cameras: no upload, slots "
                                                  "stay unchanged."));
    const QCommandLineOption noVerify("no-verify", tr("Does not read the slot back after the upload."));
    const QCommandLineOption quiet({"q", "quiet"}, tr("No progress display; the summary lines remain."));
    parser.addOptions({help, list, camera, model, all, dark, bright, capture, absolute, relative, slot, yes, save, report,
                       jobs, dryRun, noVerify, quiet});

    exitCode = 2;
    if (!parser.parse(arguments)) {
        message = parser.errorText();
        return false;
    }
    if (parser.isSet(help)) {
        message = parser.helpText();
        exitCode = 0;
        return false;
    }
    if (!parser.positionalArguments().isEmpty()) {
        message = tr("Unexpected argument: %1").arg(parser.positionalArguments().first());
        return false;
    }
    options.list = parser.isSet(list);
    options.cameras = parser.values(camera);
    options.models = parser.values(model);
    options.all = parser.isSet(all);
    options.darkDir = parser.value(dark);
    options.brightDir = parser.value(bright);
    options.capture = parser.isSet(capture);
    options.slot = parser.value(slot);
    options.confirmed = parser.isSet(yes);
    options.saveDir = parser.value(save);
    options.reportPath = parser.value(report);
    options.dryRun = parser.isSet(dryRun);
    options.verify = !parser.isSet(noVerify);
    options.quiet = parser.isSet(quiet);

    // The thresholds take what the assistant's fields take.
    const QString absoluteText = parser.value(absolute);
    const QString relativeText = parser.value(relative);
    const ThresholdInput absoluteInput =
        acceptThresholdText(absoluteText, options.absoluteThreshold, kAbsoluteThresholdLimit);
    const ThresholdInput relativeInput =
        acceptThresholdText(relativeText, options.relativeThreshold, kRelativeThresholdLimit);
    if (absoluteInput.text != absoluteText || relativeInput.text != relativeText) {
        message = tr("A threshold must be a whole number up to 255 (absolute) or 100 (relative).");
        return false;
    }
    options.absoluteThreshold = absoluteInput.value;
    options.relativeThreshold = relativeInput.value;

    bool jobsOk = false;
    options.jobs = parser.value(jobs).toInt(&jobsOk);
    if (!jobsOk || options.jobs < 1) {
        message = tr("--jobs needs a number of at least 1.");
        return false;
    }
    if (options.list)
        return true;
    if (options.cameras.isEmpty() && options.models.isEmpty() && !options.all) {
        message = tr("Select cameras with --camera, --model or --all (see --help).");
        return false;
    }
    if (options.capture && (!options.darkDir.isEmpty() || !options.brightDir.isEmpty())) {
        message = tr("--capture takes the series from the cameras: leave out --dark and --bright.");
        return false;
    }
    if (!options.capture && options.darkDir.isEmpty() && options.brightDir.isEmpty()) {
        message = tr("Give the folders of the series with --dark and/or --bright, or --capture (see --help).");
        return false;
    }
    return true;
}
