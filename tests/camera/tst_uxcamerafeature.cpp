#include "simcameras.h"
#include "uxcamerafeature.h"

#include <sim/simcontrol.h>

#include <QtTest>

using namespace ZebCPP;

class TestUxCameraFeature : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_features.reset(); ZebSystem::GetInstance().Shutdown(); }

    void stringToDouble_data();
    void stringToDouble();
    void failuresLeaveOutValuesUntouched_data();
    void failuresLeaveOutValuesUntouched();
    void valuesByType();
    void commandWithoutWaitReturnsAtOnce();

private:
    std::unique_ptr<UxCameraFeature> m_features;
};

void TestUxCameraFeature::initTestCase()
{
    QVERIFY(SimCameras::startup());
    const CameraPtr camera = SimCameras::openCamera(SimCameras::kMonoFile);
    QVERIFY(camera);
    m_features = std::make_unique<UxCameraFeature>(camera);
}

void TestUxCameraFeature::stringToDouble_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("ok");
    QTest::newRow("decimal comma") << "1,5" << 1.5 << true;
    QTest::newRow("decimal point") << "1.5" << 1.5 << true;
    QTest::newRow("German thousands") << "1.500,5" << 1500.5 << true;
    QTest::newRow("garbage") << "abc" << 0.0 << false;
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
}

void TestUxCameraFeature::failuresLeaveOutValuesUntouched_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("command") << QByteArray("FileOperationExecute");
    QTest::newRow("raw register") << QByteArray("FileAccessBuffer");
    QTest::newRow("unknown feature") << QByteArray("NoSuchFeature");
    QTest::newRow("null name") << QByteArray();
}

void TestUxCameraFeature::failuresLeaveOutValuesUntouched()
{
    QFETCH(QByteArray, name);
    const char* feature = name.isNull() ? nullptr : name.constData();
    QVariant value(7), minimum(1), maximum(2), increment(3);
    QStringList entries{"kept"};
    QVERIFY(!m_features->GetValue(feature, value));
    QVERIFY(!m_features->GetFeatureRange(feature, minimum, maximum, increment));
    QVERIFY(!m_features->GetSubFeatures(feature, entries));
    QCOMPARE(value, QVariant(7));
    QCOMPARE(minimum, QVariant(1));
    QCOMPARE(entries, QStringList{"kept"});

    // A container without device fails the same way.
    bool flag = true;
    UxFeatureContainer empty(nullptr);
    QVERIFY(!empty.GetValue("FileSize", value));
    QVERIFY(!empty.HasFeature("FileSize", flag));
    QCOMPARE(flag, true);
}

void TestUxCameraFeature::valuesByType()
{
    QVariant value;
    QVERIFY(m_features->GetValue("FileSize", value));
    QCOMPARE(value.userType(), int(QMetaType::LongLong));
    QVERIFY(m_features->GetValue("DeviceManufacturerInfo", value));
    QCOMPARE(value, QVariant(QString("FW 2.4.1 build 311")));

    // An integer feature takes a text that converts; an enumeration its entry by name or by value.
    QVERIFY(m_features->SetValue("FileAccessOffset", QString("12")));
    QVERIFY(m_features->GetValue("FileAccessOffset", value));
    QCOMPARE(value, QVariant(12LL));
    QVERIFY(m_features->SetFeatureValueEnum("FileSelector", QString("DefPixMap1")));
    QVERIFY(m_features->GetFeatureValueEnum("FileSelector", value));
    QCOMPARE(value, QVariant(QString("DefPixMap1")));
    QStringList entries;
    QVERIFY(m_features->GetSubFeatures("FileSelector", entries));
    QCOMPARE(entries, (QStringList{"DefPixMap0", "DefPixMap1", "DefPixMap2", "DefPixMap3", "UserData", "Firmware"}));
    QVERIFY(m_features->SetFeatureValueEnum("FileSelector", QVariant(qlonglong(entries.indexOf("UserData")))));
    QVERIFY(m_features->GetValue("FileSelector", value) && value == QVariant(QString("UserData")));
    QVERIFY(!m_features->SetFeatureValueEnum("FileSelector", QString("NoSuchFile")));
    QVERIFY(!m_features->SetFeatureValueEnum("DeviceManufacturerInfo", QString("x")));

    QVariant minimum, maximum, increment;
    QVERIFY(m_features->GetFeatureRange("FileAccessLength", minimum, maximum, increment));
    QCOMPARE((QVariantList{minimum, maximum, increment}), (QVariantList{1LL, 65536LL, 1LL}));

    bool writable = true;
    QVERIFY(m_features->IsWritable("FileSize", writable) && !writable);
}

void TestUxCameraFeature::commandWithoutWaitReturnsAtOnce()
{
    // File operations of this camera take an hour to complete.
    QCOMPARE(SimControl::PlugCamera(SimCameras::bigMapCameraJson("DEV_SLOW0001", 3600000)), ZebErrorSuccess);
    UxCameraFeature features(SimCameras::openCamera("DEV_SLOW0001"));
    QVERIFY(features.SetValue("FileOpenMode", QString("Read")));
    QVERIFY(features.SetValue("FileOperationSelector", QString("Open")));
    QVERIFY(features.SetCommand("FileOperationExecute", 0));
    QVERIFY(!features.SetCommand("FileSize", 0));
}

QTEST_GUILESS_MAIN(TestUxCameraFeature)
#include "tst_uxcamerafeature.moc"
