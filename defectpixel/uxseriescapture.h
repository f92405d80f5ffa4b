#pragma once

#include <QObject>
#include <QString>

class QBoxLayout;
class QWidget;
class UXCFrameCaptureControl;
class UXCPanelMessages;
class UxCamera;

// The capture controls of the two series tabs: bound to the panel's camera,
// stopped when it goes, and the end of each capture told to the user.
class UXCSeriesCapture : public QObject {
    Q_OBJECT

public:
    // The controls go beside "Add", into each tab's button stack.
    UXCSeriesCapture(QWidget* panel, QBoxLayout* darkStack, QBoxLayout* brightStack, UXCPanelMessages& messages);

    UXCFrameCaptureControl* control(int kind) const;
    void bindCamera(UxCamera& camera);
    void stop();

signals:
    void frameCaptured(const QString& path, int kind);

private:
    void finish(int kind, int end, int frames, const QString& message);

    UXCPanelMessages& m_messages;
    UXCFrameCaptureControl* m_dark;   // owned by the panel
    UXCFrameCaptureControl* m_bright; // owned by the panel
};
