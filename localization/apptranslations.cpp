#include "apptranslations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

// The .qm files are built into a static library: pull them in by name.
static void initTranslationResources()
{
    Q_INIT_RESOURCE(translations);
}

bool installTranslations(QCoreApplication& app, const QLocale& locale)
{
    initTranslationResources();
    // Qt's own texts (standard buttons, file dialogs) come with the system.
    auto* qt = new QTranslator(&app);
    if (qt->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                 QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        app.installTranslator(qt);
    else
        delete qt;

    auto* own = new QTranslator(&app);
    if (own->load(locale, QStringLiteral("orvel-dpc-assistant"), QStringLiteral("_"), QStringLiteral(":/translations"))) {
        app.installTranslator(own);
        return true;
    }
    delete own;
    return false;
}
