// The panel's members for the camera's map quantities, the transfers and the
// map files: forwards to the map slots and to the classes that do the work.
#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "uxcamera.h"
#include "uxmapfiles.h"
#include "uxmapslotactions.h"
#include "uxmaptransfers.h"

bool UXCDefectPixelCorrection::GetRegValue(unsigned long address, uint32_t& value)
{
    return m_camera && m_camera->readRegister(address, value);
}

bool UXCDefectPixelCorrection::SetRegValue(unsigned long address, uint32_t value)
{
    return m_camera && m_camera->writeRegister(address, value);
}

bool UXCDefectPixelCorrection::isParamlocked()
{
    return m_slots.mapSlots && m_slots.mapSlots->paramsLocked();
}

bool UXCDefectPixelCorrection::getPixelsCorrectionControlEnable(bool& enabled)
{
    return m_slots.mapSlots && m_slots.mapSlots->correctionEnabled(enabled);
}

bool UXCDefectPixelCorrection::setPixelsCorrectionControlEnable(bool enabled)
{
    return m_slots.mapSlots && m_slots.mapSlots->setCorrectionEnabled(enabled);
}

bool UXCDefectPixelCorrection::setPixelsCorrectionControlMark(bool mark)
{
    return m_slots.mapSlots && m_slots.mapSlots->setCorrectionMark(mark);
}

bool UXCDefectPixelCorrection::getSelectedDefectPixelCorrectionMap(QVariant& slot)
{
    return m_slots.mapSlots && m_slots.mapSlots->selectedSlot(slot);
}

bool UXCDefectPixelCorrection::SelectDefectPixelCorrectionMap(const QVariant& slot)
{
    return m_slots.mapSlots && m_slots.mapSlots->selectSlot(slot);
}

bool UXCDefectPixelCorrection::getMaximalPixelsCorrectionMapSize(QVariant& size)
{
    return m_transfers->readMaxMapSize(size);
}

bool UXCDefectPixelCorrection::getPixelsCorrectionMapSize(QVariant& size)
{
    return m_slots.mapSlots && m_slots.mapSlots->mapSize(size);
}

bool UXCDefectPixelCorrection::getMapCoordinate(unsigned int index, unsigned int& x, unsigned int& y)
{
    return m_slots.mapSlots && m_slots.mapSlots->entry(index, x, y);
}

bool UXCDefectPixelCorrection::setMapCoordinate(unsigned int index, unsigned int x, unsigned int y)
{
    return m_slots.mapSlots && m_slots.mapSlots->setEntry(index, x, y);
}

bool UXCDefectPixelCorrection::clearDefectPixelCorrectionMap(const QVariant& slot)
{
    return m_slots.mapSlots && m_slots.mapSlots->clearSlot(slot);
}

bool UXCDefectPixelCorrection::upload_defpix_map_genicam(t_defpix* map, unsigned int count)
{
    return m_transfers->uploadEntries(map, count);
}

bool UXCDefectPixelCorrection::uploadMap_RegisterAccess(t_defpix* map, unsigned int count)
{
    return m_transfers->uploadWords(map, count);
}

bool UXCDefectPixelCorrection::Gen_download_defpix_map(t_defpix* map, unsigned int& count)
{
    return m_transfers->downloadEntries(map, count);
}

bool UXCDefectPixelCorrection::downloadMap_RegisterAccess()
{
    defpix_reset();
    return m_transfers->downloadWords(m_map);
}

bool UXCDefectPixelCorrection::SaveMap(t_defpix* map, unsigned int count)
{
    return m_mapFiles->save(map, count, m_map, m_geometry);
}

bool UXCDefectPixelCorrection::LoadMap(t_defpix* map, unsigned int& count)
{
    return map && m_slots.maxMapSize != 0 && loadMapFile(m_mapFiles->chooseTextMap(), map, count);
}

bool UXCDefectPixelCorrection::loadMapFile(const QString& name, t_defpix* map, unsigned int& count)
{
    return m_mapFiles->load(name, map, count);
}

void UXCDefectPixelCorrection::on_btnSaveMapToFile_clicked()
{
    m_mapFiles->saveGenerated(m_map, m_geometry);
}

void UXCDefectPixelCorrection::on_btnUploadMapToCam_clicked()
{
    m_slotActions->uploadGenerated(ui->cmbDefectPixelMapSelector->currentText(), m_map, m_geometry);
}

void UXCDefectPixelCorrection::on_btnUploadLocalMap_clicked()
{
    m_slotActions->uploadLocal(ui->cmbDefectPixelMapSelector->currentText());
}

void UXCDefectPixelCorrection::on_btnDownloadMapToFile_clicked()
{
    m_slotActions->download(ui->cmbDefectPixelMapSelector->currentText(), m_map, m_geometry);
}
