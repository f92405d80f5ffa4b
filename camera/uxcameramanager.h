#pragma once

#include <QObject>
#include <QString>

#include <memory>

class ApiController;
class UxCamera;

// Opens and closes cameras by extended ID through the shared API controller.
// It keeps no list of what it opened: destroying it closes nothing.
class UxCameraManager : public QObject {
    Q_OBJECT

public:
    explicit UxCameraManager(std::shared_ptr<ApiController> controller, QObject* parent = nullptr);

    // A new camera object without parent, owned by the caller; null on failure.
    UxCamera* Open(const QString& extendedId);
    bool Close(const QString& extendedId);

private:
    std::shared_ptr<ApiController> m_controller;
};
