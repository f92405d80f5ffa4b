// The panel's image adding lives in UXCImageAdder; these bind it to the form.

#include "uxdefectpixelcorrection.h"
#include "ui_uxdefectpixelcorrection.h"

#include "uximageadder.h"

UXCImageAdder UXCDefectPixelCorrection::imageAdder()
{
    auto line = [this](void (UXCDefectPixelCorrection::*sink)(const QString&, LogType)) {
        return [this, sink](const QString& text, LogType type) { (this->*sink)(text, type); };
    };
    return UXCImageAdder({this, [this]() -> UXCDialogs& { return dialogs(); }, line(&UXCDefectPixelCorrection::log),
                          line(&UXCDefectPixelCorrection::report), [this] { setMapStale(true); }, &m_resets,
                          &m_geometry, &m_saveImageDir},
                         {ui->listDarkImagePath, ui->lblMeanImageDark, &m_darkParams},
                         {ui->listBrightImagePath, ui->lblMeanImageBright, &m_brightParams});
}

bool UXCDefectPixelCorrection::loadImagefromFile(const QString& path, int kind)
{
    return imageAdder().addFile(path, kind);
}

void UXCDefectPixelCorrection::_addSelectedFiles(int kind)
{
    imageAdder().addChosenFiles(kind);
}
