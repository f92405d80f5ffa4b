#include "ApiController.h"
#include "CameraObserver.h"
#include "CameraDiscoveryWidget.h"

#include <ZebCPP.h>
#include <sim/simcontrol.h>

#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTemporaryDir>
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
const QString kIncompatible = QStringLiteral("kvd12MXGE-KV0120004(DEV_KV0120004)");
const QString kHeld = QStringLiteral("tb2MCX-TB2000005(DEV_TB2000005)");

std::string cameraJson(const std::string& id, const std::string& model)
{
    return R"({ "id": ")" + id + R"(", "model": ")" + model + R"(", "serial": ")" + id
        + R"(", "name": "Plugged", "interface": "sim-usb0", "bigEndian": false,
        "sensor": { "width": 64, "height": 48, "seed": 1 } })";
}

// The camera rows' display texts, depth first.
QStringList cameraRows(const QAbstractItemModel* model, const QModelIndex& parent = QModelIndex())
{
    QStringList rows;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        if (model->hasChildren(index))
            rows << cameraRows(model, index);
        else
            rows << index.data().toString();
    }
    return rows;
}

QModelIndex findRow(const QAbstractItemModel* model, const QString& text)
{
    const QModelIndexList found =
        model->match(model->index(0, 0), Qt::DisplayRole, text, 1, Qt::MatchExactly | Qt::MatchRecursive);
    return found.value(0);
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

    void listsCompatibleCamerasAndHeldOnesDisabled();
    void emptyListLabelNamesTheFilter();
    void refreshPressedDuringRefreshDoesNothing();
    void destroyedWhileWorkersRunDoesNotCrash();
    void hotPlugFollowsFilterAndAutoRefresh();
    void unpluggedCameraLeavesListAndReturnsToChoosing();
    void onlyCameraRowsCanBeOpened();
    void sdkStartFailureIsReported();

private:
    void createPanel();
    // The controller exists and no refresh runs.
    bool isIdle() const { return m_panel->GetApiController() && !QApplication::overrideCursor(); }

    template <typename T>
    T* child(const char* name) const
    {
        return m_panel->findChild<T*>(QLatin1String(name));
    }
    QTreeView* tree() const { return child<QTreeView>("treeCameras"); }
    QAbstractItemModel* model() const { return tree()->model(); }
    QLabel* infoLabel() const { return child<QLabel>("lblRefreshInfo"); }
    QPushButton* openButton() const { return child<QPushButton>("btnOpenCamera"); }

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
    QVERIFY(!QApplication::overrideCursor());
}

void TestCameraDiscoveryWidget::cleanup()
{
    m_panel.reset();
    // The destructor shut the SDK down and gave back every wait cursor.
    uint32_t count = 0;
    QCOMPARE(ZebSystem::GetInstance().GetCameras(nullptr, count), ZebErrorApiNotStarted);
    QVERIFY(!QApplication::overrideCursor());
    qputenv("ZEB_SIM_CAMERAS", "default");
}

void TestCameraDiscoveryWidget::createPanel()
{
    m_panel = std::make_unique<CameraDiscoveryWidget>();
    m_panel->resize(500, 400);
    m_panel->show();
}

void TestCameraDiscoveryWidget::compatibilityRule_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("family");
    QTest::newRow("three digits") << "kvd123MXGE" << "kvd";
    QTest::newRow("two digits") << "kvd12MXGE" << "";
    QTest::newRow("suffix after a start-anchored pattern") << "kvd123C100GE_RDMA-X" << "kvd";
    QTest::newRow("not at the start") << "Xkvd123MXGE" << "";
    QTest::newRow("case matters") << "KVD123MXGE" << "";
    QTest::newRow("end-anchored") << "pmq5MCX" << "pmq";
    QTest::newRow("end-anchored with suffix") << "pmq5MCXA" << "";
    QTest::newRow("ryn alone") << "ryn" << "ryn";
    QTest::newRow("ryn with anything") << "ryn-anything 12" << "ryn";
    QTest::newRow("version with dots") << "Vetrix2.1MCX12" << "Vetrix";
    QTest::newRow("optional colour suffix") << "T-Z826-C" << "T-Z826";
    QTest::newRow("colour suffix only") << "T-Z826-CX" << "";
    QTest::newRow("QD3 is not QD") << "QD3-100" << "QD3";
    QTest::newRow("empty") << "" << "";
}

void TestCameraDiscoveryWidget::compatibilityRule()
{
    QFETCH(QString, model);
    QFETCH(QString, family);
    QString found = QStringLiteral("left over");
    QCOMPARE(IsCameraModelCompatible(model, found), !family.isEmpty());
    QCOMPARE(found, family);
}

void TestCameraDiscoveryWidget::listsCompatibleCamerasAndHeldOnesDisabled()
{
    createPanel();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QCOMPARE(cameraRows(model()), (QStringList{kMono, kRegister, kColour, kHeld}));
    QVERIFY(infoLabel()->isHidden());
    QVERIFY(tree()->isExpanded(findRow(model(), QStringLiteral("GigE Vision"))));

    const QModelIndex held = findRow(model(), kHeld);
    QVERIFY(!(held.flags() & Qt::ItemIsEnabled));
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, tree()->visualRect(held).center());
    QVERIFY(!openButton()->isEnabled());
    QCOMPARE(SimControl::SetPermittedAccess("TB2000005", AccessModeFull), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(findRow(model(), kHeld).flags() & Qt::ItemIsEnabled, kTimeoutMs);

    child<QCheckBox>("chkCompatibleOnly")->setChecked(false);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QCOMPARE(cameraRows(model()), (QStringList{kMono, kIncompatible, kRegister, kColour, kHeld}));
}

void TestCameraDiscoveryWidget::emptyListLabelNamesTheFilter()
{
    createPanel();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    for (const char* serial : {"KV1230001", "PM5000002", "RY1300003", "KV0120004", "TB2000005"})
        QCOMPARE(SimControl::UnplugCamera(serial), ZebErrorSuccess);
    QTRY_COMPARE_WITH_TIMEOUT(model()->rowCount(), 0, kTimeoutMs);
    QVERIFY(infoLabel()->isVisible());
    QCOMPARE(infoLabel()->text(), QStringLiteral("No compatible cameras found"));

    child<QCheckBox>("chkCompatibleOnly")->setChecked(false);
    QCOMPARE(infoLabel()->text(), QStringLiteral("Refresh in progress..."));
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QCOMPARE(infoLabel()->text(), QStringLiteral("No cameras found"));

    QCOMPARE(SimControl::ReplugCamera("KV0120004"), ZebErrorSuccess);
    QTRY_COMPARE_WITH_TIMEOUT(cameraRows(model()), QStringList{kIncompatible}, kTimeoutMs);
    QVERIFY(infoLabel()->isHidden());
}

void TestCameraDiscoveryWidget::refreshPressedDuringRefreshDoesNothing()
{
    createPanel();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QSignalSpy resets(model(), &QAbstractItemModel::modelReset);
    auto* refresh = child<QPushButton>("btnRefresh");

    // The first refresh cannot end before the event loop runs again.
    QTest::mouseClick(refresh, Qt::LeftButton);
    QTest::mouseClick(refresh, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    // One refresh: cleared once, filled once.
    QCOMPARE(resets.count(), 2);
    QCOMPARE(cameraRows(model()).size(), 4);
}

void TestCameraDiscoveryWidget::destroyedWhileWorkersRunDoesNotCrash()
{
    createPanel();
    m_panel.reset(); // while the SDK starts
    QVERIFY(!QApplication::overrideCursor());

    createPanel();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QTest::mouseClick(child<QPushButton>("btnRefresh"), Qt::LeftButton);
    QVERIFY(QApplication::overrideCursor());
    m_panel.reset(); // while a refresh runs; cleanup() checks the SDK is down
}

void TestCameraDiscoveryWidget::hotPlugFollowsFilterAndAutoRefresh()
{
    createPanel();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);

    // Notifications arrive in order: once the second camera shows, the first was handled.
    QCOMPARE(SimControl::PlugCamera(cameraJson("DEV_OLD1", "kvd12MXGE")), ZebErrorSuccess);
    QCOMPARE(SimControl::PlugCamera(cameraJson("DEV_NEW1", "kvd456CCX")), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(findRow(model(), "kvd456CCX-DEV_NEW1(DEV_NEW1)").isValid(), kTimeoutMs);
    QVERIFY(!findRow(model(), "kvd12MXGE-DEV_OLD1(DEV_OLD1)").isValid());

    QSignalSpy errors(m_panel.get(), &CameraDiscoveryWidget::ApiError);
    child<QCheckBox>("chkAutoRefresh")->setChecked(false);
    // The SDK notifies asynchronously: a witness tells when the plug was announced.
    auto witness = std::make_shared<CameraObserver>();
    int announced = 0;
    connect(witness.get(), &CameraObserver::CameraListChangedSignal, this, [&announced] { ++announced; },
            Qt::QueuedConnection);
    QCOMPARE(ZebSystem::GetInstance().RegisterCameraListObserver(witness), ZebErrorSuccess);
    QCOMPARE(SimControl::PlugCamera(cameraJson("DEV_NEW2", "kvd789CCX")), ZebErrorSuccess);
    QTRY_COMPARE_WITH_TIMEOUT(announced, 1, kTimeoutMs);
    QCOMPARE(ZebSystem::GetInstance().UnregisterCameraListObserver(witness), ZebErrorSuccess);
    child<QCheckBox>("chkAutoRefresh")->setChecked(true);
    QCOMPARE(SimControl::PlugCamera(cameraJson("DEV_NEW3", "ryn9")), ZebErrorSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(findRow(model(), "ryn9-DEV_NEW3(DEV_NEW3)").isValid(), kTimeoutMs);
    QVERIFY(!findRow(model(), "kvd789CCX-DEV_NEW2(DEV_NEW2)").isValid());
    QCOMPARE(errors.count(), 0);
}

void TestCameraDiscoveryWidget::unpluggedCameraLeavesListAndReturnsToChoosing()
{
    createPanel();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    tree()->setCurrentIndex(findRow(model(), kColour));
    m_panel->OnCameraStatusChanged(true);
    QCOMPARE(child<QStackedWidget>("stackedWidget")->currentIndex(), 1);
    QVERIFY(!tree()->isEnabled());

    QSignalSpy removed(m_panel.get(), &CameraDiscoveryWidget::CameraRemoved);
    QCOMPARE(SimControl::UnplugCamera("KV1230001"), ZebErrorSuccess);
    QVERIFY(removed.wait(kTimeoutMs));
    QCOMPARE(removed[0][0].toString(), QStringLiteral("SimGEV::DEV_KV1230001"));
    QCOMPARE(removed[0][1].toString(), QStringLiteral("Inspection mono"));
    QCOMPARE(cameraRows(model()), (QStringList{kRegister, kColour, kHeld}));
    // Any removal returns to choosing; the window decides whether its camera left.
    QCOMPARE(child<QStackedWidget>("stackedWidget")->currentIndex(), 0);
    QVERIFY(tree()->isEnabled());
}

void TestCameraDiscoveryWidget::onlyCameraRowsCanBeOpened()
{
    createPanel();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QSignalSpy opened(m_panel.get(), &CameraDiscoveryWidget::CameraOpened);
    QSignalSpy closed(m_panel.get(), &CameraDiscoveryWidget::CameraClosed);

    // Inner branch first: a double click collapses the branch.
    for (const QString& text : {QStringLiteral("sim-eth0"), QStringLiteral("GigE Vision")}) {
        const QModelIndex branch = findRow(model(), text);
        const QPoint centre = tree()->visualRect(branch).center();
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, centre);
        QVERIFY(!openButton()->isEnabled());
        QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, centre);
        tree()->setCurrentIndex(branch);
        QVERIFY(!openButton()->isEnabled());
        m_panel->OnCameraStatusChanged(true);
        QCOMPARE(opened.count(), 0);
    }

    tree()->expandAll();
    const QPoint camera = tree()->visualRect(findRow(model(), kMono)).center();
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, camera);
    QVERIFY(openButton()->isEnabled());
    QTest::mouseClick(openButton(), Qt::LeftButton);
    QCOMPARE(opened.count(), 1);
    QCOMPARE(opened[0][0].toString(), QStringLiteral("SimGEV::DEV_KV1230001"));
    QCOMPARE(child<QStackedWidget>("stackedWidget")->currentIndex(), 1);
    QVERIFY(!tree()->isEnabled());

    QTest::mouseClick(child<QPushButton>("btnCloseCamera"), Qt::LeftButton);
    QCOMPARE(closed.count(), 1);
    QCOMPARE(closed[0][0].toString(), QStringLiteral("SimGEV::DEV_KV1230001"));
    QCOMPARE(closed[0][1].toString(), QStringLiteral("Inspection mono"));
    QCOMPARE(child<QStackedWidget>("stackedWidget")->currentIndex(), 0);

    QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, camera);
    QCOMPARE(opened.count(), 2);
}

void TestCameraDiscoveryWidget::sdkStartFailureIsReported()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    qputenv("ZEB_SIM_CAMERAS", dir.filePath("missing.json").toUtf8());
    createPanel();
    QSignalSpy errors(m_panel.get(), &CameraDiscoveryWidget::ApiError);
    // Before the SDK is up there is nothing to switch.
    child<QCheckBox>("chkAutoRefresh")->setChecked(false);
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors[0][0].toString(), QStringLiteral("Failed to disable the automatic refresh of cameras"));

    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), kTimeoutMs);
    QCOMPARE(errors.count(), 2);
    QCOMPARE(errors[1][0].toString(), QStringLiteral("Failed to start the camera SDK (error: Not found.)"));
    QCOMPARE(infoLabel()->text(), QStringLiteral("No compatible cameras found"));
}

QTEST_MAIN(TestCameraDiscoveryWidget)
#include "tst_cameradiscoverywidget.moc"
