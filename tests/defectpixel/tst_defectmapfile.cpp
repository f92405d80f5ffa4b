#include "defaultpatterns.h"

#include "defectmapfile.h"

#include <QtTest>

namespace {

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QString rememberedInSettings()
{
    return UXCSettings::getInstance()->Get("Directory", "PDCSettingsFileDir", QVariant()).toString();
}

const t_defpix kPanelMap[] = {{5, 7, 0}, {100, 3, 111}};

DefectMapFilePanelState panelState(bool registerMode)
{
    DefectMapFilePanelState panel;
    panel.registerMode = registerMode;
    panel.revision = 4;
    panel.chunkId = 4100;
    panel.map = kPanelMap;
    panel.count = 2;
    panel.imageWidth = 1280;
    panel.imagePixelCount = 1280 * 1024;
    return panel;
}

} // namespace

class TestDefectMapFile : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void extensionRule_data();
    void extensionRule();
    void textHoldsGivenMapAndBinaryThePanelsOwn();
    void failedSaveKeepsPreviousFile_data();
    void failedSaveKeepsPreviousFile();
    void rememberedDirFollowsTheFileButNoSettings();
    void loadAddsToMapAndClassifiesForTypedMaps_data();
    void loadAddsToMapAndClassifiesForTypedMaps();
    void loadRefusesWithoutMapOrFile();

private:
    QTemporaryDir m_home;
    DefectMatchPatterns m_defaults;
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestDefectMapFile::initTestCase()
{
    QVERIFY(loadDefaultPatterns(m_home, m_defaults));
}

void TestDefectMapFile::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestDefectMapFile::extensionRule_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("registerMode");
    QTest::addColumn<QString>("written");

    QTest::newRow("text appended") << "map" << true << "map.txt";
    QTest::newRow("binary appended") << "map" << false << "map.bin";
    QTest::newRow("upper case kept") << "MAP.TXT" << true << "MAP.TXT";
    QTest::newRow("binary kept") << "map.Bin" << false << "map.Bin";
    QTest::newRow("other mode's extension") << "map.txt" << false << "map.txt.bin";
}

void TestDefectMapFile::extensionRule()
{
    QFETCH(QString, typed);
    QFETCH(bool, registerMode);
    QFETCH(QString, written);

    QString remembered;
    QVERIFY(saveDefectMapFile(m_dir->filePath(typed), kPanelMap, 2, panelState(registerMode), remembered));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{written});
}

void TestDefectMapFile::textHoldsGivenMapAndBinaryThePanelsOwn()
{
    const t_defpix downloaded[] = {{1, 2, 3}};
    QString remembered;

    QVERIFY(saveDefectMapFile(m_dir->filePath("text"), downloaded, 1, panelState(true), remembered));
    QCOMPARE(contentOf(m_dir->filePath("text.txt")), QByteArray("1;2;3\n"));
    QVERIFY(saveDefectMapFile(m_dir->filePath("panel"), kPanelMap, 2, panelState(true), remembered));
    QCOMPARE(contentOf(m_dir->filePath("panel.txt")), QByteArray("5;7;0\n100;3;111\n"));
    QVERIFY(saveDefectMapFile(m_dir->filePath("empty"), nullptr, 0, panelState(true), remembered));
    QCOMPARE(contentOf(m_dir->filePath("empty.txt")), QByteArray());

    QVERIFY(saveDefectMapFile(m_dir->filePath("binary"), downloaded, 1, panelState(false), remembered));
    const std::vector<unsigned char> expected = buildDefPixContainerBuffer(4, 4100, 2, kPanelMap, 1280, 1280 * 1024);
    QCOMPARE(contentOf(m_dir->filePath("binary.bin")),
             QByteArray(reinterpret_cast<const char*>(expected.data()), int(expected.size())));

    // A cancelled dialog gives an empty name: nothing is written, and that is no failure.
    QVERIFY(saveDefectMapFile(QString(), kPanelMap, 2, panelState(true), remembered));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files).size(), 4);
}

void TestDefectMapFile::failedSaveKeepsPreviousFile_data()
{
    QTest::addColumn<QString>("failure");
    QTest::newRow("read-only folder") << "read-only";
    QTest::newRow("name is a folder") << "folder";
    QTest::newRow("no room for a temporary name") << "long name";
}

void TestDefectMapFile::failedSaveKeepsPreviousFile()
{
    QFETCH(QString, failure);

    QString target = m_dir->filePath("map.txt");
    QString kept = target;
    if (failure == "folder") {
        QVERIFY(QDir(m_dir->path()).mkdir("map.txt"));
        kept = target + "/inside";
    } else if (failure == "long name") {
        // The final name fits the file system's limit; the name of the file
        // written first, beside it, does not.
        target = m_dir->filePath(QString(250, QLatin1Char('m')) + ".txt");
        kept = target;
    }
    QVERIFY(writeFile(kept, "previous\n"));
    if (failure == "read-only") {
        QVERIFY(QFile::setPermissions(m_dir->path(), QFile::ReadOwner | QFile::ExeOwner));
        if (writeFile(m_dir->filePath("probe"), "x")) {
            QFile::setPermissions(m_dir->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            QSKIP("this user may write into read-only folders");
        }
    }

    QString remembered = "unchanged";
    QVERIFY(!saveDefectMapFile(target, kPanelMap, 2, panelState(true), remembered));
    QFile::setPermissions(m_dir->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(contentOf(kept), QByteArray("previous\n"));
    QCOMPARE(remembered, QString("unchanged"));
    // No temporary file is left behind either.
    QCOMPARE(QDir(QFileInfo(kept).absolutePath()).entryList(QDir::Files), QStringList{QFileInfo(kept).fileName()});
    if (failure == "folder")
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList());
}

void TestDefectMapFile::rememberedDirFollowsTheFileButNoSettings()
{
    UXCSettings::getInstance()->Set("Directory", "PDCSettingsFileDir", "elsewhere");
    QString remembered;
    QVERIFY(saveDefectMapFile(m_dir->filePath("a"), kPanelMap, 2, panelState(true), remembered));
    QCOMPARE(remembered, m_dir->path());

    QVERIFY(QDir(m_dir->path()).mkdir("sub"));
    const QString sub = m_dir->filePath("sub");
    QVERIFY(QFile::copy(m_dir->filePath("a.txt"), sub + "/a.txt"));
    unsigned int count = 0;
    t_defpix map[4];
    QVERIFY(loadDefectMapFile(sub + "/a.txt", map, 4, count, 0, 4096, m_defaults, remembered));
    QCOMPARE(remembered, sub);
    // The panel stores the folder; the core leaves the settings alone.
    QCOMPARE(rememberedInSettings(), QString("elsewhere"));
}

void TestDefectMapFile::loadAddsToMapAndClassifiesForTypedMaps_data()
{
    QTest::addColumn<unsigned int>("revision");
    QTest::addColumn<unsigned int>("chunkId");
    QTest::addColumn<quint32>("middleType");
    QTest::addColumn<quint32>("edgeType");

    QTest::newRow("revision 4") << 4u << 4096u << 111u << 112u;
    QTest::newRow("chunk 4100") << 3u << 4100u << 111u << 112u;
    QTest::newRow("neither") << 3u << 4096u << 7u << 0u;
}

void TestDefectMapFile::loadAddsToMapAndClassifiesForTypedMaps()
{
    QFETCH(unsigned int, revision);
    QFETCH(unsigned int, chunkId);

    QVERIFY(writeFile(m_dir->filePath("map.txt"), "# two entries\n640;512;7\n0;512;0\n640;512;9\n"));
    t_defpix map[3] = {{900, 900, 5}};
    unsigned int count = 1;
    QString remembered = m_dir->path();
    QVERIFY(loadDefectMapFile(m_dir->filePath("map.txt"), map, 3, count, revision, chunkId, m_defaults, remembered));
    QCOMPARE(count, 3u);
    QCOMPARE(map[1].x, 640u);
    QTEST(map[1].type, "middleType");
    QCOMPARE(map[2].x, 0u);
    QTEST(map[2].type, "edgeType");
}

void TestDefectMapFile::loadRefusesWithoutMapOrFile()
{
    QVERIFY(writeFile(m_dir->filePath("map.txt"), "1;2;3\n"));
    t_defpix map[2];
    unsigned int count = 0;
    QString remembered = "unchanged";
    QVERIFY(!loadDefectMapFile(m_dir->filePath("map.txt"), nullptr, 2, count, 0, 0, m_defaults, remembered));
    QVERIFY(!loadDefectMapFile(m_dir->filePath("map.txt"), map, 0, count, 0, 0, m_defaults, remembered));
    unsigned int tooMany = 3;
    QVERIFY(!loadDefectMapFile(m_dir->filePath("map.txt"), map, 2, tooMany, 0, 0, m_defaults, remembered));
    QVERIFY(!loadDefectMapFile(m_dir->filePath("missing.txt"), map, 2, count, 0, 0, m_defaults, remembered));
    QVERIFY(!loadDefectMapFile(QString(), map, 2, count, 0, 0, m_defaults, remembered));
    QCOMPARE(count, 0u);
    QCOMPARE(remembered, QString("unchanged"));
}

QTEST_GUILESS_MAIN(TestDefectMapFile)
#include "tst_defectmapfile.moc"
