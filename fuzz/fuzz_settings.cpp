// The main settings file as start-up finds it: whatever it holds, the store
// starts, and every folder it validates afterwards is a usable folder.
#include "fuzzsupport.h"

#include "uxsettings.h"

#include <QFileInfo>
#include <QStandardPaths>

// A friend of the store, so that each input gets a freshly built one.
class UXCSettingsProbe {
public:
    static void run(const QString& mainFile, const uint8_t* data, size_t size)
    {
        QFile file(mainFile);
        FUZZ_CHECK(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        FUZZ_CHECK(file.write(reinterpret_cast<const char*>(data), qint64(size)) == qint64(size));
        file.close();

        UXCSettings store;
        for (const char* key : {"SaveImageDir", "SettingsFileDir", "SPSettingsFileDir", "PDCSettingsFileDir",
                                "SHCSettingsFileDir"}) {
            const QString dir = store.Get(QStringLiteral("Directory"), QLatin1String(key)).toString();
            const QFileInfo info(dir);
            FUZZ_CHECK(info.isDir() && info.isWritable());
        }
        FUZZ_CHECK(store.GetDeffMatchSettings() != nullptr);
    }
};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const QString mainFile = [] {
        // Every path the store uses lies under the scratch folder.
        qputenv("HOME", FuzzSupport::scratchDir().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", (FuzzSupport::scratchDir() + "/.config").toLocal8Bit());
        qputenv("XDG_DATA_HOME", (FuzzSupport::scratchDir() + "/.local/share").toLocal8Bit());
        QStandardPaths::setTestModeEnabled(true);
        QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
        const QString configDir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        QDir().mkpath(configDir + QStringLiteral("/Corvane Optics Technologies/UxTools"));
        return configDir + QStringLiteral("/Corvane Optics Technologies/UxTools/UxTools.ini");
    }();
    UXCSettingsProbe::run(mainFile, data, size);
    return 0;
}
