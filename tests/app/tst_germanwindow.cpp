#include "apptranslations.h"
#include "mainwindow.h"
#include "panelfixture.h"
#include "uxdefectpixelcorrection.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QTreeView>
#include <QtTest>

// The window started in German: the assistant's texts and Qt's own come from
// their translations, and English needs only its plural forms.
class TestGermanWindow : public QObject {
    Q_OBJECT

private slots:
    void englishTranslatesOnlyPlurals();
    void windowInGerman();
};

void TestGermanWindow::englishTranslatesOnlyPlurals()
{
    QVERIFY(installTranslations(*qApp, QLocale(QLocale::English, QLocale::UnitedStates)));
    QCOMPARE(QCoreApplication::translate("BasicMainWindow", "&View"), QStringLiteral("&View"));
    const char* removed = "%n image(s) removed.";
    QCOMPARE(QCoreApplication::translate("UXCDefectPixelCorrection", removed, nullptr, 1),
             QStringLiteral("1 image removed."));
    QCOMPARE(QCoreApplication::translate("UXCDefectPixelCorrection", removed, nullptr, 3),
             QStringLiteral("3 images removed."));
}

void TestGermanWindow::windowInGerman()
{
    qputenv("ZEB_SIM_CAMERAS", "default");
    qunsetenv("ZEB_GEV_ADDRESSES");
    QVERIFY(installTranslations(*qApp, QLocale(QLocale::German, QLocale::Germany)));

    MainWindow window;
    window.setDefaultWindowTitle(QStringLiteral("Corvane Optics Orvel Defect Pixel Correction Assistant"));
    window.resize(900, 700);
    window.show();
    QStringList menus;
    for (QAction* action : window.menuBar()->actions())
        menus << action->text();
    QCOMPARE(menus, QStringList({"&Ansicht", "&Hilfe"}));
    QStringList docks;
    for (QDockWidget* dock : window.findChildren<QDockWidget*>())
        docks << dock->windowTitle();
    QVERIFY2(docks.contains("Kameraliste") && docks.contains("Protokoll"), qPrintable(docks.join(", ")));
    QPushButton* open = window.findChild<QPushButton*>(QStringLiteral("btnOpenCamera"));
    QVERIFY(open);
    QCOMPARE(open->text().remove('&'), QStringLiteral("Ausgewählte Kamera öffnen")); // less its mnemonic
    // Qt's own buttons, from the system's Qt translations.
    QDialogButtonBox buttons(QDialogButtonBox::Cancel);
    QCOMPARE(buttons.button(QDialogButtonBox::Cancel)->text(), QStringLiteral("Abbrechen"));

    // The assistant with a camera open, kept for a person to judge the German layout.
    QTreeView* cameras = window.findChild<QTreeView*>(QStringLiteral("treeCameras"));
    QTRY_VERIFY_WITH_TIMEOUT(cameras->model()->rowCount() > 0 && !QApplication::overrideCursor(), 30000);
    const QModelIndexList mono = cameras->model()->match(cameras->model()->index(0, 0), Qt::DisplayRole,
                                                         "(DEV_KV1230001)", 1, Qt::MatchEndsWith | Qt::MatchRecursive);
    QTRY_VERIFY_WITH_TIMEOUT(!mono.isEmpty() && (mono.first().flags() & Qt::ItemIsEnabled), 30000);
    cameras->setCurrentIndex(mono.first());
    QTest::mouseClick(open, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(window.Assistant()->isEnabled() && !QApplication::overrideCursor(), 30000);
    QVERIFY(PanelFixture::saveShot(&window, DPC_ARTIFACT_DIR "/mainwindow-german.png"));
}

QTEST_MAIN(TestGermanWindow)
#include "tst_germanwindow.moc"
