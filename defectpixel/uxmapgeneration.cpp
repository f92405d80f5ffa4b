#include "uxmapgeneration.h"

#include "defectpixelparams.h"
#include "imagegeometry.h"
#include "mapslotbinding.h"
#include "uxdialogs.h"
#include "uxmaptransfers.h"
#include "uxpanelmessages.h"

#include <QApplication>
#include <QImage>

UXCMapGeneration::UXCMapGeneration(MapSlotBinding& binding, const UXCMapTransfers& transfers,
                                   UXCPanelMessages& messages)
    : m_binding(binding)
    , m_transfers(transfers)
    , m_messages(messages)
{
}

void UXCMapGeneration::refreshMaxMapSize()
{
    QVariant maximum;
    if (m_transfers.readMaxMapSize(maximum))
        m_binding.maxMapSize = maximum.toUInt();
}

MapGeneration UXCMapGeneration::generate(const QImage& darkMean, const QImage& brightMean, bool color,
                                         const Series& series, DefectMap& map)
{
    MapGeneration generation = MapGeneration::MissingImages;
    if (!darkMean.isNull() || !brightMean.isNull()) {
        // Filled aside, so that a failed threshold step leaves the shown map as it is.
        refreshMaxMapSize();
        DefectMap next(m_binding.maxMapSize);
        generation = color ? create_defpix_map_color(darkMean, series.dark, series.geometry, next)
                           : create_defpix_map(darkMean, brightMean, series.dark, series.bright, series.geometry, next);
        if (generation == MapGeneration::Generated)
            map = std::move(next);
    }
    if (generation == MapGeneration::Generated)
        return generation;
    QApplication::restoreOverrideCursor();
    if (generation == MapGeneration::NoMemory) {
        m_messages.fail(tr("Generate Map"), tr("Generate map failed: out of memory!"),
                        tr("Generate map failed: out of memory!"));
        return generation;
    }
    m_messages.dialogs().information(m_messages.window(), tr("Generate Map"),
                                     tr("Generate map failed: missing image parameters"));
    m_messages.log(color ? tr("Generate color map failed: missing image parameters!")
                         : tr("Generate map failed: missing image parameters!"),
                   LogError);
    return generation;
}

void UXCMapGeneration::refuseOverMaximum(unsigned int count) const
{
    QApplication::restoreOverrideCursor();
    const QString text = tr("The resulting number of defect pixels: %1; the maximum allowed is: %2.")
                             .arg(count)
                             .arg(m_binding.maxMapSize);
    m_messages.dialogs().information(m_messages.window(), tr("Generate Map"), text);
    m_messages.log(tr("Generate map: The resulting number of defect pixels: %1; the maximum allowed is: %2.")
                       .arg(count)
                       .arg(m_binding.maxMapSize),
                   LogError);
    m_messages.report(text, LogError);
}
