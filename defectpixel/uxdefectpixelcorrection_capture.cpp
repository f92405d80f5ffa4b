// The panel's binding of the capture controls in its two series tabs.

#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "imageseries.h"
#include "uxcamera.h"
#include "uxdialogs.h"
#include "uxframecapturecontrol.h"
#include "uxsettings.h"

#include <QListWidget>

void UXCDefectPixelCorrection::bindCaptureControls()
{
    m_captureDark = new UXCFrameCaptureControl(DarkSeries, this);
    m_captureBright = new UXCFrameCaptureControl(BrightSeries, this);
    // Beside "Add", in each tab's button stack.
    ui->verticalLayout->insertWidget(1, m_captureDark);
    ui->verticalLayout_4->insertWidget(1, m_captureBright);
    for (UXCFrameCaptureControl* control : {m_captureDark, m_captureBright}) {
        connect(control, &UXCFrameCaptureControl::frameCaptured, this, &UXCDefectPixelCorrection::addCapturedImage);
        const int kind = control == m_captureDark ? DarkSeries : BrightSeries;
        connect(control, &UXCFrameCaptureControl::captureFinished, this,
                [this, kind](int end, int frames, const QString& message) { finishCapture(kind, end, frames, message); });
    }
}

UXCFrameCaptureControl* UXCDefectPixelCorrection::captureControl(int kind) const
{
    return kind == BrightSeries ? m_captureBright : m_captureDark;
}

void UXCDefectPixelCorrection::bindCaptureCamera()
{
    std::string serial;
    m_camera->GetCameraPtr()->GetSerialNumber(serial);
    const QString folder = UXCSettings::getInstance()->ImagesDir();
    m_captureDark->setCamera(m_camera->GetCameraPtr(), QString::fromStdString(serial), folder);
    m_captureBright->setCamera(m_camera->GetCameraPtr(), QString::fromStdString(serial), folder);
}

void UXCDefectPixelCorrection::stopCapture()
{
    for (UXCFrameCaptureControl* control : {m_captureDark, m_captureBright}) {
        control->stop();
        control->setCamera(nullptr, QString(), QString());
    }
}

// A captured frame enters its series as a chosen bitmap file does.
void UXCDefectPixelCorrection::addCapturedImage(const QString& path, int kind)
{
    QListWidget* list = kind == BrightSeries ? ui->listBrightImagePath : ui->listDarkImagePath;
    if (!m_camera || !list->findItems(path, Qt::MatchExactly | Qt::MatchCaseSensitive).isEmpty())
        return;
    if (loadImagefromFile(path, kind))
        list->addItem(path);
    enableButtons();
}

void UXCDefectPixelCorrection::finishCapture(int kind, int end, int frames, const QString& message)
{
    const bool bright = kind == BrightSeries;
    if (end == int(CaptureEnd::Completed) || end == int(CaptureEnd::Cancelled) || message.isEmpty()) {
        log(bright ? tr("Captured %1 bright image(s).").arg(frames) : tr("Captured %1 dark image(s).").arg(frames),
            LogInfo);
        return;
    }
    dialogs().critical(this, tr("Capture"), message);
    log(bright ? tr("Capture of bright images: %1").arg(message) : tr("Capture of dark images: %1").arg(message),
        LogError);
}
