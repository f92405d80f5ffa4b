#include "uxmapfiles.h"

#include "defectmapfile.h"
#include "imagegeometry.h"
#include "mapslotbinding.h"
#include "uxdialogs.h"
#include "uxpanelmessages.h"
#include "uxsettings.h"

UXCMapFiles::UXCMapFiles(const MapSlotBinding& binding, const DefectMatchPatterns& patterns,
                         UXCPanelMessages& messages)
    : m_binding(binding)
    , m_patterns(patterns)
    , m_messages(messages)
{
}

QString UXCMapFiles::startDir()
{
    return UXCSettings::getInstance()->Get("Directory", "PDCSettingsFileDir").toString();
}

void UXCMapFiles::rememberDir(const QString& dir)
{
    if (dir != startDir())
        UXCSettings::getInstance()->Set(QStringLiteral("Directory"), QStringLiteral("PDCSettingsFileDir"), dir);
}

bool UXCMapFiles::save(const t_defpix* map, unsigned int count, const DefectMap& generated,
                       const ImageGeometry& geometry)
{
    const bool text = m_binding.registerMode;
    m_dir = startDir();
    const QString filter = (text ? tr("Text (*%1)") : tr("Bin (*%1)")).arg(defectMapFileExtension(text));
    const QString name = m_messages.dialogs().getSaveFileName(m_messages.window(), tr("Export Map"), m_dir, filter);
    DefectMapFilePanelState state;
    state.registerMode = text;
    state.revision = static_cast<unsigned int>(m_binding.revision);
    state.chunkId = static_cast<ge3_chunk_id_t>(m_binding.chunkId);
    state.map = generated.data();
    state.count = generated.count();
    state.imageWidth = geometry.width;
    state.imagePixelCount = geometry.pixelCount;
    m_savedFile = name.isEmpty() ? QString() : defectMapFileName(name, text);
    const bool saved = saveDefectMapFile(name, map, count, state, m_dir);
    rememberDir(m_dir);
    return saved;
}

void UXCMapFiles::saveGenerated(const DefectMap& generated, const ImageGeometry& geometry)
{
    if (!save(generated.data(), generated.count(), generated, geometry)) {
        m_messages.dialogs().critical(m_messages.window(), tr("Save Map"), tr("Save to file failed!"));
        m_messages.report(tr("Saving the map failed."), LogError);
    } else if (!m_savedFile.isEmpty()) {
        m_messages.report(tr("Map of %n entry(s) saved to %1.", nullptr, int(generated.count())).arg(m_savedFile),
                          LogInfo);
    }
}

QString UXCMapFiles::chooseTextMap()
{
    m_dir = startDir();
    return m_messages.dialogs().getOpenFileName(m_messages.window(), tr("Import Map"), m_dir, tr("Text (*.txt)"));
}

bool UXCMapFiles::load(const QString& fileName, t_defpix* map, unsigned int& count)
{
    if (!map || fileName.isEmpty())
        return false;
    const bool loaded = loadDefectMapFile(fileName, map, m_binding.maxMapSize, count,
                                          static_cast<unsigned int>(m_binding.revision),
                                          static_cast<ge3_chunk_id_t>(m_binding.chunkId), m_patterns, m_dir);
    rememberDir(m_dir);
    return loaded;
}
