#pragma once

#include <QVector>

#include <array>
#include <cstdint>

class QSettings;

// The table of 5 x 5 neighbourhood patterns that gives each defect pixel its
// correction code. Rows of a grid are y - 2 ... y + 2, columns x - 2 ... x + 2;
// a cell is 1 for a defect or a position outside the sensor, 0 for a good pixel.
class DefectMatchPatterns {
public:
    // Reloads the table from the pattern file, one pattern per group in the order
    // the groups are listed. A group without exactly six keys empties the whole
    // table: a half-read table would give codes the user never meant. A null
    // settings object leaves the table as it is.
    void setupDefMatchSettings(QSettings* settings);

    // The code of the first pattern that fits the grid, or -1 when none fits or
    // the fitting pattern's code is not a number.
    int match(const int grid[5][5]) const;

    // match() for a grid of zeros and ones given as 25 bits, bit r * 5 + c for
    // grid[r][c]. Used by the classification, which looks at thousands of grids.
    int matchBits(uint32_t grid) const;

    bool isEmpty() const { return m_patterns.isEmpty(); }
    int count() const { return m_patterns.size(); }

private:
    // One group of the file, converted once when the file is read.
    struct Pattern {
        bool tried = false;             // six lists and a full first row
        bool rowsComplete = false;      // no later row is short (a short row never fits)
        std::array<int, 25> cell{};     // wanted value per cell where cares[i]
        std::array<bool, 25> cares{};   // false for -1 and for items that are not numbers
        uint32_t careBits = 0;          // cells that must be 0 or 1, as bits
        uint32_t oneBits = 0;           // cells that must be 1, as bits
        bool bitsCanFit = false;        // false when a cell wants a value other than 0 or 1
        int code = -1;                  // first item of the sixth list, -1 when not a number
    };

    static Pattern compile(const QVector<QStringList>& lists);

    QVector<Pattern> m_patterns;
};
