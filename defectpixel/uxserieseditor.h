#pragma once

#include "defectpixelparams.h"
#include "imagegeometry.h"
#include "logtype.h"

#include <QCoreApplication>
#include <QString>

#include <functional>

class QListWidget;
class QPushButton;
class QWidget;
class UXCDialogs;
class UXCPixmapLabel;

// Adds bitmap files to the panel's dark and bright series and takes them out:
// one file at a time, or a chosen batch whose files are read in steps on a
// worker, several at once into the mean, while the window stays responsive. Speaks with the panel's words.
class UXCSeriesEditor {
    Q_DECLARE_TR_FUNCTIONS(UXCDefectPixelCorrection)

public:
    struct Series {
        QListWidget* list;       // the series' files
        UXCPixmapLabel* display; // holds the series' mean
        DefectPixelParams* params;
        QPushButton* deleteButton;
    };
    // What the adder uses of the panel.
    struct Panel {
        QWidget* window; // parent of the boxes and the progress window
        std::function<UXCDialogs&()> dialogs;
        std::function<void(const QString&, LogType)> log;
        std::function<void(const QString&, LogType)> report; // the outcome line
        std::function<void()> inputsChanged;                 // the shown map is out of date
        const unsigned int* resets;                          // moves when the panel is reset
        ImageGeometry* geometry;
        QString* imageDir; // where the file dialog starts; follows the chosen files
    };

    UXCSeriesEditor(Panel panel, Series dark, Series bright);

    // Loads one file into series kind; true when the image was accepted.
    bool addFile(const QString& path, int kind);
    // Asks for files and adds those not in series kind yet.
    void addChosenFiles(int kind);
    // Takes one file out of series kind's mean.
    void removeFile(const QString& path, int kind);
    // Takes the selected files out of series kind's mean and list.
    void removeSelectedFiles(int kind);
    // Does so telling how many went; true when series kind is left empty,
    // which forgets its mean (and the image size once both are empty).
    bool removeSelected(int kind);

private:
    const Series& series(int kind) const { return kind == 1 ? m_bright : m_dark; }

    Panel m_panel;
    Series m_dark;
    Series m_bright;
};
