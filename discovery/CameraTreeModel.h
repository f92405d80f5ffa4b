#pragma once

#include "CameraInfoMap.h"

#include <QAbstractItemModel>
#include <QStringList>
#include <QVector>

#include <memory>

class CameraTreeItem;

// The detected cameras grouped by transport layer, then by interface. Only
// camera rows can be selected, and only cameras with full access are enabled.
class CameraTreeModel : public QAbstractItemModel {
    Q_OBJECT

public:
    explicit CameraTreeModel(QObject* parent = nullptr);
    ~CameraTreeModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // The tree is read-only: nothing is stored.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    // Empty for an invalid index.
    QString GetCameraExtId(const QModelIndex& index) const;
    QString GetCameraName(const QModelIndex& index) const;

    // Replaces the whole tree.
    void Init(const QVector<CameraInfoMap>& cameras);
    // The camera with "Detected cameras" set to its display text.
    static CameraInfoMap AddDisplayedId(const CameraInfoMap& camera);

public slots:
    void OnCameraAdded(const CameraInfoMap& camera);
    void OnCameraRemoved(const CameraInfoMap& camera);
    void OnCameraAccessChanged(const CameraInfoMap& camera);

private:
    CameraTreeItem* itemAt(const QModelIndex& index) const;
    QModelIndex indexOf(CameraTreeItem* item) const;
    CameraTreeItem* findCamera(CameraTreeItem* branch, const QVariant& extendedId) const;
    // The child whose "Detected cameras" equals key, appended (and announced) when missing.
    CameraTreeItem* branchFor(CameraTreeItem* parent, const QVariant& key, const CameraInfoMap& data);

    std::unique_ptr<CameraTreeItem> m_root;
    const QStringList m_headerKeys;
};
