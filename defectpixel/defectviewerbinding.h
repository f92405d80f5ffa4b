#pragma once

#include "defectmap.h"

#include <QObject>
#include <QPointer>

#include <vector>

class DefectViewer;
class QBoxLayout;
class QLineEdit;
class QPushButton;
class UXCDefectPixelCorrection;
class UXCPixmapLabel;

// Ties the defect viewer to the correction panel: a button beside "Generate Map"
// and a double-click on a mean image open it; the panel's means, map and
// thresholds (live, while they are typed) are handed to it; a reset empties it.
class DefectViewerBinding : public QObject {
    Q_OBJECT

public:
    struct PanelParts {
        UXCDefectPixelCorrection* panel;
        UXCPixmapLabel* darkMean;
        UXCPixmapLabel* brightMean;
        QLineEdit* absoluteThreshold;
        QLineEdit* relativeThreshold;
        QBoxLayout* buttonRow; // the open button is added at its end
    };

    explicit DefectViewerBinding(const PanelParts& parts);
    ~DefectViewerBinding() override;

    // Creates the window on first use, shows it with the series' mean.
    void open(int series);
    // Hands the panel's current state to an open viewer; cheap when nothing changed.
    void refresh();
    // The panel was reset: the viewer shows its empty state.
    void clear();
    // A map just downloaded from a camera slot: an open viewer compares it with
    // the generated map as its second overlay.
    void showDownloadedMap(const std::vector<t_defpix>& map, const QString& slot);

    DefectViewer* viewer() const;
    QPushButton* openButton() const { return m_openButton; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void updateThreshold(int series);

    PanelParts m_parts;
    QPointer<DefectViewer> m_viewer;
    QPushButton* m_openButton = nullptr;
};
