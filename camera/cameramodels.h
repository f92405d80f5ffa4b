#pragma once

#include <QString>

// True when the model name belongs to a camera family the assistant supports;
// family is then that family's name, otherwise empty.
bool IsCameraModelCompatible(const QString& model, QString& family);
