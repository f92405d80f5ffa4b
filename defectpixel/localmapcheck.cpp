#include "localmapcheck.h"

#include "defectmapcontainer.h"
#include "defectmaptext.h"

#include <QFile>

#include <unordered_set>

namespace {

// Far above any camera's map; a bigger file is not a map.
constexpr qint64 kMaxContainerBytes = 64 * 1024 * 1024;

void countOutside(LocalMapCheck& check, unsigned int width, unsigned int height)
{
    for (const t_defpix& entry : check.entries)
        check.outsideSensor += entry.x >= width || entry.y >= height;
}

} // namespace

LocalMapCheck checkLocalTextMap(const QString& fileName, unsigned int width, unsigned int height,
                                unsigned int capacity)
{
    LocalMapCheck check;
    QFile file(fileName);
    if (capacity == 0 || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return check;
    std::vector<t_defpix> map(capacity);
    unsigned int count = 0;
    DefectMapWriter writer(map.data(), capacity, count);
    DefectMapTextStats stats;
    check.readable = readDefectMapText(file, writer, stats);
    map.resize(count);
    check.entries = std::move(map);
    check.skippedLines = stats.skippedLines;
    check.beyondCapacity = stats.dropped;
    check.duplicates = stats.entryLines - stats.dropped - count;
    countOutside(check, width, height);
    return check;
}

LocalMapCheck checkLocalContainerMap(const QString& fileName, unsigned int revision, unsigned int width,
                                     unsigned int height)
{
    LocalMapCheck check;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMaxContainerBytes)
        return check;
    const QByteArray bytes = file.readAll();
    DefPixContainer container;
    if (!checkDefPixContainerBuffer(reinterpret_cast<const unsigned char*>(bytes.constData()),
                                    size_t(bytes.size()), revision, &container))
        return check;
    check.readable = true;
    // The camera takes the container as it is; repeated positions are only reported.
    std::unordered_set<uint64_t> seen;
    for (const t_defpix& entry : container.entries)
        check.duplicates += !seen.insert((uint64_t(entry.x) << 32) | entry.y).second;
    check.entries = std::move(container.entries);
    countOutside(check, width, height);
    return check;
}
