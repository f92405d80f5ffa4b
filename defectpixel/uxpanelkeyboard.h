#pragma once

#include <QCoreApplication>

#include <functional>

namespace Ui {
class UXCDefectPixelCorrection;
}

// What the panel's form gets beside its own settings: mnemonics on the words it
// shows, the Delete key on the image lists, and mean images kept large enough.
class UXCPanelKeyboard {
    Q_DECLARE_TR_FUNCTIONS(UXCPanelKeyboard)

public:
    // deleteImages removes the selected images of the series kind.
    static void setUp(Ui::UXCDefectPixelCorrection& form, QObject* context, const std::function<void(int)>& deleteImages);
};
