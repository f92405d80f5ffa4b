#pragma once

#include <QElapsedTimer>
#include <QStringList>
#include <QThread>

#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// A program the tests start, followed by the pid fork() returned. The suites
// also run under user-mode emulation, where QProcess cannot follow its child
// and turns a kill into a signal to every process; here a signal only ever goes
// to that real pid.
class ChildProcess {
public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { stop(); }

    // False when the program could not be executed.
    bool start(const QString& program, const QStringList& arguments)
    {
        stop();
        std::vector<std::string> strings{program.toStdString()};
        for (const QString& argument : arguments)
            strings.push_back(argument.toStdString());
        std::vector<char*> argv;
        for (std::string& s : strings)
            argv.push_back(s.data());
        argv.push_back(nullptr);

        int execFailed[2];
        if (::pipe2(execFailed, O_CLOEXEC) != 0)
            return false;
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::execv(argv[0], argv.data());
            const char failed = 1;
            (void)!::write(execFailed[1], &failed, 1);
            ::_exit(127);
        }
        ::close(execFailed[1]);
        if (pid < 0) {
            ::close(execFailed[0]);
            return false;
        }
        pid_ = pid;
        char failed = 0;
        const bool execed = ::read(execFailed[0], &failed, 1) == 0; // closed by a successful exec
        ::close(execFailed[0]);
        if (!execed) {
            waitForFinished(5000);
            return false;
        }
        return true;
    }

    bool running() const { return pid_ > 0; }

    // True once the program ended (and was reaped) within the time.
    bool waitForFinished(int timeoutMs)
    {
        QElapsedTimer timer;
        timer.start();
        while (pid_ > 0) {
            int status = 0;
            const pid_t done = ::waitpid(pid_, &status, WNOHANG);
            if (done == pid_ || (done < 0 && errno != EINTR)) {
                exitCode_ = done == pid_ && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
                pid_ = -1;
                break;
            }
            if (timer.elapsed() > timeoutMs)
                return false;
            QThread::msleep(10);
        }
        return true;
    }

    // The exit code, -1 after a crash or a signal.
    int exitCode() const { return exitCode_; }

    void signal(int number)
    {
        if (pid_ > 0)
            ::kill(pid_, number);
    }

    void stop()
    {
        if (pid_ <= 0)
            return;
        signal(SIGTERM);
        if (!waitForFinished(3000)) {
            signal(SIGKILL);
            waitForFinished(5000);
        }
    }

private:
    pid_t pid_ = -1;
    int exitCode_ = -1;
};
