#pragma once

#include "framecapture.h"

#include <QFutureWatcher>
#include <QWidget>

#include <atomic>
#include <memory>

class QPushButton;
class QProgressDialog;

// The "Capture..." control of one series tab: asks for the frame count, exposure
// time and gain, checks the level of one frame, then takes the series from the
// camera on a worker thread with a cancellable progress window. Each frame is
// written as a bitmap into the images folder and announced by frameCaptured, so
// that the panel adds it as it adds a chosen bitmap file.
class UXCFrameCaptureControl : public QWidget {
    Q_OBJECT

public:
    UXCFrameCaptureControl(int kind, QWidget* parent = nullptr);
    ~UXCFrameCaptureControl() override;

    // Null disables the control. Bitmaps go to folder, named after serial.
    void setCamera(ZebCPP::CameraPtr camera, const QString& serial, const QString& folder);
    // Starts a capture without asking; false when one runs or none is possible.
    bool capture(const FrameCaptureSettings& settings);
    // Cancels a running capture and waits for its worker; its frames stay.
    void stop();
    bool isCapturing() const { return m_watcher.isRunning(); }
    QPushButton* button() const { return m_button; }

signals:
    void frameCaptured(const QString& path, int kind);
    // end is a CaptureEnd; message is empty when every frame was taken or the user cancelled.
    void captureFinished(int end, int frames, const QString& message);

private:
    void askAndCapture();
    void finish();

    const int m_kind;
    QPushButton* m_button = nullptr;
    ZebCPP::CameraPtr m_camera;
    QString m_serial;
    QString m_folder;
    std::shared_ptr<std::atomic<bool>> m_cancel;
    QFutureWatcher<CaptureOutcome> m_watcher;
    QProgressDialog* m_progress = nullptr;
};
