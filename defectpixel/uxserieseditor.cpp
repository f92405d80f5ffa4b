#include "uxserieseditor.h"

#include "imageseries.h"
#include "seriesfileloader.h"
#include "uxcustomwidgets.h"
#include "uxdialogs.h"
#include "uxsettings.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QListWidget>
#include <QProgressDialog>
#include <QPushButton>
#include <QVector>

#include <utility>

namespace {

constexpr int kImageProgressDelayMs = 500;
// How long a batch waits for the step under way before it lets the window work.
constexpr std::chrono::milliseconds kReadPoll(20);
// Files read in one step: the progress moves, and Cancel acts, between steps.
constexpr int kBatchFiles = 8;
// A batch shows its growing mean at most this often: a 20 MPixel mean costs
// the labels more to show than to compute.
constexpr qint64 kMeanShowIntervalMs = 250;

// The messages of a refused image.
struct Refusal {
    bool critical = false;
    QString message; // the message box text
    QString logLine;
    QString path;
    QString reason;
};

// False for an image that is refused without a word (not a series).
bool describeRefusal(const QString& path, SeriesChange change, Refusal& refusal)
{
    switch (change) {
    case SeriesChange::NullImage:
        refusal = {true, UXCSeriesEditor::tr("%1 failed!").arg(path),
                   UXCSeriesEditor::tr("Loading image '%1' failed.").arg(path), path, {}};
        return true;
    case SeriesChange::UnsupportedFormat:
        refusal = {false, UXCSeriesEditor::tr("%1: image format not supported!").arg(path),
                   UXCSeriesEditor::tr("Loading '%1': Image format not supported.").arg(path), path, {}};
        return true;
    case SeriesChange::IncompatibleSize:
        refusal = {false, UXCSeriesEditor::tr("%1: incompatible image!").arg(path),
                   UXCSeriesEditor::tr("Loading '%1': incompatible image.").arg(path), path, {}};
        return true;
    case SeriesChange::OutOfMemory:
        refusal = {true, UXCSeriesEditor::tr("Out of memory!"),
                   UXCSeriesEditor::tr("Loading '%1': out of memory.").arg(path), path, {}};
        return true;
    case SeriesChange::Accepted:
    case SeriesChange::InvalidKind:
        break;
    }
    return false;
}

} // namespace

UXCSeriesEditor::UXCSeriesEditor(Panel panel, Series dark, Series bright)
    : m_panel(std::move(panel))
    , m_dark(dark)
    , m_bright(bright)
{
}

bool UXCSeriesEditor::addFile(const QString& path, int kind)
{
    UXCPixmapLabel* display = series(kind).display;
    DefectPixelParams& params = *series(kind).params;
    QImage mean = display->getImage();
    const SeriesChange change = addImageToSeries(path, kind, *m_panel.geometry, params, mean);
    if (change == SeriesChange::Accepted) {
        display->setImage(mean);
        return true;
    }
    Refusal refusal;
    if (!describeRefusal(path, change, refusal))
        return false;
    if (refusal.critical)
        m_panel.dialogs().critical(m_panel.window, tr("Load Image"), refusal.message);
    else
        m_panel.dialogs().information(m_panel.window, tr("Load Image"), refusal.message);
    m_panel.log(refusal.logLine, LogError);
    return false;
}

void UXCSeriesEditor::addChosenFiles(int kind)
{
    if (kind != DarkSeries && kind != BrightSeries)
        return;
    QListWidget* list = series(kind).list;
    UXCPixmapLabel* display = series(kind).display;
    DefectPixelParams& params = *series(kind).params;
    const QStringList paths =
        m_panel.dialogs().getOpenFileNames(m_panel.window, tr("Image paths"), *m_panel.imageDir, tr("Bitmap (*.bmp)"));
    QStringList toLoad;
    for (const QString& path : paths) {
        if (list->findItems(path, Qt::MatchExactly | Qt::MatchCaseSensitive).isEmpty() && !toLoad.contains(path))
            toLoad << path;
    }

    // A long series keeps the window painted and can be stopped; the images
    // added so far stay. A reset meanwhile (the camera left) ends it too.
    // Refusals are told once the progress window is gone, so that no message
    // box ever sits under it.
    QProgressDialog progress(tr("Loading images..."), tr("Cancel"), 0, toLoad.size(), m_panel.window);
    progress.setObjectName(QStringLiteral("imageLoadProgress"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(kImageProgressDelayMs);
    const unsigned int resets = *m_panel.resets;
    auto stopped = [&] { return progress.wasCanceled() || *m_panel.resets != resets; };
    // Until the progress window shows, clicks wait: they would reach the panel itself.
    auto keepWindowAlive = [&] {
        QCoreApplication::processEvents(progress.isVisible() ? QEventLoop::AllEvents
                                                             : QEventLoop::ExcludeUserInputEvents);
    };

    QImage mean = display->getImage();
    bool meanShown = true;
    QElapsedTimer sinceShown;
    sinceShown.start();
    QVector<Refusal> refusals;
    int added = 0;
    SeriesFileLoader loader(toLoad, kind, kBatchFiles);
    while (!loader.atEnd() && !stopped()) {
        progress.setValue(loader.offered());
        loader.start(*m_panel.geometry, params, mean);
        while (!stopped() && !loader.waitForStep(kReadPoll))
            keepWindowAlive();
        // Cancel drops the step under way: the files of the steps before stay.
        if (stopped())
            loader.stop();
        // The reset emptied the series: what the step read has no place left.
        if (*m_panel.resets != resets) {
            loader.abandon();
            break;
        }
        for (const OfferedFile& offered : loader.finish(*m_panel.geometry, params, mean)) {
            if (*m_panel.resets != resets)
                break;
            if (offered.change == SeriesChange::Accepted) {
                list->addItem(offered.file.path);
                ++added;
                meanShown = false;
                continue;
            }
            Refusal refusal;
            if (!describeRefusal(offered.file.path, offered.change, refusal))
                continue;
            refusal.reason = refusalReason(offered.file, offered.change, offered.before);
            m_panel.log(refusal.logLine, LogError);
            refusals << refusal;
        }
        keepWindowAlive();
        if (!meanShown && sinceShown.elapsed() >= kMeanShowIntervalMs) {
            display->setImage(mean);
            meanShown = true;
            sinceShown.restart();
        }
    }
    if (*m_panel.resets == resets && !meanShown)
        display->setImage(mean);
    progress.setValue(toLoad.size());
    progress.close();
    if (added > 0) {
        m_panel.inputsChanged();
        m_panel.report(kind == BrightSeries ? tr("%n bright image(s) added.", nullptr, added)
                                            : tr("%n dark image(s) added.", nullptr, added),
                       LogInfo);
    } else if (!paths.isEmpty()) {
        m_panel.report(tr("No image added."), LogWarning);
    }

    if (!refusals.isEmpty() && *m_panel.resets == resets) {
        bool critical = false;
        QStringList reasons;
        for (const Refusal& refusal : refusals) {
            critical = critical || refusal.critical;
            reasons << tr("%1: %2").arg(refusal.path, refusal.reason);
        }
        const QString text = refusals.size() == 1
                                 ? refusals.first().message
                                 : tr("%1 of the %2 chosen images were not added.").arg(refusals.size()).arg(paths.size());
        m_panel.dialogs().detailed(m_panel.window, critical ? QMessageBox::Critical : QMessageBox::Information,
                                   tr("Load Image"), text, reasons.join('\n'));
    }

    if (paths.isEmpty())
        return;
    const QString dir = QFileInfo(paths.first()).absolutePath();
    if (dir != *m_panel.imageDir) {
        UXCSettings::getInstance()->Set("Directory", "SaveImageDir", dir);
        *m_panel.imageDir = dir;
    }
}

void UXCSeriesEditor::removeFile(const QString& path, int kind)
{
    if (kind != DarkSeries && kind != BrightSeries)
        return;
    UXCPixmapLabel* display = series(kind).display;
    QImage mean = display->getImage();
    const SeriesChange change = removeImageFromSeries(path, kind, *m_panel.geometry, *series(kind).params, mean);
    if (change == SeriesChange::Accepted || change == SeriesChange::OutOfMemory)
        display->setImage(mean);
}

void UXCSeriesEditor::removeSelectedFiles(int kind)
{
    if (kind != DarkSeries && kind != BrightSeries)
        return;
    const QList<QListWidgetItem*> selected = series(kind).list->selectedItems();
    for (QListWidgetItem* item : selected) {
        removeFile(item->text(), kind);
        delete item;
    }
}

bool UXCSeriesEditor::removeSelected(int kind)
{
    const Series& edited = series(kind);
    const int before = edited.list->count();
    removeSelectedFiles(kind);
    edited.deleteButton->setEnabled(!edited.list->selectedItems().isEmpty());
    if (edited.list->count() != before) {
        m_panel.inputsChanged();
        m_panel.report(tr("%n image(s) removed.", nullptr, before - edited.list->count()), LogInfo);
    }
    if (edited.params->count != 0)
        return false;
    edited.params->clear();
    edited.display->setImage(QImage());
    edited.display->clear();
    if (series(kind == BrightSeries ? DarkSeries : BrightSeries).params->count == 0)
        *m_panel.geometry = ImageGeometry();
    return true;
}
