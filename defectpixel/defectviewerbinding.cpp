#include "defectviewerbinding.h"

#include "defectviewer.h"
#include "uxcustomwidgets.h"
#include "uxdefectpixelcorrection.h"

#include <QBoxLayout>
#include <QEvent>
#include <QLineEdit>
#include <QPushButton>

DefectViewerBinding::DefectViewerBinding(const PanelParts& parts) : m_parts(parts)
{
    m_openButton = new QPushButton(tr("Defect Viewer..."), parts.panel);
    m_openButton->setObjectName("btnOpenDefectViewer");
    m_openButton->setToolTip(tr("Inspect the mean images, the defects found and the thresholds."));
    parts.buttonRow->addWidget(m_openButton);
    connect(m_openButton, &QPushButton::clicked, this, [this] { open(DefectViewer::Dark); });
    parts.darkMean->installEventFilter(this);
    parts.brightMean->installEventFilter(this);
    // While a threshold is typed, before it is taken.
    connect(parts.absoluteThreshold, &QLineEdit::textChanged, this, [this] { updateThreshold(DefectViewer::Dark); });
    connect(parts.relativeThreshold, &QLineEdit::textChanged, this, [this] { updateThreshold(DefectViewer::Bright); });
}

DefectViewerBinding::~DefectViewerBinding()
{
    delete m_viewer;
}

bool DefectViewerBinding::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonDblClick)
        open(watched == m_parts.brightMean ? DefectViewer::Bright : DefectViewer::Dark);
    return QObject::eventFilter(watched, event);
}

DefectViewer* DefectViewerBinding::viewer() const
{
    return m_viewer;
}

void DefectViewerBinding::open(int series)
{
    if (!m_viewer) {
        m_viewer = new DefectViewer(m_parts.panel);
        m_viewer->setAttribute(Qt::WA_DeleteOnClose);
    }
    refresh();
    m_viewer->showSeries(DefectViewer::Series(series));
    m_viewer->show();
    m_viewer->raise();
    m_viewer->activateWindow();
}

void DefectViewerBinding::refresh()
{
    if (!m_viewer)
        return;
    UXCDefectPixelCorrection* panel = m_parts.panel;
    m_viewer->setMeans(m_parts.darkMean->getImage(), m_parts.brightMean->getImage());
    m_viewer->setMapFileRules(panel->maxMapSize(), unsigned(panel->revision()));
    updateThreshold(DefectViewer::Dark);
    updateThreshold(DefectViewer::Bright);
    const unsigned int count = std::min(panel->defectCount(), panel->maxMapSize());
    m_viewer->setMap(panel->defectMap(), panel->defectMap() ? count : 0, panel->darkParams().defectMask,
                     panel->brightParams().defectMask);
}

void DefectViewerBinding::clear()
{
    if (m_viewer)
        m_viewer->clear();
}

void DefectViewerBinding::showDownloadedMap(const std::vector<t_defpix>& map, const QString& slot)
{
    if (m_viewer && m_viewer->isVisible())
        m_viewer->setOverlay(map, slot);
}

void DefectViewerBinding::updateThreshold(int series)
{
    if (!m_viewer)
        return;
    const bool dark = series == DefectViewer::Dark;
    bool ok = false;
    const int typed = (dark ? m_parts.absoluteThreshold : m_parts.relativeThreshold)->text().toInt(&ok, 10);
    const int limit = dark ? 255 : 100;
    const int stored = dark ? m_parts.panel->darkParams().absoluteThreshold : m_parts.panel->brightParams().relativeThreshold;
    m_viewer->setThreshold(DefectViewer::Series(series), ok && typed <= limit ? typed : stored);
}
