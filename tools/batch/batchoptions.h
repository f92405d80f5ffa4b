#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

// What one run of the batch tool is asked to do.
struct BatchOptions {
    bool list = false;                 // only list the cameras
    QStringList cameras;               // extended IDs, plain IDs or serial numbers
    QStringList models;                // model name patterns (wildcards)
    bool all = false;                  // every compatible camera
    QString darkDir;                   // folder of the dark bitmaps; {serial}, {model}, {id} are filled in
    QString brightDir;                 // folder of the bright bitmaps, likewise
    bool capture = false;              // capture the series from the cameras instead
    int frames = 16;                   // frames per captured series, as the assistant's capture takes
    double brightLight = 50;           // light a simulated camera gets for the bright series, percent
    int absoluteThreshold = 16;        // grey levels of the dark test
    int relativeThreshold = 12;        // percent of the bright test
    QString slot;                      // map slot to upload into; none: no upload
    bool confirmed = false;            // the user agreed to overwrite the slot
    QString saveDir;                   // folder for <serial>.txt and <serial>.bin; none: not saved
    QString reportPath;                // JSON report
    int jobs = 1;                      // cameras worked on at once
    bool dryRun = false;               // never write to a camera
    bool verify = true;                // read the slot back after the upload
    bool quiet = false;                // no progress display
};

// Parses the command line (arguments[0] is the program). Returns false with
// the text to print: the help (exitCode 0) or why the line is wrong (exitCode 2).
class BatchCommandLine {
    Q_DECLARE_TR_FUNCTIONS(BatchCommandLine)

public:
    static bool parse(const QStringList& arguments, BatchOptions& options, QString& message, int& exitCode);
};
