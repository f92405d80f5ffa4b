#include "CameraTreeModel.h"

#include <QAbstractItemModelTester>
#include <QtTest>

#include <memory>

namespace Key = CameraInfoKey;

namespace {

CameraInfoMap camera(const QString& transportLayer, const QString& interfaceId, const QString& id, bool fullAccess = true)
{
    return CameraInfoMap{{Key::ExtendedId, transportLayer + "::" + id}, {Key::CameraId, id},
                         {Key::ModelName, "M"}, {Key::CameraName, "Cam " + id}, {Key::SerialNumber, "S" + id},
                         {Key::Interface, interfaceId}, {Key::TransportLayer, transportLayer},
                         {Key::TlPath, "/opt/" + transportLayer + ".cti"}, {Key::FullAccess, fullAccess}};
}

const QVector<CameraInfoMap> kCameras = {camera("GigE", "eth0", "1"), camera("GigE", "eth0", "2"),
                                         camera("USB", "eth0", "3"), camera("GigE", "eth1", "4")};

// The tree as display texts, children in brackets.
QString dump(const QAbstractItemModel& model, const QModelIndex& parent = QModelIndex())
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        QString text = index.data().toString();
        if (model.rowCount(index) > 0)
            text += '[' + dump(model, index) + ']';
        rows << text;
    }
    return rows.join(',');
}

} // namespace

// Every test runs under the model tester, which checks the model's consistency
// after each change.
class TestCameraTreeModel : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void groupsByTransportLayerAndInterface_data();
    void groupsByTransportLayerAndInterface();
    void removalPrunesEmptyBranches();
    void onlyCamerasWithFullAccessAreEnabled();

private:
    std::unique_ptr<CameraTreeModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestCameraTreeModel::init()
{
    m_model = std::make_unique<CameraTreeModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
}

void TestCameraTreeModel::cleanup()
{
    m_tester.reset();
    m_model.reset();
}

void TestCameraTreeModel::groupsByTransportLayerAndInterface_data()
{
    QTest::addColumn<bool>("hotPlug");
    QTest::newRow("refresh") << false;
    QTest::newRow("hot-plug") << true;
}

void TestCameraTreeModel::groupsByTransportLayerAndInterface()
{
    QFETCH(bool, hotPlug);
    if (hotPlug) {
        for (const CameraInfoMap& info : kCameras)
            m_model->OnCameraAdded(info);
        // Reported again by a refresh that overlapped the plug event.
        m_model->OnCameraAdded(kCameras[0]);
    } else {
        m_model->Init(kCameras);
    }
    QCOMPARE(dump(*m_model), QString("GigE[eth0[M-S1(1),M-S2(2)],eth1[M-S4(4)]],USB[eth0[M-S3(3)]]"));
}

void TestCameraTreeModel::removalPrunesEmptyBranches()
{
    m_model->Init(kCameras);
    QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);

    m_model->OnCameraRemoved(camera("GigE", "eth0", "9"));
    m_model->OnCameraRemoved(CameraInfoMap{{Key::CameraName, "no ID"}});
    QCOMPARE(removed.count(), 0);

    m_model->OnCameraRemoved(camera("GigE", "eth0", "1"));
    QCOMPARE(dump(*m_model), QString("GigE[eth0[M-S2(2)],eth1[M-S4(4)]],USB[eth0[M-S3(3)]]"));
    m_model->OnCameraRemoved(camera("GigE", "eth0", "2"));
    QCOMPARE(dump(*m_model), QString("GigE[eth1[M-S4(4)]],USB[eth0[M-S3(3)]]"));

    removed.clear();
    m_model->OnCameraRemoved(CameraInfoMap{{Key::ExtendedId, "USB::3"}, {Key::CameraName, "Cam 3"}});
    QCOMPARE(dump(*m_model), QString("GigE[eth1[M-S4(4)]]"));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed[0][0].value<QModelIndex>(), QModelIndex());
    QCOMPARE(removed[0][1].toInt(), 1);

    m_model->OnCameraRemoved(camera("GigE", "eth1", "4"));
    QCOMPARE(m_model->rowCount(), 0);
    m_model->Init(kCameras);
    m_model->Init({}); // a refresh that found nothing
    QCOMPARE(m_model->rowCount(), 0);
}

void TestCameraTreeModel::onlyCamerasWithFullAccessAreEnabled()
{
    m_model->Init({camera("GigE", "eth0", "1", false), camera("GigE", "eth0", "2")});
    const QModelIndex transportLayer = m_model->index(0, 0);
    const QModelIndex interfaceRow = m_model->index(0, 0, transportLayer);
    const QModelIndex held = m_model->index(0, 0, interfaceRow);
    const QModelIndex free = m_model->index(1, 0, interfaceRow);

    QCOMPARE(m_model->flags(transportLayer) & Qt::ItemIsSelectable, Qt::NoItemFlags);
    QCOMPARE(m_model->flags(interfaceRow) & Qt::ItemIsSelectable, Qt::NoItemFlags);
    QCOMPARE(m_model->flags(held), Qt::ItemIsSelectable);
    QCOMPARE(m_model->flags(free), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    QCOMPARE(m_model->flags(QModelIndex()), Qt::NoItemFlags);

    QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    m_model->OnCameraAccessChanged(CameraInfoMap{{Key::ExtendedId, "GigE::1"}, {Key::FullAccess, true}});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed[0][0].value<QModelIndex>(), held);
    QCOMPARE(m_model->flags(held), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    m_model->OnCameraAccessChanged(CameraInfoMap{{Key::ExtendedId, "GigE::7"}, {Key::FullAccess, true}});
    QCOMPARE(changed.count(), 1);
}

QTEST_GUILESS_MAIN(TestCameraTreeModel)
#include "tst_cameratreemodel.moc"
