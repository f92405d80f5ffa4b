#pragma once

// Shared set-up of the correction panel suites: the simulated cameras opened
// the way the main window opens them, dialogs answered by the test, image
// series taken from a camera's sensor and the panel's log lines.

#include "logtype.h"
#include "uxdefectpixelcorrection.h"
#include "uxdialogs.h"

#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

class ApiController;
class UxCamera;
class UxCameraManager;
class QPushButton;

namespace PanelFixture {

// Cameras of the built-in set, by serial number.
constexpr const char* kMonoFile = "KV1230001";     // revision 3, slots DefPixMap0..3, 640 x 480
constexpr const char* kColourFile = "PM5000002";   // revision 4, Bayer, 640 x 480
constexpr const char* kRegisterMono = "RY1300003"; // big-endian register maps, 1280 x 1024

// Answers the panel's dialogs from queues and keeps what was asked.
class RecordingDialogs : public UXCDialogs {
public:
    struct Call {
        QString kind;   // "open files", "open file", "save file", "information", "critical", "question"
        QString title;  // caption or title
        QString text;   // filter for file dialogs, text for message boxes
        QString dir{};     // start folder of file dialogs
        QString details{}; // unfoldable details of a message box
        bool overProgress = false; // a progress window was showing when the box came
    };

    QStringList getOpenFileNames(QWidget*, const QString& caption, const QString& dir,
                                 const QString& filter) override;
    QString getOpenFileName(QWidget*, const QString& caption, const QString& dir, const QString& filter) override;
    QString getSaveFileName(QWidget*, const QString& caption, const QString& dir, const QString& filter) override;
    QMessageBox::StandardButton information(QWidget*, const QString& title, const QString& text,
                                            QMessageBox::StandardButtons) override;
    QMessageBox::StandardButton critical(QWidget*, const QString& title, const QString& text,
                                         QMessageBox::StandardButtons) override;
    QMessageBox::StandardButton question(QWidget*, const QString& title, const QString& text,
                                         QMessageBox::StandardButtons) override;
    QMessageBox::StandardButton detailed(QWidget*, QMessageBox::Icon icon, const QString& title, const QString& text,
                                         const QString& details) override;

    // "kind|title|text" of every message box so far.
    QStringList messages() const;
    const Call* last(const QString& kind) const;
    int count(const QString& kind) const;

    QStringList openFileNames;  // next answer of getOpenFileNames, used once
    QStringList openFileName;   // answers of getOpenFileName, first first
    QStringList saveFileName;   // answers of getSaveFileName, first first
    QMessageBox::StandardButton answer = QMessageBox::Yes;
    QVector<Call> calls;
};

// The SDK session with the built-in simulated cameras and the camera manager.
class Session {
public:
    Session();
    ~Session();
    bool start();
    void stop();
    // Opens by serial number; the caller owns the camera (the panel takes it).
    UxCamera* open(const QString& serial);
    bool close(const QString& serial);
    QString extendedId(const QString& serial) const;

private:
    std::shared_ptr<ApiController> m_controller;
    std::unique_ptr<UxCameraManager> m_manager;
};

// The panel bound to a camera of the session, its dialogs answered by the test
// and its log lines kept. Releases the camera when it goes.
struct Rig {
    explicit Rig(Session& session);
    ~Rig();
    // Opens the camera by serial number and binds the panel to it.
    bool bind(const QString& serial);
    // Resets the panel and closes the camera it was bound to.
    bool release();
    QStringList logLines() const;

    Session& session;
    QString serial;
    RecordingDialogs dialogs;
    UXCDefectPixelCorrection panel;
    QSignalSpy log;
};

// Writes count frames of the camera as 8-bit bitmaps dir/<prefix><i>.bmp, dark
// (no light) or bright (full light). Empty list on failure.
QStringList captureSeries(UxCamera* camera, const QString& dir, const QString& prefix, int count, bool bright);

// What the simulated camera holds in a map slot, and the content of one of its files.
std::vector<t_defpix> storedMap(const char* serial, uint32_t slot);
QByteArray deviceFile(const char* serial, const char* name);

// count entries filling the rows of a sensor width pixels wide, type 0.
std::vector<t_defpix> rowMap(unsigned int count, unsigned int width);
// The map as the bytes of a container file.
QByteArray containerBytes(const std::vector<t_defpix>& map, unsigned int width, unsigned int pixelCount,
                          unsigned int revision = 3, unsigned int chunkId = 4096);

QByteArray readFile(const QString& path);
bool writeFile(const QString& path, const QByteArray& bytes);
// Saves a picture of the widget for a person to judge.
bool saveShot(QWidget* widget, const QString& path);

// "type|message" of each log line the spy saw.
QStringList logLines(const QSignalSpy& spy);

// Clicks a button of the panel's form by object name.
void click(UXCDefectPixelCorrection& panel, const char* button);
QPushButton* button(UXCDefectPixelCorrection& panel, const char* name);
// Chooses a map slot in the selector as the user does, by index or by name.
void activateSlot(UXCDefectPixelCorrection& panel, int index);
void activateSlot(UXCDefectPixelCorrection& panel, const QString& name);

} // namespace PanelFixture

inline bool operator==(const t_defpix& a, const t_defpix& b)
{
    return a.x == b.x && a.y == b.y && a.type == b.type;
}

namespace PanelFixture {

} // namespace PanelFixture
