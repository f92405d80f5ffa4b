#include "panelfixture.h"

#include "ApiController.h"
#include "capturedimage.h"
#include "defectmapcontainer.h"
#include "uxcamera.h"
#include "uxcamerafeature.h"
#include "uxcameramanager.h"
#include "uxdefectpixelcorrection.h"

#include <ZebCPP.h>
#include <sim/simcontrol.h>

#include <QDir>
#include <QApplication>
#include <QComboBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QtTest>

namespace PanelFixture {

namespace {

QString takeFirst(QStringList& answers)
{
    return answers.isEmpty() ? QString() : answers.takeFirst();
}

} // namespace

QStringList RecordingDialogs::getOpenFileNames(QWidget*, const QString& caption, const QString& dir,
                                               const QString& filter)
{
    calls.append({"open files", caption, filter, dir});
    QStringList answer;
    answer.swap(openFileNames);
    return answer;
}

QString RecordingDialogs::getOpenFileName(QWidget*, const QString& caption, const QString& dir,
                                          const QString& filter)
{
    calls.append({"open file", caption, filter, dir});
    return takeFirst(openFileName);
}

QString RecordingDialogs::getSaveFileName(QWidget*, const QString& caption, const QString& dir,
                                          const QString& filter)
{
    calls.append({"save file", caption, filter, dir});
    return takeFirst(saveFileName);
}

QMessageBox::StandardButton RecordingDialogs::information(QWidget*, const QString& title, const QString& text,
                                                          QMessageBox::StandardButtons)
{
    calls.append({"information", title, text});
    return QMessageBox::Ok;
}

QMessageBox::StandardButton RecordingDialogs::critical(QWidget*, const QString& title, const QString& text,
                                                       QMessageBox::StandardButtons)
{
    calls.append({"critical", title, text});
    return QMessageBox::Ok;
}

QMessageBox::StandardButton RecordingDialogs::question(QWidget*, const QString& title, const QString& text,
                                                       QMessageBox::StandardButtons)
{
    calls.append({"question", title, text});
    return answer;
}

QMessageBox::StandardButton RecordingDialogs::detailed(QWidget*, QMessageBox::Icon icon, const QString& title,
                                                       const QString& text, const QString& details)
{
    bool overProgress = false;
    for (QWidget* widget : QApplication::allWidgets())
        overProgress = overProgress || (qobject_cast<QProgressDialog*>(widget) && widget->isVisible());
    calls.append({icon == QMessageBox::Critical ? "critical" : "information", title, text, QString(), details,
                  overProgress});
    return QMessageBox::Ok;
}

QStringList RecordingDialogs::messages() const
{
    QStringList lines;
    for (const Call& call : calls) {
        if (call.kind == "information" || call.kind == "critical" || call.kind == "question")
            lines << call.kind + '|' + call.title + '|' + call.text;
    }
    return lines;
}

const RecordingDialogs::Call* RecordingDialogs::last(const QString& kind) const
{
    for (auto it = calls.crbegin(); it != calls.crend(); ++it) {
        if (it->kind == kind)
            return &*it;
    }
    return nullptr;
}

int RecordingDialogs::count(const QString& kind) const
{
    return int(std::count_if(calls.cbegin(), calls.cend(), [&](const Call& call) { return call.kind == kind; }));
}

Session::Session() = default;
Session::~Session() = default;

bool Session::start()
{
    qputenv("ZEB_SIM_CAMERAS", "default");
    if (ZebCPP::ZebSystem::GetInstance().Startup() != ZebCPP::ZebErrorSuccess)
        return false;
    m_controller = std::make_shared<ApiController>();
    m_manager = std::make_unique<UxCameraManager>(m_controller);
    return true;
}

void Session::stop()
{
    m_manager.reset();
    m_controller.reset();
    ZebCPP::ZebSystem::GetInstance().Shutdown();
}

QString Session::extendedId(const QString& serial) const
{
    std::vector<ZebCPP::CameraPtr> cameras;
    ZebCPP::ZebSystem::GetInstance().GetCameras(cameras);
    for (const ZebCPP::CameraPtr& camera : cameras) {
        std::string value;
        std::string id;
        if (camera->GetSerialNumber(value) == ZebCPP::ZebErrorSuccess && QString::fromStdString(value) == serial
            && camera->GetExtendedID(id) == ZebCPP::ZebErrorSuccess)
            return QString::fromStdString(id);
    }
    return QString();
}

UxCamera* Session::open(const QString& serial)
{
    return m_manager ? m_manager->Open(extendedId(serial)) : nullptr;
}

bool Session::close(const QString& serial)
{
    return m_manager && m_manager->Close(extendedId(serial));
}

Rig::Rig(Session& session) : session(session), log(&panel, &UXCDefectPixelCorrection::sendLogMessage)
{
    panel.setDialogs(&dialogs);
}

Rig::~Rig()
{
    release();
}

bool Rig::bind(const QString& camera)
{
    serial = camera;
    return panel.Init(session.open(serial));
}

bool Rig::release()
{
    panel.Reset();
    const QString closed = serial;
    serial.clear();
    return closed.isEmpty() || session.close(closed);
}

QStringList Rig::logLines() const
{
    return PanelFixture::logLines(log);
}

std::vector<t_defpix> storedMap(const char* serial, uint32_t slot)
{
    std::vector<ZebCPP::SimControl::SimMapEntry> entries;
    ZebCPP::SimControl::GetStoredMap(serial, slot, entries);
    std::vector<t_defpix> map;
    for (const ZebCPP::SimControl::SimMapEntry& e : entries)
        map.push_back({e.x, e.y, e.type});
    return map;
}

QByteArray deviceFile(const char* serial, const char* name)
{
    std::vector<uint8_t> content;
    ZebCPP::SimControl::GetDeviceFile(serial, name, content);
    return QByteArray(reinterpret_cast<const char*>(content.data()), int(content.size()));
}

std::vector<t_defpix> rowMap(unsigned int count, unsigned int width)
{
    std::vector<t_defpix> map(count);
    for (unsigned int i = 0; i < count; ++i)
        map[i] = {i % width, i / width, 0};
    return map;
}

QByteArray containerBytes(const std::vector<t_defpix>& map, unsigned int width, unsigned int pixelCount,
                          unsigned int revision, unsigned int chunkId)
{
    const std::vector<unsigned char> bytes =
        buildDefPixContainerBuffer(revision, chunkId, map.size(), map.data(), width, pixelCount);
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()));
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

bool saveShot(QWidget* widget, const QString& path)
{
    if (!QDir().mkpath(QFileInfo(path).path()) || !widget->grab().save(path))
        return false;
    qInfo("Rendered to %s", qPrintable(path));
    return true;
}

QStringList captureSeries(UxCamera* camera, const QString& dir, const QString& prefix, int count, bool bright)
{
    UxCameraFeature* features = camera->GetFeatureContainer();
    if (!features->SetValue("ExposureTime", 10000.0) || !features->SetValue("SimLightLevel", bright ? 100.0 : 0.0))
        return {};
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        ZebCPP::FramePtr frame;
        uint32_t width = 0;
        uint32_t height = 0;
        const uint8_t* data = nullptr;
        if (!camera->AcquireSingleImage(frame, 2000) || frame->GetWidth(width) != ZebCPP::ZebErrorSuccess
            || frame->GetHeight(height) != ZebCPP::ZebErrorSuccess
            || frame->GetBuffer(data) != ZebCPP::ZebErrorSuccess)
            return {};
        const QString path = QDir(dir).filePath(QString("%1%2.bmp").arg(prefix).arg(i));
        if (!writeFrameBitmap(path, data, width, height))
            return {};
        paths << path;
    }
    features->SetValue("SimLightLevel", 0.0);
    return paths;
}

QStringList logLines(const QSignalSpy& spy)
{
    QStringList lines;
    for (const QList<QVariant>& args : spy)
        lines << QString::number(int(args.at(1).value<LogType>())) + '|' + args.at(0).toString();
    return lines;
}

QPushButton* button(UXCDefectPixelCorrection& panel, const char* name)
{
    return panel.findChild<QPushButton*>(name);
}

void click(UXCDefectPixelCorrection& panel, const char* name)
{
    QPushButton* target = button(panel, name);
    QVERIFY2(target, name);
    QTest::mouseClick(target, Qt::LeftButton);
}

void activateSlot(UXCDefectPixelCorrection& panel, int index)
{
    auto* selector = panel.findChild<QComboBox*>(QStringLiteral("cmbDefectPixelMapSelector"));
    selector->setCurrentIndex(index);
    emit selector->activated(index);
}

void activateSlot(UXCDefectPixelCorrection& panel, const QString& name)
{
    activateSlot(panel, panel.findChild<QComboBox*>(QStringLiteral("cmbDefectPixelMapSelector"))->findText(name));
}

} // namespace PanelFixture
