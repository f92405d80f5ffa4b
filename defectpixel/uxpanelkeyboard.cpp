#include "uxpanelkeyboard.h"
#include "ui_uxdefectpixelcorrection.h"

#include "imageseries.h"

#include <QShortcut>

void UXCPanelKeyboard::setUp(Ui::UXCDefectPixelCorrection& form, QObject* context,
                             const std::function<void(int)>& deleteImages)
{
    // The mean images stay large enough to judge whatever the docks take.
    const QSize meanMinimum(160, 120);
    form.frameMeanImageDark->setMinimumSize(meanMinimum);
    form.frameMeanImageBright->setMinimumSize(meanMinimum);

    form.btnCloseCamera->setText(tr("Cl&ose Camera"));
    form.btnAddDarkImage->setText(tr("&Add"));
    form.btnDeleteDarkImage->setText(tr("&Delete"));
    form.btnAddBrightImage->setText(tr("&Add"));
    form.btnDeleteBrightImage->setText(tr("&Delete"));
    form.btnGenerateMap->setText(tr("&Generate Map"));
    form.btnUploadMapToCam->setText(tr("&Upload Generated Map To Camera"));
    form.btnSaveMapToFile->setText(tr("&Save Generated Map To File "));
    form.btnUploadLocalMap->setText(tr("Upload &Local Map To Camera"));
    form.btnDownloadMapToFile->setText(tr("Do&wnload Map To File"));

    // Delete removes the selected images of the list that has the focus.
    for (QListWidget* list : {form.listDarkImagePath, form.listBrightImagePath}) {
        const int kind = list == form.listDarkImagePath ? DarkSeries : BrightSeries;
        auto* shortcut = new QShortcut(QKeySequence::Delete, list, nullptr, nullptr, Qt::WidgetShortcut);
        QObject::connect(shortcut, &QShortcut::activated, context, [list, kind, deleteImages] {
            if (!list->selectedItems().isEmpty())
                deleteImages(kind);
        });
    }
}
