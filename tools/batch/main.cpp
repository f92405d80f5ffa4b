// orvel-dpc-batch: maps and verifies the defect pixels of many cameras at once.

#include "apptranslations.h"
#include "batchrun.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextStream>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvel-dpc-batch"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvane Optics Technologies"));
    installTranslations(app, QLocale::system());
    QTextStream out(stdout);
    QTextStream err(stderr);
    return BatchRun::main(QCoreApplication::arguments(), out, err);
}
