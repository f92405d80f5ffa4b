#include "ApiController.h"
#include "fakegvcamera.h"
#include "panelfixture.h"
#include "uxcamera.h"
#include "uxcameramanager.h"
#include "uxdefectpixelcorrection.h"

#include <QComboBox>
#include <QPushButton>
#include <QTimer>

#include <memory>
#include <random>

using namespace PanelFixture;

namespace {

constexpr quint32 kSeed = 20261124;
constexpr int kRounds = 4;
// Forty blocks of the fake camera's 4 KiB buffer: long enough to be cut off.
constexpr unsigned int kFileEntries = 20000; // about 160 kB of map
// libaravis waits about this long for a control answer before it gives up on
// a camera; the GUI thread may be held for one such wait, never longer.
constexpr qint64 kSdkTimeoutMs = 3000;

// The camera's factory state, as the map registers hold it.
bool writeFactoryState(UxCamera& camera)
{
    return camera.WriteRegister(FakeGv::kFileChunkId, 4096) && camera.WriteRegister(FakeGv::kMapRevision, 3)
           && camera.WriteRegister(FakeGv::kMapMaxSize, 1000);
}

} // namespace

// Uploads over GigE Vision while the camera dies at a random moment: the
// window keeps turning, the user is told, and the camera comes back.
class TestAravisSoak : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void killedCameraEndsTheTransferAndComesBack();

private:
    UxCamera* openWhenListed();

    FakeGv::Camera m_fake;
    std::shared_ptr<ApiController> m_controller;
    std::unique_ptr<UxCameraManager> m_manager;
    QTemporaryDir m_dir;
};

void TestAravisSoak::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    const QString problem = m_fake.start();
    if (!problem.isEmpty())
        QSKIP(qPrintable(problem));
    QCOMPARE(ZebCPP::ZebSystem::GetInstance().Startup(), ZebCPP::ZebErrorSuccess);
    m_controller = std::make_shared<ApiController>();
    m_manager = std::make_unique<UxCameraManager>(m_controller);
    qInfo("aravis soak seed %u", kSeed);
}

void TestAravisSoak::cleanupTestCase()
{
    m_manager.reset();
    m_controller.reset();
    ZebCPP::ZebSystem::GetInstance().Shutdown();
    m_fake.stop();
}

UxCamera* TestAravisSoak::openWhenListed()
{
    if (!FakeGv::waitForCamera(15000))
        return nullptr;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 5000) {
        m_controller->UpdateCamerasList();
        if (UxCamera* camera = m_manager->Open(FakeGv::kExtendedId))
            return camera;
        QTest::qWait(100);
    }
    return nullptr;
}

void TestAravisSoak::killedCameraEndsTheTransferAndComesBack()
{
    std::mt19937 random(kSeed);
    UXCDefectPixelCorrection panel;
    RecordingDialogs dialogs;
    panel.setDialogs(&dialogs);
    const QString upload = m_dir.filePath("upload.bin");
    // A map the panel lets through to the camera: entries inside a small corner of the sensor.
    const QByteArray content = containerBytes(rowMap(kFileEntries, 100), 100, 100 * 200);
    QVERIFY(writeFile(upload, content));

    // The GUI thread's longest pause, seen by a timer that should tick every 5 ms.
    QElapsedTimer sinceTick;
    qint64 longestPause = 0;
    QTimer ticker;
    ticker.setInterval(5);
    connect(&ticker, &QTimer::timeout, [&] {
        longestPause = qMax(longestPause, sinceTick.restart());
    });

    int failedTransfers = 0;
    for (int round = 0; round < kRounds; ++round) {
        const QString where = QString("round %1").arg(round);
        UxCamera* camera = openWhenListed();
        QVERIFY2(camera, qPrintable(where + ": the camera is not back in the list"));
        QVERIFY(writeFactoryState(*camera));
        QVERIFY2(panel.Init(camera), qPrintable(where));
        auto* selector = panel.findChild<QComboBox*>("cmbDefectPixelMapSelector");
        selector->setCurrentIndex(selector->findText("DefPixMap1"));

        dialogs.calls.clear();
        QSignalSpy log(&panel, &UXCDefectPixelCorrection::sendLogMessage);
        dialogs.openFileName = QStringList{upload};
        const int killAfterMs = int(random() % 40);
        sinceTick.start();
        longestPause = 0;
        ticker.start();
        click(panel, "btnUploadLocalMap");
        QTest::qWait(killAfterMs);
        m_fake.kill();
        QElapsedTimer transfer;
        transfer.start();
        while ((panel.isFileTaskRunning() || !button(panel, "btnUploadLocalMap")->isEnabled())
               && transfer.elapsed() < 4 * kSdkTimeoutMs)
            QTest::qWait(5);
        ticker.stop();
        QVERIFY2(!panel.isFileTaskRunning(), qPrintable(where + ": the transfer hangs"));
        QVERIFY2(longestPause < kSdkTimeoutMs,
                 qPrintable(where + QString(": the window stood still for %1 ms").arg(longestPause)));
        // The log tells every time; the message box only until the first reset,
        // after which finishFileTask no longer hears of transfers.
        const QString told = logLines(log).filter("Upload Local File 'DefPixMap1'").join('\n');
        const bool error = told.startsWith(QString("%1|Upload Local File 'DefPixMap1' failed: ").arg(LogError));
        QVERIFY2(error || told.startsWith(QString("%1|Upload Local File 'DefPixMap1': %2 bytes").arg(LogInfo).arg(content.size())),
                 qPrintable(where + ": the user was told: " + told));
        failedTransfers += error ? 1 : 0;
        if (round == 0 && error) {
            QCOMPARE(dialogs.last("critical")->text, QString("Upload Local File Error occurs during File Access."));
        }
        qInfo("aravis soak %s: camera killed %d ms into the upload, transfer ended after %lld ms, "
              "longest GUI pause %lld ms; log: %s",
              qPrintable(where), killAfterMs, transfer.elapsed(), longestPause, qPrintable(told));

        panel.Reset();
        m_manager->Close(FakeGv::kExtendedId);
        QCOMPARE(m_fake.start(), QString());
    }
    qInfo("aravis soak: %d rounds, %d transfers cut off by the camera's death", kRounds, failedTransfers);
}

QTEST_MAIN(TestAravisSoak)
#include "tst_aravissoak.moc"
