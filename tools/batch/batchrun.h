#pragma once

#include "CameraInfoMap.h"
#include "batchjob.h"
#include "batchoptions.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QTextStream>
#include <QVector>

#include <memory>

class ApiController;

// A whole run of the batch tool over the cameras the options select.
class BatchRun {
    Q_DECLARE_TR_FUNCTIONS(BatchRun)

public:
    // The camera SDK must be started. Writes the summary lines to out, progress
    // and problems of the run itself to err, the report to the options' file.
    // 0 when every selected camera succeeded, 1 otherwise.
    static int run(const BatchOptions& options, QTextStream& out, QTextStream& err, QJsonObject* report = nullptr);

    // The program: parses the arguments, starts and stops the SDK around run().
    static int main(const QStringList& arguments, QTextStream& out, QTextStream& err);

private:
    static void list(ApiController& controller, QTextStream& out);
};
