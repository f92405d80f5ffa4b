#pragma once

#include "defectmap.h"
#include "mapslots.h"

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class FileAccessMapSlots;
struct ImageGeometry;
struct MapSlotBinding;
class UXCFileTaskRunner;
class UXCMapFiles;
class UXCMapStatus;
class UXCMapTransfers;
class UXCPanelMessages;

// What the buttons that move maps to and from the camera's selected slot do:
// register cameras transfer at once, file-access cameras in a file task.
class UXCMapSlotActions : public QObject {
    Q_OBJECT

public:
    struct Parts {
        MapSlotBinding& binding;
        UXCPanelMessages& messages;
        UXCMapStatus& status;
        UXCMapTransfers& transfers;
        UXCMapFiles& files;
        UXCFileTaskRunner& fileTasks;
    };
    UXCMapSlotActions(const Parts& parts, QObject* parent);

    void uploadGenerated(const QString& slot, const DefectMap& map, const ImageGeometry& geometry);
    void uploadLocal(const QString& slot);
    // generated and geometry go into a container file as the panel's own map.
    void download(const QString& slot, const DefectMap& generated, const ImageGeometry& geometry);

signals:
    void mapDownloaded(const std::vector<t_defpix>& entries, const QString& slot);

private:
    // The sensor's size for judging a local map; UINT_MAX each when unknown.
    void sensorSize(unsigned int& width, unsigned int& height) const;
    // A file-access upload whose log line logLine words with the slot, " failed" and the bytes.
    void startUpload(const QString& name, const QString& logLine, const QString& slot,
                     const std::function<MapTransfer(FileAccessMapSlots&, long&)>& run, const QString& success);
    // Logs and reports how a transfer on the GUI thread ended.
    void tell(bool done, const QString& logLine, const QString& success, const QString& failure) const;

    Parts m_parts;
};
