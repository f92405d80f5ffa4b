#include "uxseriescapture.h"

#include "imageseries.h"
#include "uxcamera.h"
#include "uxdialogs.h"
#include "uxframecapturecontrol.h"
#include "uxpanelmessages.h"
#include "uxsettings.h"

#include <QBoxLayout>

UXCSeriesCapture::UXCSeriesCapture(QWidget* panel, QBoxLayout* darkStack, QBoxLayout* brightStack,
                                   UXCPanelMessages& messages)
    : QObject(panel)
    , m_messages(messages)
    , m_dark(new UXCFrameCaptureControl(DarkSeries, panel))
    , m_bright(new UXCFrameCaptureControl(BrightSeries, panel))
{
    darkStack->insertWidget(1, m_dark);
    brightStack->insertWidget(1, m_bright);
    for (UXCFrameCaptureControl* control : {m_dark, m_bright}) {
        connect(control, &UXCFrameCaptureControl::frameCaptured, this, &UXCSeriesCapture::frameCaptured);
        const int kind = control == m_dark ? DarkSeries : BrightSeries;
        connect(control, &UXCFrameCaptureControl::captureFinished, this,
                [this, kind](int end, int frames, const QString& message) { finish(kind, end, frames, message); });
    }
}

UXCFrameCaptureControl* UXCSeriesCapture::control(int kind) const
{
    return kind == BrightSeries ? m_bright : m_dark;
}

void UXCSeriesCapture::bindCamera(UxCamera& camera)
{
    std::string serial;
    camera.GetCameraPtr()->GetSerialNumber(serial);
    const QString folder = UXCSettings::getInstance()->ImagesDir();
    m_dark->setCamera(camera.GetCameraPtr(), QString::fromStdString(serial), folder);
    m_bright->setCamera(camera.GetCameraPtr(), QString::fromStdString(serial), folder);
}

void UXCSeriesCapture::stop()
{
    for (UXCFrameCaptureControl* control : {m_dark, m_bright}) {
        control->stop();
        control->setCamera(nullptr, QString(), QString());
    }
}

void UXCSeriesCapture::finish(int kind, int end, int frames, const QString& message)
{
    const bool bright = kind == BrightSeries;
    if (end == int(CaptureEnd::Completed) || end == int(CaptureEnd::Cancelled) || message.isEmpty()) {
        m_messages.log(bright ? tr("Captured %1 bright image(s).").arg(frames)
                              : tr("Captured %1 dark image(s).").arg(frames),
                       LogInfo);
        return;
    }
    m_messages.fail(tr("Capture"), message,
                    bright ? tr("Capture of bright images: %1").arg(message)
                           : tr("Capture of dark images: %1").arg(message));
}
