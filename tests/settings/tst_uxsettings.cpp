#include "uxsettings.h"

#include <QtTest>

#include <memory>

// Every test starts from its own empty home, as on a first start.
class TestUXCSettings : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init();

    void firstStartLaysOutFoldersAndMainFile();
    void secondStartReplacesBrokenDirectories_data();
    void secondStartReplacesBrokenDirectories();
    void secondStartWorksInsideSettingsGroup();
    void missingProfileFileIsRecreatedAlone();
    void startUpSurvivesBadFiles_data();
    void startUpSurvivesBadFiles();
    void directoryProbeLeavesNothingBehind();

private:
    std::unique_ptr<UXCSettings> start() { return std::unique_ptr<UXCSettings>(new UXCSettings); }
    QString configFile(const QString& name) const
    {
        return m_home->path() + "/.qttest/config/Corvane Optics Technologies/UxTools/" + name;
    }

    std::unique_ptr<QTemporaryDir> m_home;
};

namespace {

const QStringList kDirKeys = {"SaveImageDir", "SettingsFileDir", "SPSettingsFileDir",
                              "PDCSettingsFileDir", "SHCSettingsFileDir", "fileAccessFileDir"};

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool append(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return file.open(QIODevice::Append) && file.write(text) == text.size();
}

} // namespace

void TestUXCSettings::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    QVERIFY(QDir(m_home->path()).mkdir("Documents"));
    qputenv("HOME", m_home->path().toLocal8Bit());
}

void TestUXCSettings::firstStartLaysOutFoldersAndMainFile()
{
    auto store = start();
    const QString data = m_home->path() + "/Documents/UxTools";
    QCOMPARE(store->DataDir(), data);
    for (const char* sub : {"images", "logs", "ShadingCorr", "DefectPixelCorr", "FileAccess"})
        QVERIFY2(QFileInfo(data + '/' + sub).isDir(), sub);
    QCOMPARE(store->ShadingCorrectionDir(), data + "/ShadingCorr");

    QSettings file(configFile("UxTools.ini"), QSettings::IniFormat);
    for (const QString& key : kDirKeys)
        QCOMPARE(file.value("Directory/" + key).toString(), data);

    // A store that created its file works at the top level.
    store->Set("Directory", "SaveImageDir", "/somewhere");
    QCOMPARE(store->Get("Directory", "SaveImageDir").toString(), QString("/somewhere"));
    QCOMPARE(store->Get("Directory", "NoSuchKey", 7).toInt(), 7);
}

void TestUXCSettings::secondStartReplacesBrokenDirectories_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("broken");
    QTest::addColumn<bool>("shadingFallback");

    QTest::newRow("missing image folder") << "SaveImageDir" << "missing" << false;
    QTest::newRow("image folder is a file") << "SaveImageDir" << "file" << false;
    QTest::newRow("empty settings folder") << "SettingsFileDir" << "" << false;
    QTest::newRow("missing shading folder") << "SHCSettingsFileDir" << "missing" << true;
}

void TestUXCSettings::secondStartReplacesBrokenDirectories()
{
    QFETCH(QString, key);
    QFETCH(QString, broken);
    QFETCH(bool, shadingFallback);

    start();
    const QString good = m_home->path() + "/good";
    QVERIFY(QDir().mkdir(good));
    const QString brokenPath = broken.isEmpty() ? QString() : m_home->path() + '/' + broken;
    if (broken == "file")
        QVERIFY(append(brokenPath, "x"));
    {
        QSettings file(configFile("UxTools.ini"), QSettings::IniFormat);
        for (const QString& other : kDirKeys)
            file.setValue("Settings/Directory/" + other, other == key ? brokenPath : good);
    }

    auto store = start();
    QSettings file(configFile("UxTools.ini"), QSettings::IniFormat);
    for (const QString& other : kDirKeys) {
        const QString expected = other != key ? good : shadingFallback ? store->ShadingCorrectionDir() : store->DataDir();
        QCOMPARE(file.value("Settings/Directory/" + other).toString(), expected);
    }
}

void TestUXCSettings::secondStartWorksInsideSettingsGroup()
{
    start();
    auto store = start();

    // The keys that the first start wrote at the top level are out of reach now,
    // and the five checked folders were missing inside "Settings".
    QCOMPARE(store->Get("MainWindow", "Width", -1).toInt(), -1);
    QCOMPARE(store->Get("Directory", "SaveImageDir").toString(), store->DataDir());
    QCOMPARE(store->Get("Directory", "SHCSettingsFileDir").toString(), store->ShadingCorrectionDir());
    QVERIFY(!store->Get("Directory", "fileAccessFileDir").isValid());

    store->Set("Directory", "SaveImageDir", "/images");
    store.reset();
    QSettings file(configFile("UxTools.ini"), QSettings::IniFormat);
    QCOMPARE(file.value("Settings/Directory/SaveImageDir").toString(), QString("/images"));
    QCOMPARE(file.value("MainWindow/Width").toInt(), 800);
}

void TestUXCSettings::missingProfileFileIsRecreatedAlone()
{
    start();
    QVERIFY(append(configFile("UxTools.ini"), "\n[Kept]\nmarker=1\n"));
    QVERIFY(append(configFile("deffmatch.ini"), "\n[Kept]\nmarker=1\n"));
    const QByteArray patterns = readAll(configFile("deffmatch.ini"));
    QVERIFY(QFile::remove(configFile("ccprofiles.ini")));

    start();
    QSettings profiles(configFile("ccprofiles.ini"), QSettings::IniFormat);
    QCOMPARE(profiles.childGroups(), QStringList({"Profile SRGB", "Profile SRGB Weighted"}));
    QCOMPARE(readAll(configFile("deffmatch.ini")), patterns);
    QCOMPARE(QSettings(configFile("UxTools.ini"), QSettings::IniFormat).value("Kept/marker").toInt(), 1);
}

void TestUXCSettings::startUpSurvivesBadFiles_data()
{
    QTest::addColumn<QString>("damage");
    QTest::newRow("main file is a folder") << "folder";
    QTest::newRow("main file is binary garbage") << "garbage";
    QTest::newRow("no documents folder") << "no documents";
}

void TestUXCSettings::startUpSurvivesBadFiles()
{
    QFETCH(QString, damage);
    static const char garbage[] = "[\x01\xff\x00]=\n\xfe[[";
    if (damage == "no documents") {
        QVERIFY(QDir(m_home->path()).rmdir("Documents"));
    } else if (damage == "folder") {
        QVERIFY(QDir().mkpath(configFile("UxTools.ini")));
    } else {
        QVERIFY(QDir().mkpath(configFile("")));
        QVERIFY(append(configFile("UxTools.ini"), QByteArray(garbage, sizeof garbage - 1)));
    }

    auto store = start();
    QCOMPARE(store->Get("Directory", "NoSuchKey", "fallback").toString(), QString("fallback"));
    store->Set("Directory", "SaveImageDir", "/x");
    QCOMPARE(store->GetDeffMatchSettings()->childGroups().size(), 34);
}

void TestUXCSettings::directoryProbeLeavesNothingBehind()
{
    auto store = start();
    const QString folder = m_home->path() + "/probe";
    QVERIFY(QDir().mkdir(folder));
    const QStringList before = QDir(m_home->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);

    QVERIFY(store->_isKeyValid("SaveImageDir", folder));
    QVERIFY(!store->_validateDir(folder + "/missing"));
    QCOMPARE(QDir(m_home->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
    QVERIFY(QDir(folder).isEmpty());
}

QTEST_GUILESS_MAIN(TestUXCSettings)
#include "tst_uxsettings.moc"
