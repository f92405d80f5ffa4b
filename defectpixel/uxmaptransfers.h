#pragma once

#include "defectmap.h"
#include "mapslots.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>

#include <functional>

struct MapSlotBinding;
class UXCPanelMessages;

// The transfers between a map of the panel and the camera's selected slot,
// entry by entry or as register words on the GUI thread, each refusal worded
// in a box and a log line.
class UXCMapTransfers {
    Q_DECLARE_TR_FUNCTIONS(UXCMapTransfers)

public:
    // The transfer routines whose refusals are worded alike.
    enum class Routine { EntryUpload, WordUpload, EntryDownload, WordDownload };

    // progressBar shows the register upload's progress in the window.
    UXCMapTransfers(MapSlotBinding& binding, UXCPanelMessages& messages,
                    std::function<void(bool visible, int value)> progressBar);

    // Logs a maximum the camera reports but that is not believed.
    bool readMaxMapSize(QVariant& size) const;
    // Logs the failure.
    bool selectByName(const QString& name) const;
    bool uploadEntries(const t_defpix* map, unsigned int count);
    bool uploadWords(const t_defpix* map, unsigned int count);
    bool downloadEntries(t_defpix* map, unsigned int& count);
    // Into map, which the caller has emptied.
    bool downloadWords(DefectMap& map);

private:
    // Shows the box and the log line of a refused transfer; true when it was done.
    bool report(MapTransfer outcome, const QString& title, Routine routine) const;

    MapSlotBinding& m_binding;
    UXCPanelMessages& m_messages;
    std::function<void(bool, int)> m_progressBar;
};
