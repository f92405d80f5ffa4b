#include "defectmatch.h"

#include <QSettings>
#include <QStringList>

namespace {

constexpr int kGridSize = 5;
constexpr int kListsPerPattern = 6;

// A value as the file would give it back. Right after the settings store wrote
// the defaults the object still holds them as set, e.g. the code as a number,
// which would otherwise convert to an empty list.
QStringList asStringList(const QVariant& value)
{
    if (value.userType() != QMetaType::QStringList && value.canConvert<QString>())
        return QStringList{value.toString()};
    return value.toStringList();
}

} // namespace

void DefectMatchPatterns::setupDefMatchSettings(QSettings* settings)
{
    if (!settings)
        return;
    settings->sync();
    m_patterns.clear();
    const QStringList groups = settings->childGroups();
    for (const QString& group : groups) {
        settings->beginGroup(group);
        const QStringList keys = settings->childKeys();
        if (keys.size() != kListsPerPattern) {
            settings->endGroup();
            m_patterns.clear();
            return;
        }
        QVector<QStringList> lists;
        lists.reserve(kListsPerPattern);
        for (const QString& key : keys)
            lists.append(asStringList(settings->value(key)));
        m_patterns.append(compile(lists));
        settings->endGroup();
    }
}

DefectMatchPatterns::Pattern DefectMatchPatterns::compile(const QVector<QStringList>& lists)
{
    Pattern p;
    p.tried = lists.size() >= kListsPerPattern && lists[0].size() >= kGridSize;
    if (!p.tried)
        return p;
    p.rowsComplete = true;
    p.bitsCanFit = true;
    for (int r = 0; r < kGridSize; ++r) {
        if (lists[r].size() < kGridSize) {
            p.rowsComplete = false;
            continue;
        }
        for (int c = 0; c < kGridSize; ++c) {
            const int i = r * kGridSize + c;
            bool ok = false;
            const int value = lists[r][c].toInt(&ok, 10);
            p.cares[i] = ok && value != -1;
            if (!p.cares[i])
                continue;
            p.cell[i] = value;
            p.careBits |= 1u << i;
            if (value == 1)
                p.oneBits |= 1u << i;
            else if (value != 0)
                p.bitsCanFit = false;
        }
    }
    const QStringList& codeList = lists[kListsPerPattern - 1];
    if (!codeList.isEmpty()) {
        bool ok = false;
        const int code = codeList.first().toInt(&ok, 10);
        p.code = ok ? code : -1;
    }
    return p;
}

int DefectMatchPatterns::match(const int grid[5][5]) const
{
    for (const Pattern& p : m_patterns) {
        if (!p.tried || !p.rowsComplete)
            continue;
        bool fits = true;
        for (int i = 0; i < kGridSize * kGridSize && fits; ++i)
            fits = !p.cares[i] || p.cell[i] == grid[i / kGridSize][i % kGridSize];
        if (fits)
            return p.code;
    }
    return -1;
}

int DefectMatchPatterns::matchBits(uint32_t grid) const
{
    for (const Pattern& p : m_patterns) {
        if (p.tried && p.rowsComplete && p.bitsCanFit && (grid & p.careBits) == p.oneBits)
            return p.code;
    }
    return -1;
}
