#include "uxsettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

const QString kMainFileName = QStringLiteral("UxTools.ini");
const QString kProfileFileName = QStringLiteral("ccprofiles.ini");
const QString kDeffMatchFileName = QStringLiteral("deffmatch.ini");

// The directory keys that start-up checks, in the order they are checked.
const QStringList kValidatedDirKeys = {
    QStringLiteral("SaveImageDir"), QStringLiteral("SettingsFileDir"),
    QStringLiteral("SPSettingsFileDir"), QStringLiteral("PDCSettingsFileDir"),
    QStringLiteral("SHCSettingsFileDir"),
};

// Failures are ignored: a missing folder shows up later where it is used.
QString makeFolder(const QString& path)
{
    QDir dir(path);
    if (!dir.exists())
        dir.mkdir(path);
    return path;
}

std::unique_ptr<QSettings> openIni(const QString& folder, const QString& name, bool& existed)
{
    const QString path = folder + QLatin1Char('/') + name;
    existed = QFile::exists(path);
    return std::make_unique<QSettings>(path, QSettings::IniFormat);
}

} // namespace

UXCSettings* UXCSettings::getInstance()
{
    static UXCSettings instance;
    return &instance;
}

UXCSettings::UXCSettings()
{
    m_configDir = makeFolder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                             + QStringLiteral("/Corvane Optics Technologies/UxTools"));
    m_dataDir = makeFolder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                           + QStringLiteral("/UxTools"));
    m_imagesDir = makeFolder(m_dataDir + QStringLiteral("/images"));
    m_logsDir = makeFolder(m_dataDir + QStringLiteral("/logs"));
    m_shadingCorrectionDir = makeFolder(m_dataDir + QStringLiteral("/ShadingCorr"));
    m_defectCorrectionDir = makeFolder(m_dataDir + QStringLiteral("/DefectPixelCorr"));
    m_fileAccessDir = makeFolder(m_dataDir + QStringLiteral("/FileAccess"));

    bool existed = false;
    m_settings = openIni(m_configDir, kMainFileName, existed);
    if (existed)
        _validate();
    else
        _createDefault();

    m_profileSettings = openIni(m_configDir, kProfileFileName, existed);
    if (!existed)
        _createDefaultCCM();

    m_deffMatchSettings = openIni(m_configDir, kDeffMatchFileName, existed);
    if (!existed)
        _createDefaultDeffMatch();
}

UXCSettings::~UXCSettings() = default;

QVariant UXCSettings::Get(const QString& group, const QString& key, const QVariant& defaultValue)
{
    m_settings->beginGroup(group);
    const QVariant value = m_settings->value(key, defaultValue);
    m_settings->endGroup();
    return value;
}

void UXCSettings::Set(const QString& group, const QString& key, const QVariant& value)
{
    m_settings->beginGroup(group);
    m_settings->setValue(key, value);
    m_settings->endGroup();
}

QSettings* UXCSettings::GetDeffMatchSettings() const
{
    return m_deffMatchSettings.get();
}

void UXCSettings::_createDefault()
{
    m_settings->beginGroup(QStringLiteral("MainWindow"));
    m_settings->setValue(QStringLiteral("OffsetX"), 0);
    m_settings->setValue(QStringLiteral("OffsetY"), 0);
    m_settings->setValue(QStringLiteral("Width"), 800);
    m_settings->setValue(QStringLiteral("Height"), 600);
    m_settings->endGroup();

    m_settings->beginGroup(QStringLiteral("Directory"));
    for (const QString& key : kValidatedDirKeys)
        m_settings->setValue(key, m_dataDir);
    m_settings->setValue(QStringLiteral("fileAccessFileDir"), m_dataDir);
    m_settings->endGroup();
    m_settings->sync();
}

void UXCSettings::_validate()
{
    // "Settings" stays open on purpose: stores started from an existing file
    // keep every later Get and Set inside it, and existing files depend on that.
    m_settings->beginGroup(QStringLiteral("Settings"));
    m_settings->beginGroup(QStringLiteral("Directory"));
    for (const QString& key : kValidatedDirKeys) {
        if (_isKeyValid(key, m_settings->value(key)))
            continue;
        const bool shading = key == QLatin1String("SHCSettingsFileDir");
        m_settings->setValue(key, shading ? m_shadingCorrectionDir : m_dataDir);
    }
    m_settings->endGroup();
    m_settings->sync();
}

bool UXCSettings::_isKeyValid(const QString& key, QVariant value)
{
    if (!value.isValid())
        return false;
    if (kValidatedDirKeys.contains(key))
        return _validateDir(value.toString());
    return false;
}

bool UXCSettings::_validateDir(QString path)
{
    const QFileInfo info(path);
    if (!info.isDir() || !info.isWritable())
        return false;
    // The probe name keeps its backslash on every platform, so on this one the
    // probe is a file beside the folder rather than inside it.
    QFile probe(path + QStringLiteral("\\Empty.txt"));
    const bool opened = probe.open(QIODevice::ReadWrite);
    if (opened)
        probe.close();
    probe.remove();
    return opened;
}
