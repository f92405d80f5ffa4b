#pragma once

#include <QSettings>
#include <QString>
#include <QVariant>

#include <memory>

// The process-wide settings store: lays out the application's folders on first
// use and keeps the main settings file, the colour-correction profiles and the
// defect match patterns. Used from the GUI thread only once built.
class UXCSettings {
public:
    static UXCSettings* getInstance();

    ~UXCSettings();
    UXCSettings(const UXCSettings&) = delete;
    UXCSettings& operator=(const UXCSettings&) = delete;

    // Read and write the main settings file by group and key. Set does not sync.
    QVariant Get(const QString& group, const QString& key, const QVariant& defaultValue = QVariant());
    void Set(const QString& group, const QString& key, const QVariant& value);

    // The pattern file; its content belongs to the defect classification.
    QSettings* GetDeffMatchSettings() const;

    QString DataDir() const { return m_dataDir; }
    QString ImagesDir() const { return m_imagesDir; }
    QString LogsDir() const { return m_logsDir; }
    QString ConfigDir() const { return m_configDir; }
    QString DefectCorrectionDir() const { return m_defectCorrectionDir; }
    QString ShadingCorrectionDir() const { return m_shadingCorrectionDir; }
    QString FileAccessDir() const { return m_fileAccessDir; }

private:
    // Private so that the one instance stays the only one; the test suite builds
    // fresh stores against temporary homes, and so does the settings fuzz probe.
    friend class TestUXCSettings;
    friend class UXCSettingsProbe;
    UXCSettings();

    void _createDefault();
    void _createDefaultCCM();
    void _createUserMapSettings();
    void _createDefaultDeffMatch();
    void _validate();
    bool _isKeyValid(const QString& key, QVariant value);
    bool _validateDir(QString path);

    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<QSettings> m_profileSettings;
    std::unique_ptr<QSettings> m_deffMatchSettings;
    QString m_dataDir;
    QString m_imagesDir;
    QString m_logsDir;
    QString m_configDir;
    QString m_defectCorrectionDir;
    QString m_shadingCorrectionDir;
    QString m_fileAccessDir;
};
