#include "CameraDiscoveryWidget.h"
#include "mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QTreeView>
#include <QtTest>

// Renders the main window with the simulated cameras listed and keeps the
// picture in the build tree, so that a person can judge the layout.
class TestMainWindowScreenshot : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cameraListIsRendered();
};

void TestMainWindowScreenshot::initTestCase()
{
    // The simulated cameras alone, without network discovery, so that the camera set is known.
    qputenv("ZEB_SIM_CAMERAS", "default");
    qunsetenv("ZEB_GEV_ADDRESSES");
}

void TestMainWindowScreenshot::cameraListIsRendered()
{
    MainWindow window;
    window.setDefaultWindowTitle(QStringLiteral("Corvane Optics Orvel Defect Pixel Correction Assistant"));
    window.resize(720, 600);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    auto* panel = window.findChild<CameraDiscoveryWidget*>();
    QTRY_VERIFY_WITH_TIMEOUT(panel->GetApiController() && !QApplication::overrideCursor(), 30000);
    const QTreeView* tree = panel->findChild<QTreeView*>(QStringLiteral("treeCameras"));
    QCOMPARE(tree->model()->rowCount(), 2);

    const QImage image = window.grab().toImage();
    QCOMPARE(image.size(), window.size() * window.devicePixelRatioF());
    QVERIFY(QDir().mkpath(QStringLiteral(DPC_ARTIFACT_DIR)));
    const QString path = QStringLiteral(DPC_ARTIFACT_DIR "/mainwindow-camera-list.png");
    QVERIFY(image.save(path));
    qInfo("Main window rendered to %s", qPrintable(path));
}

QTEST_MAIN(TestMainWindowScreenshot)
#include "tst_mainwindowscreenshot.moc"
