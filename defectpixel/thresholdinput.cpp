#include "thresholdinput.h"

ThresholdInput acceptThresholdText(const QString& text, int current, int limit)
{
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    if (!text.isEmpty() && ok && value <= limit)
        return {value, text};
    return {current, QString::number(current)};
}
