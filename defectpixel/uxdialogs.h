#pragma once

#include <QMessageBox>
#include <QString>
#include <QStringList>

class QWidget;

// The file dialogs and message boxes of the panel. The default shows the Qt
// standard dialogs; a host or a test installs a subclass that answers instead.
class UXCDialogs {
public:
    virtual ~UXCDialogs() = default;

    virtual QStringList getOpenFileNames(QWidget* parent, const QString& caption, const QString& dir,
                                         const QString& filter);
    virtual QString getOpenFileName(QWidget* parent, const QString& caption, const QString& dir,
                                    const QString& filter);
    virtual QString getSaveFileName(QWidget* parent, const QString& caption, const QString& dir,
                                    const QString& filter);
    virtual QMessageBox::StandardButton information(QWidget* parent, const QString& title, const QString& text,
                                                    QMessageBox::StandardButtons buttons = QMessageBox::Ok);
    virtual QMessageBox::StandardButton critical(QWidget* parent, const QString& title, const QString& text,
                                                 QMessageBox::StandardButtons buttons = QMessageBox::Ok);
    // A box whose details (one line per case) the user can unfold.
    virtual QMessageBox::StandardButton detailed(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                                 const QString& text, const QString& details);
    virtual QMessageBox::StandardButton question(QWidget* parent, const QString& title, const QString& text,
                                                 QMessageBox::StandardButtons buttons);
};
