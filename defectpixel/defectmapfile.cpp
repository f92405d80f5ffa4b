#include "defectmapfile.h"

#include "defectclassification.h"
#include "defectmaptext.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {


bool writeWhole(const QString& fileName, QIODevice::OpenMode mode, const char* data, qint64 size)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | mode))
        return false;
    if (file.write(data, size) != size) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

} // namespace

QString defectMapFileExtension(bool registerMode)
{
    return registerMode ? QStringLiteral(".txt") : QStringLiteral(".bin");
}

QString defectMapFileName(const QString& typedName, bool registerMode)
{
    const QString extension = defectMapFileExtension(registerMode);
    if (typedName.endsWith(extension, Qt::CaseInsensitive))
        return typedName;
    return typedName + extension;
}

bool saveDefectMapFile(const QString& typedName, const t_defpix* map, unsigned int count,
                       const DefectMapFilePanelState& panel, QString& rememberedDir)
{
    if (typedName.isEmpty())
        return true;
    const QString fileName = defectMapFileName(typedName, panel.registerMode);
    bool written = false;
    if (panel.registerMode) {
        if (!map && count != 0)
            return false;
        const QByteArray text = defectMapToText(map, count);
        written = writeWhole(fileName, QIODevice::Text, text.constData(), text.size());
    } else {
        if (!panel.map && panel.count != 0)
            return false;
        const std::vector<unsigned char> container = buildDefPixContainerBuffer(
            panel.revision, panel.chunkId, panel.count, panel.map, panel.imageWidth, panel.imagePixelCount);
        written = !container.empty()
                  && writeWhole(fileName, {}, reinterpret_cast<const char*>(container.data()),
                                qint64(container.size()));
    }
    if (!written)
        return false;
    rememberDefectMapFileDir(fileName, rememberedDir);
    return true;
}

bool loadDefectMapFile(const QString& fileName, t_defpix* map, unsigned int capacity, unsigned int& count,
                       unsigned int revision, ge3_chunk_id_t chunkId, const DefectMatchPatterns& patterns,
                       QString& rememberedDir)
{
    if (!map || capacity == 0 || count > capacity)
        return false;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    DefectMapWriter writer(map, capacity, count);
    if (!readDefectMapText(file, writer))
        return false;
    file.close();
    rememberDefectMapFileDir(fileName, rememberedDir);
    if (isTypedMap(int(revision), int(chunkId)))
        conv_defpix_map_990(map, count, patterns);
    return true;
}

void rememberDefectMapFileDir(const QString& fileName, QString& rememberedDir)
{
    rememberedDir = QFileInfo(fileName).absolutePath();
}
