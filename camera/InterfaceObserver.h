#pragma once

#include <ZebCPP.h>

#include <QObject>

// Hands the SDK's interface-list notifications to Qt, like CameraObserver.
class InterfaceObserver : public QObject, public ZebCPP::IInterfaceListObserver {
    Q_OBJECT

public:
    explicit InterfaceObserver(QObject* parent = nullptr);

    void InterfaceListChanged(ZebCPP::InterfacePtr interface, ZebCPP::UpdateTriggerType reason) override;

signals:
    void InterfaceListChangedSignal(ZebCPP::InterfacePtr interface, ZebCPP::UpdateTriggerType reason);
};
