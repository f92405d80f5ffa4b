#include "uxdialogs.h"

#include <QFileDialog>

QStringList UXCDialogs::getOpenFileNames(QWidget* parent, const QString& caption, const QString& dir,
                                         const QString& filter)
{
    return QFileDialog::getOpenFileNames(parent, caption, dir, filter);
}

QString UXCDialogs::getOpenFileName(QWidget* parent, const QString& caption, const QString& dir,
                                    const QString& filter)
{
    return QFileDialog::getOpenFileName(parent, caption, dir, filter);
}

QString UXCDialogs::getSaveFileName(QWidget* parent, const QString& caption, const QString& dir,
                                    const QString& filter)
{
    return QFileDialog::getSaveFileName(parent, caption, dir, filter);
}

QMessageBox::StandardButton UXCDialogs::information(QWidget* parent, const QString& title, const QString& text,
                                                    QMessageBox::StandardButtons buttons)
{
    return QMessageBox::information(parent, title, text, buttons);
}

QMessageBox::StandardButton UXCDialogs::critical(QWidget* parent, const QString& title, const QString& text,
                                                 QMessageBox::StandardButtons buttons)
{
    return QMessageBox::critical(parent, title, text, buttons);
}

QMessageBox::StandardButton UXCDialogs::question(QWidget* parent, const QString& title, const QString& text,
                                                 QMessageBox::StandardButtons buttons)
{
    return QMessageBox::question(parent, title, text, buttons);
}

QMessageBox::StandardButton UXCDialogs::detailed(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                                 const QString& text, const QString& details)
{
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.setDetailedText(details);
    return QMessageBox::StandardButton(box.exec());
}
