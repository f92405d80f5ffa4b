#include "defectmaptext.h"

#include <QIODevice>
#include <QString>
#include <QTextStream>
#include <QVector>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr int kFieldsPerLine = 3;
// Far above any entry line; longer lines are skipped piece by piece, as reading
// one whole could take all memory.
constexpr qint64 kMaxLineLength = 4096;

bool parseField(const QStringRef& text, uint32_t& value)
{
    bool ok = false;
    const qlonglong number = text.toLongLong(&ok, 10);
    if (!ok || number < std::numeric_limits<int32_t>::min() || number > std::numeric_limits<uint32_t>::max())
        return false;
    value = uint32_t(number);
    return true;
}

bool isBlankOrComment(const QString& line)
{
    const QStringRef trimmed = QStringRef(&line).trimmed();
    return trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#'));
}

// False for a line that gives no entry.
bool parseLine(const QString& line, t_defpix& entry)
{
    if (isBlankOrComment(line))
        return false;
    const QStringRef trimmed = QStringRef(&line).trimmed();
    const QVector<QStringRef> parts = trimmed.split(QLatin1Char(';'));
    return parts.size() == kFieldsPerLine && parseField(parts[0], entry.x) && parseField(parts[1], entry.y)
           && parseField(parts[2], entry.type);
}

} // namespace

QByteArray defectMapToText(const t_defpix* map, unsigned int count)
{
    QByteArray text;
    if (!map)
        return text;
    // "4294967295;4294967295;4294967295\n" is the longest line.
    text.reserve(int(std::min<qint64>(qint64(count) * 33, std::numeric_limits<int>::max())));
    for (unsigned int i = 0; i < count; ++i) {
        text += QByteArray::number(map[i].x);
        text += ';';
        text += QByteArray::number(map[i].y);
        text += ';';
        text += QByteArray::number(map[i].type);
        text += '\n';
    }
    return text;
}

bool readDefectMapText(QIODevice& device, DefectMapWriter& writer)
{
    DefectMapTextStats stats;
    return readDefectMapText(device, writer, stats);
}

bool readDefectMapText(QIODevice& device, DefectMapWriter& writer, DefectMapTextStats& stats)
{
    QTextStream stream(&device);
    QString line;
    bool insideLongLine = false;
    while (stream.readLineInto(&line, kMaxLineLength + 1)) {
        // A piece shorter than the limit stopped at the end of its line.
        const bool endsLine = line.size() <= kMaxLineLength;
        t_defpix entry;
        if (!insideLongLine && endsLine && parseLine(line, entry)) {
            ++stats.entryLines;
            if (!writer.add(entry.x, entry.y, entry.type))
                ++stats.dropped;
        } else if (!insideLongLine && !(endsLine && isBlankOrComment(line))) {
            ++stats.skippedLines; // a long line counts once, at its first piece
        }
        insideLongLine = !endsLine;
    }
    return stream.status() == QTextStream::Ok && stream.atEnd();
}
