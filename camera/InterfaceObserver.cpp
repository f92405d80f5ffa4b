#include "InterfaceObserver.h"

InterfaceObserver::InterfaceObserver(QObject* parent)
    : QObject(parent)
{
}

void InterfaceObserver::InterfaceListChanged(ZebCPP::InterfacePtr interface, ZebCPP::UpdateTriggerType reason)
{
    emit InterfaceListChangedSignal(interface, reason);
}
