// What the panel tells the user beside its log lines: outcomes for the
// window's status bar, a map that no longer matches its inputs or was cut
// short, the protected factory slot, what a local map file would write, and
// the keyboard.
#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "imageseries.h"
#include "localmapcheck.h"
#include "uxcamerafeature.h"
#include "uxdialogs.h"

#include <QKeyEvent>
#include <QLabel>
#include <QShortcut>
#include <QStyledItemDelegate>

#include <climits>

namespace {

const char* const kFactorySlot = "DefPixMap0";
const QSize kMeanMinimum(160, 120);

// Names the factory slot in the selector's list without changing its text,
// which is the name the camera knows the slot by.
class SlotDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.data(Qt::DisplayRole).toString() == QLatin1String(kFactorySlot))
            option->text = UXCDefectPixelCorrection::tr("%1 (factory map)").arg(option->text);
    }
};

} // namespace

void UXCDefectPixelCorrection::setupFeedback()
{
    m_mapNote = new QLabel(this);
    m_mapNote->setObjectName(QStringLiteral("lblMapNote"));
    m_mapNote->setWordWrap(true);
    m_mapNote->hide();
    ui->horizontalLayout->addWidget(m_mapNote, 1);
    ui->cmbDefectPixelMapSelector->setItemDelegate(new SlotDelegate(ui->cmbDefectPixelMapSelector));
    connect(ui->cmbDefectPixelMapSelector, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &UXCDefectPixelCorrection::updateSlotHints);

    // The mean images stay large enough to judge whatever the docks take.
    ui->frameMeanImageDark->setMinimumSize(kMeanMinimum);
    ui->frameMeanImageBright->setMinimumSize(kMeanMinimum);

    // Mnemonics on the same words the form shows.
    ui->btnCloseCamera->setText(tr("Cl&ose Camera"));
    ui->btnAddDarkImage->setText(tr("&Add"));
    ui->btnDeleteDarkImage->setText(tr("&Delete"));
    ui->btnAddBrightImage->setText(tr("&Add"));
    ui->btnDeleteBrightImage->setText(tr("&Delete"));
    ui->btnGenerateMap->setText(tr("&Generate Map"));
    ui->btnUploadMapToCam->setText(tr("&Upload Generated Map To Camera"));
    ui->btnSaveMapToFile->setText(tr("&Save Generated Map To File "));
    ui->btnUploadLocalMap->setText(tr("Upload &Local Map To Camera"));
    ui->btnDownloadMapToFile->setText(tr("Do&wnload Map To File"));

    // Delete removes the selected images of the list that has the focus.
    const auto deleteKey = [this](QListWidget* list, int kind) {
        auto* shortcut = new QShortcut(QKeySequence::Delete, list, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, list, kind] {
            if (!list->selectedItems().isEmpty())
                deleteImages(kind);
        });
    };
    deleteKey(ui->listDarkImagePath, DarkSeries);
    deleteKey(ui->listBrightImagePath, BrightSeries);
}

void UXCDefectPixelCorrection::report(const QString& text, LogType type)
{
    emit actionOutcome(text, type);
}

void UXCDefectPixelCorrection::showMapNote(const QString& text)
{
    m_mapNote->setText(text);
    m_mapNote->setVisible(!text.isEmpty());
}

void UXCDefectPixelCorrection::setMapStale(bool stale)
{
    const bool shown = !ui->txtDefectPixelCount->text().isEmpty();
    if (stale && (!shown || m_mapStale))
        return;
    m_mapStale = stale && shown;
    QFont font = ui->txtDefectPixelCount->font();
    font.setStrikeOut(m_mapStale);
    ui->txtDefectPixelCount->setFont(font);
    ui->txtDefectPixelCount->setToolTip(m_mapStale ? tr("Out of date: the inputs changed since the map was "
                                                        "generated. Generate the map again.")
                                                   : QString());
    if (m_mapStale) {
        const QString note = tr("Map out of date: generate it again.");
        showMapNote(note);
        report(note, LogWarning);
    }
}

bool UXCDefectPixelCorrection::confirmStaleUpload()
{
    if (!m_mapStale)
        return true;
    const QString text = tr("The map was generated before the images or thresholds changed and is out of "
                            "date.\nUpload it anyway?");
    return dialogs().question(this, tr("Upload Defect Pixel Map"), text, QMessageBox::Yes | QMessageBox::No)
           == QMessageBox::Yes;
}

void UXCDefectPixelCorrection::noteGeneratedMap(unsigned int flagged)
{
    showMapNote(QString());
    if (m_map.count() < m_maxMapSize || flagged <= m_map.count()) {
        report(tr("Map generated: %n defect pixel(s).", nullptr, int(m_map.count())), LogInfo);
        return;
    }
    const QString warning = tr("%1 pixels flagged; only %2 fit into the camera's map. Raise the thresholds to "
                               "flag fewer pixels.")
                                .arg(flagged)
                                .arg(m_maxMapSize);
    showMapNote(warning);
    m_mapNote->setStyleSheet(QStringLiteral("color: #b06000;"));
    report(warning, LogWarning);
}

bool UXCDefectPixelCorrection::isFactorySlotSelected() const
{
    return ui->cmbDefectPixelMapSelector->currentText() == QLatin1String(kFactorySlot);
}

void UXCDefectPixelCorrection::updateSlotHints()
{
    const QString why =
        isFactorySlotSelected() ? tr("DefPixMap0 is the factory map: it is read-only, maps cannot be uploaded to it.")
                                : QString();
    ui->cmbDefectPixelMapSelector->setToolTip(why);
    ui->btnUploadMapToCam->setToolTip(why);
    ui->btnUploadLocalMap->setToolTip(why);
}

bool UXCDefectPixelCorrection::refuseFactorySlot(const QString& title, const QString& failedLine)
{
    // File-access cameras disable the buttons; in register mode the refusal comes before any question.
    if (!m_registerMode || !isFactorySlotSelected())
        return false;
    dialogs().critical(this, title, tr("Upload failed: upload to factory map is protected!"));
    log(tr("Upload Defect Pixel Map: upload to factory map is protected!"), LogError);
    log(failedLine, LogError);
    report(tr("Upload refused: DefPixMap0 is the read-only factory map."), LogError);
    return true;
}

bool UXCDefectPixelCorrection::sensorSize(unsigned int& width, unsigned int& height) const
{
    QVariant w;
    QVariant h;
    const bool known = m_features
                       && ((m_features->GetValue("WidthMax", w) && m_features->GetValue("HeightMax", h))
                           || (m_features->GetValue("Width", w) && m_features->GetValue("Height", h)));
    width = w.toUInt();
    height = h.toUInt();
    if (known && width > 0 && height > 0)
        return true;
    // Without a size only the other checks can be made.
    width = UINT_MAX;
    height = UINT_MAX;
    return false;
}

bool UXCDefectPixelCorrection::confirmLocalMap(const LocalMapCheck& check, const QString& fileName,
                                               const QString& slot, unsigned int width, unsigned int height)
{
    const QString title = tr("Upload Local Map");
    QString refusal;
    if (!check.readable)
        refusal = tr("%1 is not a readable map file.").arg(fileName);
    else if (check.outsideSensor != 0)
        refusal = tr("%1: %n entry(s) lie outside the sensor (%2 x %3).", nullptr, int(check.outsideSensor))
                      .arg(fileName)
                      .arg(width)
                      .arg(height);
    else if (check.entries.empty())
        refusal = tr("%1 holds no valid map entry.").arg(fileName);
    if (!refusal.isEmpty()) {
        dialogs().critical(this, title, refusal + '\n' + tr("The map of '%1' was left unchanged.").arg(slot));
        log(tr("Upload Local Map refused: %1").arg(refusal), LogError);
        report(tr("Upload to %1 refused: %2").arg(slot, refusal), LogError);
        return false;
    }
    QStringList details;
    if (check.skippedLines)
        details << tr("%n line(s) skipped as malformed", nullptr, int(check.skippedLines));
    if (check.duplicates)
        details << tr("%n duplicate coordinate(s)", nullptr, int(check.duplicates));
    if (check.beyondCapacity)
        details << tr("%n entry(s) beyond the camera's maximum dropped", nullptr, int(check.beyondCapacity));
    QString text = tr("%n entry(s) will be written to '%1'", nullptr, int(check.entries.size())).arg(slot);
    if (!details.isEmpty())
        text += " (" + details.join(", ") + ')';
    text += ".\n" + tr("Write them?");
    return dialogs().question(this, title, text, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}
