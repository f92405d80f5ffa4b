#pragma once

#include <QByteArray>
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
    ~ChildProcess()
    {
        stop();
        closeErrors();
    }

    // False when the program could not be executed. With captureErrors its
    // standard error is kept for errors().
    bool start(const QString& program, const QStringList& arguments, bool captureErrors = false)
    {
        stop();
        closeErrors();
        errors_.clear();
        std::vector<std::string> strings{program.toStdString()};
        for (const QString& argument : arguments)
            strings.push_back(argument.toStdString());
        std::vector<char*> argv;
        for (std::string& s : strings)
            argv.push_back(s.data());
        argv.push_back(nullptr);

        int execFailed[2];
        int errors[2] = {-1, -1};
        if (::pipe2(execFailed, O_CLOEXEC) != 0)
            return false;
        if (captureErrors && ::pipe2(errors, O_CLOEXEC) != 0) {
            ::close(execFailed[0]);
            ::close(execFailed[1]);
            return false;
        }
        const pid_t pid = ::fork();
        if (pid == 0) {
            if (errors[1] >= 0)
                ::dup2(errors[1], STDERR_FILENO);
            ::execv(argv[0], argv.data());
            const char failed = 1;
            (void)!::write(execFailed[1], &failed, 1);
            ::_exit(127);
        }
        ::close(execFailed[1]);
        if (errors[1] >= 0)
            ::close(errors[1]);
        errorsFd_ = errors[0];
        if (errorsFd_ >= 0)
            ::fcntl(errorsFd_, F_SETFL, O_NONBLOCK);
        if (pid < 0) {
            ::close(execFailed[0]);
            closeErrors();
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
            drainErrors();
            int status = 0;
            const pid_t done = ::waitpid(pid_, &status, WNOHANG);
            if (done == pid_ || (done < 0 && errno != EINTR)) {
                exitCode_ = done == pid_ && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
                pid_ = -1;
                drainErrors();
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
    QByteArray errors() const { return errors_; }

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
    void drainErrors()
    {
        if (errorsFd_ < 0)
            return;
        char buffer[4096];
        ssize_t n;
        while ((n = ::read(errorsFd_, buffer, sizeof buffer)) > 0)
            errors_.append(buffer, int(n));
    }

    void closeErrors()
    {
        if (errorsFd_ >= 0)
            ::close(errorsFd_);
        errorsFd_ = -1;
    }

    pid_t pid_ = -1;
    int exitCode_ = -1;
    int errorsFd_ = -1;
    QByteArray errors_;
};
