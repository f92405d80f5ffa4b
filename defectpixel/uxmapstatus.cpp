#include "uxmapstatus.h"

#include "uxpanelmessages.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyledItemDelegate>

namespace {

const char* const kFactorySlot = "DefPixMap0";

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
            option->text = UXCMapStatus::tr("%1 (factory map)").arg(option->text);
    }
};

} // namespace

UXCMapStatus::UXCMapStatus(const PanelParts& parts, UXCPanelMessages& messages)
    : QObject(parts.panel)
    , m_parts(parts)
    , m_messages(messages)
    , m_note(new QLabel(parts.panel))
{
    m_note->setObjectName(QStringLiteral("lblMapNote"));
    m_note->setWordWrap(true);
    m_note->hide();
    parts.countRow->addWidget(m_note, 1);
    parts.selector->setItemDelegate(new SlotDelegate(parts.selector));
    connect(parts.selector, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &UXCMapStatus::updateSlotHints);
}

void UXCMapStatus::showNote(const QString& text)
{
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
}

void UXCMapStatus::setStale(bool stale)
{
    QLineEdit* count = m_parts.count;
    const bool shown = !count->text().isEmpty();
    if (stale && (!shown || m_stale))
        return;
    m_stale = stale && shown;
    QFont font = count->font();
    font.setStrikeOut(m_stale);
    count->setFont(font);
    count->setToolTip(m_stale ? tr("Out of date: the inputs changed since the map was generated. Generate the "
                                   "map again.")
                              : QString());
    if (m_stale) {
        const QString note = tr("Map out of date: generate it again.");
        showNote(note);
        m_messages.report(note, LogWarning);
    }
}

void UXCMapStatus::clear()
{
    setStale(false);
    showNote(QString());
    updateSlotHints();
}

bool UXCMapStatus::confirmStaleUpload() const
{
    return !m_stale
           || m_messages.ask(tr("Upload Defect Pixel Map"),
                             tr("The map was generated before the images or thresholds changed and is out of "
                                "date.\nUpload it anyway?"));
}

void UXCMapStatus::noteGenerated(unsigned int count, unsigned int maxMapSize, unsigned int flagged)
{
    showNote(QString());
    if (count < maxMapSize || flagged <= count) {
        m_messages.report(tr("Map generated: %n defect pixel(s).", nullptr, int(count)), LogInfo);
        return;
    }
    const QString warning = tr("%1 pixels flagged; only %2 fit into the camera's map. Raise the thresholds to "
                               "flag fewer pixels.")
                                .arg(flagged)
                                .arg(maxMapSize);
    showNote(warning);
    m_note->setStyleSheet(QStringLiteral("color: #b06000;"));
    m_messages.report(warning, LogWarning);
}

bool UXCMapStatus::isFactorySlotSelected() const
{
    return m_parts.selector->currentText() == QLatin1String(kFactorySlot);
}

void UXCMapStatus::updateSlotHints()
{
    const QString why =
        isFactorySlotSelected() ? tr("DefPixMap0 is the factory map: it is read-only, maps cannot be uploaded to it.")
                                : QString();
    m_parts.selector->setToolTip(why);
    m_parts.uploadGenerated->setToolTip(why);
    m_parts.uploadLocal->setToolTip(why);
}

bool UXCMapStatus::refuseFactorySlot(bool registerMode, const QString& title, const QString& failedLine) const
{
    // File-access cameras disable the buttons; in register mode the refusal comes before any question.
    if (!registerMode || !isFactorySlotSelected())
        return false;
    m_messages.fail(title, tr("Upload failed: upload to factory map is protected!"),
                    tr("Upload Defect Pixel Map: upload to factory map is protected!"));
    m_messages.log(failedLine, LogError);
    m_messages.report(tr("Upload refused: DefPixMap0 is the read-only factory map."), LogError);
    return true;
}
