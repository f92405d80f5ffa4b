#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <atomic>
#include <cstdint>
#include <vector>

// What the map slots need of an opened camera: registers and device memory,
// features by name and device-file transfers. The camera layer's camera
// provides it; the map-slot code never sees the SDK.
class CameraPort {
public:
    virtual ~CameraPort() = default;

    virtual bool isBigEndian() const = 0;

    // One 32-bit register in host order; device memory in the device's byte order.
    virtual bool readRegister(unsigned long address, uint32_t& value) = 0;
    virtual bool writeRegister(unsigned long address, uint32_t value) = 0;
    virtual bool readMemory(unsigned long address, unsigned char* data, unsigned int& bytes) = 0;
    virtual bool writeMemory(unsigned long address, const unsigned char* data, unsigned int& bytes) = 0;

    virtual bool getFeature(const char* name, QVariant& value) = 0;
    virtual bool setFeature(const char* name, const QVariant& value) = 0;
    virtual bool featureEntries(const char* name, QStringList& entries) = 0;
    virtual bool runCommand(const char* name, unsigned long timeoutMs) = 0;

    // Of the device file the file selector names now.
    virtual bool fileAccessMode(bool& cannotRead, bool& cannotWrite) = 0;
    // Device files named by the file selector's entry, moved in blocks. A set
    // cancel flag stops the transfer before its next block; the file is closed.
    virtual bool uploadFile(const std::vector<unsigned char>& data, const QString& file, long& written,
                            const std::atomic<bool>* cancel) = 0;
    virtual bool downloadFile(const QString& path, const QString& file, long& read,
                              const std::atomic<bool>* cancel) = 0;
};
