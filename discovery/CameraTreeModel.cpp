#include "CameraTreeModel.h"

#include "CameraTreeItem.h"

#include <QHash>

namespace Key = CameraInfoKey;

namespace {

const QString kDetectedCameras = QStringLiteral("Detected cameras");

// A single key, so that the model has exactly one column at the top.
CameraInfoMap rootData()
{
    return CameraInfoMap{{kDetectedCameras, QVariant()}};
}

CameraInfoMap transportLayerData(const CameraInfoMap& camera)
{
    return CameraInfoMap{{kDetectedCameras, camera.value(Key::TransportLayer)},
                         {Key::TlPath, camera.value(Key::TlPath)}};
}

CameraInfoMap interfaceData(const CameraInfoMap& camera)
{
    return CameraInfoMap{{kDetectedCameras, camera.value(Key::Interface)},
                         {Key::Interface, camera.value(Key::Interface)}};
}

} // namespace

CameraTreeModel::CameraTreeModel(QObject* parent)
    : QAbstractItemModel(parent)
    , m_root(std::make_unique<CameraTreeItem>(rootData()))
    , m_headerKeys{kDetectedCameras, Key::CameraName, Key::CameraId,
                   Key::SerialNumber, Key::FullAccess, Key::ExtendedId, Key::Interface, Key::TlPath}
{
}

CameraTreeModel::~CameraTreeModel() = default;

CameraTreeItem* CameraTreeModel::itemAt(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<CameraTreeItem*>(index.internalPointer()) : m_root.get();
}

QModelIndex CameraTreeModel::indexOf(CameraTreeItem* item) const
{
    if (!item || item == m_root.get())
        return QModelIndex();
    return createIndex(item->GetRow(), 0, item);
}

QModelIndex CameraTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return QModelIndex();
    CameraTreeItem* child = itemAt(parent)->GetChild(row);
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex CameraTreeModel::parent(const QModelIndex& index) const
{
    if (!index.isValid())
        return QModelIndex();
    return indexOf(itemAt(index)->ParentItem());
}

int CameraTreeModel::rowCount(const QModelIndex& parent) const
{
    if (parent.column() > 0)
        return 0;
    return itemAt(parent)->ChildCount();
}

int CameraTreeModel::columnCount(const QModelIndex& parent) const
{
    return itemAt(parent)->ColumnCount();
}

QVariant CameraTreeModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const CameraTreeItem* item = itemAt(index);
    if (role == Qt::DisplayRole)
        return item->GetData(m_headerKeys.value(index.column()));
    if (role == Qt::ToolTipRole) {
        QString tip;
        for (int i = 1; i < m_headerKeys.size(); ++i) {
            const QVariant value = item->GetData(m_headerKeys[i]);
            if (!value.isNull())
                tip += QStringLiteral("<B>%1</B>: %2<BR>").arg(m_headerKeys[i], value.toString());
        }
        return tip;
    }
    return QVariant();
}

QVariant CameraTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    // Section 0 deliberately has no text; the view hides its header anyway.
    if (role == Qt::DisplayRole && orientation == Qt::Horizontal && section > 0 && section < m_headerKeys.size())
        return m_headerKeys[section];
    return QVariant();
}

Qt::ItemFlags CameraTreeModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags result = QAbstractItemModel::flags(index);
    const CameraTreeItem* item = itemAt(index);
    if (item->ChildCount() > 0)
        return result & ~Qt::ItemIsSelectable;
    // A camera that another application holds shows greyed out and cannot be opened.
    result.setFlag(Qt::ItemIsEnabled, item->GetData(Key::FullAccess).toBool());
    return result | Qt::ItemIsSelectable;
}

bool CameraTreeModel::setData(const QModelIndex& index, const QVariant&, int)
{
    return index.isValid();
}

QString CameraTreeModel::GetCameraExtId(const QModelIndex& index) const
{
    return index.isValid() ? itemAt(index)->GetData(Key::ExtendedId).toString() : QString();
}

QString CameraTreeModel::GetCameraName(const QModelIndex& index) const
{
    return index.isValid() ? itemAt(index)->GetData(Key::CameraName).toString() : QString();
}

CameraInfoMap CameraTreeModel::AddDisplayedId(const CameraInfoMap& camera)
{
    CameraInfoMap result = camera;
    result.insert(kDetectedCameras, QStringLiteral("%1-%2(%3)").arg(camera.value(Key::ModelName).toString(),
                                                                    camera.value(Key::SerialNumber).toString(),
                                                                    camera.value(Key::CameraId).toString()));
    return result;
}

void CameraTreeModel::Init(const QVector<CameraInfoMap>& cameras)
{
    beginResetModel();
    m_root = std::make_unique<CameraTreeItem>(rootData());
    QHash<QString, CameraTreeItem*> transportLayers;
    QHash<QString, CameraTreeItem*> interfaces;
    for (const CameraInfoMap& camera : cameras) {
        const QString tlKey = camera.value(Key::TransportLayer).toString();
        CameraTreeItem*& transportLayer = transportLayers[tlKey];
        if (!transportLayer) {
            transportLayer = new CameraTreeItem(transportLayerData(camera));
            m_root->AppendChild(transportLayer);
        }
        // The same interface ID may show up under two transport layers.
        const QString interfaceKey = QStringLiteral("%1.%2").arg(camera.value(Key::Interface).toString(), tlKey);
        CameraTreeItem*& interfaceItem = interfaces[interfaceKey];
        if (!interfaceItem) {
            interfaceItem = new CameraTreeItem(interfaceData(camera));
            transportLayer->AppendChild(interfaceItem);
        }
        interfaceItem->AppendChild(new CameraTreeItem(AddDisplayedId(camera)));
    }
    endResetModel();
}

CameraTreeItem* CameraTreeModel::branchFor(CameraTreeItem* parent, const QVariant& key, const CameraInfoMap& data)
{
    for (int row = 0; row < parent->ChildCount(); ++row) {
        CameraTreeItem* child = parent->GetChild(row);
        if (child->GetData(kDetectedCameras) == key)
            return child;
    }
    const int row = parent->ChildCount();
    beginInsertRows(indexOf(parent), row, row);
    auto* branch = new CameraTreeItem(data);
    parent->AppendChild(branch);
    endInsertRows();
    return branch;
}

void CameraTreeModel::OnCameraAdded(const CameraInfoMap& camera)
{
    // A hot-plug report can overlap a refresh that already listed the camera.
    if (findCamera(m_root.get(), camera.value(Key::ExtendedId)))
        return;
    CameraTreeItem* transportLayer =
        branchFor(m_root.get(), camera.value(Key::TransportLayer), transportLayerData(camera));
    CameraTreeItem* interfaceItem = branchFor(transportLayer, camera.value(Key::Interface), interfaceData(camera));
    const int row = interfaceItem->ChildCount();
    beginInsertRows(indexOf(interfaceItem), row, row);
    interfaceItem->AppendChild(new CameraTreeItem(AddDisplayedId(camera)));
    endInsertRows();
}

CameraTreeItem* CameraTreeModel::findCamera(CameraTreeItem* branch, const QVariant& extendedId) const
{
    for (int row = 0; row < branch->ChildCount(); ++row) {
        CameraTreeItem* child = branch->GetChild(row);
        const QVariant id = child->GetData(Key::ExtendedId);
        if (child->ChildCount() == 0 && id.isValid() && id == extendedId)
            return child;
        if (CameraTreeItem* found = findCamera(child, extendedId))
            return found;
    }
    return nullptr;
}

void CameraTreeModel::OnCameraRemoved(const CameraInfoMap& camera)
{
    CameraTreeItem* removed = findCamera(m_root.get(), camera.value(Key::ExtendedId));
    if (!removed)
        return;
    // Branches left without cameras go too; one notification for the outermost row.
    while (removed->ParentItem() != m_root.get() && removed->ParentItem()->ChildCount() == 1)
        removed = removed->ParentItem();
    CameraTreeItem* parent = removed->ParentItem();
    const int row = removed->GetRow();
    beginRemoveRows(indexOf(parent), row, row);
    parent->RemoveChild(row);
    endRemoveRows();
}

void CameraTreeModel::OnCameraAccessChanged(const CameraInfoMap& camera)
{
    CameraTreeItem* item = findCamera(m_root.get(), camera.value(Key::ExtendedId));
    if (!item)
        return;
    item->SetData(Key::FullAccess, camera.value(Key::FullAccess));
    const QModelIndex first = indexOf(item);
    emit dataChanged(first, first.siblingAtColumn(columnCount(first.parent()) - 1));
}
