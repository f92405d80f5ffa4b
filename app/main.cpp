#include "apptranslations.h"
#include "mainwindow.h"

#include <QApplication>
#include <QLocale>
#include <QStyleFactory>

namespace {

constexpr int kVersionMajor = 1;
constexpr int kVersionMinor = 0;
constexpr int kVersionPatch = 0;
const char* const kBuildId = "f59f2ff";

} // namespace

int main(int argc, char* argv[])
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("fusion")));
    QApplication app(argc, argv);
    installTranslations(app, QLocale::system());

    const QString version = QStringLiteral("%1.%2.%3.%4")
                                .arg(kVersionMajor)
                                .arg(kVersionMinor)
                                .arg(kVersionPatch)
                                .arg(QString::fromLatin1(kBuildId));
    QApplication::setApplicationName(QStringLiteral("Corvane Optics Orvel Defect Pixel Correction Assistant"));
    QApplication::setOrganizationName(QStringLiteral("Corvane Optics Technologies"));
    QApplication::setOrganizationDomain(QStringLiteral("corvaneoptics.com"));
    QApplication::setApplicationVersion(version);

    MainWindow window;
    window.setDefaultWindowTitle(QApplication::applicationName());
    window.show();
    return app.exec();
}
