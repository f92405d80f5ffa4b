#include "windowlayout.h"

#include "uxsettings.h"

#include <QDockWidget>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>

namespace {

const char* const kGroup = "Window";

} // namespace

QSize firstWindowSize(const QRect& available, const QSize& minimum)
{
    if (available.isEmpty())
        return minimum;
    const QSize wanted(available.width() * 2 / 3, available.height() * 2 / 3);
    return wanted.expandedTo(minimum).boundedTo(available.size().expandedTo(minimum));
}

void restoreWindowLayout(QMainWindow& window, QDockWidget& logDock)
{
    UXCSettings* settings = UXCSettings::getInstance();
    const QByteArray geometry = settings->Get(kGroup, "Geometry").toByteArray();
    if (geometry.isEmpty() || !window.restoreGeometry(geometry)) {
        const QScreen* screen = QGuiApplication::primaryScreen();
        window.resize(firstWindowSize(screen ? screen->availableGeometry() : QRect(), window.minimumSize()));
    }
    logDock.setVisible(settings->Get(kGroup, "LogVisible", false).toBool());
}

void saveWindowLayout(const QMainWindow& window, const QDockWidget& logDock)
{
    UXCSettings* settings = UXCSettings::getInstance();
    settings->Set(kGroup, "Geometry", window.saveGeometry());
    settings->Set(kGroup, "LogVisible", !logDock.isHidden());
}
