#pragma once

#include <QString>

// Outcome of editing a threshold: the value to keep and the text the edit shows.
struct ThresholdInput {
    int value;
    QString text;
};

// Takes a finished edit of a threshold. A base-10 integer up to limit is kept
// as typed (there is no lower bound: 0 and negative margins are allowed);
// empty or refused text shows the current value again.
ThresholdInput acceptThresholdText(const QString& text, int current, int limit);
