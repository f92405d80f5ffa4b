#include "ApiController.h"
#include "simcameras.h"
#include "uxcamera.h"
#include "uxcameramanager.h"

#include <sim/simcontrol.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

using namespace ZebCPP;

class TestApiController : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void errorMessages_data();
    void errorMessages();
    void apiErrorTemplates();

    void listsEveryCamera();
    void fullAccessFromPermittedAccess_data();
    void fullAccessFromPermittedAccess();
    void hotPlugSignalsArriveOnGuiThread();
    void openAndCloseThroughManager();
    void unknownCameraReportsError();
    void versionHasThreeNumbers();

private:
    // Waits for the next emission and checks it was delivered on the GUI thread.
    static CameraInfoMap nextOnGuiThread(QSignalSpy& spy, const bool& onGuiThread);

    std::shared_ptr<ApiController> m_controller;
};

void TestApiController::initTestCase()
{
    if (!SimCameras::startup())
        QSKIP("the simulated cameras are not available");
    m_controller = std::make_shared<ApiController>();
}

void TestApiController::cleanupTestCase()
{
    m_controller.reset();
    SimCameras::shutdown();
}

void TestApiController::errorMessages_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::newRow("success") << 0 << "Success.";
    QTest::newRow("internal fault") << -1 << "Unexpected fault in ZebApi or driver.";
    QTest::newRow("not found") << -3 << "Not found.";
    QTest::newRow("invalid handle keeps its blank") << -4 << "Invalid handle ";
    QTest::newRow("more data") << -9 << "More data returned than memory provided.";
    QTest::newRow("not supported") << -18 << "Not supported.";
    QTest::newRow("below the table") << -19 << "Unknown";
    QTest::newRow("positive") << 1 << "Unknown";
}

void TestApiController::errorMessages()
{
    QFETCH(int, code);
    QFETCH(QString, text);
    QCOMPARE(ApiController::ErrorCodeToMessage(static_cast<ZebErrorType>(code)), text);
}

void TestApiController::apiErrorTemplates()
{
    QSignalSpy spy(m_controller.get(), &ApiController::ApiError);
    m_controller->emitApiError(ZebErrorNotFound, QString());
    m_controller->emitApiError(ZebErrorBadHandle, "Failed to open camera X");
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toString(), QString("Error: Not found."));
    QCOMPARE(spy.at(1).at(0).toString(), QString("Failed to open camera X (error: Invalid handle )"));
}

void TestApiController::listsEveryCamera()
{
    QCOMPARE(m_controller->UpdateCamerasList(), ZebErrorSuccess);
    const std::vector<CameraPtr> cameras = m_controller->GetCameraModel();
    QVERIFY(cameras.size() >= 5);

    QSignalSpy errors(m_controller.get(), &ApiController::ApiError);
    for (const CameraPtr& camera : cameras) {
        const CameraInfoMap info = m_controller->GetCameraInfo(camera);
        QCOMPARE(info.keys(), (QStringList{"Camera ID", "Camera Name", "Extended ID", "Full Access", "Interface",
                                          "Model Name", "Serial No.", "TL Path", "Transport Layer"}));
        QVERIFY(info["Extended ID"].toString().endsWith("::" + info["Camera ID"].toString()));
        QCOMPARE(info["Full Access"].type(), QVariant::Bool);
    }
    QCOMPARE(errors.count(), 0);

    const CameraInfoMap mono = m_controller->GetCameraInfo(m_controller->GetCameraPtr(
        SimCameras::extendedIdOf(SimCameras::kMonoFile)));
    QCOMPARE(mono["Model Name"].toString(), QString("kvd123MXGE"));
    QCOMPARE(mono["Serial No."].toString(), QString("KV1230001"));
    QCOMPARE(mono["Camera Name"].toString(), QString("Inspection mono"));
    QCOMPARE(mono["Interface"].toString(), QString("sim-eth0"));
    QCOMPARE(mono["Transport Layer"].toString(), QString("GigE Vision"));
    QCOMPARE(mono["TL Path"].toString(), QString("builtin:SimGigEVision"));
}

void TestApiController::fullAccessFromPermittedAccess_data()
{
    QTest::addColumn<uint>("access");
    QTest::addColumn<bool>("fullAccess");
    QTest::newRow("exclusive only") << 8u << true;
    QTest::newRow("full only") << 1u << true;
    QTest::newRow("read only") << 2u << false;
    QTest::newRow("config only") << 4u << false;
    QTest::newRow("none") << 0u << false;
}

void TestApiController::fullAccessFromPermittedAccess()
{
    QFETCH(uint, access);
    QFETCH(bool, fullAccess);
    QCOMPARE(SimControl::SetPermittedAccess(SimCameras::kHeldElsewhere, static_cast<AccessModeType>(access)),
             ZebErrorSuccess);
    const CameraInfoMap info =
        m_controller->GetCameraInfo(m_controller->GetCameraPtr(SimCameras::extendedIdOf(SimCameras::kHeldElsewhere)));
    QCOMPARE(info["Full Access"], QVariant(fullAccess));
}

CameraInfoMap TestApiController::nextOnGuiThread(QSignalSpy& spy, const bool& onGuiThread)
{
    if (spy.isEmpty() && !spy.wait(5000))
        return CameraInfoMap();
    if (!onGuiThread)
        return CameraInfoMap();
    return spy.takeFirst().at(0).toMap();
}

void TestApiController::hotPlugSignalsArriveOnGuiThread()
{
    QSignalSpy added(m_controller.get(), &ApiController::CameraAdded);
    QSignalSpy removed(m_controller.get(), &ApiController::CameraRemoved);
    QSignalSpy changed(m_controller.get(), &ApiController::CameraOpenStateChanged);
    bool onGuiThread = true;
    auto checkThread = [&onGuiThread] { onGuiThread = onGuiThread && QThread::currentThread() == qApp->thread(); };
    connect(m_controller.get(), &ApiController::CameraAdded, this, checkThread);
    connect(m_controller.get(), &ApiController::CameraRemoved, this, checkThread);
    connect(m_controller.get(), &ApiController::CameraOpenStateChanged, this, checkThread);
    QVERIFY(m_controller->enableAutomaticDiscovery(true));

    const QString extendedId = SimCameras::extendedIdOf(SimCameras::kColourFile);
    QCOMPARE(SimControl::UnplugCamera(SimCameras::kColourFile), ZebErrorSuccess);
    const CameraInfoMap gone = nextOnGuiThread(removed, onGuiThread);
    QCOMPARE(gone.keys(), (QStringList{"Camera Name", "Extended ID"}));
    QCOMPARE(gone["Extended ID"].toString(), extendedId);
    QCOMPARE(gone["Camera Name"].toString(), QString("Line colour"));

    QCOMPARE(SimControl::ReplugCamera(SimCameras::kColourFile), ZebErrorSuccess);
    const CameraInfoMap back = nextOnGuiThread(added, onGuiThread);
    QCOMPARE(back["Extended ID"].toString(), extendedId);
    QCOMPARE(back["Full Access"], QVariant(true));

    QCOMPARE(SimControl::SetPermittedAccess(SimCameras::kColourFile, AccessModeRead), ZebErrorSuccess);
    const CameraInfoMap held = nextOnGuiThread(changed, onGuiThread);
    QCOMPARE(held["Extended ID"].toString(), extendedId);
    QCOMPARE(held["Full Access"], QVariant(false));
    SimControl::SetPermittedAccess(SimCameras::kColourFile, AccessModeType(AccessModeFull | AccessModeExclusive));
    QVERIFY(!nextOnGuiThread(changed, onGuiThread).isEmpty());

    QVERIFY(m_controller->enableAutomaticDiscovery(false));
    QVERIFY(!m_controller->enableAutomaticDiscovery(false));
    SimControl::UnplugCamera(SimCameras::kColourFile);
    SimControl::ReplugCamera(SimCameras::kColourFile);
    QTest::qWait(100);
    QCOMPARE(removed.count() + added.count(), 0);
}

void TestApiController::openAndCloseThroughManager()
{
    const QString extendedId = SimCameras::extendedIdOf(SimCameras::kMonoFile);
    QSignalSpy errors(m_controller.get(), &ApiController::ApiError);
    {
        UxCameraManager manager(m_controller);
        std::unique_ptr<UxCamera> camera(manager.Open(extendedId));
        QVERIFY(camera);
        QVERIFY(!camera->parent());
        QCOMPARE(camera->GetCameraName(), QString("Inspection mono"));

        // A second open of the same camera is refused and reported.
        QVERIFY(!manager.Open(extendedId));
        QCOMPARE(errors.count(), 1);
        QVERIFY(errors.takeFirst().at(0).toString().startsWith("Failed to open camera " + extendedId));

        QVERIFY(manager.Close(extendedId));
        QVERIFY(camera->GetCameraManufacturerInfo().isEmpty());

        // Destroying the manager closes nothing and keeps the controller.
        camera.reset(manager.Open(extendedId));
        QVERIFY(camera);
    }
    QVERIFY(m_controller);
    CameraPtr camera = m_controller->GetCameraPtr(extendedId);
    QCOMPARE(camera->Open(AccessModeFull), ZebErrorInvalidCall);
    QCOMPARE(m_controller->CloseCamera(extendedId), ZebErrorSuccess);
    QVERIFY(errors.isEmpty());

    // Held by another application: no full access.
    UxCameraManager manager(m_controller);
    QVERIFY(!manager.Open(SimCameras::extendedIdOf(SimCameras::kHeldElsewhere)));
    QCOMPARE(errors.count(), 1);
}

void TestApiController::unknownCameraReportsError()
{
    QSignalSpy errors(m_controller.get(), &ApiController::ApiError);
    QVERIFY(!m_controller->GetCameraPtr("NoSuchTL::NoSuchCamera"));
    QVERIFY(!m_controller->OpenCamera("NoSuchTL::NoSuchCamera"));
    QCOMPARE(m_controller->CloseCamera("NoSuchTL::NoSuchCamera"), ZebErrorNotFound);
    QCOMPARE(errors.count(), 3);
    for (const QList<QVariant>& error : errors)
        QCOMPARE(error.at(0).toString(), QString("Failed to get camera for NoSuchTL::NoSuchCamera (error: Not found.)"));

    errors.clear();
    QVERIFY(m_controller->GetCameraInfo(CameraPtr()).isEmpty());
    QCOMPARE(errors.count(), 1);
    QVERIFY(errors.at(0).at(0).toString().startsWith("Failed to get camera extended ID (error: "));
}

void TestApiController::versionHasThreeNumbers()
{
    const QString version = QString::fromStdString(m_controller->GetVersion());
    QVERIFY2(QRegularExpression("^\\d+\\.\\d+\\.\\d+$").match(version).hasMatch(), qPrintable(version));
}

QTEST_GUILESS_MAIN(TestApiController)
#include "tst_apicontroller.moc"
