#pragma once

#include "logtype.h"

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <memory>

class QWidget;
class UXCDialogs;
struct LocalMapCheck;

// What the panel tells its user: message boxes through the dialogs seam, log
// lines and one-line outcomes for the window's status bar.
class UXCPanelMessages {
    Q_DECLARE_TR_FUNCTIONS(UXCPanelMessages)

public:
    using Sink = std::function<void(const QString& text, LogType type)>;
    // Boxes open over window; the sinks carry log lines and outcomes out.
    UXCPanelMessages(QWidget* window, Sink log, Sink outcome);
    ~UXCPanelMessages();

    // Not owned; null brings back the standard dialogs.
    void setDialogs(UXCDialogs* dialogs) { m_dialogs = dialogs; }
    UXCDialogs& dialogs() const;
    QWidget* window() const { return m_window; }

    // Log lines may come from a transfer task's thread.
    void log(const QString& text, LogType type) const { m_log(text, type); }
    void report(const QString& text, LogType type) const { m_outcome(text, type); }
    // A critical box and its error log line.
    void fail(const QString& title, const QString& box, const QString& line) const;
    // True when the user answers Yes.
    bool ask(const QString& title, const QString& question) const;

    // Tells what a local map file would write into the slot and asks to go on;
    // refuses, saying why, a file that cannot be read or does not fit the sensor.
    bool confirmLocalMap(const LocalMapCheck& check, const QString& fileName, const QString& slot,
                         unsigned int width, unsigned int height) const;

private:
    QWidget* m_window;
    Sink m_log;
    Sink m_outcome;
    std::unique_ptr<UXCDialogs> m_defaultDialogs;
    UXCDialogs* m_dialogs = nullptr;
};
