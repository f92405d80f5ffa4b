#include "uxframecapturecontrol.h"

#include "capturedimage.h"
#include "imageseries.h"

#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QSpinBox>
#include <QtConcurrent>

UXCFrameCaptureControl::UXCFrameCaptureControl(int kind, QWidget* parent) : QWidget(parent), m_kind(kind)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_button = new QPushButton(tr("Capture..."), this);
    m_button->setObjectName(kind == BrightSeries ? QStringLiteral("btnCaptureBrightImage")
                                                 : QStringLiteral("btnCaptureDarkImage"));
    layout->addWidget(m_button);
    connect(m_button, &QPushButton::clicked, this, &UXCFrameCaptureControl::askAndCapture);
    connect(&m_watcher, &QFutureWatcher<CaptureOutcome>::finished, this, &UXCFrameCaptureControl::finish);
    setCamera(nullptr, QString(), QString());
}

UXCFrameCaptureControl::~UXCFrameCaptureControl()
{
    stop();
}

void UXCFrameCaptureControl::setCamera(ZebCPP::CameraPtr camera, const QString& serial, const QString& folder)
{
    m_camera = std::move(camera);
    m_serial = serial;
    m_folder = folder;
    const QString reason = m_camera ? FrameCapture(m_camera).unavailableReason() : tr("No camera is open.");
    m_button->setEnabled(reason.isEmpty());
    m_button->setToolTip(reason.isEmpty() ? tr("Take the series from the camera.") : reason);
}

void UXCFrameCaptureControl::askAndCapture()
{
    if (!m_camera || isCapturing())
        return;
    FrameCapture probe(m_camera);
    const bool bright = m_kind == BrightSeries;
    QDialog dialog(this);
    dialog.setObjectName(QStringLiteral("captureDialog"));
    dialog.setWindowTitle(bright ? tr("Capture Bright Images") : tr("Capture Dark Images"));
    auto* form = new QFormLayout(&dialog);
    auto* instruction = new QLabel(bright ? tr("Light the sensor evenly, at about half of full scale.")
                                          : tr("Cover the lens, so that no light reaches the sensor."),
                                   &dialog);
    instruction->setWordWrap(true);
    form->addRow(instruction);
    auto* frames = new QSpinBox(&dialog);
    frames->setRange(1, 1000);
    frames->setValue(16);
    form->addRow(tr("Frames:"), frames);
    auto* exposure = new QDoubleSpinBox(&dialog);
    exposure->setRange(1, 1e8);
    exposure->setDecimals(1);
    exposure->setSuffix(QStringLiteral(" µs"));
    const std::optional<double> exposureNow = probe.exposureTime();
    exposure->setValue(exposureNow.value_or(0));
    exposure->setEnabled(exposureNow.has_value());
    form->addRow(tr("Exposure time:"), exposure);
    auto* gain = new QDoubleSpinBox(&dialog);
    gain->setRange(-1000, 1000);
    const std::optional<double> gainNow = probe.gain();
    gain->setValue(gainNow.value_or(0));
    gain->setEnabled(gainNow.has_value());
    form->addRow(tr("Gain:"), gain);
    auto* check = new QPushButton(tr("Check Level"), &dialog);
    auto* level = new QLabel(&dialog);
    level->setWordWrap(true);
    form->addRow(check, level);
    auto settings = [&] {
        FrameCaptureSettings s;
        s.frames = frames->value();
        if (exposure->isEnabled())
            s.exposureTime = exposure->value();
        if (gain->isEnabled())
            s.gain = gain->value();
        return s;
    };
    connect(check, &QPushButton::clicked, &dialog, [&] {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        FrameLevel measured;
        QString error;
        const bool ok = probe.measureLevel(settings(), measured, &error);
        QApplication::restoreOverrideCursor();
        if (!ok) {
            level->setText(error);
            return;
        }
        const QString warning = FrameCapture::levelWarning(measured, bright);
        level->setText(tr("Mean %1, spread %2.").arg(measured.mean, 0, 'f', 1).arg(measured.spread, 0, 'f', 1)
                       + (warning.isEmpty() ? QString() : QLatin1Char('\n') + warning));
    });
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Capture"));
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    form->addRow(buttons);
    if (dialog.exec() == QDialog::Accepted)
        capture(settings());
}

bool UXCFrameCaptureControl::capture(const FrameCaptureSettings& settings)
{
    if (!m_camera || isCapturing() || !QDir().mkpath(m_folder))
        return false;
    if (!m_progress) {
        m_progress = new QProgressDialog(this);
        m_progress->setObjectName(QStringLiteral("captureProgress"));
        m_progress->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
        m_progress->setWindowModality(Qt::WindowModal);
        m_progress->setWindowTitle(tr("Capture"));
        m_progress->setMinimumDuration(0);
        m_progress->setAutoReset(false);
        m_progress->setAutoClose(false);
    }
    m_cancel = std::make_shared<std::atomic<bool>>(false);
    connect(m_progress, &QProgressDialog::canceled, this, [cancel = m_cancel] { *cancel = true; });
    m_progress->setLabelText(tr("Capturing frames..."));
    m_progress->setRange(0, settings.frames);
    m_progress->setValue(0);
    m_progress->show();
    m_button->setEnabled(false);

    // The worker writes the bitmaps; the panel adds them on the GUI thread.
    const QDir folder(m_folder);
    const QDateTime start = QDateTime::currentDateTime();
    m_watcher.setFuture(QtConcurrent::run([this, camera = m_camera, cancel = m_cancel, settings, folder, start,
                                           serial = m_serial, kind = m_kind] {
        FrameCapture capture(camera);
        return capture.run(settings, [&](const CapturedFrame& frame, int index) {
            const QString path = folder.filePath(capturedImageName(serial, kind, start, index));
            if (!writeFrameBitmap(path, frame.pixels.data(), frame.width, frame.height))
                return false;
            QMetaObject::invokeMethod(this, [this, path, index] {
                if (m_progress)
                    m_progress->setValue(index + 1);
                emit frameCaptured(path, m_kind);
            }, Qt::QueuedConnection);
            return true;
        }, cancel.get());
    }));
    return true;
}

void UXCFrameCaptureControl::stop()
{
    if (m_cancel)
        *m_cancel = true;
    m_watcher.waitForFinished();
}

void UXCFrameCaptureControl::finish()
{
    // Frames announced by the worker are queued before this; deliver them first.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    if (m_progress) {
        m_progress->disconnect(this);
        m_progress->hide();
    }
    const CaptureOutcome outcome = m_watcher.result();
    setCamera(m_camera, m_serial, m_folder);
    emit captureFinished(int(outcome.end), outcome.frames, outcome.message);
}
