#pragma once

#include "ZebCPP.h"
#include "childprocess.h"

#include <QElapsedTimer>
#include <QStandardPaths>
#include <QThread>
#include <QtTest>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

// libaravis's fake GigE Vision camera as a protocol peer on the loopback
// address, described by our own GenICam file with map and file-access features.

namespace FakeGv {

inline const char* const kSerial = "ZEBGV01";
inline const char* const kExtendedId = "AravisGEV::Aravis-ZEBGV01";

// Register addresses of tests/zeb/data/mapcamera.xml.
constexpr uint64_t kFileSize = 0x4018;
constexpr uint64_t kFileChunkId = 0x401c;
constexpr uint64_t kMapRevision = 0x4020;
constexpr uint64_t kMapMaxSize = 0x4024;
constexpr uint64_t kFileOperationExecute = 0x400c;
constexpr uint64_t kFileAccessBuffer = 0x5000;
constexpr uint32_t kFileAccessBufferLength = 4096;

class Camera {
public:
    ~Camera() { stop(); }

    // Empty when started, else why not.
    QString start()
    {
        const QString program = QStandardPaths::findExecutable("arv-fake-gv-camera-0.8");
        if (program.isEmpty())
            return "arv-fake-gv-camera-0.8 is not installed";
        // Discovery must never leave the loopback address.
        qputenv("ZEB_GEV_ADDRESSES", "127.0.0.1");
        qunsetenv("ZEB_SIM_CAMERAS");
        QStringList arguments = {"-i", "127.0.0.1", "-s", kSerial, "-g", ZEB_TEST_DATA_DIR "/mapcamera.xml"};
        // Through setpriv when there is one: the camera dies with a test that
        // was killed, instead of holding the port for the next run.
        QString executable = program;
        const QString setpriv = QStandardPaths::findExecutable("setpriv");
        if (!setpriv.isEmpty()) {
            arguments = QStringList({"--pdeathsig", "KILL", program}) + arguments;
            executable = setpriv;
        }
        if (!process_.start(executable, arguments))
            return "the fake camera did not start: " + executable + " could not be executed";
        QThread::msleep(300); // binds its sockets after start-up
        return {};
    }

    void kill()
    {
        process_.signal(SIGKILL);
        process_.waitForFinished(5000);
    }

    void stop() { process_.stop(); }

private:
    ChildProcess process_;
};

// The camera once discovery has listed it, null after the timeout.
inline ZebCPP::CameraPtr waitForCamera(int timeoutMs = 5000)
{
    QElapsedTimer timer;
    timer.start();
    ZebCPP::CameraPtr camera;
    while (ZebCPP::ZebSystem::GetInstance().GetCameraByID(kExtendedId, camera) != ZebCPP::ZebErrorSuccess) {
        if (timer.elapsed() > timeoutMs)
            return nullptr;
        QThread::msleep(50);
    }
    return camera;
}

// Polls the camera's permitted access until `full` says what it should be.
inline bool waitForFullAccess(const ZebCPP::CameraPtr& camera, bool full, int timeoutMs = 4000)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        ZebCPP::AccessModeType access = ZebCPP::AccessModeNone;
        camera->GetPermittedAccess(access);
        if (((access & ZebCPP::AccessModeFull) != 0) == full)
            return true;
        if (timer.elapsed() > timeoutMs)
            return false;
        QThread::msleep(50);
    }
}

// Another application on the control channel: takes and leaves it through a
// socket of its own, as a second controller would.
class OtherController {
public:
    OtherController()
    {
        socket_ = ::socket(AF_INET, SOCK_DGRAM, 0);
        sockaddr_in camera{};
        camera.sin_family = AF_INET;
        camera.sin_port = htons(3956);
        camera.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        timeval timeout{1, 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
        ::connect(socket_, reinterpret_cast<sockaddr*>(&camera), sizeof camera);
    }
    ~OtherController()
    {
        leave();
        ::close(socket_);
    }

    bool take() { return writePrivilege(2); }
    bool leave() { return writePrivilege(0); }

private:
    bool writePrivilege(uint32_t value)
    {
        ++requestId_;
        const uint8_t packet[16] = {0x42, 0x01, 0x00, 0x82, 0x00, 0x08, 0x00, requestId_,
                                    0x00, 0x00, 0x0a, 0x00,
                                    uint8_t(value >> 24), uint8_t(value >> 16), uint8_t(value >> 8), uint8_t(value)};
        uint8_t reply[64];
        return ::send(socket_, packet, sizeof packet, 0) == sizeof packet
            && ::recv(socket_, reply, sizeof reply, 0) >= 8 && reply[0] == 0 && reply[1] == 0;
    }

    int socket_ = -1;
    uint8_t requestId_ = 0;
};

inline bool writeBigEndian(const ZebCPP::CameraPtr& camera, uint64_t address, uint32_t value)
{
    const uint8_t bytes[4] = {uint8_t(value >> 24), uint8_t(value >> 16), uint8_t(value >> 8), uint8_t(value)};
    uint32_t done = 0;
    return camera->WriteMemory(address, bytes, 4, done) == ZebCPP::ZebErrorSuccess && done == 4;
}

} // namespace FakeGv
