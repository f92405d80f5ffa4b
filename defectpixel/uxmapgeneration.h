#pragma once

#include "defectmap.h"
#include "defectmapgenerator.h"

#include <QCoreApplication>

class DefectPixelParams;
class QImage;
struct ImageGeometry;
struct MapSlotBinding;
class UXCMapTransfers;
class UXCPanelMessages;

// Generates the defect map from the series' mean images into the panel's map,
// sized by the camera's maximum, and words the ways that can fail.
class UXCMapGeneration {
    Q_DECLARE_TR_FUNCTIONS(UXCMapGeneration)

public:
    // What a generation reads and counts into.
    struct Series {
        DefectPixelParams& dark;
        DefectPixelParams& bright;
        ImageGeometry& geometry;
    };
    UXCMapGeneration(MapSlotBinding& binding, const UXCMapTransfers& transfers, UXCPanelMessages& messages);

    // The maximal map size the camera tells, when it tells one.
    void refreshMaxMapSize();
    // The map is replaced only when the generation succeeds; a colour camera's has no bright mean.
    MapGeneration generate(const QImage& darkMean, const QImage& brightMean, bool color, const Series& series,
                           DefectMap& map);
    // A generated map of count entries does not fit into the camera.
    void refuseOverMaximum(unsigned int count) const;

private:
    MapSlotBinding& m_binding;
    const UXCMapTransfers& m_transfers;
    UXCPanelMessages& m_messages;
};
