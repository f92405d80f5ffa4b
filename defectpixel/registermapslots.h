#pragma once

#include "mapslots.h"

#include <functional>

// Map slots of cameras without file access: the map registers, one word per entry.
class RegisterMapSlots : public MapSlots {
public:
    using MapSlots::MapSlots;

    bool correctionEnabled(bool& enabled) override;
    bool setCorrectionEnabled(bool enabled) override;
    bool selectedSlot(QVariant& slot) override;
    bool selectSlot(const QVariant& slot) override;
    bool reportedMaxMapSize(QVariant& size) override;
    bool mapSize(QVariant& size) override;
    bool entry(unsigned int index, unsigned int& x, unsigned int& y) override;
    bool setEntry(unsigned int index, unsigned int x, unsigned int y) override;

    // The packed words in one memory write into the selected slot after clearing
    // it, then the correction is enabled (EnableFailed tells it was not).
    // bytes is what the camera took; progress is told percentages while packing.
    MapTransfer uploadWords(const t_defpix* map, unsigned int count, bool typed, bool bigEndian,
                            unsigned int capacity, unsigned int& bytes,
                            const std::function<void(double)>& progress = {});
    // The selected slot's words in one memory read, up to capacity entries and the
    // end word, added to map (rules of defpix_add).
    MapTransfer downloadWords(bool typed, bool bigEndian, t_defpix* map, unsigned int capacity, unsigned int& count);
    // The slot's words as downloadWords reads them, all of them, into entries.
    MapTransfer readSlot(bool typed, bool bigEndian, unsigned int capacity, std::vector<t_defpix>& entries);
};
