#pragma once

#include "mapslots.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QString>

#include <atomic>
#include <functional>

class FileAccessMapSlots;
class QProgressDialog;
class QWidget;
class UXCPanelMessages;

// Runs the panel's file-access transfers on the thread pool, one at a time,
// with the progress window and its Cancel button, and tells how each ended.
class UXCFileTaskRunner : public QObject {
    Q_OBJECT

public:
    // files answers with the camera's file-access slots at the time of asking,
    // null without them. The progress window is a child of window.
    UXCFileTaskRunner(QWidget* window, UXCPanelMessages& messages, std::function<FileAccessMapSlots*()> files);

    // Creates the hidden progress window on the first call.
    void prepareProgressWindow();
    // The first non-zero remaining count is the total of every later transfer.
    void showProgress(long remaining, QString fileName, QString fileOperation);

    // One transfer between the program and a slot of the camera.
    struct Task {
        QString name;                                                // names it in the messages
        QString slot;                                                // the slot it reads or writes
        std::function<MapTransfer(FileAccessMapSlots&, long&)> run; // moves the bytes, counting them
        std::function<QString(bool done, long bytes)> logLine;       // worded on the task's thread
        std::function<QString()> success;                            // status line when it is done
        std::function<void()> cancelled;                             // cleans up after a cancel
    };
    // False without file-access slots or while a transfer runs.
    bool start(Task task);
    bool isRunning() const { return m_task.isRunning(); }
    // Cancels a running transfer and waits for it; from then on ends are no longer reported.
    void stop();

signals:
    void started();
    // After the end of a transfer; transfer is its name, empty when its end went unreported.
    void ended(const QString& transfer);

private:
    void finish();
    void cancel();
    void closeDeviceFile();

    QWidget* m_window;
    UXCPanelMessages& m_messages;
    std::function<FileAccessMapSlots*()> m_files;
    QFuture<bool> m_task;
    QFutureWatcher<bool> m_watcher;
    QProgressDialog* m_progressDialog = nullptr; // owned by the window
    unsigned int m_total = 0;
    bool m_reportEnds = true;
    bool m_unreported = false;            // a transfer was started; nobody has looked at its end yet
    std::atomic<bool> m_cancelled{false}; // the running transfer was cancelled by the user
    Task m_running;
};
