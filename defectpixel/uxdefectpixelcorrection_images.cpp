// The panel's image adding and removing live in UXCSeriesEditor; these bind it to the form.

#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "uxserieseditor.h"

UXCSeriesEditor UXCDefectPixelCorrection::seriesEditor()
{
    auto line = [this](void (UXCDefectPixelCorrection::*sink)(const QString&, LogType)) {
        return [this, sink](const QString& text, LogType type) { (this->*sink)(text, type); };
    };
    return UXCSeriesEditor({this, [this]() -> UXCDialogs& { return dialogs(); }, line(&UXCDefectPixelCorrection::log),
                            line(&UXCDefectPixelCorrection::report), [this] { setMapStale(true); }, &m_resets,
                            &m_geometry, &m_saveImageDir},
                           {ui->listDarkImagePath, ui->lblMeanImageDark, &m_darkParams, ui->btnDeleteDarkImage},
                           {ui->listBrightImagePath, ui->lblMeanImageBright, &m_brightParams, ui->btnDeleteBrightImage});
}

bool UXCDefectPixelCorrection::loadImagefromFile(const QString& path, int kind)
{
    return seriesEditor().addFile(path, kind);
}

void UXCDefectPixelCorrection::_addSelectedFiles(int kind)
{
    seriesEditor().addChosenFiles(kind);
}

void UXCDefectPixelCorrection::deleteImagefromParams(const QString& path, int kind)
{
    seriesEditor().removeFile(path, kind);
}

void UXCDefectPixelCorrection::_deleteSelectedFiles(int kind)
{
    seriesEditor().removeSelectedFiles(kind);
}

void UXCDefectPixelCorrection::deleteImages(int kind)
{
    if (seriesEditor().removeSelected(kind))
        enableButtons();
}
