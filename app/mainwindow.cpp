#include "mainwindow.h"

#include "uxcamera.h"
#include "uxdefectpixelcorrection.h"

#include <QDockWidget>
#include <QMenu>
#include <QScrollArea>

MainWindow::MainWindow(QWidget* parent)
    : BasicMainWindow(parent)
    , m_assistant(new UXCDefectPixelCorrection(this))
    , m_assistantDock(new QDockWidget(tr("Defect Pixel Correction Assistant"), this))
{
    setWindowIcon(QIcon(QStringLiteral(":/Images/res/CorvaneOptics.ico")));
    m_assistant->setEnabled(false);

    // No title bar and no features: the assistant takes the camera list's place
    // in the bottom area and cannot be moved, floated or closed by itself.
    m_assistantDock->setObjectName(QStringLiteral("dockAssistant"));
    m_assistantDock->setTitleBarWidget(new QWidget(m_assistantDock));
    // On a small window the panel scrolls rather than squeezing its mean images away.
    auto* scroll = new QScrollArea(m_assistantDock);
    scroll->setObjectName(QStringLiteral("assistantScroll"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(m_assistant);
    m_assistantDock->setWidget(scroll);
    m_assistantDock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    m_assistantDock->setAllowedAreas(Qt::BottomDockWidgetArea);
    addDockWidget(Qt::BottomDockWidgetArea, m_assistantDock);
    m_assistantDock->setFloating(false);
    ViewMenu()->addAction(m_assistantDock->toggleViewAction());
    m_assistantDock->hide();

    connect(this, &BasicMainWindow::CameraOpened, this, &MainWindow::onInitAssistant);
    connect(this, &BasicMainWindow::CameraClosed, this, &MainWindow::onResetAssistant);
    connect(m_assistant, &UXCDefectPixelCorrection::cameraCloseRequested, this,
            &BasicMainWindow::CameraCloseRequested);
    connect(m_assistant, &UXCDefectPixelCorrection::sendLogMessage, this, &BasicMainWindow::OnLogMessage);
    connect(m_assistant, &UXCDefectPixelCorrection::actionOutcome, this, &BasicMainWindow::ShowOutcome);
}

void MainWindow::onInitAssistant(UxCamera* camera)
{
    if (!camera) {
        onResetAssistant();
        return;
    }
    const QString cameraName = camera->GetCameraName();
    if (!m_assistant->Init(camera)) {
        CameraListDock()->show();
        emit m_assistant->sendLogMessage(
            tr("Unsupported camera (%1). Defect pixel map selection is unavailable.").arg(cameraName),
            LogError);
        // The panel owns the camera from Init on; the close request ends in its Reset.
        emit m_assistant->cameraCloseRequested();
        return;
    }
    CameraListDock()->hide();
    m_assistantDock->show();
    m_assistant->setEnabled(true);
    setWindowTitle(QStringLiteral("%1 - %2").arg(DefaultWindowTitle(), cameraName));
    m_assistant->focusFirstAction();
}

void MainWindow::onResetAssistant()
{
    setWindowTitle(DefaultWindowTitle());
    m_assistant->Reset();
    m_assistant->setEnabled(false);
    CameraListDock()->show();
    m_assistantDock->hide();
}
