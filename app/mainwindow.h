#pragma once

#include "BasicMainWindow.h"

class QDockWidget;
class UXCDefectPixelCorrection;
class UxCamera;

// The application's main window: the camera list while no camera is open, the
// correction assistant in its place while one is.
class MainWindow : public BasicMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);

    UXCDefectPixelCorrection* Assistant() const { return m_assistant; }
    QDockWidget* AssistantDock() const { return m_assistantDock; }

private slots:
    void onInitAssistant(UxCamera* camera);
    void onResetAssistant();

private:
    UXCDefectPixelCorrection* m_assistant;
    QDockWidget* m_assistantDock;
};
