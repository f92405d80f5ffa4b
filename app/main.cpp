#include "apptranslations.h"
#include "dpcversion.h"
#include "mainwindow.h"

#include <QApplication>
#include <QLocale>
#include <QStyleFactory>

int main(int argc, char* argv[])
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("fusion")));
    QApplication app(argc, argv);
    installTranslations(app, QLocale::system());

    const QString version = QStringLiteral("%1.%2.%3.%4")
                                .arg(kDpcVersionMajor)
                                .arg(kDpcVersionMinor)
                                .arg(kDpcVersionPatch)
                                .arg(QString::fromLatin1(kDpcBuildId));
    QApplication::setApplicationName(QStringLiteral("Corvane Optics Orvel Defect Pixel Correction Assistant"));
    QApplication::setOrganizationName(QStringLiteral("Corvane Optics Technologies"));
    QApplication::setOrganizationDomain(QStringLiteral("corvaneoptics.com"));
    QApplication::setApplicationVersion(version);

    MainWindow window;
    window.setDefaultWindowTitle(QApplication::applicationName());
    window.show();
    return app.exec();
}
