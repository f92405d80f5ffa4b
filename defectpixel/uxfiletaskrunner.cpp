#include "uxfiletaskrunner.h"

#include "filemapslots.h"
#include "uxdialogs.h"
#include "uxpanelmessages.h"

#include <QProgressDialog>
#include <QtConcurrent>

#include <utility>

UXCFileTaskRunner::UXCFileTaskRunner(QWidget* window, UXCPanelMessages& messages,
                                     std::function<FileAccessMapSlots*()> files)
    : QObject(window)
    , m_window(window)
    , m_messages(messages)
    , m_files(std::move(files))
{
    connect(&m_watcher, &QFutureWatcher<bool>::finished, this, &UXCFileTaskRunner::finish);
}

void UXCFileTaskRunner::prepareProgressWindow()
{
    if (m_progressDialog)
        return;
    m_progressDialog = new QProgressDialog(m_window);
    m_progressDialog->setWindowFlags(m_progressDialog->windowFlags() & ~Qt::WindowContextHelpButtonHint);
    m_progressDialog->setWindowModality(Qt::WindowModal);
    m_progressDialog->setWindowTitle(tr("Uploading Map..."));
    m_progressDialog->setLabelText(tr("Uploading....."));
    m_progressDialog->setCancelButton(nullptr);
    m_progressDialog->setRange(0, 100);
    m_progressDialog->setMinimumDuration(1);
    m_progressDialog->cancel();
    connect(m_progressDialog, &QProgressDialog::canceled, this, &UXCFileTaskRunner::cancel);
}

void UXCFileTaskRunner::showProgress(long remaining, QString fileName, QString fileOperation)
{
    if (m_total == 0) {
        // Names the transfer; the window keeps its own label.
        fileOperation.append(": ").append(fileName);
        m_total = static_cast<unsigned int>(remaining);
        if (m_total == 0)
            return;
    }
    if (!m_progressDialog)
        return;
    if (remaining != 0) {
        const qint64 total = m_total;
        m_progressDialog->setValue(int((total - qint64(remaining)) * 100 / total));
    } else {
        emit m_progressDialog->finished(100);
    }
}

bool UXCFileTaskRunner::start(Task task)
{
    // One transfer at a time: the device file and the progress belong to it.
    FileAccessMapSlots* files = m_files();
    if (!files || m_task.isRunning())
        return false;
    m_watcher.setObjectName(task.name);
    m_unreported = true;
    m_cancelled = false;
    m_running = std::move(task);
    // File-access transfers of many blocks can be stopped between two blocks.
    if (m_progressDialog)
        m_progressDialog->setCancelButtonText(tr("&Cancel"));
    m_task = QtConcurrent::run([this, files] {
        long bytes = 0;
        const MapTransfer outcome = m_running.run(*files, bytes);
        const bool done = outcome == MapTransfer::Done;
        m_cancelled = outcome == MapTransfer::Cancelled;
        if (m_cancelled && m_running.cancelled)
            m_running.cancelled();
        m_messages.log(m_running.logLine(done, bytes), done ? LogInfo : LogError);
        return done;
    });
    m_watcher.setFuture(m_task);
    emit started();
    return true;
}

void UXCFileTaskRunner::stop()
{
    if (m_task.isRunning())
        m_task.cancel();
    m_watcher.waitForFinished();
    // The end of this transfer is no longer reported below; a failed one may
    // have left the camera's file open, and the camera must not keep it so.
    if (m_unreported && (m_task.isCanceled() || m_task.resultCount() == 0 || !m_task.result()))
        closeDeviceFile();
    m_unreported = false;
    m_reportEnds = false;
}

void UXCFileTaskRunner::finish()
{
    m_unreported = false;
    const bool failed = m_watcher.isCanceled() || !m_watcher.result();
    QString transfer;
    if (!m_reportEnds) {
        // Unreported, a failed transfer may still have left the camera's file open.
        if (failed)
            closeDeviceFile();
    } else {
        transfer = m_watcher.objectName();
        const QString title = tr("File Access");
        const auto success = std::exchange(m_running.success, nullptr);
        if (m_cancelled) {
            const QString& slot = m_running.slot;
            const QString text = transfer.startsWith(QLatin1String("Upload"))
                                     ? tr("%1 cancelled; the slot %2 keeps its previous map.").arg(transfer, slot)
                                     : tr("%1 cancelled; the incomplete file was removed.").arg(transfer);
            m_messages.log(text, LogWarning);
            m_messages.report(text, LogWarning);
            m_messages.dialogs().information(m_window, title, text);
            closeDeviceFile();
        } else if (!failed) {
            m_messages.report(success ? success() : tr("%1 done.").arg(transfer), LogInfo);
            m_messages.dialogs().information(m_window, title, tr("%1 task has been successfully done.").arg(transfer));
        } else {
            m_messages.report(tr("%1 failed.").arg(transfer), LogError);
            m_messages.dialogs().critical(m_window, title, tr("%1 Error occurs during File Access.").arg(transfer));
            closeDeviceFile();
        }
    }
    emit ended(transfer);
    if (!m_progressDialog)
        return;
    m_progressDialog->reset();
    m_progressDialog->setCancelButton(nullptr);
}

void UXCFileTaskRunner::cancel()
{
    if (FileAccessMapSlots* files = m_files(); files && m_task.isRunning())
        files->cancel();
}

void UXCFileTaskRunner::closeDeviceFile()
{
    if (FileAccessMapSlots* files = m_files())
        files->closeDeviceFile();
}
