#pragma once

#include "defectentrymodel.h"
#include "defectmap.h"
#include "deviationstatistics.h"

#include <QImage>
#include <QWidget>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTableView;
class UXCHistogramView;
class UXCImageViewer;

// The defect viewer window: the dark or bright mean image with the generated
// map marked on it (and optionally a second map to compare with), the readout
// under the cursor, the table of map entries and the deviation histograms with
// the thresholds, all from the same local averages and margins map generation
// uses.
class DefectViewer : public QWidget {
    Q_OBJECT

public:
    enum Series { Dark = 0, Bright = 1 };
    enum Coloring { ByTest = 0, ByCode = 1 };

    explicit DefectViewer(QWidget* parent = nullptr);

    // Means as the panel holds them; a null image is a series without images.
    // Statistics are recomputed only for a mean that changed.
    void setMeans(const QImage& dark, const QImage& bright);
    // The generated map; the masks (width * height bytes, 255 = flagged, may be
    // null) tell which test flagged each entry.
    void setMap(const t_defpix* map, unsigned int count, const unsigned char* darkMask,
                const unsigned char* brightMask);
    void setThreshold(Series series, int threshold);
    // Capacity and map revision used to read map files for the second overlay.
    void setMapFileRules(unsigned int capacity, unsigned int revision);
    // Back to the empty state.
    void clear();

    void showSeries(Series series);
    Series shownSeries() const { return m_shown; }
    void setColoring(Coloring coloring);

    // Reads a ".txt" or ".bin" map as the second overlay. False, with the reason
    // shown in the window, when it cannot be read or does not fit the image.
    bool loadOverlayFile(const QString& path);
    // A map from elsewhere (e.g. a camera slot) as the second overlay.
    bool setOverlay(const std::vector<t_defpix>& map, const QString& source);

    // Parts, for the binding and the tests.
    UXCImageViewer* imageView() const { return m_view; }
    QTableView* entryTable() const { return m_table; }
    DefectEntryModel* entryModel() const { return m_model; }
    DefectEntryFilter* entryFilter() const { return m_filter; }
    UXCHistogramView* histogramView(Series series) const { return m_histograms[series]; }
    QLabel* readout() const { return m_readout; }
    QLabel* comparison() const { return m_comparison; }
    QLabel* message() const { return m_message; }
    QLabel* flaggedLabel(Series series) const { return m_flagged[series]; }
    const DeviationStatistics& statistics(Series series) const { return m_stats[series]; }

private:
    void buildUi();
    void showMean();
    void updateMarkers();
    void updateOverlay();
    void updateHistogram(Series series);
    void updateReadout(const QPoint& pixel, bool inside);
    void updateCodeFilter();
    void selectEntry(const QModelIndex& proxyIndex);
    void refuseOverlay(const QString& reason);
    uint32_t imageWidth() const;
    uint32_t imageHeight() const;

    Series m_shown = Dark;
    Coloring m_coloring = ByTest;
    QImage m_means[2];
    qint64 m_meanKeys[2] = {0, 0};
    DeviationStatistics m_stats[2];
    int m_thresholds[2] = {16, 12};
    std::vector<t_defpix> m_overlay;
    unsigned int m_capacity = 10000;
    unsigned int m_revision = 3;

    QComboBox* m_seriesBox = nullptr;
    QComboBox* m_coloringBox = nullptr;
    QCheckBox* m_stretchBox = nullptr;
    QCheckBox* m_markersBox = nullptr;
    QCheckBox* m_overlayBox = nullptr;
    QPushButton* m_loadButton = nullptr;
    QPushButton* m_fitButton = nullptr;
    UXCImageViewer* m_view = nullptr;
    QLabel* m_readout = nullptr;
    QLabel* m_comparison = nullptr;
    QLabel* m_message = nullptr;
    QTableView* m_table = nullptr;
    DefectEntryModel* m_model = nullptr;
    DefectEntryFilter* m_filter = nullptr;
    QComboBox* m_seriesFilter = nullptr;
    QComboBox* m_codeFilter = nullptr;
    UXCHistogramView* m_histograms[2] = {nullptr, nullptr};
    QLabel* m_flagged[2] = {nullptr, nullptr};
};
