#pragma once

#include "defectmap.h"

#include <QByteArray>

class QIODevice;

// The text form of a map: one line "x;y;type\n" per entry, in map order, each
// number in unsigned decimal. An empty map is an empty text.
QByteArray defectMapToText(const t_defpix* map, unsigned int count);

// Reads map lines from the device to its end and adds each accepted entry
// through the writer: a position already in the map keeps its first entry and
// entries beyond the capacity are dropped, silently. Accepts more than the
// writer produces: lines are trimmed; blank lines and lines starting with "#"
// are skipped; any other line must have exactly three ";"-separated parts, each
// a base-10 integer from -2^31 to 2^32 - 1, or it is skipped. Negative numbers
// become their unsigned 32-bit value (a hand-written -1 reads as 4294967295).
// True when the device was read to its end.
bool readDefectMapText(QIODevice& device, DefectMapWriter& writer);

// What a read made of the lines, for telling the user before a map is used.
struct DefectMapTextStats {
    unsigned int entryLines = 0;   // lines that gave an entry (duplicates included)
    unsigned int skippedLines = 0; // malformed lines (blank and "#" lines are not counted)
    unsigned int dropped = 0;      // entries that did not fit the capacity
};

bool readDefectMapText(QIODevice& device, DefectMapWriter& writer, DefectMapTextStats& stats);
