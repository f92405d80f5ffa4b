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

namespace Key = CameraInfoKey;

class TestApiController : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_controller.reset(); ZebSystem::GetInstance().Shutdown(); }

    void cameraInfo_data();
    void cameraInfo();
    void unknownCameraIsReported();
    void hotPlugSignalsArriveOnGuiThread();
    void openAndCloseThroughManager();

private:
    std::shared_ptr<ApiController> m_controller;
};

void TestApiController::initTestCase()
{
    QVERIFY(SimCameras::startup());
    m_controller = std::make_shared<ApiController>();
}

void TestApiController::cameraInfo_data()
{
    QTest::addColumn<uint>("access");
    QTest::addColumn<bool>("fullAccess");
    QTest::newRow("exclusive only") << 8u << true;
    QTest::newRow("full only") << 1u << true;
    QTest::newRow("read only") << 2u << false;
}

void TestApiController::cameraInfo()
{
    QFETCH(uint, access);
    QFETCH(bool, fullAccess);
    QCOMPARE(SimControl::SetPermittedAccess(SimCameras::kHeldElsewhere, AccessModeType(access)), ZebErrorSuccess);
    QCOMPARE(m_controller->UpdateCamerasList(), ZebErrorSuccess);
    std::vector<CameraPtr> cameras;
    QCOMPARE(ZebSystem::GetInstance().GetCameras(cameras), ZebErrorSuccess);
    QVERIFY(m_controller->GetCameraModel() == cameras);

    QSignalSpy errors(m_controller.get(), &ApiController::ApiError);
    const CameraInfoMap info =
        m_controller->GetCameraInfo(m_controller->GetCameraPtr(SimCameras::extendedIdOf(SimCameras::kHeldElsewhere)));
    const CameraInfoMap expected{{Key::ExtendedId, "SimU3V::DEV_TB2000005"}, {Key::CameraId, "DEV_TB2000005"},
                                 {Key::ModelName, "tb2MCX"}, {Key::CameraName, "Held elsewhere"},
                                 {Key::SerialNumber, "TB2000005"}, {Key::Interface, "sim-usb0"},
                                 {Key::TransportLayer, "USB3 Vision"}, {Key::TlPath, "builtin:SimUSB3Vision"},
                                 {Key::FullAccess, fullAccess}};
    QCOMPARE(info, expected);
    QCOMPARE(errors.count(), 0);
}

void TestApiController::unknownCameraIsReported()
{
    QSignalSpy errors(m_controller.get(), &ApiController::ApiError);
    QVERIFY(!m_controller->GetCameraPtr("NoSuchTL::NoSuchCamera"));
    QCOMPARE(m_controller->CloseCamera("NoSuchTL::NoSuchCamera"), ZebErrorNotFound);
    QVERIFY(m_controller->GetCameraInfo(CameraPtr()).isEmpty());
    QCOMPARE(errors.count(), 3);
    QCOMPARE(errors.at(0).at(0).toString(), QString("Failed to get camera for NoSuchTL::NoSuchCamera (error: Not found.)"));
    QVERIFY(errors.at(2).at(0).toString().startsWith("Failed to get camera extended ID (error: "));
}

void TestApiController::hotPlugSignalsArriveOnGuiThread()
{
    QSignalSpy added(m_controller.get(), &ApiController::CameraAdded);
    QSignalSpy removed(m_controller.get(), &ApiController::CameraRemoved);
    QSignalSpy changed(m_controller.get(), &ApiController::CameraOpenStateChanged);
    bool onGuiThread = true;
    auto checkThread = [&onGuiThread] { onGuiThread = onGuiThread && QThread::currentThread() == qApp->thread(); };
    for (auto signal : {&ApiController::CameraAdded, &ApiController::CameraRemoved,
                        &ApiController::CameraOpenStateChanged})
        connect(m_controller.get(), signal, this, checkThread);
    QVERIFY(m_controller->enableAutomaticDiscovery(true));

    const QString id = SimCameras::extendedIdOf(SimCameras::kColourFile);
    QCOMPARE(SimControl::UnplugCamera(SimCameras::kColourFile), ZebErrorSuccess);
    QVERIFY(removed.wait(5000));
    QCOMPARE(removed.at(0).at(0).toMap(), (CameraInfoMap{{Key::ExtendedId, id}, {Key::CameraName, "Line colour"}}));

    QCOMPARE(SimControl::ReplugCamera(SimCameras::kColourFile), ZebErrorSuccess);
    QVERIFY(added.wait(5000));
    QCOMPARE(added.at(0).at(0).toMap().value(Key::ExtendedId).toString(), id);
    QCOMPARE(added.at(0).at(0).toMap().value(Key::FullAccess), QVariant(true));

    QCOMPARE(SimControl::SetPermittedAccess(SimCameras::kColourFile, AccessModeRead), ZebErrorSuccess);
    QVERIFY(changed.wait(5000));
    QCOMPARE(changed.at(0).at(0).toMap().value(Key::FullAccess), QVariant(false));
    QVERIFY(onGuiThread);

    // Switched off, nothing arrives any more.
    QVERIFY(m_controller->enableAutomaticDiscovery(false));
    QVERIFY(!m_controller->enableAutomaticDiscovery(false));
    SimControl::SetPermittedAccess(SimCameras::kColourFile, AccessModeFull);
    QVERIFY(!changed.wait(200));
}

void TestApiController::openAndCloseThroughManager()
{
    const QString id = SimCameras::extendedIdOf(SimCameras::kMonoFile);
    QSignalSpy errors(m_controller.get(), &ApiController::ApiError);
    {
        UxCameraManager manager(m_controller);
        std::unique_ptr<UxCamera> camera(manager.Open(id));
        QVERIFY(camera && !camera->parent());
        QCOMPARE(camera->GetCameraName(), QString("Inspection mono"));

        QVERIFY(!manager.Open(id)); // already open
        QCOMPARE(errors.count(), 1);
        QVERIFY(errors.takeFirst().at(0).toString().startsWith("Failed to open camera " + id + " (error: "));
        QVERIFY(manager.Close(id));
        QVERIFY(camera->GetCameraManufacturerInfo().isEmpty()); // closed: features are gone

        camera.reset(manager.Open(id));
        QVERIFY(camera);
    }
    // Destroying the manager closed nothing.
    QCOMPARE(m_controller->GetCameraPtr(id)->Open(AccessModeFull), ZebErrorInvalidCall);
    QCOMPARE(m_controller->CloseCamera(id), ZebErrorSuccess);
    QVERIFY(m_controller->CloseCamera(id) != ZebErrorSuccess);
    QVERIFY(errors.takeFirst().at(0).toString().startsWith("Failed to close camera " + id));
}

QTEST_GUILESS_MAIN(TestApiController)
#include "tst_apicontroller.moc"
