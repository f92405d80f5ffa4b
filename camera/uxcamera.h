#pragma once

#include "cameraport.h"

#include <ZebC.h>
#include <ZebCPP.h>

#include <QObject>
#include <QString>

#include <cstdint>
#include <vector>

class UxCameraFeature;

// One opened camera: identification, device memory and registers, the GenICam
// file-access protocol, user sets, packet size and single images. Every feature
// access goes through its UxCameraFeature. Transfers may run on a worker thread;
// updateTransferProcess then reaches receivers of other threads queued. As a
// CameraPort it serves the map slots.
class UxCamera : public QObject, public CameraPort {
    Q_OBJECT

public:
    explicit UxCamera(ZebCPP::CameraPtr camera, QObject* parent = nullptr);

    ZebCPP::CameraPtr GetCameraPtr() const { return m_camera; }
    // Owned by this camera.
    UxCameraFeature* GetFeatureContainer() const { return m_features; }

    // Fills info through the flat layer's query with the camera's plain ID; the SDK status.
    ZebError_t GetInfo(ZebCameraInfo& info) const;
    // Empty when the camera cannot be queried.
    QString GetCameraName() const;
    QString GetCameraManufacturerInfo() const;

    // Both decided once, when the camera object is made.
    bool IsBigEndian() const { return m_bigEndian; }
    bool IsFileAccessSupported() const { return m_fileAccessSupported; }

    // Device memory in the device's byte order; *count bytes, set to the bytes moved.
    bool Read(unsigned long address, unsigned char* buffer, unsigned int* count);
    bool Write(unsigned long address, const unsigned char* data, unsigned int* count);
    // One 32-bit register, in host order for the caller.
    bool ReadRegister(unsigned long address, uint32_t* value);
    bool WriteRegister(unsigned long address, uint32_t value);
    // Consecutive 32-bit registers from address on, written in one memory write.
    bool UxRegisterDeviceWrite(unsigned long address, const std::vector<uint32_t>& values);

    // Writes the buffer as the device file chosen by fileSelector (and fileName
    // where the camera has "Filename"). True once the file was closed again;
    // *bytesWritten then tells how much of the buffer arrived. A set cancel flag
    // stops the transfer before its next block.
    bool UploadBuffer(std::vector<unsigned char> buffer, const char* fileName, const char* fileSelector,
                      long* bytesWritten, const std::atomic<bool>* cancel = nullptr);
    bool UploadLocalFile(const QString& localPath, const char* fileName, const char* fileSelector,
                         long* bytesWritten);
    // Copies the device file into a new local file; a failed transfer leaves the part read.
    bool DownloadDeviceFile(const QString& localPath, const char* fileName, const char* fileSelector,
                            long* bytesRead, const std::atomic<bool>* cancel = nullptr);
    bool DeleteDeviceFile(const char* fileName, const char* fileSelector);
    // Which open modes the device file selected now refuses; "FileOpenMode" is
    // left at the last mode the camera accepted.
    bool GetFileAccessMode(bool* cannotRead, bool* cannotWrite);

    // Saves the settings to the selected user set, never to the factory "Default".
    bool SaveToUserSet();
    // Lets a GigE Vision camera find its packet size; true when there was nothing to do.
    bool AdjustPacketSize();
    // Up to five attempts at one complete frame.
    bool AcquireSingleImage(ZebCPP::FramePtr& frame, unsigned int timeoutMs,
                            ZebCPP::FrameAllocationMode allocationMode = ZebCPP::FrameAllocationModeSdk);

    // CameraPort
    bool isBigEndian() const override { return m_bigEndian; }
    bool readRegister(unsigned long address, uint32_t& value) override { return ReadRegister(address, &value); }
    bool writeRegister(unsigned long address, uint32_t value) override { return WriteRegister(address, value); }
    bool readMemory(unsigned long address, unsigned char* data, unsigned int& bytes) override
    {
        return Read(address, data, &bytes);
    }
    bool writeMemory(unsigned long address, const unsigned char* data, unsigned int& bytes) override
    {
        return Write(address, data, &bytes);
    }
    bool getFeature(const char* name, QVariant& value) override;
    bool setFeature(const char* name, const QVariant& value) override;
    bool featureEntries(const char* name, QStringList& entries) override;
    bool runCommand(const char* name, unsigned long timeoutMs) override;
    bool fileAccessMode(bool& cannotRead, bool& cannotWrite) override
    {
        return GetFileAccessMode(&cannotRead, &cannotWrite);
    }
    bool uploadFile(const std::vector<unsigned char>& data, const QString& file, long& written,
                    const std::atomic<bool>* cancel) override;
    bool downloadFile(const QString& path, const QString& file, long& read, const std::atomic<bool>* cancel) override;

signals:
    void updateTransferProcess(long long remaining, QString fileName, QString fileOperation);

private:
    bool selectDeviceFile(const char* fileName, const char* fileSelector);
    bool runFileOperation(const char* operation, unsigned long timeoutMs);
    bool isWritable(const char* name) const;
    long long fileBlockSize() const;

    ZebCPP::CameraPtr m_camera;
    UxCameraFeature* m_features;
    bool m_bigEndian;
    bool m_fileAccessSupported;
};
