#pragma once

// Shared by the fuzz entry points: a property check that stops the run with a
// message (the fuzzer keeps the input, the replay test fails) and a scratch
// file for readers that only take a path.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#define FUZZ_CHECK(condition)                                                                   \
    do {                                                                                        \
        if (!(condition)) {                                                                     \
            std::fprintf(stderr, "%s:%d: property violated: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                       \
        }                                                                                       \
    } while (0)

namespace FuzzSupport {

// A folder that lives as long as the process; the fuzzer calls the entry point
// millions of times and must not create a folder each time.
inline QString scratchDir()
{
    static const QTemporaryDir dir;
    return dir.path();
}

// Writes the input to scratchDir()/name and returns the path, empty on failure.
inline QString writeScratchFile(const QString& name, const uint8_t* data, size_t size)
{
    const QString path = scratchDir() + QLatin1Char('/') + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return QString();
    if (file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size)) != static_cast<qint64>(size))
        return QString();
    return path;
}

} // namespace FuzzSupport
