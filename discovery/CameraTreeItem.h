#pragma once

#include "CameraInfoMap.h"

#include <QVector>

// A node of the camera tree: the root, a transport layer, an interface or a
// camera. Owns its children.
class CameraTreeItem {
public:
    explicit CameraTreeItem(const CameraInfoMap& data, CameraTreeItem* parent = nullptr);
    ~CameraTreeItem();
    CameraTreeItem(const CameraTreeItem&) = delete;
    CameraTreeItem& operator=(const CameraTreeItem&) = delete;

    // Null when row is out of range.
    CameraTreeItem* GetChild(int row) const;
    int ChildCount() const;
    // One column per key of the item's map.
    int ColumnCount() const;
    QVariant GetData(const QString& key) const;
    void SetData(const QString& key, const QVariant& value);
    CameraTreeItem* ParentItem() const;
    // 0 for the root, -1 when the parent does not list this item.
    int GetRow() const;

    // Takes ownership and becomes the child's parent.
    void AppendChild(CameraTreeItem* child);
    // Removes and deletes the child; false when row is out of range.
    bool RemoveChild(int row);
    // Row of the child with the camera's "Extended ID", -1 if none.
    int GetChildRow(const CameraInfoMap& camera) const;
    bool RemoveCameraItem(const CameraInfoMap& camera);

    bool isChecked() const { return m_checked; }
    void setChecked(bool checked) { m_checked = checked; }

private:
    QVector<CameraTreeItem*> m_children;
    CameraInfoMap m_data;
    CameraTreeItem* m_parent;
    bool m_checked = false;
};
