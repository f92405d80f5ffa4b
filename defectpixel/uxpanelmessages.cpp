#include "uxpanelmessages.h"

#include "localmapcheck.h"
#include "uxdialogs.h"

#include <QStringList>

UXCPanelMessages::UXCPanelMessages(QWidget* window, Sink log, Sink outcome)
    : m_window(window)
    , m_log(std::move(log))
    , m_outcome(std::move(outcome))
    , m_defaultDialogs(std::make_unique<UXCDialogs>())
{
}

UXCPanelMessages::~UXCPanelMessages() = default;

UXCDialogs& UXCPanelMessages::dialogs() const
{
    return m_dialogs ? *m_dialogs : *m_defaultDialogs;
}

void UXCPanelMessages::fail(const QString& title, const QString& box, const QString& line) const
{
    dialogs().critical(m_window, title, box);
    log(line, LogError);
}

bool UXCPanelMessages::ask(const QString& title, const QString& question) const
{
    return dialogs().question(m_window, title, question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

bool UXCPanelMessages::confirmLocalMap(const LocalMapCheck& check, const QString& fileName, const QString& slot,
                                       unsigned int width, unsigned int height) const
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
        fail(title, refusal + '\n' + tr("The map of '%1' was left unchanged.").arg(slot),
             tr("Upload Local Map refused: %1").arg(refusal));
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
    return ask(title, text);
}
