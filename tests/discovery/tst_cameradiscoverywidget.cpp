#include "CameraDiscoveryWidget.h"

#include <ZebCPP.h>
#include <sim/simcontrol.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeView>
#include <QtTest>

#include <memory>

using namespace ZebCPP;

namespace {

// The SDK starts and every refresh runs on worker threads of a machine shared by sanitized builds.
constexpr int kTimeoutMs = 30000;

const QString kMono = QStringLiteral("kvd123MXGE-KV1230001(DEV_KV1230001)");
const QString kColour = QStringLiteral("pmq5CCX-PM5000002(DEV_PM5000002)");
const QString kRegister = QStringLiteral("ryn1300MGE-RY1300003(DEV_RY1300003)");
const QString kHeld = QStringLiteral("tb2MCX-TB2000005(DEV_TB2000005)");

std::string cameraJson(const std::string& id, const std::string& model)
{
    return R"({ "id": ")" + id + R"(", "model": ")" + model + R"(", "serial": ")" + id
        + R"(", "name": "Plugged", "interface": "sim-usb0", "sensor": { "width": 64, "height": 48 } })";
}

// The camera rows' display texts, depth first.
QStringList cameraRows(const QAbstractItemModel* model, const QModelIndex& parent = QModelIndex())
{
    QStringList rows;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        rows << (model->hasChildren(index) ? cameraRows(model, index) : QStringList{index.data().toString()});
    }
    return rows;
}

} // namespace

class TestCameraDiscoveryWidget : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void compatibilityRule_data();
    void compatibilityRule();
    void listFollowsFilterAndAccess();
    void emptyListLabelNamesTheFilter();
    void refreshAskedDuringARefreshFollowsIt();
    void hotPluggedIncompatibleCameraStaysHidden();
    void onlyCameraRowsOpenAndAnyUnplugReturnsToChoosing();
    void sdkStartFailureIsReported();

private:
    template <typename T>
    T* child(const char* name) const { return m_panel->findChild<T*>(QLatin1String(name)); }
    QTreeView* tree() const { return child<QTreeView>("treeCameras"); }
    QModelIndex row(const QString& text) const
    {
        const QAbstractItemModel* model = tree()->model();
        return model->match(model->index(0, 0), Qt::DisplayRole, text, 1, Qt::MatchRecursive).value(0);
    }
    // The controller exists and no refresh runs.
    bool isIdle() const { return m_panel->GetApiController() && !QApplication::overrideCursor(); }

    std::unique_ptr<CameraDiscoveryWidget> m_panel;
};

void TestCameraDiscoveryWidget::initTestCase()
{
    // The simulated cameras alone, without network discovery, so that the camera set is known.
    qputenv("ZEB_SIM_CAMERAS", "default");
    qunsetenv("ZEB_GEV_ADDRESSES");
}

void TestCameraDiscoveryWidget::init()
{
    m_panel = std::make_unique<CameraDiscoveryWidget>();
    m_panel->resize(500, 400);
    m_panel->show();
}

void TestCameraDiscoveryWidget::cleanup()
{
    m_panel.reset();
    // The SDK is down and every wait cursor given back, even when workers were still running.
    uint32_t count = 0;
    QCOMPARE(ZebSystem::GetInstance().GetCameras(nullptr, count), ZebErrorApiNotStarted);
    QVERIFY(!QApplication::overrideCursor());
    qputenv("ZEB_SIM_CAMERAS", "default");
}

void TestCameraDiscoveryWidget::compatibilityRule_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("family");
    QTest::newRow("three digits") << "kvd123MXGE" << "kvd";
    QTest::newRow("two digits") << "kvd12MXGE" << "";
    QTest::newRow("start-anchored takes a suffix") << "kvd123C100GE_RDMA-X" << "kvd";
    QTest::newRow("not at the start") << "Xkvd123MXGE" << "";
    QTest::newRow("end-anchored") << "pmq5MCX" << "pmq";
    QTest::newRow("end-anchored with suffix") << "pmq5MCXA" << "";
    QTest::newRow("ryn with anything") << "ryn-anything 12" << "ryn";
    QTest::newRow("QD3 is not QD") << "QD3-100" << "QD3";
}

void TestCameraDiscoveryWidget::compatibilityRule()
{
    QFETCH(QString, model);
    QFETCH(QString, family);
    QString found = QStringLiteral("left over");
    QCOMPARE(IsCameraModelCompatible(model, found), !family.isEmpty());
    QCOMPARE(found, family);
}

void TestCameraDiscoveryWidget::listFollowsFilterAndAccess()
{
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QCOMPARE(cameraRows(tree()->model()), (QStringList{kMono, kRegister, kColour, kHeld}));
    QVERIFY(child<QLabel>("lblRefreshInfo")->isHidden());

    // Held by another application: greyed out, cannot be chosen, until it is released.
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, tree()->visualRect(row(kHeld)).center());
    QVERIFY(!child<QPushButton>("btnOpenCamera")->isEnabled());
    QCOMPARE(SimControl::SetPermittedAccess("TB2000005", AccessModeFull), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(row(kHeld).flags() & Qt::ItemIsEnabled, kTimeoutMs);

    child<QCheckBox>("chkCompatibleOnly")->setChecked(false);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QVERIFY(cameraRows(tree()->model()).contains("kvd12MXGE-KV0120004(DEV_KV0120004)"));
}

void TestCameraDiscoveryWidget::emptyListLabelNamesTheFilter()
{
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    for (const char* serial : {"KV1230001", "PM5000002", "RY1300003", "KV0120004", "TB2000005"})
        QCOMPARE(SimControl::UnplugCamera(serial), ZebErrorSuccess);
    QTRY_COMPARE_WITH_TIMEOUT(tree()->model()->rowCount(), 0, kTimeoutMs);
    QCOMPARE(child<QLabel>("lblRefreshInfo")->text(), QStringLiteral("No compatible cameras found"));

    child<QCheckBox>("chkCompatibleOnly")->setChecked(false);
    QCOMPARE(child<QLabel>("lblRefreshInfo")->text(), QStringLiteral("Refresh in progress..."));
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QCOMPARE(child<QLabel>("lblRefreshInfo")->text(), QStringLiteral("No cameras found"));
}

void TestCameraDiscoveryWidget::refreshAskedDuringARefreshFollowsIt()
{
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QSignalSpy resets(tree()->model(), &QAbstractItemModel::modelReset);
    auto* refresh = child<QPushButton>("btnRefresh");
    // The first refresh cannot end before the event loop runs again: the filter
    // changes under it and one more refresh is asked for, and both join one.
    QTest::mouseClick(refresh, Qt::LeftButton);
    child<QCheckBox>("chkCompatibleOnly")->setChecked(false);
    QTest::mouseClick(refresh, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QCOMPARE(resets.count(), 4); // two refreshes, each clearing and filling
    QCOMPARE(cameraRows(tree()->model()).size(), 5);

    // Destroyed with a refresh on a worker: cleanup() checks it waited and shut down.
    QTest::mouseClick(refresh, Qt::LeftButton);
}

void TestCameraDiscoveryWidget::hotPluggedIncompatibleCameraStaysHidden()
{
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    // Notifications arrive in order: once the second camera shows, the first was handled.
    QCOMPARE(SimControl::PlugCamera(cameraJson("OLD1", "kvd12MXGE")), ZebErrorSuccess);
    QCOMPARE(SimControl::PlugCamera(cameraJson("NEW1", "kvd456CCX")), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(row("kvd456CCX-NEW1(NEW1)").isValid(), kTimeoutMs);
    QVERIFY(!row("kvd12MXGE-OLD1(OLD1)").isValid());
}

void TestCameraDiscoveryWidget::onlyCameraRowsOpenAndAnyUnplugReturnsToChoosing()
{
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QSignalSpy opened(m_panel.get(), &CameraDiscoveryWidget::CameraOpened);
    // Inner branch first: a double click collapses the branch.
    for (const QString& text : {QStringLiteral("sim-eth0"), QStringLiteral("GigE Vision")}) {
        const QPoint centre = tree()->visualRect(row(text)).center();
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, centre);
        QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, centre);
        tree()->setCurrentIndex(row(text));
        QVERIFY(!child<QPushButton>("btnOpenCamera")->isEnabled());
        m_panel->OnCameraStatusChanged(true);
    }
    QCOMPARE(opened.count(), 0);

    tree()->expandAll();
    const QPoint colour = tree()->visualRect(row(kColour)).center();
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, colour);
    QVERIFY(child<QPushButton>("btnOpenCamera")->isEnabled());
    QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, colour);
    QCOMPARE(opened.count(), 1);
    QCOMPARE(opened[0][0].toString(), QStringLiteral("SimU3V::DEV_PM5000002"));
    QCOMPARE(child<QStackedWidget>("stackedWidget")->currentIndex(), 1);
    QVERIFY(!tree()->isEnabled());

    // Any unplug returns to choosing: the window decides whether its camera left.
    QSignalSpy removed(m_panel.get(), &CameraDiscoveryWidget::CameraRemoved);
    QCOMPARE(SimControl::UnplugCamera("KV1230001"), ZebErrorSuccess);
    QVERIFY(removed.wait(kTimeoutMs));
    QCOMPARE(removed[0], (QVariantList{"SimGEV::DEV_KV1230001", "Inspection mono"}));
    QCOMPARE(cameraRows(tree()->model()), (QStringList{kRegister, kColour, kHeld}));
    QCOMPARE(child<QStackedWidget>("stackedWidget")->currentIndex(), 0);
    QVERIFY(tree()->isEnabled());
}

void TestCameraDiscoveryWidget::sdkStartFailureIsReported()
{
    // init() started the SDK with the built-in set; this panel starts it with a missing file.
    m_panel.reset();
    qputenv("ZEB_SIM_CAMERAS", "/nonexistent/cameras.json");
    m_panel = std::make_unique<CameraDiscoveryWidget>();
    QSignalSpy errors(m_panel.get(), &CameraDiscoveryWidget::ApiError);
    // Before the SDK is up there is nothing to switch.
    child<QCheckBox>("chkAutoRefresh")->setChecked(false);

    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    qputenv("ZEB_SIM_CAMERAS", "default");
    QCOMPARE(errors.count(), 2);
    QCOMPARE(errors[0][0].toString(), QStringLiteral("Failed to disable the automatic refresh of cameras"));
    QCOMPARE(errors[1][0].toString(), QStringLiteral("Failed to start the camera SDK (error: Not found.)"));
    QCOMPARE(child<QLabel>("lblRefreshInfo")->text(), QStringLiteral("No compatible cameras found"));
}

QTEST_MAIN(TestCameraDiscoveryWidget)
#include "tst_cameradiscoverywidget.moc"
