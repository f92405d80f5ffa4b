#include "uxmaptransfers.h"

#include "mapslotbinding.h"
#include "registermapslots.h"
#include "uxpanelmessages.h"

#include <QApplication>

namespace {

// Register transfers run on the GUI thread, entry by entry; the cursor says the
// window is busy. Scoped so that no message box ever shows under it.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace

UXCMapTransfers::UXCMapTransfers(MapSlotBinding& binding, UXCPanelMessages& messages,
                                 std::function<void(bool, int)> progressBar)
    : m_binding(binding)
    , m_messages(messages)
    , m_progressBar(std::move(progressBar))
{
}

bool UXCMapTransfers::readMaxMapSize(QVariant& size) const
{
    unsigned int maximum = 0;
    QString reported;
    const MaxMapSize read =
        m_binding.mapSlots ? m_binding.mapSlots->maxMapSize(maximum, reported) : MaxMapSize::Unreadable;
    if (read == MaxMapSize::Implausible)
        m_messages.log(tr("The camera reports an implausible maximal map size: %1.").arg(reported), LogError);
    if (read == MaxMapSize::Read)
        size = maximum;
    return read == MaxMapSize::Read;
}

bool UXCMapTransfers::selectByName(const QString& name) const
{
    if (m_binding.mapSlots && m_binding.mapSlots->selectSlotByName(name))
        return true;
    m_messages.log(tr("Upload Map: setting DefectPixelCorrection_MapSelect to '%1' failed!").arg(name), LogError);
    return false;
}

bool UXCMapTransfers::uploadEntries(const t_defpix* map, unsigned int count)
{
    if (!map || count == 0 || !m_binding.mapSlots)
        return false;
    QString reported;
    MapTransfer outcome;
    {
        const WaitCursor busy;
        outcome = uploadMapEntries(*m_binding.mapSlots, map, count, m_binding.maxMapSize, reported);
    }
    if (outcome == MapTransfer::MaxSizeFailed && !reported.isNull())
        m_messages.log(tr("The camera reports an implausible maximal map size: %1.").arg(reported), LogError);
    return report(outcome, tr("Upload Defect Pixel Map"), Routine::EntryUpload);
}

bool UXCMapTransfers::uploadWords(const t_defpix* map, unsigned int count)
{
    if (!m_binding.mapSlots || !m_binding.registerMode)
        return false;
    MapTransfer outcome;
    {
        const WaitCursor busy;
        unsigned int bytes = 0;
        outcome = static_cast<RegisterMapSlots&>(*m_binding.mapSlots)
                      .uploadWords(map, count, m_binding.revision == kTypedMapRevision, m_binding.bigEndian,
                                   m_binding.maxMapSize, bytes,
                                   [this](double percent) { m_progressBar(true, int(percent)); });
    }
    // Enabling the correction afterwards is tried, its failure not reported.
    const bool written = outcome == MapTransfer::Done || outcome == MapTransfer::EnableFailed;
    if (written)
        m_progressBar(true, 100);
    else if (outcome == MapTransfer::ShortWrite)
        report(MapTransfer::WriteFailed, tr("Upload Defect Pixel Map"), Routine::WordUpload);
    else if (!report(outcome, tr("Upload Defect Pixel Map"), Routine::WordUpload) && outcome != MapTransfer::WriteFailed)
        return false; // refused before anything was written: the bar was never shown
    m_progressBar(false, 0);
    return written;
}

bool UXCMapTransfers::downloadEntries(t_defpix* map, unsigned int& count)
{
    count = 0;
    MapTransfer outcome = MapTransfer::SizeFailed;
    if (m_binding.mapSlots) {
        const WaitCursor busy;
        outcome = downloadMapEntries(*m_binding.mapSlots, map, m_binding.maxMapSize, count);
    }
    return report(outcome, tr("Download Map From Camera"), Routine::EntryDownload);
}

bool UXCMapTransfers::downloadWords(DefectMap& map)
{
    const QString title = tr("Download Map");
    if (!map.data() || !m_binding.mapSlots || !m_binding.registerMode) {
        m_messages.fail(title, tr("Download failed: map not initialized"), tr("Download Map: map not initialized!"));
        return false;
    }
    unsigned int count = 0;
    MapTransfer outcome;
    {
        const WaitCursor busy;
        outcome = static_cast<RegisterMapSlots&>(*m_binding.mapSlots)
                      .downloadWords(m_binding.typedMap(), m_binding.bigEndian, map.data(), m_binding.maxMapSize,
                                     count);
    }
    map.setCount(count);
    return report(outcome, title, Routine::WordDownload);
}

namespace {

// How each transfer routine words a refusal: the box's text and the log line.
struct RefusalText {
    UXCMapTransfers::Routine routine;
    MapTransfer outcome;
    const char* box;
    const char* line;
};

using Routine = UXCMapTransfers::Routine;
const RefusalText kRefusalTexts[] = {
    {Routine::EntryUpload, MapTransfer::FactoryProtected,
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed: factory map is protected!"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed: factory map is protected")},
    {Routine::EntryUpload, MapTransfer::ClearFailed, QT_TRANSLATE_NOOP("UXCMapTransfers", "Clear map failed"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed: Clear map failed")},
    {Routine::EntryUpload, MapTransfer::MaxSizeFailed, QT_TRANSLATE_NOOP("UXCMapTransfers", "Get maximal map size failed"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed: Get maximal map size failed!")},
    {Routine::EntryUpload, MapTransfer::TooManyEntries,
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed: maximum number of defect pixels exceeded!"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed: maximum number of defect pixels exceeded!")},
    {Routine::WordUpload, MapTransfer::SlotUnknown, QT_TRANSLATE_NOOP("UXCMapTransfers", "Get selected map failed!"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload Defect Pixel Map: Get selected map failed!")},
    {Routine::WordUpload, MapTransfer::FactoryProtected,
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed: upload to factory map is protected!"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload Defect Pixel Map: upload to factory map is protected!")},
    {Routine::WordUpload, MapTransfer::EmptyMap, QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed: empty map"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload Defect Pixel Map: empty map!")},
    {Routine::WordUpload, MapTransfer::ClearFailed, QT_TRANSLATE_NOOP("UXCMapTransfers", "Clear map failed (protected map)"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload Defect Pixel Map: Clear map failed (protected map)!")},
    {Routine::WordUpload, MapTransfer::WriteFailed, QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload failed"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Upload Defect Pixel Map: Upload failed!")},
    {Routine::EntryDownload, MapTransfer::SizeFailed, QT_TRANSLATE_NOOP("UXCMapTransfers", "Get map size failed"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Download failed: Get map size failed!")},
    {Routine::EntryDownload, MapTransfer::InvalidSize, QT_TRANSLATE_NOOP("UXCMapTransfers", "Download failed: invalid map size!"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Download failed: invalid map size!")},
    {Routine::WordDownload, MapTransfer::SlotUnknown, QT_TRANSLATE_NOOP("UXCMapTransfers", "Get selected map failed"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Download Map: Get selected map failed!")},
    {Routine::WordDownload, MapTransfer::SizeFailed, QT_TRANSLATE_NOOP("UXCMapTransfers", "Get map size failed"),
     QT_TRANSLATE_NOOP("UXCMapTransfers", "Download Map: Get map size failed!")},
};

} // namespace

bool UXCMapTransfers::report(MapTransfer outcome, const QString& title, Routine routine) const
{
    if (outcome == MapTransfer::Done)
        return true;
    for (const RefusalText& text : kRefusalTexts) {
        if (text.routine == routine && text.outcome == outcome)
            m_messages.fail(title, tr(text.box), tr(text.line));
    }
    return false;
}
