#include "defectentrymodel.h"

#include <climits>

void DefectEntryModel::setRows(std::vector<DefectEntryRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

QString DefectEntryModel::seriesName(unsigned char series)
{
    switch (series) {
    case FlaggedByDark: return tr("Dark");
    case FlaggedByBright: return tr("Bright");
    case FlaggedByBoth: return tr("Both");
    default: return tr("-");
    }
}

int DefectEntryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int DefectEntryModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DefectEntryModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || size_t(index.row()) >= m_rows.size())
        return {};
    const DefectEntryRow& row = m_rows[size_t(index.row())];
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != SortRole)
        return {};
    switch (index.column()) {
    case ColumnX: return qulonglong(row.entry.x);
    case ColumnY: return qulonglong(row.entry.y);
    case ColumnCode: return qulonglong(row.entry.type);
    case ColumnSeries: return role == SortRole ? QVariant(int(row.series)) : QVariant(seriesName(row.series));
    case ColumnDeviation:
        if (!row.hasDeviation)
            return role == SortRole ? QVariant(INT_MIN) : QVariant(QString());
        return role == SortRole ? QVariant(row.deviation) : QVariant(QString::asprintf("%+d", row.deviation));
    }
    return {};
}

QVariant DefectEntryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case ColumnX: return tr("X");
    case ColumnY: return tr("Y");
    case ColumnCode: return tr("Code");
    case ColumnSeries: return tr("Series");
    case ColumnDeviation: return tr("Deviation");
    }
    return {};
}

DefectEntryFilter::DefectEntryFilter(QObject* parent) : QSortFilterProxyModel(parent)
{
    setSortRole(DefectEntryModel::SortRole);
}

void DefectEntryFilter::setSeries(int series)
{
    m_series = series;
    invalidateFilter();
}

void DefectEntryFilter::setCode(long long code)
{
    m_code = code;
    invalidateFilter();
}

bool DefectEntryFilter::filterAcceptsRow(int sourceRow, const QModelIndex&) const
{
    const auto* model = static_cast<const DefectEntryModel*>(sourceModel());
    if (!model || size_t(sourceRow) >= model->rows().size())
        return false;
    const DefectEntryRow& row = model->rows()[size_t(sourceRow)];
    return (m_series < 0 || row.series == m_series) && (m_code < 0 || row.entry.type == m_code);
}
