#include "batchrun.h"
#include "panelfixture.h"

#include <sim/simcontrol.h>

#include <QJsonArray>
#include <QtTest>

#include <set>

using namespace PanelFixture;

namespace {

QJsonObject entryOf(const QJsonObject& report, const QString& serial)
{
    for (const QJsonValue& camera : report.value("cameras").toArray()) {
        if (camera.toObject().value("camera").toObject().value("Serial No.").toString() == serial)
            return camera.toObject();
    }
    return {};
}

} // namespace

// The batch tool taking its series from the cameras instead of from folders.
class TestBatchCapture : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void capturedSeriesFindTheSeededDefects();

private:
    Session m_session;
};

void TestBatchCapture::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    qputenv("ZEB_SIM_CAMERAS", "default");
    if (!m_session.start())
        QSKIP("the simulated cameras are not available");
}

void TestBatchCapture::cleanupTestCase()
{
    m_session.stop();
}

// Dark frames without light and bright frames under light: every seeded hot and
// dead pixel of the monochrome camera reaches its slot; the colour camera
// captures its dark series only. Folders and --capture exclude each other.
void TestBatchCapture::capturedSeriesFindTheSeededDefects()
{
    BatchOptions options;
    QString message;
    int exitCode = 0;
    QVERIFY(!BatchCommandLine::parse({"orvel-dpc-batch", "--all", "--capture", "--dark", "x"}, options, message,
                                     exitCode));
    QCOMPARE(exitCode, 2);
    QVERIFY(BatchCommandLine::parse({"orvel-dpc-batch", "-q", "-r", "", "-c", kMonoFile, "-c", kColourFile,
                                     "--capture", "--slot", "DefPixMap1", "--yes", "-j", "2"},
                                    options, message, exitCode));
    QString text;
    QTextStream out(&text);
    QJsonObject report;
    QCOMPARE(BatchRun::run(options, out, out, &report), 0);

    const QJsonObject colour = entryOf(report, kColourFile).value("series").toObject();
    QCOMPARE(colour.value("captured").toBool(), true);
    QCOMPARE(colour.value("darkFrames").toInt(), 16);
    QCOMPARE(colour.value("brightFrames").toInt(), 0);
    const QJsonObject mono = entryOf(report, kMonoFile);
    QCOMPARE(mono.value("series").toObject().value("brightFrames").toInt(), 16);
    QCOMPARE(mono.value("verify").toString(), QString("passed"));

    std::vector<ZebCPP::SimControl::SimDefect> seeded;
    std::vector<ZebCPP::SimControl::SimMapEntry> map;
    QCOMPARE(ZebCPP::SimControl::GetDefects(kMonoFile, seeded), ZebCPP::ZebErrorSuccess);
    QCOMPARE(ZebCPP::SimControl::GetStoredMap(kMonoFile, 1, map), ZebCPP::ZebErrorSuccess);
    std::set<std::pair<uint32_t, uint32_t>> found;
    for (const auto& entry : map)
        found.insert({entry.x, entry.y});
    int checked = 0;
    for (const auto& defect : seeded) {
        if (defect.kind != ZebCPP::SimControl::DefectKind::Hot && defect.kind != ZebCPP::SimControl::DefectKind::Dead)
            continue;
        ++checked;
        if (!found.count({defect.x, defect.y}))
            QFAIL(qPrintable(QString("seeded %1 pixel %2,%3 not in the map")
                                 .arg(ZebCPP::SimControl::DefectKindName(defect.kind))
                                 .arg(defect.x)
                                 .arg(defect.y)));
    }
    QVERIFY(checked > 0);
}

QTEST_GUILESS_MAIN(TestBatchCapture)
#include "tst_batchcapture.moc"
