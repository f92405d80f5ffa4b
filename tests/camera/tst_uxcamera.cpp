#include "simcameras.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"

#include <sim/simcontrol.h>

#include <QtTest>

using namespace ZebCPP;

namespace {

constexpr unsigned long kMapSelectRegister = 0x10004014;
constexpr unsigned long kMapMaxSizeRegister = 0x10004020;
constexpr unsigned long kMapEntriesRegister = 0x10025000;

QByteArray bytesAt(UxCamera& camera, unsigned long address, unsigned int count)
{
    QByteArray bytes(int(count), '\xee');
    return camera.Read(address, reinterpret_cast<unsigned char*>(bytes.data()), &count) ? bytes : QByteArray();
}

} // namespace

class TestUxCamera : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(SimCameras::startup()); }
    void cleanupTestCase() { ZebSystem::GetInstance().Shutdown(); }

    void flagsAndIdentity_data();
    void flagsAndIdentity();
    void registersInDeviceByteOrder();
    void userSetAndSingleImage();
};

void TestUxCamera::flagsAndIdentity_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<bool>("bigEndian");
    QTest::addColumn<bool>("fileAccess");
    QTest::addColumn<QString>("name");
    QTest::newRow("GigE Vision, file access") << QByteArray(SimCameras::kMonoFile) << true << true << "Inspection mono";
    QTest::newRow("USB3 Vision, file access") << QByteArray(SimCameras::kColourFile) << false << true << "Line colour";
    QTest::newRow("GigE Vision, registers") << QByteArray(SimCameras::kRegisterMono) << true << false
                                            << "Register mono";
}

void TestUxCamera::flagsAndIdentity()
{
    QFETCH(QByteArray, id);
    QFETCH(bool, bigEndian);
    QFETCH(bool, fileAccess);
    QFETCH(QString, name);
    const CameraPtr sdkCamera = SimCameras::openCamera(id.toStdString());
    QVERIFY(sdkCamera);
    UxCamera camera(sdkCamera);
    QCOMPARE(camera.GetCameraName(), name);
    ZebCameraInfo info{};
    QCOMPARE(camera.GetInfo(info), ZebError_t(ZebErrorSuccess));
    QCOMPARE(QByteArray(info.cameraId), id);

    // Decided once, when the object is made: closing the camera changes nothing.
    sdkCamera->Close();
    QCOMPARE(camera.IsBigEndian(), bigEndian);
    QCOMPARE(camera.IsFileAccessSupported(), fileAccess);
}

void TestUxCamera::registersInDeviceByteOrder()
{
    UxCamera camera(SimCameras::openCamera(SimCameras::kRegisterMono));
    uint32_t value = 0;
    QVERIFY(camera.ReadRegister(kMapMaxSizeRegister, &value));
    QCOMPARE(value, 2000u);
    QCOMPARE(bytesAt(camera, kMapMaxSizeRegister, 4), QByteArray("\x00\x00\x07\xd0", 4));

    QVERIFY(camera.WriteRegister(kMapSelectRegister, 2));
    QVERIFY(camera.ReadRegister(kMapSelectRegister, &value));
    QCOMPARE(value, 2u);
    QVERIFY(camera.UxRegisterDeviceWrite(kMapEntriesRegister, {0x00050003, 0x00070010}));
    QCOMPARE(bytesAt(camera, kMapEntriesRegister, 8), QByteArray("\x00\x05\x00\x03\x00\x07\x00\x10", 8));

    // A failed read leaves the caller's value as it was.
    QCOMPARE(SimControl::InjectFault(SimCameras::kRegisterMono, SimControl::FaultKind::MemoryRead, 1, ZebErrorTimeout),
             ZebErrorSuccess);
    QVERIFY(!camera.ReadRegister(kMapMaxSizeRegister, &value));
    QCOMPARE(value, 2u);
    unsigned int none = 0;
    QVERIFY(!camera.Read(kMapMaxSizeRegister, reinterpret_cast<unsigned char*>(&value), &none));
}

void TestUxCamera::userSetAndSingleImage()
{
    UxCamera camera(SimCameras::openCamera(SimCameras::kMonoFile));
    UxCameraFeature* features = camera.GetFeatureContainer();
    QVERIFY(features->SetValue("UserSetSelector", QString("Default")));
    QVERIFY(camera.SaveToUserSet());
    QVariant selector;
    QVERIFY(features->GetValue("UserSetSelector", selector));
    QCOMPARE(selector, QVariant(QString("UserSet1")));

    FramePtr frame;
    QVERIFY(camera.AcquireSingleImage(frame, 2000));
    QVERIFY(frame);
}

QTEST_GUILESS_MAIN(TestUxCamera)
#include "tst_uxcamera.moc"
