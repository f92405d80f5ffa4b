#include "CameraTreeItem.h"

namespace {
}

CameraTreeItem::CameraTreeItem(const CameraInfoMap& data, CameraTreeItem* parent)
    : m_data(data)
    , m_parent(parent)
{
}

CameraTreeItem::~CameraTreeItem()
{
    qDeleteAll(m_children);
}

CameraTreeItem* CameraTreeItem::GetChild(int row) const
{
    return m_children.value(row, nullptr);
}

int CameraTreeItem::ChildCount() const
{
    return m_children.size();
}

int CameraTreeItem::ColumnCount() const
{
    return m_data.size();
}

QVariant CameraTreeItem::GetData(const QString& key) const
{
    return m_data.value(key);
}

void CameraTreeItem::SetData(const QString& key, const QVariant& value)
{
    m_data.insert(key, value);
}

CameraTreeItem* CameraTreeItem::ParentItem() const
{
    return m_parent;
}

int CameraTreeItem::GetRow() const
{
    if (!m_parent)
        return 0;
    return m_parent->m_children.indexOf(const_cast<CameraTreeItem*>(this));
}

void CameraTreeItem::AppendChild(CameraTreeItem* child)
{
    child->m_parent = this;
    m_children.append(child);
}

bool CameraTreeItem::RemoveChild(int row)
{
    if (row < 0 || row >= m_children.size())
        return false;
    delete m_children.takeAt(row);
    return true;
}

int CameraTreeItem::GetChildRow(const CameraInfoMap& camera) const
{
    const QVariant id = camera.value(CameraInfoKey::ExtendedId);
    for (int row = 0; row < m_children.size(); ++row) {
        if (m_children[row]->GetData(CameraInfoKey::ExtendedId) == id)
            return row;
    }
    return -1;
}

bool CameraTreeItem::RemoveCameraItem(const CameraInfoMap& camera)
{
    return RemoveChild(GetChildRow(camera));
}
