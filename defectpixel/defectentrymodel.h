#pragma once

#include "defectmap.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <vector>

// Which test of map generation flagged a map entry.
enum DefectSeriesFlag : unsigned char {
    FlaggedByNone = 0,
    FlaggedByDark = 1,
    FlaggedByBright = 2,
    FlaggedByBoth = 3,
};

// One map entry as the viewer lists it.
struct DefectEntryRow {
    t_defpix entry{};           // position and correction code
    unsigned char series = 0;   // DefectSeriesFlag
    int deviation = 0;          // grey levels from the local average, of the flagging series
    bool hasDeviation = false;  // false when no mean of the flagging series is at hand
};

// The entries of a map as a table: X, Y, code, series, deviation.
class DefectEntryModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { ColumnX, ColumnY, ColumnCode, ColumnSeries, ColumnDeviation, ColumnCount };
    static constexpr int SortRole = Qt::UserRole + 1; // numbers for sorting and filtering

    explicit DefectEntryModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    void setRows(std::vector<DefectEntryRow> rows);
    const std::vector<DefectEntryRow>& rows() const { return m_rows; }
    static QString seriesName(unsigned char series);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    std::vector<DefectEntryRow> m_rows;
};

// Keeps the rows of one series and one code; -1 keeps all.
class DefectEntryFilter : public QSortFilterProxyModel {
    Q_OBJECT

public:
    explicit DefectEntryFilter(QObject* parent = nullptr);
    void setSeries(int series);
    void setCode(long long code);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    int m_series = -1;
    long long m_code = -1;
};
