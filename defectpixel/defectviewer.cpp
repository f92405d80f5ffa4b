#include "defectviewer.h"

#include "defectmapcomparison.h"
#include "defectmapcontainer.h"
#include "defectmaptext.h"
#include "localthreshold.h"
#include "uxchistogramview.h"
#include "uxcimageviewer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <set>

namespace {

constexpr QRgb kDarkColor = 0xffff4040;
constexpr QRgb kBrightColor = 0xff30c0ff;
constexpr QRgb kBothColor = 0xffff40ff;
constexpr QRgb kUnknownColor = 0xffffd000;
constexpr QRgb kOverlayColor = 0xff40ff40;
constexpr double kSelectionZoom = 8.0;

QRgb seriesColor(unsigned char series)
{
    switch (series) {
    case FlaggedByDark: return kDarkColor;
    case FlaggedByBright: return kBrightColor;
    case FlaggedByBoth: return kBothColor;
    default: return kUnknownColor;
    }
}

QRgb codeColor(uint32_t code)
{
    if (code == 0)
        return kUnknownColor;
    return QColor::fromHsv(int((code * 47u) % 360u), 210, 255).rgb();
}

// The mean as the detection addresses it: one run of width * height bytes.
QImage contiguousView(const QImage& mean)
{
    if (mean.isNull() || mean.bytesPerLine() == mean.width())
        return mean;
    return QImage(mean.constBits(), mean.width(), mean.height(), mean.width(), QImage::Format_Grayscale8).copy();
}

} // namespace

DefectViewer::DefectViewer(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setWindowTitle(tr("Defect Viewer"));
    buildUi();
    clear();
}

void DefectViewer::buildUi()
{
    auto* layout = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    m_seriesBox = new QComboBox(this);
    m_seriesBox->addItems({tr("Dark mean image"), tr("Bright mean image")});
    m_stretchBox = new QCheckBox(tr("Stretch contrast"), this);
    m_stretchBox->setChecked(true);
    m_markersBox = new QCheckBox(tr("Markers"), this);
    m_markersBox->setChecked(true);
    m_coloringBox = new QComboBox(this);
    m_coloringBox->addItems({tr("Colour by test"), tr("Colour by code")});
    m_fitButton = new QPushButton(tr("Fit"), this);
    m_loadButton = new QPushButton(tr("Compare With Map File..."), this);
    m_overlayBox = new QCheckBox(tr("Show second map"), this);
    m_overlayBox->setChecked(true);
    for (QWidget* w : std::initializer_list<QWidget*>{m_seriesBox, m_stretchBox, m_markersBox, m_coloringBox,
                                                       m_fitButton, m_loadButton, m_overlayBox})
        bar->addWidget(w);
    bar->addStretch(1);
    layout->addLayout(bar);

    auto* splitter = new QSplitter(this);
    auto* left = new QWidget(splitter);
    auto* leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    m_view = new UXCImageViewer(left);
    m_view->setEmptyHint(tr("No mean image yet.\nAdd dark or bright images in the assistant; "
                            "their mean image and the defects found appear here."));
    m_readout = new QLabel(left);
    m_readout->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_readout->setWordWrap(true);
    m_comparison = new QLabel(left);
    m_message = new QLabel(left);
    m_message->setStyleSheet("color: #c02020");
    m_message->setWordWrap(true);
    leftLayout->addWidget(m_view, 1);
    leftLayout->addWidget(m_readout);
    leftLayout->addWidget(m_comparison);
    leftLayout->addWidget(m_message);

    auto* tabs = new QTabWidget(splitter);
    auto* entries = new QWidget(tabs);
    auto* entriesLayout = new QVBoxLayout(entries);
    auto* filters = new QHBoxLayout;
    m_seriesFilter = new QComboBox(entries);
    m_seriesFilter->addItem(tr("All series"), -1);
    m_seriesFilter->addItem(tr("Dark"), int(FlaggedByDark));
    m_seriesFilter->addItem(tr("Bright"), int(FlaggedByBright));
    m_seriesFilter->addItem(tr("Both"), int(FlaggedByBoth));
    m_codeFilter = new QComboBox(entries);
    filters->addWidget(m_seriesFilter);
    filters->addWidget(m_codeFilter);
    entriesLayout->addLayout(filters);
    m_model = new DefectEntryModel(this);
    m_filter = new DefectEntryFilter(this);
    m_filter->setSourceModel(m_model);
    m_table = new QTableView(entries);
    m_table->setModel(m_filter);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(DefectEntryModel::ColumnY, Qt::AscendingOrder);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    entriesLayout->addWidget(m_table);
    tabs->addTab(entries, tr("Map Entries"));

    auto* histograms = new QWidget(tabs);
    auto* histogramLayout = new QVBoxLayout(histograms);
    const QString titles[2] = {tr("Dark mean"), tr("Bright mean")};
    const QString axes[2] = {tr("deviation from the local average in grey levels"),
                             tr("deviation in percent of the local average")};
    for (int s = 0; s < 2; ++s) {
        m_histograms[s] = new UXCHistogramView(histograms);
        m_histograms[s]->setTitle(titles[s]);
        m_histograms[s]->setAxisLabel(axes[s]);
        m_histograms[s]->setEmptyHint(tr("No mean image."));
        m_flagged[s] = new QLabel(histograms);
        m_flagged[s]->setWordWrap(true);
        histogramLayout->addWidget(m_histograms[s], 1);
        histogramLayout->addWidget(m_flagged[s]);
    }
    tabs->addTab(histograms, tr("Histograms"));
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({900, 380});
    layout->addWidget(splitter, 1);
    resize(1280, 800);

    connect(m_seriesBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { showSeries(Series(index)); });
    connect(m_coloringBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { setColoring(Coloring(index)); });
    connect(m_stretchBox, &QCheckBox::toggled, m_view, &UXCImageViewer::setContrastStretch);
    connect(m_markersBox, &QCheckBox::toggled, this, [this](bool on) { m_view->setMarkersVisible(0, on); });
    connect(m_overlayBox, &QCheckBox::toggled, this, [this](bool on) { m_view->setMarkersVisible(1, on); });
    connect(m_fitButton, &QPushButton::clicked, m_view, &UXCImageViewer::fitToWindow);
    connect(m_loadButton, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getOpenFileName(this, tr("Compare With Map File"), QString(),
                                                          tr("Map files (*.txt *.bin)"));
        if (!path.isEmpty())
            loadOverlayFile(path);
    });
    connect(m_view, &UXCImageViewer::hoverChanged, this, &DefectViewer::updateReadout);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { selectEntry(current); });
    connect(m_seriesFilter, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this] { m_filter->setSeries(m_seriesFilter->currentData().toInt()); });
    connect(m_codeFilter, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this] { m_filter->setCode(m_codeFilter->currentData().toLongLong()); });
}

uint32_t DefectViewer::imageWidth() const
{
    const QImage& mean = m_means[Dark].isNull() ? m_means[Bright] : m_means[Dark];
    return uint32_t(mean.width());
}

uint32_t DefectViewer::imageHeight() const
{
    const QImage& mean = m_means[Dark].isNull() ? m_means[Bright] : m_means[Dark];
    return uint32_t(mean.height());
}

void DefectViewer::clear()
{
    for (int s = 0; s < 2; ++s) {
        m_means[s] = QImage();
        m_meanKeys[s] = 0;
        m_stats[s].clear();
        updateHistogram(Series(s));
    }
    m_overlay.clear();
    m_model->setRows({});
    m_view->setMarkers(0, {});
    m_view->setMarkers(1, {});
    m_view->setHighlight(QPoint(-1, -1));
    m_view->setImage(QImage());
    m_readout->setText(tr("Point at a pixel to read its values."));
    m_comparison->clear();
    m_message->clear();
    updateCodeFilter();
}

void DefectViewer::setMeans(const QImage& dark, const QImage& bright)
{
    const QImage means[2] = {dark, bright};
    for (int s = 0; s < 2; ++s) {
        const qint64 key = means[s].isNull() ? 0 : means[s].cacheKey();
        if (key == m_meanKeys[s] && means[s].isNull() == m_means[s].isNull())
            continue;
        m_means[s] = means[s];
        m_meanKeys[s] = key;
        m_message->clear();
        if (means[s].isNull())
            m_stats[s].clear();
        else
            m_stats[s].compute(means[s]);
        updateHistogram(Series(s));
        if (s == m_shown)
            showMean();
    }
}

void DefectViewer::showSeries(Series series)
{
    m_shown = series;
    if (m_seriesBox->currentIndex() != series)
        m_seriesBox->setCurrentIndex(series);
    showMean();
}

void DefectViewer::showMean()
{
    m_view->setImage(contiguousView(m_means[m_shown]));
}

void DefectViewer::setColoring(Coloring coloring)
{
    m_coloring = coloring;
    if (m_coloringBox->currentIndex() != coloring)
        m_coloringBox->setCurrentIndex(coloring);
    updateMarkers();
}

void DefectViewer::setMap(const t_defpix* map, unsigned int count, const unsigned char* darkMask,
                          const unsigned char* brightMask)
{
    const uint32_t width = imageWidth();
    const uint32_t height = imageHeight();
    std::vector<DefectEntryRow> rows;
    rows.reserve(map ? count : 0);
    for (unsigned int i = 0; map && i < count; ++i) {
        DefectEntryRow row;
        row.entry = map[i];
        if (row.entry.x < width && row.entry.y < height) {
            const size_t at = size_t(row.entry.y) * width + row.entry.x;
            row.series = (darkMask && darkMask[at] ? FlaggedByDark : 0) | (brightMask && brightMask[at] ? FlaggedByBright : 0);
            const Series from = row.series & FlaggedByDark ? Dark : Bright;
            if (row.series && !m_stats[from].isEmpty()) {
                row.deviation = m_stats[from].deviation(row.entry.x, row.entry.y);
                row.hasDeviation = true;
            }
        }
        rows.push_back(row);
    }
    m_model->setRows(std::move(rows));
    updateCodeFilter();
    updateMarkers();
    updateOverlay();
}

void DefectViewer::updateCodeFilter()
{
    std::set<uint32_t> codes;
    for (const DefectEntryRow& row : m_model->rows())
        codes.insert(row.entry.type);
    const long long current = m_codeFilter->currentData().isValid() ? m_codeFilter->currentData().toLongLong() : -1;
    QSignalBlocker block(m_codeFilter);
    m_codeFilter->clear();
    m_codeFilter->addItem(tr("All codes"), -1LL);
    for (uint32_t code : codes)
        m_codeFilter->addItem(tr("Code %1").arg(code), qlonglong(code));
    const int index = m_codeFilter->findData(current);
    m_codeFilter->setCurrentIndex(index < 0 ? 0 : index);
    m_filter->setCode(m_codeFilter->currentData().toLongLong());
}

void DefectViewer::updateMarkers()
{
    QVector<UXCViewerMarker> markers;
    markers.reserve(int(m_model->rows().size()));
    for (const DefectEntryRow& row : m_model->rows())
        markers.push_back({int(row.entry.x), int(row.entry.y),
                           m_coloring == ByCode ? codeColor(row.entry.type) : seriesColor(row.series)});
    m_view->setMarkers(0, std::move(markers));
}

void DefectViewer::updateOverlay()
{
    QVector<UXCViewerMarker> markers;
    markers.reserve(int(m_overlay.size()));
    for (const t_defpix& e : m_overlay)
        markers.push_back({int(e.x), int(e.y), kOverlayColor});
    m_view->setMarkers(1, std::move(markers));
    if (m_overlay.empty()) {
        m_comparison->clear();
        return;
    }
    std::vector<t_defpix> generated;
    generated.reserve(m_model->rows().size());
    for (const DefectEntryRow& row : m_model->rows())
        generated.push_back(row.entry);
    const DefectMapComparison c = compareDefectMaps(generated.data(), unsigned(generated.size()), m_overlay.data(),
                                                    unsigned(m_overlay.size()));
    m_comparison->setText(tr("Second map: %1 common, %2 only in the generated map, %3 only in the second map.")
                              .arg(c.common)
                              .arg(c.onlyFirst)
                              .arg(c.onlySecond));
}

void DefectViewer::refuseOverlay(const QString& reason)
{
    m_message->setText(reason);
}

bool DefectViewer::loadOverlayFile(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        refuseOverlay(tr("The map file %1 cannot be opened.").arg(name));
        return false;
    }
    std::vector<t_defpix> map;
    if (path.endsWith(".bin", Qt::CaseInsensitive)) {
        const QByteArray bytes = file.readAll();
        DefPixContainer container;
        if (!checkDefPixContainerBuffer(reinterpret_cast<const unsigned char*>(bytes.constData()), size_t(bytes.size()),
                                        m_revision, &container)) {
            refuseOverlay(tr("The map file %1 is not a valid map container.").arg(name));
            return false;
        }
        const uint64_t pixels = uint64_t(imageWidth()) * imageHeight();
        if (container.imageWidth && (container.imageWidth != imageWidth() || container.imagePixelCount != pixels)) {
            refuseOverlay(tr("The map in %1 was made for images %2 pixels wide with %3 pixels, not for the "
                             "%4 x %5 pixel images shown; it is not shown.")
                              .arg(name)
                              .arg(container.imageWidth)
                              .arg(container.imagePixelCount)
                              .arg(imageWidth())
                              .arg(imageHeight()));
            return false;
        }
        map = std::move(container.entries);
    } else {
        map.resize(m_capacity);
        unsigned int count = 0;
        DefectMapWriter writer(map.data(), m_capacity, count);
        if (!readDefectMapText(file, writer)) {
            refuseOverlay(tr("The map file %1 cannot be read.").arg(name));
            return false;
        }
        map.resize(count);
    }
    return setOverlay(map, name);
}

bool DefectViewer::setOverlay(const std::vector<t_defpix>& map, const QString& source)
{
    if (imageWidth() == 0) {
        refuseOverlay(tr("Add images first: the map %1 is shown on a mean image.").arg(source));
        return false;
    }
    for (const t_defpix& e : map) {
        if (e.x >= imageWidth() || e.y >= imageHeight()) {
            refuseOverlay(tr("The map %1 does not fit the %2 x %3 pixel images: it has an entry at %4, %5; "
                             "it is not shown.")
                              .arg(source)
                              .arg(imageWidth())
                              .arg(imageHeight())
                              .arg(e.x)
                              .arg(e.y));
            return false;
        }
    }
    m_message->clear();
    m_overlay = map;
    updateOverlay();
    return true;
}

void DefectViewer::setMapFileRules(unsigned int capacity, unsigned int revision)
{
    m_capacity = capacity;
    m_revision = revision;
}

void DefectViewer::setThreshold(Series series, int threshold)
{
    m_thresholds[series] = threshold;
    updateHistogram(series);
}

void DefectViewer::updateHistogram(Series series)
{
    UXCHistogramView* view = m_histograms[series];
    const DeviationStatistics& stats = m_stats[series];
    const int t = m_thresholds[series];
    if (stats.isEmpty()) {
        view->setBins({}, 0, 1);
        view->setLimits({});
        m_flagged[series]->clear();
        return;
    }
    const bool absolute = series == Dark;
    const std::vector<uint64_t> bins = absolute ? stats.deviationHistogram() : stats.percentHistogram();
    const double first = absolute ? -DeviationStatistics::kMaxDeviation - 0.5 : -DeviationStatistics::kPercentRange - 0.5;
    view->setBins(QVector<quint64>(bins.begin(), bins.end()), first, 1.0);
    view->setLimits({-(t + 0.5), t + 0.5});
    const qulonglong flagged = stats.flaggedCount(absolute, t);
    m_flagged[series]->setText(absolute ? tr("Absolute threshold %1: %2 pixels are flagged.").arg(t).arg(flagged)
                                        : tr("Relative threshold %1 %: %2 pixels are flagged.").arg(t).arg(flagged));
}

void DefectViewer::updateReadout(const QPoint& pixel, bool inside)
{
    const DeviationStatistics& stats = m_stats[m_shown];
    if (!inside || stats.isEmpty() || uint32_t(pixel.x()) >= stats.width() || uint32_t(pixel.y()) >= stats.height()) {
        m_readout->setText(tr("Point at a pixel to read its values."));
        return;
    }
    const uint32_t x = uint32_t(pixel.x()), y = uint32_t(pixel.y());
    QStringList flags;
    for (int s = 0; s < 2; ++s) {
        const DeviationStatistics& series = m_stats[s];
        if (!series.isEmpty() && x < series.width() && y < series.height()
            && series.isFlagged(x, y, s == Dark, m_thresholds[s]))
            flags << (s == Dark ? tr("dark test") : tr("bright test"));
    }
    m_readout->setText(tr("x %1, y %2: mean %3, local average %4, deviation %5; %6")
                           .arg(x)
                           .arg(y)
                           .arg(stats.value(x, y))
                           .arg(stats.localAverage(x, y))
                           .arg(QString::asprintf("%+d", stats.deviation(x, y)))
                           .arg(flags.isEmpty() ? tr("not flagged") : tr("flagged by the %1").arg(flags.join(tr(" and ")))));
}

void DefectViewer::selectEntry(const QModelIndex& proxyIndex)
{
    if (!proxyIndex.isValid())
        return;
    const QModelIndex source = m_filter->mapToSource(proxyIndex);
    const DefectEntryRow& row = m_model->rows()[size_t(source.row())];
    const QPointF point(row.entry.x + 0.5, row.entry.y + 0.5);
    if (m_view->zoom() < kSelectionZoom)
        m_view->setZoom(kSelectionZoom);
    m_view->centerOn(point);
    m_view->setHighlight(QPoint(int(row.entry.x), int(row.entry.y)));
}
