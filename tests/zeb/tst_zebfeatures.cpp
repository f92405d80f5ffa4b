#include "sim/simcontrol.h"
#include "zebboundary.h"
#include "zebtestsupport.h"

using namespace ZebCPP;

class TestZebFeatures : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void wrongTypeCallsAreRefused();
    void unknownFeatureIsNotFound();
    void numbersKeepToTheirRange();
    void stringValueIsReadInTwoSteps();
    void enumerationIsSetByNameOrValue();
    void readOnlyFeaturesRefuseWrites();
    void streamingLocksParameters();
    void commandCompletesAfterItsDelay();
    void mapSelectSwitchesMapFeatures();
    void mapCoordinatesAreWrittenPerEntry();
    void streamFeaturesDependOnTransport();

private:
    CameraPtr camera_;
};

void TestZebFeatures::init()
{
    QCOMPARE(ZebTest::startSdk(), ZebErrorSuccess);
    camera_ = ZebTest::openCamera(ZebTest::kMonoFile);
    QVERIFY(camera_);
}

void TestZebFeatures::cleanup()
{
    camera_.reset();
    ZebTest::stopSdk();
}

void TestZebFeatures::wrongTypeCallsAreRefused()
{
    FeaturePtr command = ZebTest::feature(camera_, "AcquisitionStart");
    FeaturePtr integer = ZebTest::feature(camera_, "FileAccessOffset");
    FeaturePtr text = ZebTest::feature(camera_, "DeviceManufacturerInfo");
    int64_t i = 7;
    double d = 7;
    bool b = true;
    std::string s = "kept";
    uint8_t raw[4];
    uint32_t filled = 0;
    QCOMPARE(command->GetValue(i), ZebErrorWrongType);
    QCOMPARE(command->GetValue(s), ZebErrorWrongType);
    QCOMPARE(integer->GetValue(d), ZebErrorWrongType);
    QCOMPARE(integer->SetValue(true), ZebErrorWrongType);
    QCOMPARE(integer->SetValue("5"), ZebErrorWrongType);
    QCOMPARE(integer->RunCommand(), ZebErrorWrongType);
    QCOMPARE(integer->GetRawData(raw, 4, filled), ZebErrorWrongType);
    QCOMPARE(text->GetValue(b), ZebErrorWrongType);
    std::vector<std::string> entries;
    QCOMPARE(text->GetEntries(entries), ZebErrorWrongType);
    double minimum = 0, maximum = 0;
    QCOMPARE(integer->GetRange(minimum, maximum), ZebErrorWrongType);
    QCOMPARE(i, int64_t(7)); // out values stay untouched
    QCOMPARE(s, std::string("kept"));
}

void TestZebFeatures::unknownFeatureIsNotFound()
{
    FeaturePtr f;
    QCOMPARE(camera_->GetFeatureByName("NoSuchFeature", f), ZebErrorNotFound);
    QCOMPARE(camera_->GetFeatureByName(nullptr, f), ZebErrorBadParameter);
    QVERIFY(!f);
    CameraPtr registerCamera = ZebTest::openCamera(ZebTest::kRegister);
    QCOMPARE(registerCamera->GetFeatureByName("FileSelector", f), ZebErrorNotFound);
}

void TestZebFeatures::numbersKeepToTheirRange()
{
    FeaturePtr index = ZebTest::feature(camera_, "DefectPixelCorrection_MapIndex");
    int64_t minimum = -1, maximum = -1;
    QCOMPARE(index->GetRange(minimum, maximum), ZebErrorSuccess);
    QCOMPARE(index->SetValue(maximum + 1), ZebErrorInvalidValue);
    QCOMPARE(index->SetValue(maximum), ZebErrorSuccess);
    long long value = 0; // any 64-bit integer type works
    QCOMPARE(index->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, 999ll);

    FeaturePtr exposure = ZebTest::feature(camera_, "ExposureTime");
    double low = 0, high = 0;
    QCOMPARE(exposure->GetRange(low, high), ZebErrorSuccess);
    QCOMPARE(exposure->SetValue(high * 2), ZebErrorInvalidValue);
    QCOMPARE(exposure->SetValue(std::nan("")), ZebErrorInvalidValue);
    QCOMPARE(exposure->SetValue(2500.5), ZebErrorSuccess);
    double exposureValue = 0;
    exposure->GetValue(exposureValue);
    QCOMPARE(exposureValue, 2500.5);

    FeaturePtr enable = ZebTest::feature(camera_, "DefectPixelCorrectionEnable_Control");
    QCOMPARE(enable->SetValue(false), ZebErrorSuccess);
    bool on = true;
    QCOMPARE(enable->GetValue(on), ZebErrorSuccess);
    QVERIFY(!on);
}

void TestZebFeatures::stringValueIsReadInTwoSteps()
{
    FeaturePtr firmware = ZebTest::feature(camera_, "DeviceManufacturerInfo");
    uint32_t length = 0;
    QCOMPARE(firmware->GetValue(nullptr, length), ZebErrorSuccess);
    const std::string expected = "FW 2.4.1 build 311";
    QCOMPARE(length, uint32_t(expected.size() + 1));
    std::vector<char> buffer(length);
    uint32_t shortLength = length - 1;
    QCOMPARE(firmware->GetValue(buffer.data(), shortLength), ZebErrorMoreData);
    QCOMPARE(firmware->GetValue(buffer.data(), length), ZebErrorSuccess);
    QCOMPARE(std::string(buffer.data()), expected);

    FeaturePtr filename = ZebTest::feature(camera_, "Filename");
    QCOMPARE(filename->SetValue(std::string("UserData")), ZebErrorSuccess);
    QCOMPARE(filename->SetValue("NoSuchFile"), ZebErrorInvalidValue);
    std::string selected;
    ZebTest::feature(camera_, "FileSelector")->GetValue(selected);
    QCOMPARE(selected, std::string("UserData"));

    // A value that grows between the two steps is read again; one that keeps growing gives up.
    std::string grown;
    auto growing = [](int growths) {
        return [growths, text = std::string("ab")](char* out, uint32_t& size) mutable {
            if (out != nullptr && growths-- > 0)
                text += 'c';
            return copyOut(text, out, size);
        };
    };
    QCOMPARE(fetchString(grown, growing(1)), ZebErrorSuccess);
    QCOMPARE(grown, std::string("abc"));
    QCOMPARE(fetchString(grown, growing(5)), ZebErrorMoreData);
}

void TestZebFeatures::enumerationIsSetByNameOrValue()
{
    FeaturePtr mark = ZebTest::feature(camera_, "DefectPixelCorrectionMark_Control");
    QCOMPARE(mark->SetValue("Mark"), ZebErrorSuccess);
    int64_t value = -1;
    QCOMPARE(mark->GetValue(value), ZebErrorSuccess);
    int64_t markValue = -1;
    QCOMPARE(mark->GetEntryValue("Mark", markValue), ZebErrorSuccess);
    QCOMPARE(value, markValue);
    QCOMPARE(mark->SetValue(int64_t(0)), ZebErrorSuccess);
    std::string name;
    QCOMPARE(mark->GetValue(name), ZebErrorSuccess);
    QCOMPARE(name, std::string("Off"));
    QCOMPARE(mark->SetValue("Blink"), ZebErrorInvalidValue);
    QCOMPARE(mark->SetValue(int64_t(9)), ZebErrorInvalidValue);
    QCOMPARE(mark->GetEntryValue("Blink", value), ZebErrorNotFound);
}

void TestZebFeatures::readOnlyFeaturesRefuseWrites()
{
    FeaturePtr revision = ZebTest::feature(camera_, "DefectPixelCorrection_Revision");
    bool writable = true, readable = false;
    QCOMPARE(revision->IsWritable(writable), ZebErrorSuccess);
    QCOMPARE(revision->IsReadable(readable), ZebErrorSuccess);
    QVERIFY(!writable);
    QVERIFY(readable);
    QCOMPARE(revision->SetValue(int64_t(4)), ZebErrorInvalidAccess);
    int64_t value = 0;
    revision->GetValue(value);
    QCOMPARE(value, int64_t(3));
    FeaturePtr start = ZebTest::feature(camera_, "AcquisitionStart");
    QCOMPARE(start->IsReadable(readable), ZebErrorSuccess);
    QVERIFY(!readable);
}

void TestZebFeatures::streamingLocksParameters()
{
    FeaturePtr locked = ZebTest::feature(camera_, "TLParamsLocked");
    FeaturePtr select = ZebTest::feature(camera_, "DefectPixelCorrection_MapSelect");
    FeaturePtr exposure = ZebTest::feature(camera_, "ExposureTime");
    int64_t value = -1;
    bool writable = false;
    QCOMPARE(locked->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, int64_t(0));

    QCOMPARE(ZebTest::feature(camera_, "AcquisitionStart")->RunCommand(), ZebErrorSuccess);
    locked->GetValue(value);
    QCOMPARE(value, int64_t(1));
    select->IsWritable(writable);
    QVERIFY(!writable);
    QCOMPARE(select->SetValue("DefPixMap1"), ZebErrorInvalidAccess);
    QCOMPARE(exposure->SetValue(5000.0), ZebErrorSuccess); // not a locked parameter
    FramePtr frame;
    QCOMPARE(camera_->AcquireSingleImage(frame, 1000), ZebErrorInvalidCall);

    QCOMPARE(ZebTest::feature(camera_, "AcquisitionStop")->RunCommand(), ZebErrorSuccess);
    locked->GetValue(value);
    QCOMPARE(value, int64_t(0));
    QCOMPARE(select->SetValue("DefPixMap1"), ZebErrorSuccess);

    QCOMPARE(SimControl::SetStreaming(ZebTest::kMonoFile, true), ZebErrorSuccess);
    locked->GetValue(value);
    QCOMPARE(value, int64_t(1));
}

void TestZebFeatures::commandCompletesAfterItsDelay()
{
    ZebTest::stopSdk();
    QTemporaryDir dir;
    QFile file(dir.filePath("slow.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({ "transportLayers": [ { "id": "T", "type": "GigEVision", "interfaces": [ { "id": "e0" } ] } ],
                    "cameras": [ { "id": "C1", "model": "kvd100MXGE", "serial": "SLOW", "interface": "e0",
                                   "fileOperationDelayMs": 60000 } ] })");
    file.close();
    QCOMPARE(ZebTest::startSdk(file.fileName().toUtf8().constData()), ZebErrorSuccess);
    CameraPtr slow = ZebTest::openCamera("SLOW");
    FeaturePtr execute = ZebTest::feature(slow, "FileOperationExecute");
    bool done = false;
    QCOMPARE(execute->IsCommandDone(done), ZebErrorSuccess);
    QVERIFY(done);
    ZebTest::feature(slow, "FileOpenMode")->SetValue("Read");
    ZebTest::feature(slow, "FileOperationSelector")->SetValue("Open");
    QCOMPARE(execute->RunCommand(), ZebErrorSuccess);
    QCOMPARE(execute->IsCommandDone(done), ZebErrorSuccess);
    QVERIFY(!done);
    // The operation itself took effect at once: the file is open.
    QCOMPARE(execute->RunCommand(), ZebErrorInvalidCall);
    QCOMPARE(ZebTest::feature(slow, "AcquisitionStart")->IsCommandDone(done), ZebErrorSuccess);
    QVERIFY(done);
}

void TestZebFeatures::mapSelectSwitchesMapFeatures()
{
    FeaturePtr select = ZebTest::feature(camera_, "DefectPixelCorrection_MapSelect");
    FeaturePtr size = ZebTest::feature(camera_, "DefectPixelCorrection_MapSize");
    FeaturePtr index = ZebTest::feature(camera_, "DefectPixelCorrection_MapIndex");
    FeaturePtr x = ZebTest::feature(camera_, "DefectPixelCorrection_X");
    FeaturePtr y = ZebTest::feature(camera_, "DefectPixelCorrection_Y");
    std::vector<SimControl::SimMapEntry> factory;
    QCOMPARE(SimControl::GetStoredMap(ZebTest::kMonoFile, 0, factory), ZebErrorSuccess);
    QCOMPARE(factory.size(), size_t(5));

    int64_t value = -1;
    QCOMPARE(select->SetValue("DefPixMap0"), ZebErrorSuccess);
    size->GetValue(value);
    QCOMPARE(value, int64_t(5));
    QCOMPARE(index->SetValue(int64_t(4)), ZebErrorSuccess);
    QCOMPARE(x->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, int64_t(factory[4].x));
    QCOMPARE(y->GetValue(value), ZebErrorSuccess);
    QCOMPARE(value, int64_t(factory[4].y));

    QCOMPARE(select->SetValue("DefPixMap2"), ZebErrorSuccess);
    size->GetValue(value);
    QCOMPARE(value, int64_t(0));
    QCOMPARE(x->GetValue(value), ZebErrorInvalidValue); // index 4 of an empty map
}

void TestZebFeatures::mapCoordinatesAreWrittenPerEntry()
{
    FeaturePtr select = ZebTest::feature(camera_, "DefectPixelCorrection_MapSelect");
    FeaturePtr index = ZebTest::feature(camera_, "DefectPixelCorrection_MapIndex");
    FeaturePtr x = ZebTest::feature(camera_, "DefectPixelCorrection_X");
    FeaturePtr y = ZebTest::feature(camera_, "DefectPixelCorrection_Y");
    bool writable = true;
    select->SetValue("DefPixMap0");
    x->IsWritable(writable);
    QVERIFY(!writable);
    index->SetValue(int64_t(0));
    QCOMPARE(x->SetValue(int64_t(3)), ZebErrorInvalidAccess);

    select->SetValue("DefPixMap1");
    for (int64_t i = 0; i < 3; ++i) {
        QCOMPARE(index->SetValue(i), ZebErrorSuccess);
        QCOMPARE(x->SetValue(10 + i), ZebErrorSuccess);
        QCOMPARE(y->SetValue(20 + i), ZebErrorSuccess);
    }
    index->SetValue(int64_t(7));
    QCOMPARE(x->SetValue(int64_t(1)), ZebErrorInvalidValue); // no gaps in a map
    std::vector<SimControl::SimMapEntry> stored;
    SimControl::GetStoredMap(ZebTest::kMonoFile, 1, stored);
    QCOMPARE(stored.size(), size_t(3));
    QCOMPARE(stored[2].x, 12u);
    QCOMPARE(stored[2].y, 22u);
}

void TestZebFeatures::streamFeaturesDependOnTransport()
{
    std::vector<StreamPtr> streams;
    QCOMPARE(camera_->GetStreams(streams), ZebErrorSuccess);
    QCOMPARE(streams.size(), size_t(1));
    FeaturePtr protocol, adjust, size;
    QCOMPARE(streams[0]->GetFeatureByName("GVSPProtocol", protocol), ZebErrorSuccess);
    QCOMPARE(streams[0]->GetFeatureByName("GVSPAdjustPacketSize", adjust), ZebErrorSuccess);
    QCOMPARE(streams[0]->GetFeatureByName("GVSPPacketSize", size), ZebErrorSuccess);
    QCOMPARE(adjust->RunCommand(), ZebErrorSuccess);
    int64_t packet = 0;
    size->GetValue(packet);
    QVERIFY(packet > 1500);
    QCOMPARE(camera_->GetFeatureByName("GVSPProtocol", protocol), ZebErrorNotFound);

    CameraPtr usb = ZebTest::openCamera(ZebTest::kColorFile);
    usb->GetStreams(streams);
    QCOMPARE(streams[0]->GetFeatureByName("GVSPProtocol", protocol), ZebErrorNotFound);
}

QTEST_GUILESS_MAIN(TestZebFeatures)
#include "tst_zebfeatures.moc"
