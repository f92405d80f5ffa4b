#pragma once

#include <QRect>
#include <QSize>

class QDockWidget;
class QMainWindow;

// The first size of the main window on a screen with this available area: two
// thirds of it, never below the window's minimum nor above the area.
QSize firstWindowSize(const QRect& available, const QSize& minimum);

// The window's geometry and whether the log is shown, kept between runs in the
// program's own settings. Without a stored geometry the window gets its first size.
void restoreWindowLayout(QMainWindow& window, QDockWidget& logDock);
void saveWindowLayout(const QMainWindow& window, const QDockWidget& logDock);
