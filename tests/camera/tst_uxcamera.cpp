#include "simcameras.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"

#include <sim/simcontrol.h>

#include <QtTest>

using namespace ZebCPP;

namespace {

// Registers of a register-mode camera's maps.
constexpr unsigned long kMapSelectRegister = 0x10004014;
constexpr unsigned long kMapMaxSizeRegister = 0x10004020;
constexpr unsigned long kMapEntriesRegister = 0x10025000;

CameraPtr openCamera(const char* id)
{
    CameraPtr camera;
    if (ZebSystem::GetInstance().GetCameraByID(id, camera) != ZebErrorSuccess
        || camera->Open(AccessModeFull) != ZebErrorSuccess)
        camera.reset();
    return camera;
}

} // namespace

class TestUxCamera : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void identification();
    void flagsFromTheDevice_data();
    void flagsFromTheDevice();
    void registersInDeviceByteOrder();
    void memoryArgumentsAreChecked();
    void saveToUserSetNeverTouchesDefault();
    void singleImage();

private:
    std::unique_ptr<UxCamera> m_mono;
    std::unique_ptr<UxCamera> m_register;
};

void TestUxCamera::initTestCase()
{
    if (!SimCameras::startup())
        QSKIP("the simulated cameras are not available");
    const CameraPtr mono = openCamera(SimCameras::kMonoFile);
    const CameraPtr reg = openCamera(SimCameras::kRegisterMono);
    QVERIFY(mono && reg);
    m_mono = std::make_unique<UxCamera>(mono);
    m_register = std::make_unique<UxCamera>(reg);
}

void TestUxCamera::cleanupTestCase()
{
    m_mono.reset();
    m_register.reset();
    SimCameras::shutdown();
}

void TestUxCamera::identification()
{
    ZebCameraInfo info{};
    QCOMPARE(m_mono->GetInfo(info), ZebError_t(ZebErrorSuccess));
    QCOMPARE(QString(info.cameraId), QString(SimCameras::kMonoFile));
    QCOMPARE(QString(info.serialNumber), QString("KV1230001"));
    QCOMPARE(info.interfaceType, ZebInterfaceType_t(InterfaceTypeGigEVision));
    QCOMPARE(m_mono->GetCameraName(), QString("Inspection mono"));
    QCOMPARE(m_mono->GetCameraManufacturerInfo(), QString("FW 2.4.1 build 311"));

    UxCamera none(nullptr);
    QVERIFY(none.GetCameraName().isEmpty());
    QVERIFY(none.GetCameraManufacturerInfo().isEmpty());
    QVERIFY(!none.IsFileAccessSupported());
}

void TestUxCamera::flagsFromTheDevice_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<bool>("bigEndian");
    QTest::addColumn<bool>("fileAccess");
    QTest::newRow("GigE Vision, file access") << QByteArray(SimCameras::kMonoFile) << true << true;
    QTest::newRow("USB3 Vision, file access") << QByteArray(SimCameras::kColourFile) << false << true;
    QTest::newRow("GigE Vision, registers") << QByteArray(SimCameras::kRegisterMono) << true << false;
}

void TestUxCamera::flagsFromTheDevice()
{
    QFETCH(QByteArray, id);
    QFETCH(bool, bigEndian);
    QFETCH(bool, fileAccess);
    CameraPtr camera;
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID(id.constData(), camera), ZebErrorSuccess);
    const bool wasOpen = camera->Open(AccessModeFull) == ZebErrorInvalidCall;
    UxCamera uxCamera(camera);
    QCOMPARE(uxCamera.IsBigEndian(), bigEndian);
    QCOMPARE(uxCamera.IsFileAccessSupported(), fileAccess);
    // Decided once: closing the camera does not change the answers.
    if (!wasOpen)
        camera->Close();
    QCOMPARE(uxCamera.IsFileAccessSupported(), fileAccess);
}

void TestUxCamera::registersInDeviceByteOrder()
{
    uint32_t value = 0;
    QVERIFY(m_register->ReadRegister(kMapMaxSizeRegister, &value));
    QCOMPARE(value, 2000u);

    // The device holds big-endian words: the raw bytes show the order.
    unsigned char raw[4] = {};
    unsigned int count = 4;
    QVERIFY(m_register->Read(kMapMaxSizeRegister, raw, &count));
    QCOMPARE(count, 4u);
    QCOMPARE(QByteArray(reinterpret_cast<char*>(raw), 4), QByteArray("\x00\x00\x07\xd0", 4));

    QVERIFY(m_register->WriteRegister(kMapSelectRegister, 2));
    QVERIFY(m_register->ReadRegister(kMapSelectRegister, &value));
    QCOMPARE(value, 2u);

    const std::vector<uint32_t> entries{0x00050003, 0x00070010};
    QVERIFY(m_register->UxRegisterDeviceWrite(kMapEntriesRegister, entries));
    unsigned char words[8] = {};
    count = 8;
    QVERIFY(m_register->Read(kMapEntriesRegister, words, &count));
    QCOMPARE(QByteArray(reinterpret_cast<char*>(words), 8), QByteArray("\x00\x05\x00\x03\x00\x07\x00\x10", 8));
    QVERIFY(m_register->ReadRegister(kMapEntriesRegister + 4, &value));
    QCOMPARE(value, 0x00070010u);
}

void TestUxCamera::memoryArgumentsAreChecked()
{
    unsigned char buffer[4] = {1, 2, 3, 4};
    unsigned int count = 0;
    QVERIFY(!m_register->Read(kMapSelectRegister, buffer, &count));
    QVERIFY(!m_register->Write(kMapSelectRegister, buffer, &count));
    QVERIFY(!m_register->Read(kMapSelectRegister, nullptr, &count));
    QVERIFY(!m_register->Read(kMapSelectRegister, buffer, nullptr));
    QVERIFY(!m_register->ReadRegister(kMapSelectRegister, nullptr));
    QVERIFY(!m_register->UxRegisterDeviceWrite(kMapSelectRegister, {}));

    // A failed read leaves the caller's buffer as it was.
    QCOMPARE(SimControl::InjectFault(SimCameras::kRegisterMono, SimControl::FaultKind::MemoryRead, 1, ZebErrorTimeout),
             ZebErrorSuccess);
    count = 4;
    QVERIFY(!m_register->Read(kMapMaxSizeRegister, buffer, &count));
    QCOMPARE(QByteArray(reinterpret_cast<char*>(buffer), 4), QByteArray("\x01\x02\x03\x04", 4));
    SimControl::ClearFaults(SimCameras::kRegisterMono);
}

void TestUxCamera::saveToUserSetNeverTouchesDefault()
{
    UxCameraFeature* features = m_mono->GetFeatureContainer();
    bool has = false;
    if (!features->HasFeature("UserSetSelector", has))
        QSKIP("the camera has no user sets");
    QVERIFY(features->SetValue("UserSetSelector", QString("Default")));
    QVERIFY(m_mono->SaveToUserSet());
    QVariant selector;
    QVERIFY(features->GetValue("UserSetSelector", selector));
    QCOMPARE(selector.toString(), QString("UserSet1"));
}

void TestUxCamera::singleImage()
{
    FramePtr frame;
    QVERIFY(m_mono->AcquireSingleImage(frame, 2000));
    QVERIFY(frame);
    uint32_t width = 0;
    QCOMPARE(frame->GetWidth(width), ZebErrorSuccess);
    QCOMPARE(width, 640u);

    // Every one of the five attempts fails: no frame.
    QCOMPARE(SimControl::SetStreaming(SimCameras::kMonoFile, true), ZebErrorSuccess);
    FramePtr none;
    QVERIFY(!m_mono->AcquireSingleImage(none, 100));
    QVERIFY(!none);
    SimControl::SetStreaming(SimCameras::kMonoFile, false);
    QVERIFY(m_mono->AdjustPacketSize());
}

QTEST_GUILESS_MAIN(TestUxCamera)
#include "tst_uxcamera.moc"
