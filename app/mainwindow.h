#pragma once

#include "BasicMainWindow.h"

#include <memory>

class UxCamera;

// The application's main window.
class MainWindow : public BasicMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

private:
    void keepOpenedCamera(UxCamera* camera);
    void releaseCamera();

    // Whoever receives CameraOpened owns the camera; the window holds it until it is closed.
    std::unique_ptr<UxCamera> m_camera;
};
