#include "simcameras.h"
#include "uxcamerafeature.h"

#include <sim/simcontrol.h>

#include <QtTest>

using namespace ZebCPP;

class TestUxCameraFeature : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void stringToDouble_data();
    void stringToDouble();

    void readsByType_data();
    void readsByType();
    void failuresLeaveOutValuesUntouched_data();
    void failuresLeaveOutValuesUntouched();
    void writesByType();
    void enumerationByNameOrValue();
    void rangeOfNumbers();
    void presenceAndAccess();
    void registerReadAndWrite();
    void commandWithoutWaitReturnsAtOnce();

private:
    CameraPtr m_camera;
    std::unique_ptr<UxCameraFeature> m_features;
};

void TestUxCameraFeature::initTestCase()
{
    if (!SimCameras::startup())
        QSKIP("the simulated cameras are not available");
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID(SimCameras::kMonoFile, m_camera), ZebErrorSuccess);
    QCOMPARE(m_camera->Open(AccessModeFull), ZebErrorSuccess);
    m_features = std::make_unique<UxCameraFeature>(m_camera);
}

void TestUxCameraFeature::cleanupTestCase()
{
    m_features.reset();
    m_camera.reset();
    SimCameras::shutdown();
}

void TestUxCameraFeature::stringToDouble_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("ok");
    QTest::newRow("decimal comma") << "1,5" << 1.5 << true;
    QTest::newRow("decimal point") << "1.5" << 1.5 << true;
    QTest::newRow("negative") << "-0,25" << -0.25 << true;
    QTest::newRow("integer") << "42" << 42.0 << true;
    QTest::newRow("German thousands") << "1.500,5" << 1500.5 << true;
    QTest::newRow("garbage") << "abc" << 0.0 << false;
    QTest::newRow("empty") << "" << 0.0 << false;
    QTest::newRow("trailing text") << "1,5 mm" << 0.0 << false;
}

void TestUxCameraFeature::stringToDouble()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QFETCH(bool, ok);
    bool parsed = !ok;
    QCOMPARE(StringToDouble(text, &parsed), value);
    QCOMPARE(parsed, ok);
    QCOMPARE(UxFeatureContainerUtil::StringToDouble(text), value);
}

void TestUxCameraFeature::readsByType_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("type");
    QTest::newRow("integer") << QByteArray("FileSize") << int(QMetaType::LongLong);
    QTest::newRow("enumeration") << QByteArray("FileSelector") << int(QMetaType::QString);
    QTest::newRow("string") << QByteArray("DeviceManufacturerInfo") << int(QMetaType::QString);
}

void TestUxCameraFeature::readsByType()
{
    QFETCH(QByteArray, name);
    QFETCH(int, type);
    QVariant value;
    QVERIFY(m_features->GetValue(name.constData(), value));
    QCOMPARE(value.userType(), type);
}

void TestUxCameraFeature::failuresLeaveOutValuesUntouched_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("nullName");
    QTest::newRow("command") << QByteArray("FileOperationExecute") << false;
    QTest::newRow("raw register") << QByteArray("FileAccessBuffer") << false;
    QTest::newRow("unknown feature") << QByteArray("NoSuchFeature") << false;
    QTest::newRow("null name") << QByteArray() << true;
}

void TestUxCameraFeature::failuresLeaveOutValuesUntouched()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, nullName);
    const char* feature = nullName ? nullptr : name.constData();

    QVariant value(7), minimum(1), maximum(2), increment(3);
    QStringList entries{"kept"};
    bool flag = true;
    QVERIFY(!m_features->GetValue(feature, value));
    QVERIFY(!m_features->GetFeatureValueEnum(feature, value));
    QVERIFY(!m_features->GetFeatureRange(feature, minimum, maximum, increment));
    QVERIFY(!m_features->GetSubFeatures(feature, entries));
    QVERIFY(!m_features->SetValue(feature, QVariant(1)));
    QCOMPARE(value, QVariant(7));
    QCOMPARE(minimum, QVariant(1));
    QCOMPARE(increment, QVariant(3));
    QCOMPARE(entries, QStringList{"kept"});
    if (nullName) {
        QVERIFY(!m_features->HasFeature(feature, flag));
        QVERIFY(!m_features->IsReadable(feature, flag));
        QCOMPARE(flag, true);
    }

    // A container without camera fails the same way.
    UxFeatureContainer empty(nullptr);
    QVERIFY(!empty.GetValue("FileSize", value));
    QVERIFY(!empty.HasFeature("FileSize", flag));
    QVERIFY(!empty.SetCommand("FileOperationExecute", 0));
    QCOMPARE(value, QVariant(7));
    QCOMPARE(flag, true);
}

void TestUxCameraFeature::writesByType()
{
    // String and integer round trips; a string value for an integer feature is converted.
    QVERIFY(m_features->SetValue("FileSelector", QString("DefPixMap1")));
    QVERIFY(m_features->SetValue("Filename", QString("UserData")));
    QVariant value;
    QVERIFY(m_features->GetValue("FileSelector", value));
    QCOMPARE(value, QVariant(QString("UserData")));
    QVERIFY(!m_features->SetValue("Filename", QString("no such file")));

    QVERIFY(m_features->SetValue("FileAccessOffset", QString("12")));
    QVERIFY(m_features->GetValue("FileAccessOffset", value));
    QCOMPARE(value, QVariant(12LL));
    QVERIFY(m_features->SetValue("FileAccessOffset", 0));

    // A command is not a value.
    QVERIFY(!m_features->SetValue("FileOperationExecute", true));
}

void TestUxCameraFeature::enumerationByNameOrValue()
{
    QStringList entries;
    QVERIFY(m_features->GetSubFeatures("FileSelector", entries));
    QVERIFY(entries.contains("DefPixMap0"));
    QVERIFY(entries.contains("UserData"));

    QVERIFY(m_features->SetFeatureValueEnum("FileSelector", QString("DefPixMap1")));
    QVariant value;
    QVERIFY(m_features->GetFeatureValueEnum("FileSelector", value));
    QCOMPARE(value.toString(), QString("DefPixMap1"));

    // An integer selects the entry by its value.
    int64_t userData = -1;
    FeaturePtr selector;
    QCOMPARE(m_camera->GetFeatureByName("FileSelector", selector), ZebErrorSuccess);
    QCOMPARE(selector->GetEntryValue("UserData", userData), ZebErrorSuccess);
    QVERIFY(m_features->SetFeatureValueEnum("FileSelector", QVariant(qlonglong(userData))));
    QVERIFY(m_features->GetFeatureValueEnum("FileSelector", value));
    QCOMPARE(value.toString(), QString("UserData"));

    QVERIFY(!m_features->SetFeatureValueEnum("FileSelector", QString("NoSuchFile")));
    QVERIFY(!m_features->GetFeatureValueEnum("FileSize", value));
    QVERIFY(!m_features->SetFeatureValueEnum("Filename", QString("UserData")));
    QCOMPARE(value.toString(), QString("UserData"));
}

void TestUxCameraFeature::rangeOfNumbers()
{
    QVariant minimum, maximum, increment;
    QVERIFY(m_features->GetFeatureRange("FileAccessLength", minimum, maximum, increment));
    QCOMPARE(minimum.userType(), int(QMetaType::LongLong));
    QVERIFY(minimum.toLongLong() <= maximum.toLongLong());
    QVERIFY(increment.toLongLong() >= 1);
    QVERIFY(!m_features->GetFeatureRange("FileSelector", minimum, maximum, increment));
}

void TestUxCameraFeature::presenceAndAccess()
{
    bool has = false;
    QVERIFY(m_features->HasFeature("FileSelector", has));
    QVERIFY(has);
    QVERIFY(!m_features->HasFeature("NoSuchFeature", has));
    QVERIFY(!has);

    bool writable = false;
    bool readable = false;
    QVERIFY(m_features->IsWritable("FileAccessLength", writable));
    QVERIFY(writable);
    QVERIFY(m_features->IsReadable("FileSize", readable));
    QVERIFY(readable);

    // The colour camera's access length is fixed by the device.
    CameraPtr colour;
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID(SimCameras::kColourFile, colour), ZebErrorSuccess);
    QCOMPARE(colour->Open(AccessModeFull), ZebErrorSuccess);
    UxCameraFeature colourFeatures(colour);
    QVERIFY(colourFeatures.IsWritable("FileAccessLength", writable));
    QVERIFY(!writable);
    QVERIFY(!colourFeatures.HasFeature("Filename", has));
    colour->Close();
}

void TestUxCameraFeature::registerReadAndWrite()
{
    QVERIFY(m_features->SetValue("FileAccessLength", 4));
    const std::vector<unsigned char> bytes{1, 2, 3, 4, 5};
    QVERIFY(m_features->SetRegisterValue("FileAccessBuffer", bytes, 4));
    QVERIFY(!m_features->SetRegisterValue("FileAccessBuffer", bytes, 6));
    QVERIFY(!m_features->SetRegisterValue("FileAccessBuffer", bytes, 0));
    QVERIFY(!m_features->SetRegisterValue("FileSize", bytes, 4));

    std::vector<unsigned char> read{9};
    QVERIFY(m_features->GetRegisterValue("FileAccessBuffer", read, 4));
    QCOMPARE(read, (std::vector<unsigned char>{1, 2, 3, 4}));
    QVERIFY(!m_features->GetRegisterValue("FileAccessBuffer", read, -1));
    QVERIFY(!m_features->GetRegisterValue("FileSize", read, 4));
    QCOMPARE(read.size(), size_t(4));
}

void TestUxCameraFeature::commandWithoutWaitReturnsAtOnce()
{
    // A camera whose file operations take an hour: a command fired without a
    // timeout must not wait for it, and with a timeout it is not done in time.
    QCOMPARE(SimControl::PlugCamera(SimCameras::bigMapCameraJson("DEV_SLOW0001", 3600000)), ZebErrorSuccess);
    CameraPtr slow;
    QCOMPARE(ZebSystem::GetInstance().GetCameraByID("DEV_SLOW0001", slow), ZebErrorSuccess);
    QCOMPARE(slow->Open(AccessModeFull), ZebErrorSuccess);
    UxCameraFeature features(slow);
    QVERIFY(features.SetValue("FileSelector", QString("UserData")));
    QVERIFY(features.SetValue("FileOpenMode", QString("Read")));
    QVERIFY(features.SetValue("FileOperationSelector", QString("Open")));
    QVERIFY(features.SetCommand("FileOperationExecute", 0));
    QVERIFY(!features.SetCommand("NoSuchCommand", 0));
    QVERIFY(!features.SetCommand("FileSize", 0));
    slow->Close();
    SimControl::UnplugCamera("DEV_SLOW0001");
}

QTEST_GUILESS_MAIN(TestUxCameraFeature)
#include "tst_uxcamerafeature.moc"
