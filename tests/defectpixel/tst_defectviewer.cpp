#include "defectviewer.h"
#include "defectviewerbinding.h"
#include "panelfixture.h"
#include "uxchistogramview.h"
#include "uxcimageviewer.h"
#include "uxdefectpixelcorrection.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

#include <random>

namespace {

constexpr int kWidth = 400;
constexpr int kHeight = 300;
const QPoint kHot(50, 40);          // dark series only
const QPoint kCluster(200, 150);    // dark and bright series
const QPoint kDead(300, 100);       // bright series only

QString writeBitmap(const QString& dir, const QString& name, int level, const QVector<QPair<QPoint, int>>& defects)
{
    QImage image(kWidth, kHeight, QImage::Format_Grayscale8);
    std::mt19937 random{uint32_t(level)};
    std::uniform_int_distribution<int> noise(-2, 2);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            image.scanLine(y)[x] = uchar(level + noise(random));
    for (const auto& defect : defects)
        image.scanLine(defect.first.y())[defect.first.x()] = uchar(defect.second);
    const QString path = dir + "/" + name;
    image.convertToFormat(QImage::Format_Indexed8).save(path);
    return path;
}

QString writeText(const QString& path, const QString& text)
{
    return PanelFixture::writeFile(path, text.toUtf8()) ? path : QString();
}

} // namespace

class TestDefectViewer : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void viewerFollowsPanel();
    void downloadedSlotMapIsTheSecondOverlay();
};

void TestDefectViewer::viewerFollowsPanel()
{
    QTemporaryDir dir;
    UXCDefectPixelCorrection panel;
    DefectViewerBinding* binding = panel.viewerBinding();

    // Before any image: the empty state.
    binding->open(DefectViewer::Dark);
    DefectViewer* viewer = binding->viewer();
    QVERIFY(viewer && viewer->isVisible());
    QVERIFY(viewer->imageView()->image().isNull());
    QVERIFY(!viewer->loadOverlayFile(writeText(dir.filePath("early.txt"), "1;1;0\n")));
    QVERIFY(!viewer->message()->text().isEmpty());

    QVERIFY(panel.loadImagefromFile(
        writeBitmap(dir.path(), "dark.bmp", 10, {{kHot, 200}, {kCluster, 120}, {kCluster + QPoint(1, 0), 110},
                                                 {kCluster + QPoint(0, 1), 90}}), 0));
    QVERIFY(panel.loadImagefromFile(writeBitmap(dir.path(), "bright.bmp", 150, {{kDead, 20}, {kCluster, 250}}), 1));
    panel.enableButtons();
    QCOMPARE(viewer->imageView()->image().size(), QSize(kWidth, kHeight));
    panel.findChild<QPushButton*>("btnGenerateMap")->click();
    QVERIFY(panel.defectCount() > 3);

    // The table lists the map with the test that flagged each entry.
    DefectEntryModel* model = viewer->entryModel();
    QCOMPARE(model->rowCount(), int(panel.defectCount()));
    auto seriesOf = [model](QPoint p) {
        for (const DefectEntryRow& row : model->rows())
            if (row.entry.x == uint32_t(p.x()) && row.entry.y == uint32_t(p.y()))
                return int(row.series);
        return -1;
    };
    QCOMPARE(seriesOf(kHot), int(FlaggedByDark));
    QCOMPARE(seriesOf(kCluster), int(FlaggedByBoth));
    QCOMPARE(seriesOf(kDead), int(FlaggedByBright));

    // The histogram counts what generation flagged, and follows a threshold as it is typed.
    const DeviationStatistics& dark = viewer->statistics(DefectViewer::Dark);
    QCOMPARE(dark.flaggedCount(true, 16), uint64_t(panel.darkParams().defectCount));
    QVERIFY(viewer->flaggedLabel(DefectViewer::Dark)->text().contains(QString::number(panel.darkParams().defectCount)));
    panel.findChild<QLineEdit*>("txtAbsoluteThreshold")->setText("105");
    QVERIFY(viewer->flaggedLabel(DefectViewer::Dark)->text().contains("105: 2 pixels"));

    // Selecting a row of the filtered table centres the view on the entry.
    viewer->resize(1280, 800);
    QVERIFY(PanelFixture::saveShot(viewer, DPC_ARTIFACT_DIR "/defect-viewer-fit.png"));
    viewer->entryFilter()->setSeries(FlaggedByBoth);
    QCOMPARE(viewer->entryFilter()->rowCount(), 1);
    viewer->entryTable()->selectRow(0);
    QCOMPARE(viewer->imageView()->center(), QPointF(kCluster) + QPointF(0.5, 0.5));
    QCOMPARE(viewer->imageView()->zoom(), 8.0);

    // The readout under the cursor.
    UXCImageViewer* view = viewer->imageView();
    const QPoint at = view->imageToWidget(QPointF(kCluster) + QPointF(0.5, 0.5)).toPoint();
    QMouseEvent move(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(view, &move);
    const QString readout = viewer->readout()->text();
    QVERIFY2(readout.contains("x 200, y 150: mean 120") && readout.contains("dark test and bright test"),
             qPrintable(readout));
    QVERIFY(PanelFixture::saveShot(viewer, DPC_ARTIFACT_DIR "/defect-viewer-8x-cluster.png"));
    panel.findChild<QLineEdit*>("txtAbsoluteThreshold")->setText("16");
    viewer->findChild<QTabWidget*>()->setCurrentIndex(1);
    QVERIFY(PanelFixture::saveShot(viewer, DPC_ARTIFACT_DIR "/defect-viewer-histograms.png"));

    // A second map: two common entries, one of its own; a map for other images is refused.
    const QString second = writeText(dir.filePath("factory.txt"), QString("%1;%2;0\n%3;%4;0\n7;7;0\n")
                                                                      .arg(kHot.x()).arg(kHot.y())
                                                                      .arg(kDead.x()).arg(kDead.y()));
    QVERIFY(viewer->loadOverlayFile(second));
    const QString expected = QString("2 common, %1 only in the generated map, 1 only in").arg(panel.defectCount() - 2);
    QVERIFY2(viewer->comparison()->text().contains(expected), qPrintable(viewer->comparison()->text()));
    QVERIFY(!viewer->loadOverlayFile(writeText(dir.filePath("big.txt"), "5;5;0\n400;10;0\n")));
    QVERIFY(viewer->message()->text().contains("400, 10"));
    QVERIFY(PanelFixture::writeFile(dir.filePath("other.bin"), PanelFixture::containerBytes({{1, 1, 0}}, 640, 640 * 480)));
    QVERIFY(!viewer->loadOverlayFile(dir.filePath("other.bin")));
    QVERIFY(viewer->comparison()->text().contains(expected)); // the accepted map stays

    // A reset of the panel empties the viewer.
    panel.Reset();
    QVERIFY(viewer->imageView()->image().isNull());
    QCOMPARE(model->rowCount(), 0);
    QVERIFY(viewer->comparison()->text().isEmpty());
}

void TestDefectViewer::downloadedSlotMapIsTheSecondOverlay()
{
    using namespace PanelFixture;
    Session session;
    if (!session.start())
        QSKIP("the simulated cameras are not available");
    QTemporaryDir dir;
    Rig rig(session);
    UXCDefectPixelCorrection& panel = rig.panel;
    QVERIFY(rig.bind(kRegisterMono));
    for (const QString& path : captureSeries(panel.camera(), dir.path(), "dark", 2, false))
        QVERIFY(panel.loadImagefromFile(path, 0));
    panel.enableButtons();
    click(panel, "btnGenerateMap");
    panel.viewerBinding()->open(DefectViewer::Dark);
    DefectViewer* viewer = panel.viewerBinding()->viewer();
    QVERIFY(viewer->comparison()->text().isEmpty());

    // The factory map, read back from the camera, lies over the freshly found defects.
    activateSlot(panel, 0);
    rig.dialogs.saveFileName = QStringList{dir.filePath("factory.txt")};
    click(panel, "btnDownloadMapToFile");
    QVERIFY2(viewer->comparison()->text().contains("common"), qPrintable(viewer->comparison()->text()));
    QVERIFY(rig.release());
}

QTEST_MAIN(TestDefectViewer)
#include "tst_defectviewer.moc"
