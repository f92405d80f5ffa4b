#pragma once

#include "mapslots.h"

#include <atomic>
#include <vector>

// Map slots of file-access cameras: the map quantities as features, each slot a
// device file that holds a map container. A transfer runs on one thread while
// cancel() may be called from another.
class FileAccessMapSlots : public MapSlots {
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

    // Writes the container into the slot; written is what arrived. The camera
    // checks the container when the file is closed and keeps its previous map
    // unless the whole container arrived.
    MapTransfer uploadContainer(const std::vector<unsigned char>& container, const QString& slot, long& written);
    // The local file as it is, as uploadContainer.
    MapTransfer uploadLocalFile(const QString& path, const QString& slot, long& written);
    // Copies the slot's device file into a new local file; a failed one leaves the part read.
    MapTransfer download(const QString& path, const QString& slot, long& read);
    // The slot's entries, read back through a scratch file.
    MapTransfer readBack(const QString& slot, unsigned int revision, std::vector<t_defpix>& entries);
    // Leaves the device file closed after a failure that may have left it open.
    void closeDeviceFile();

    // Stops the running transfer before its next block; the next transfer starts afresh.
    void cancel() { m_cancel = true; }

private:
    MapTransfer finish(bool moved, bool complete, MapTransfer failure);

    std::atomic<bool> m_cancel{false};
};
