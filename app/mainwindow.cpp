#include "mainwindow.h"

#include "uxcamera.h"

MainWindow::MainWindow(QWidget* parent)
    : BasicMainWindow(parent)
{
    setWindowIcon(QIcon(QStringLiteral(":/Images/res/CorvaneOptics.ico")));
    connect(this, &BasicMainWindow::CameraOpened, this, &MainWindow::keepOpenedCamera);
    connect(this, &BasicMainWindow::CameraClosed, this, &MainWindow::releaseCamera);
}

MainWindow::~MainWindow() = default;

void MainWindow::keepOpenedCamera(UxCamera* camera)
{
    m_camera.reset(camera);
}

void MainWindow::releaseCamera()
{
    m_camera.reset();
}
