#include "batchrun.h"
#include "childprocess.h"
#include "fakegvcamera.h"
#include "panelfixture.h"
#include "uxdefectpixelcorrection.h"
#include "zebtestsupport.h"

#include <sim/simcontrol.h>

#include <QJsonArray>
#include <QtTest>

#include <set>

using namespace PanelFixture;
using ZebCPP::SimControl::SimMapEntry;

namespace {

const QStringList kCameras = {kMonoFile, kColourFile, kRegisterMono};

std::vector<SimMapEntry> stored(const QString& serial, uint32_t slot)
{
    return ZebTest::storedMap(serial.toStdString(), slot);
}

// The program line of a built tool, through the emulator in a cross build.
QStringList toolLine(const QString& program, const QStringList& arguments)
{
#ifdef DPC_TOOL_EMULATOR
    return QStringList{DPC_TOOL_EMULATOR, program} + arguments;
#else
    return QStringList{program} + arguments;
#endif
}

int toolExit(const QStringList& line)
{
    ChildProcess process;
    return process.start(line.first(), line.mid(1)) && process.waitForFinished(60000) ? process.exitCode() : -1;
}

bool runTool(const QStringList& line)
{
    return toolExit(line) == 0;
}

// The line through the shell, so that its output can be redirected.
QStringList shell(const QStringList& line, const QString& redirection)
{
    return {"/bin/sh", "-c", "'" + line.join("' '") + "' " + redirection};
}

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject entryOf(const QJsonObject& report, const QString& serial)
{
    for (const QJsonValue& camera : report.value("cameras").toArray()) {
        if (camera.toObject().value("camera").toObject().value("Serial No.").toString() == serial)
            return camera.toObject();
    }
    return {};
}

} // namespace

class TestBatchTool : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void mapsMatchTheAssistantAndVerify();
    void uploadFaultFailsOneCameraAlone();
    void dryRunAndBadInputsLeaveSlotsUnchanged();
    void simCaptureWritesSeriesOrRefuses();
    void capturedSeriesFindTheSeededDefects();
    void executableListsTheFakeGigECamera();

private:
    int runBatch(const QStringList& arguments, QJsonObject& report);
    QString dark(const QString& serial) const { return m_dir.filePath(serial + "/dark_*.bmp"); }

    Session m_session;
    QTemporaryDir m_dir;
};

void TestBatchTool::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_dir.isValid());
    qputenv("ZEB_SIM_CAMERAS", "default");
    for (const QString& serial : kCameras) {
        // The colour camera by its model name.
        const QString camera = serial == kColourFile ? QString("pmq5CCX") : serial;
        QVERIFY(runTool(toolLine(ZEB_SIM_CAPTURE, {"--camera", camera, "--dark", "3", "--bright", "3", "--out",
                                                   m_dir.filePath(serial)})));
    }
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
}

void TestBatchTool::cleanupTestCase()
{
    m_session.stop();
}

int TestBatchTool::runBatch(const QStringList& arguments, QJsonObject& report)
{
    BatchOptions options;
    QString message;
    int exitCode = 0;
    if (!BatchCommandLine::parse(QStringList{"orvel-dpc-batch", "-q", "-r", ""} + arguments, options, message,
                                 exitCode))
        return -exitCode - 100;
    QString text;
    QTextStream out(&text);
    QTextStream err(&text);
    return BatchRun::run(options, out, err, &report);
}

// The three map-slot cases at once (file access revisions 3 and 4, big-endian
// registers): the saved maps are the assistant's to the byte, and each slot
// holds the map afterwards.
void TestBatchTool::mapsMatchTheAssistantAndVerify()
{
    QJsonObject report;
    const QString saved = m_dir.filePath("maps");
    QCOMPARE(runBatch({"-c", kMonoFile, "-c", kColourFile, "-c", kRegisterMono, "--dark",
                      m_dir.filePath("{serial}/dark_*.bmp"), "--bright", m_dir.filePath("{serial}/bright_*.bmp"),
                      "--slot", "DefPixMap1", "--yes", "--save", saved, "-j", "3"},
                     report),
             0);
    QCOMPARE(report.value("succeeded").toInt(), 3);
    for (const QString& serial : kCameras) {
        const QJsonObject entry = entryOf(report, serial);
        QCOMPARE(entry.value("upload").toString(), QString("done"));
        QCOMPARE(entry.value("verify").toString(), QString("passed"));
        QVERIFY(entry.value("map").toObject().value("written").toInt() > 0);
        QCOMPARE(int(stored(serial, 1).size()), entry.value("map").toObject().value("written").toInt());

        UXCDefectPixelCorrection panel;
        RecordingDialogs dialogs;
        panel.setDialogs(&dialogs);
        QVERIFY(panel.Init(m_session.open(serial)));
        const QStringList darkFiles = QDir(m_dir.filePath(serial)).entryList({"dark_*.bmp"}, QDir::Files, QDir::Name);
        const QStringList brightFiles =
            QDir(m_dir.filePath(serial)).entryList({"bright_*.bmp"}, QDir::Files, QDir::Name);
        for (const QString& file : darkFiles)
            QVERIFY(panel.loadImagefromFile(m_dir.filePath(serial + "/" + file), 0));
        for (const QString& file : panel.isColor() ? QStringList() : brightFiles)
            QVERIFY(panel.loadImagefromFile(m_dir.filePath(serial + "/" + file), 1));
        activateSlot(panel, 1);
        click(panel, "btnGenerateMap");
        const QString mine = m_dir.filePath("assistant-" + serial);
        dialogs.saveFileName = QStringList{mine};
        click(panel, "btnSaveMapToFile");
        const QString extension = panel.isRegisterMode() ? ".txt" : ".bin";
        const QByteArray assistant = fileBytes(mine + extension);
        QVERIFY(!assistant.isEmpty());
        QCOMPARE(fileBytes(saved + "/" + serial + extension), assistant);
        panel.Reset();
        QVERIFY(m_session.close(serial));
    }
}

void TestBatchTool::uploadFaultFailsOneCameraAlone()
{
    const std::vector<SimMapEntry> before = stored(kMonoFile, 2);
    QCOMPARE(ZebCPP::SimControl::InjectFault(kRegisterMono, ZebCPP::SimControl::FaultKind::MemoryWrite, 1,
                                             ZebCPP::ZebErrorTimeout),
             ZebCPP::ZebErrorSuccess);
    QJsonObject report;
    QCOMPARE(runBatch({"-c", kMonoFile, "-c", kRegisterMono, "--dark", m_dir.filePath("{serial}/dark_*.bmp"),
                      "--slot", "DefPixMap2", "--yes"},
                     report),
             1);
    ZebCPP::SimControl::ClearFaults(kRegisterMono);
    const QJsonObject failed = entryOf(report, kRegisterMono);
    QCOMPARE(failed.value("succeeded").toBool(), false);
    QCOMPARE(failed.value("upload").toString(), QString("failed"));
    QVERIFY(!failed.value("errors").toArray().isEmpty());
    QCOMPARE(entryOf(report, kMonoFile).value("verify").toString(), QString("passed"));
    QVERIFY(before != stored(kMonoFile, 2));
}

// Nothing is written to a camera by a dry run, a wrong folder, an unreadable
// image, a missing confirmation or an unknown or busy camera; each says why.
void TestBatchTool::dryRunAndBadInputsLeaveSlotsUnchanged()
{
    std::vector<std::vector<SimMapEntry>> before;
    for (const QString& serial : kCameras)
        before.push_back(stored(serial, 3));
    QJsonObject report;
    QCOMPARE(runBatch({"--all", "--dark", m_dir.filePath("{serial}/dark_*.bmp"), "--slot", "DefPixMap3", "--yes",
                      "--dry-run"},
                     report),
             1);
    QCOMPARE(entryOf(report, kMonoFile).value("upload").toString(), QString("dry-run"));
    QCOMPARE(entryOf(report, "TB2000005").value("errors").toArray().first().toString(),
             QString("The camera is busy: another application holds it (no full access)."));

    QFile broken(m_dir.filePath("broken/dark_0.bmp"));
    QVERIFY(QDir().mkpath(m_dir.filePath("broken")) && broken.open(QIODevice::WriteOnly));
    broken.write("BM not really a bitmap");
    broken.close();
    QCOMPARE(runBatch({"-c", kMonoFile, "-c", "NOSUCHCAMERA", "--dark", m_dir.filePath("broken"), "--slot",
                      "DefPixMap3", "--yes"},
                     report),
             1);
    QVERIFY(entryOf(report, kMonoFile).value("errors").toArray().first().toString().startsWith("Loading image"));
    QCOMPARE(report.value("failed").toInt(), 2);
    QCOMPARE(runBatch({"-c", kColourFile, "--dark", m_dir.filePath("missing"), "--slot", "DefPixMap2"}, report), 1);
    QCOMPARE(runBatch({"-c", kRegisterMono, "--dark", dark(kRegisterMono), "--slot", "DefPixMap2"}, report), 1);
    QVERIFY(entryOf(report, kRegisterMono).value("errors").toArray().first().toString().contains("--yes"));
    for (int i = 0; i < kCameras.size(); ++i)
        QVERIFY(before[size_t(i)] == stored(kCameras[i], 3));
    QCOMPARE(runBatch({"--slot", "DefPixMap1"}, report), -102);
}

// zeb-sim-capture as a user runs it: the series initTestCase wrote are bitmaps
// with the seeded defects listed beside them; bad arguments write nothing.
void TestBatchTool::simCaptureWritesSeriesOrRefuses()
{
    for (const QString& serial : kCameras) {
        const QDir out(m_dir.filePath(serial));
        const QImage dark(out.filePath("dark_000.bmp"));
        QCOMPARE(dark.format(), serial == kColourFile ? QImage::Format_RGB32 : QImage::Format_Indexed8);
        QCOMPARE(QImage(out.filePath("bright_002.bmp")).size(), dark.size());
        QVERIFY(!QFile::exists(out.filePath("bright_003.bmp")));
        const QStringList lines = QString::fromUtf8(fileBytes(out.filePath("defects.txt"))).split('\n', Qt::SkipEmptyParts);
        QVERIFY(lines.size() > 10);
        for (const QString& line : lines) {
            const QStringList fields = line.split(';');
            QCOMPARE(fields.size(), 3);
            const QPoint pixel(fields[0].toInt(), fields[1].toInt());
            QVERIFY(dark.rect().contains(pixel));
            const QRgb rgb = dark.pixel(pixel);
            if (fields[2] == "hot") // well above the dark level in its own channel
                QVERIFY(std::max({qRed(rgb), qGreen(rgb), qBlue(rgb)}) > 30);
        }
    }
    // The last without ZEB_SIM_CAMERAS: the tool then opens its built-in set itself.
    const QString out = m_dir.filePath("refused"), errors = m_dir.filePath("refused.txt");
    const QStringList withoutSet{"env", "-u", "ZEB_SIM_CAMERAS"};
    for (const QStringList& bad : {QStringList{"--dark", "1"}, QStringList{"--camera", "nope", "--dark", "1"},
                                   QStringList{"--camera", kMonoFile, "--dark", "many"},
                                   QStringList{"--camera", "TB2000005", "--dark", "1"}}) { // held elsewhere
        const QStringList line = toolLine(ZEB_SIM_CAPTURE, bad + QStringList{"--out", out});
        const bool held = bad.contains("TB2000005");
        QVERIFY(toolExit(shell(held ? withoutSet + line : line, "2> '" + errors + "'")) > 0);
        QVERIFY(!fileBytes(errors).isEmpty());
        QVERIFY(!held || fileBytes(errors).contains("cannot be opened"));
        QVERIFY(!QFile::exists(out + "/dark_000.bmp"));
    }
}

// Dark frames without light and bright frames under light: every seeded hot and
// dead pixel of the monochrome camera reaches its slot; the colour camera
// captures its dark series only. Folders and --capture exclude each other.
void TestBatchTool::capturedSeriesFindTheSeededDefects()
{
    QJsonObject report;
    QCOMPARE(runBatch({"--all", "--capture", "--dark", "x"}, report), -102);
    QCOMPARE(runBatch({"-c", kMonoFile, "-c", kColourFile, "--capture", "--slot", "DefPixMap1", "--yes", "-j", "2"},
                      report),
             0);
    const QJsonObject colour = entryOf(report, kColourFile).value("series").toObject();
    QCOMPARE(colour.value("captured").toBool(), true);
    QCOMPARE(colour.value("darkFrames").toInt(), 16);
    QCOMPARE(colour.value("brightFrames").toInt(), 0);
    const QJsonObject mono = entryOf(report, kMonoFile);
    QCOMPARE(mono.value("series").toObject().value("brightFrames").toInt(), 16);
    QCOMPARE(mono.value("verify").toString(), QString("passed"));

    std::vector<ZebCPP::SimControl::SimDefect> seeded;
    QCOMPARE(ZebCPP::SimControl::GetDefects(kMonoFile, seeded), ZebCPP::ZebErrorSuccess);
    std::set<std::pair<uint32_t, uint32_t>> found;
    for (const SimMapEntry& entry : stored(kMonoFile, 1))
        found.insert({entry.x, entry.y});
    int checked = 0;
    for (const auto& defect : seeded) {
        if (defect.kind != ZebCPP::SimControl::DefectKind::Hot && defect.kind != ZebCPP::SimControl::DefectKind::Dead)
            continue;
        ++checked;
        QVERIFY2(found.count({defect.x, defect.y}), qPrintable(QString("seeded %1 pixel %2,%3 not in the map")
                                                              .arg(ZebCPP::SimControl::DefectKindName(defect.kind))
                                                              .arg(defect.x)
                                                              .arg(defect.y)));
    }
    QVERIFY(checked > 0);
}

void TestBatchTool::executableListsTheFakeGigECamera()
{
    FakeGv::Camera fake;
    const QString why = fake.start(); // leaves only the loopback GigE Vision discovery in the environment
    if (!why.isEmpty())
        QSKIP(qPrintable(why));
    const QString listing = m_dir.filePath("list.txt");
    QVERIFY(runTool(shell(toolLine(DPC_BATCH, {"--list"}), "> '" + listing + "'")));
    QVERIFY2(fileBytes(listing).contains(FakeGv::kExtendedId), fileBytes(listing).constData());
    qputenv("ZEB_SIM_CAMERAS", "default");
}

QTEST_MAIN(TestBatchTool)
#include "tst_batchtool.moc"
