#pragma once

#include <ZebCPP.h>

#include <QObject>

// Hands the SDK's camera-list notifications to Qt. The SDK calls it on its own
// thread, so it does no work there: receivers get the signal queued.
class CameraObserver : public QObject, public ZebCPP::ICameraListObserver {
    Q_OBJECT

public:
    explicit CameraObserver(QObject* parent = nullptr);

    void CameraListChanged(ZebCPP::CameraPtr camera, ZebCPP::UpdateTriggerType reason) override;

signals:
    void CameraListChangedSignal(ZebCPP::CameraPtr camera, ZebCPP::UpdateTriggerType reason);
};
