// Adding images to the series: one file at a time, and whole batches whose
// files are read one ahead on a worker while the window stays responsive.

#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "imagefilequeue.h"
#include "imageseries.h"
#include "uxdialogs.h"
#include "uxsettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProgressDialog>
#include <QVector>

namespace {

constexpr int kImageProgressDelayMs = 500;
// How long a batch waits for the next file before it lets the window work.
constexpr std::chrono::milliseconds kReadPoll(20);
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
        refusal = {true, UXCDefectPixelCorrection::tr("%1 failed!").arg(path), UXCDefectPixelCorrection::tr("Loading image '%1' failed.").arg(path), path, {}};
        return true;
    case SeriesChange::UnsupportedFormat:
        refusal = {false, UXCDefectPixelCorrection::tr("%1: image format not supported!").arg(path),
                   UXCDefectPixelCorrection::tr("Loading '%1': Image format not supported.").arg(path), path, {}};
        return true;
    case SeriesChange::IncompatibleSize:
        refusal = {false, UXCDefectPixelCorrection::tr("%1: incompatible image!").arg(path),
                   UXCDefectPixelCorrection::tr("Loading '%1': incompatible image.").arg(path), path, {}};
        return true;
    case SeriesChange::OutOfMemory:
        refusal = {true, UXCDefectPixelCorrection::tr("Out of memory!"), UXCDefectPixelCorrection::tr("Loading '%1': out of memory.").arg(path), path, {}};
        return true;
    case SeriesChange::Accepted:
    case SeriesChange::InvalidKind:
        break;
    }
    return false;
}

} // namespace

bool UXCDefectPixelCorrection::loadImagefromFile(const QString& path, int kind)
{
    UXCPixmapLabel* display = kind == BrightSeries ? ui->lblMeanImageBright : ui->lblMeanImageDark;
    DefectPixelParams& params = kind == BrightSeries ? m_brightParams : m_darkParams;
    QImage mean = display->getImage();
    const SeriesChange change = addImageToSeries(path, kind, m_geometry, params, mean);
    if (change == SeriesChange::Accepted) {
        display->setImage(mean);
        return true;
    }
    Refusal refusal;
    if (!describeRefusal(path, change, refusal))
        return false;
    if (refusal.critical)
        dialogs().critical(this, tr("Load Image"), refusal.message);
    else
        dialogs().information(this, tr("Load Image"), refusal.message);
    log(refusal.logLine, LogError);
    return false;
}

void UXCDefectPixelCorrection::_addSelectedFiles(int kind)
{
    if (kind != DarkSeries && kind != BrightSeries)
        return;
    QListWidget* list = kind == BrightSeries ? ui->listBrightImagePath : ui->listDarkImagePath;
    UXCPixmapLabel* display = kind == BrightSeries ? ui->lblMeanImageBright : ui->lblMeanImageDark;
    DefectPixelParams& params = kind == BrightSeries ? m_brightParams : m_darkParams;
    const QStringList paths =
        dialogs().getOpenFileNames(this, tr("Image paths"), m_saveImageDir, tr("Bitmap (*.bmp)"));
    QStringList toLoad;
    for (const QString& path : paths) {
        if (list->findItems(path, Qt::MatchExactly | Qt::MatchCaseSensitive).isEmpty() && !toLoad.contains(path))
            toLoad << path;
    }

    // A long series keeps the window painted and can be stopped; the images
    // added so far stay. A reset meanwhile (the camera left) ends it too.
    // Refusals are told once the progress window is gone, so that no message
    // box ever sits under it.
    QProgressDialog progress(tr("Loading images..."), tr("Cancel"), 0, toLoad.size(), this);
    progress.setObjectName(QStringLiteral("imageLoadProgress"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(kImageProgressDelayMs);
    const unsigned int resets = m_resets;
    auto stopped = [&] { return progress.wasCanceled() || m_resets != resets; };
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
    ImageFileQueue queue(toLoad);
    for (int i = 0; i < toLoad.size(); ++i) {
        progress.setValue(i);
        keepWindowAlive();
        while (!stopped() && !queue.waitForNext(kReadPoll))
            keepWindowAlive();
        if (stopped())
            break;
        ImageFile file = queue.takeNext();
        const ImageGeometry before = m_geometry;
        const SeriesChange change = addImageToSeries(file.image, kind, m_geometry, params, mean);
        if (change == SeriesChange::Accepted) {
            queue.recycle(std::move(file.image));
            list->addItem(file.path);
            ++added;
            meanShown = false;
            if (sinceShown.elapsed() >= kMeanShowIntervalMs) {
                display->setImage(mean);
                meanShown = true;
                sinceShown.restart();
            }
            continue;
        }
        Refusal refusal;
        if (!describeRefusal(file.path, change, refusal))
            continue;
        refusal.reason = refusalReason(file, change, before);
        log(refusal.logLine, LogError);
        refusals << refusal;
    }
    if (m_resets == resets && !meanShown)
        display->setImage(mean);
    progress.setValue(toLoad.size());
    progress.close();
    if (added > 0) {
        setMapStale(true);
        report(kind == BrightSeries ? tr("%n bright image(s) added.", nullptr, added)
                                    : tr("%n dark image(s) added.", nullptr, added),
               LogInfo);
    } else if (!paths.isEmpty()) {
        report(tr("No image added."), LogWarning);
    }

    if (!refusals.isEmpty() && m_resets == resets) {
        bool critical = false;
        QStringList reasons;
        for (const Refusal& refusal : refusals) {
            critical = critical || refusal.critical;
            reasons << tr("%1: %2").arg(refusal.path, refusal.reason);
        }
        const QString text = refusals.size() == 1
                                 ? refusals.first().message
                                 : tr("%1 of the %2 chosen images were not added.").arg(refusals.size()).arg(paths.size());
        dialogs().detailed(this, critical ? QMessageBox::Critical : QMessageBox::Information, tr("Load Image"),
                           text, reasons.join('\n'));
    }

    if (paths.isEmpty())
        return;
    const QString dir = QFileInfo(paths.first()).absolutePath();
    if (dir != m_saveImageDir) {
        UXCSettings::getInstance()->Set("Directory", "SaveImageDir", dir);
        m_saveImageDir = dir;
    }
}
