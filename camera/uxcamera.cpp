#include "uxcamera.h"

#include "uxcamerafeature.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <new>

using namespace ZebCPP;

namespace {

constexpr long long kFileBlockSize = 0x10000;
// Command timeouts of the file-access protocol in milliseconds. The Open of an
// upload is only fired: the first block write waits for the device anyway.
constexpr unsigned long kUploadOpenTimeoutMs = 0;
constexpr unsigned long kDownloadOpenTimeoutMs = 2000;
constexpr unsigned long kBlockTimeoutMs = 2000;
// Closing a written file makes the device commit it to flash.
constexpr unsigned long kCloseTimeoutMs = 180000;
constexpr unsigned long kDeleteTimeoutMs = 180000;
constexpr unsigned long kAdjustPacketSizeTimeoutMs = 5000;
constexpr int kSingleImageAttempts = 5;

const char* const kWrite = "Write";
const char* const kRead = "Read";

// A zeroed scratch block, empty when there is no memory for it.
std::vector<unsigned char> scratchBlock(size_t size)
{
    try {
        return std::vector<unsigned char>(size);
    } catch (const std::bad_alloc&) {
        return {};
    }
}

} // namespace

UxCamera::UxCamera(CameraPtr camera, QObject* parent)
    : QObject(parent)
    , m_camera(std::move(camera))
    , m_features(new UxCameraFeature(m_camera, this))
    , m_bigEndian(false)
    , m_fileAccessSupported(false)
{
    InterfaceType type = InterfaceTypeUnknown;
    m_bigEndian = m_camera && m_camera->GetInterfaceType(type) == ZebErrorSuccess
        && type == InterfaceTypeGigEVision;
    bool has = false;
    m_fileAccessSupported = m_features->HasFeature("FileSelector", has);
}

ZebError_t UxCamera::GetInfo(ZebCameraInfo& info) const
{
    if (!m_camera)
        return ZebErrorBadHandle;
    std::string id;
    const ZebErrorType err = m_camera->GetID(id);
    if (err != ZebErrorSuccess)
        return err;
    return ZebCameraInfoQuery(id.c_str(), &info, sizeof(ZebCameraInfo));
}

QString UxCamera::GetCameraName() const
{
    ZebCameraInfo info{};
    if (GetInfo(info) != ZebErrorSuccess)
        return QString();
    return QString::fromUtf8(info.cameraName);
}

QString UxCamera::GetCameraManufacturerInfo() const
{
    QVariant value;
    m_features->GetValue("DeviceManufacturerInfo", value);
    return value.toString();
}

bool UxCamera::Read(unsigned long address, unsigned char* buffer, unsigned int* count)
{
    if (buffer == nullptr || count == nullptr || *count == 0 || !m_camera)
        return false;
    std::vector<unsigned char> scratch = scratchBlock(*count);
    if (scratch.empty())
        return false;
    uint32_t done = 0;
    if (m_camera->ReadMemory(address, scratch.data(), *count, done) != ZebErrorSuccess)
        return false;
    std::copy_n(scratch.begin(), done, buffer);
    *count = done;
    return true;
}

bool UxCamera::Write(unsigned long address, const unsigned char* data, unsigned int* count)
{
    if (data == nullptr || count == nullptr || *count == 0 || !m_camera)
        return false;
    std::vector<unsigned char> scratch = scratchBlock(*count);
    if (scratch.empty())
        return false;
    std::copy_n(data, *count, scratch.begin());
    uint32_t done = 0;
    if (m_camera->WriteMemory(address, scratch.data(), *count, done) != ZebErrorSuccess)
        return false;
    *count = done;
    return true;
}

bool UxCamera::ReadRegister(unsigned long address, uint32_t* value)
{
    if (value == nullptr)
        return false;
    unsigned char bytes[4] = {};
    unsigned int count = sizeof(bytes);
    if (!Read(address, bytes, &count) || count != sizeof(bytes))
        return false;
    *value = m_bigEndian ? qFromBigEndian<quint32>(bytes) : qFromLittleEndian<quint32>(bytes);
    return true;
}

bool UxCamera::WriteRegister(unsigned long address, uint32_t value)
{
    return UxRegisterDeviceWrite(address, std::vector<uint32_t>{value});
}

bool UxCamera::UxRegisterDeviceWrite(unsigned long address, const std::vector<uint32_t>& values)
{
    if (values.empty())
        return false;
    std::vector<unsigned char> bytes = scratchBlock(values.size() * 4);
    if (bytes.empty())
        return false;
    for (size_t i = 0; i < values.size(); ++i) {
        if (m_bigEndian)
            qToBigEndian<quint32>(values[i], bytes.data() + 4 * i);
        else
            qToLittleEndian<quint32>(values[i], bytes.data() + 4 * i);
    }
    unsigned int count = static_cast<unsigned int>(bytes.size());
    return Write(address, bytes.data(), &count) && count == bytes.size();
}

bool UxCamera::isWritable(const char* name) const
{
    bool writable = false;
    return m_features->IsWritable(name, writable) && writable;
}

long long UxCamera::fileBlockSize() const
{
    // Many cameras have a file buffer far smaller than 64 KiB; its size is the
    // largest access length they take, and no block may outgrow the buffer
    // register itself (some cameras leave the access length unbounded).
    long long block = kFileBlockSize;
    QVariant minimum;
    QVariant maximum;
    QVariant increment;
    if (m_features->GetFeatureRange("FileAccessLength", minimum, maximum, increment) && maximum.toLongLong() > 0)
        block = std::min(block, maximum.toLongLong());
    long long bufferLength = 0;
    if (m_features->GetRegisterLength("FileAccessBuffer", bufferLength) && bufferLength > 0)
        block = std::min(block, bufferLength);
    return block;
}

bool UxCamera::selectDeviceFile(const char* fileName, const char* fileSelector)
{
    if (!m_features->SetValue("FileSelector", QString::fromUtf8(fileSelector)))
        return false;
    bool hasFilename = false;
    if (m_features->HasFeature("Filename", hasFilename))
        return m_features->SetValue("Filename", QString::fromUtf8(fileName));
    return true;
}

bool UxCamera::runFileOperation(const char* operation, unsigned long timeoutMs)
{
    if (!m_features->SetValue("FileOperationSelector", QString::fromLatin1(operation))
        || !m_features->SetCommand("FileOperationExecute", timeoutMs))
        return false;
    // Many cameras complete the command of a refused operation and say so only in
    // its status. Without a status the command's own answer stands.
    QVariant status;
    return !m_features->GetValue("FileOperationStatus", status) || status.toString() == QLatin1String("Success");
}

bool UxCamera::UploadBuffer(std::vector<unsigned char> buffer, const char* fileName, const char* fileSelector,
                            long* bytesWritten, const std::atomic<bool>* cancel)
{
    if (buffer.empty() || fileName == nullptr || fileSelector == nullptr)
        return false;
    if (!selectDeviceFile(fileName, fileSelector) || !m_features->SetValue("FileOpenMode", QString(kWrite))
        || !runFileOperation("Open", kUploadOpenTimeoutMs))
        return false;

    const QString name = QString::fromUtf8(fileName);
    long long remaining = static_cast<long long>(buffer.size());
    const long long block = std::min(remaining, fileBlockSize());
    const bool lengthWritable = isWritable("FileAccessLength");
    // A camera may take fewer bytes than it was given and says so only in the
    // operation's result; the rest of the file would then be missing.
    auto tookAll = [this](long long n) {
        QVariant result;
        return !m_features->GetValue("FileOperationResult", result) || result.toLongLong() == n;
    };
    long long offset = 0;
    if (!lengthWritable || m_features->SetValue("FileAccessLength", block)) {
        std::vector<unsigned char> chunk;
        chunk.reserve(static_cast<size_t>(block));
        while (remaining > 0 && !(cancel && *cancel)) {
            const long long n = std::min(block, remaining);
            if (!m_features->SetValue("FileAccessOffset", offset))
                break;
            if (n < block && lengthWritable && !m_features->SetValue("FileAccessLength", n))
                break;
            chunk.assign(buffer.begin() + offset, buffer.begin() + offset + n);
            if (!m_features->SetRegisterValue("FileAccessBuffer", chunk, static_cast<int>(n))
                || !runFileOperation(kWrite, kBlockTimeoutMs) || !tookAll(n))
                break;
            remaining -= n;
            offset += n;
            // The last block is reported by the final 0 after the close.
            if (remaining > n)
                emit updateTransferProcess(remaining, name, kWrite);
        }
    }

    if (!runFileOperation("Close", kCloseTimeoutMs))
        return false;
    emit updateTransferProcess(0, name, kWrite);
    if (bytesWritten != nullptr)
        *bytesWritten = static_cast<long>(offset);
    return true;
}

bool UxCamera::UploadLocalFile(const QString& localPath, const char* fileName, const char* fileSelector,
                               long* bytesWritten)
{
    QFile file(localPath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = file.readAll();
    file.close();
    return UploadBuffer(std::vector<unsigned char>(content.begin(), content.end()), fileName, fileSelector,
                        bytesWritten);
}

bool UxCamera::DownloadDeviceFile(const QString& localPath, const char* fileName, const char* fileSelector,
                                  long* bytesRead, const std::atomic<bool>* cancel)
{
    if (localPath.isEmpty() || fileName == nullptr || fileSelector == nullptr || bytesRead == nullptr)
        return false;
    *bytesRead = 0;
    QFile file(localPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;

    if (!selectDeviceFile(fileName, fileSelector) || !m_features->SetValue("FileOpenMode", QString(kRead))
        || !runFileOperation("Open", kDownloadOpenTimeoutMs))
        return false;

    // From here on the device file is open and is closed on every path.
    auto abort = [&] {
        runFileOperation("Close", kCloseTimeoutMs);
        return false;
    };

    QVariant sizeValue;
    bool sizeOk = false;
    const long long fileSize =
        m_features->GetValue("FileSize", sizeValue) ? sizeValue.toLongLong(&sizeOk) : 0;
    if (!sizeOk || fileSize < 0)
        return abort();

    const QString name = QString::fromUtf8(fileName);
    const long long block = std::min(fileSize, fileBlockSize());
    const bool lengthWritable = isWritable("FileAccessLength");
    if (block > 0 && lengthWritable && !m_features->SetValue("FileAccessLength", block))
        return abort();

    std::vector<unsigned char> chunk;
    long long remaining = fileSize;
    long long offset = 0;
    while (remaining > 0) {
        const long long n = std::min(block, remaining);
        if ((cancel && *cancel) || !m_features->SetValue("FileAccessOffset", offset))
            return abort();
        if (n < block && lengthWritable && !m_features->SetValue("FileAccessLength", n))
            return abort();
        if (!runFileOperation(kRead, kBlockTimeoutMs)
            || !m_features->GetRegisterValue("FileAccessBuffer", chunk, static_cast<int>(n))
            || file.write(reinterpret_cast<const char*>(chunk.data()), n) != n)
            return abort();
        *bytesRead += static_cast<long>(n);
        offset += n;
        remaining -= n;
        emit updateTransferProcess(remaining, name, kRead);
    }

    if (!runFileOperation("Close", kCloseTimeoutMs))
        return false;
    if (!file.flush())
        return false;
    file.close();
    emit updateTransferProcess(0, name, kRead);
    return true;
}

bool UxCamera::DeleteDeviceFile(const char* fileName, const char* fileSelector)
{
    if (fileName == nullptr || fileSelector == nullptr)
        return false;
    return selectDeviceFile(fileName, fileSelector) && m_features->SetValue("FileOpenMode", QString(kWrite))
        && runFileOperation("Delete", kDeleteTimeoutMs);
}

bool UxCamera::GetFileAccessMode(bool* cannotRead, bool* cannotWrite)
{
    if (cannotRead == nullptr || cannotWrite == nullptr)
        return false;
    *cannotRead = false;
    *cannotWrite = false;
    // Firmware files are probed like any other file: the device alone decides.
    QVariant selector;
    if (!m_features->GetValue("FileSelector", selector))
        return false;
    // Every mode is tried, whatever the entries claim: the device knows per file.
    const bool read = m_features->SetValue("FileOpenMode", QString(kRead));
    const bool write = m_features->SetValue("FileOpenMode", QString(kWrite));
    const bool readWrite = m_features->SetValue("FileOpenMode", QString("ReadWrite"));
    *cannotRead = !read && !readWrite;
    *cannotWrite = !write && !readWrite;
    return true;
}

bool UxCamera::SaveToUserSet()
{
    QVariant selector;
    if (!m_features->GetValue("UserSetSelector", selector))
        return false;
    // The factory set must never be overwritten.
    if (selector.toString() == "Default" && !m_features->SetValue("UserSetSelector", QString("UserSet1")))
        return false;
    return m_features->SetCommand("UserSetSave", 0);
}

bool UxCamera::AdjustPacketSize()
{
    InterfaceType type = InterfaceTypeUnknown;
    if (!m_camera || m_camera->GetInterfaceType(type) != ZebErrorSuccess || type != InterfaceTypeGigEVision)
        return true;
    std::vector<StreamPtr> streams;
    if (m_camera->GetStreams(streams) != ZebErrorSuccess || streams.empty() || !streams.front())
        return false;
    // The first stream carries the images this program asks for.
    UxFeatureContainer stream(streams.front());
    QVariant protocol;
    if (stream.GetValue("GVSPProtocol", protocol) && protocol.toString() == "TCP")
        return true;
    return stream.SetCommand("GVSPAdjustPacketSize", kAdjustPacketSizeTimeoutMs);
}

bool UxCamera::AcquireSingleImage(FramePtr& frame, unsigned int timeoutMs, FrameAllocationMode allocationMode)
{
    if (!m_camera)
        return false;
    for (int attempt = 0; attempt < kSingleImageAttempts; ++attempt) {
        FramePtr candidate;
        if (m_camera->AcquireSingleImage(candidate, timeoutMs, allocationMode) != ZebErrorSuccess || !candidate)
            continue;
        FrameStatusType status = FrameStatusInvalid;
        if (candidate->GetReceiveStatus(status) == ZebErrorSuccess && status == FrameStatusComplete) {
            frame = candidate;
            return true;
        }
    }
    return false;
}

bool UxCamera::getFeature(const char* name, QVariant& value)
{
    return m_features->GetValue(name, value);
}

bool UxCamera::setFeature(const char* name, const QVariant& value)
{
    return m_features->SetValue(name, value);
}

bool UxCamera::featureEntries(const char* name, QStringList& entries)
{
    return m_features->GetSubFeatures(name, entries);
}

bool UxCamera::runCommand(const char* name, unsigned long timeoutMs)
{
    return m_features->SetCommand(name, timeoutMs);
}

bool UxCamera::uploadFile(const std::vector<unsigned char>& data, const QString& file, long& written,
                          const std::atomic<bool>* cancel)
{
    const QByteArray name = file.toUtf8();
    return UploadBuffer(data, name.constData(), name.constData(), &written, cancel);
}

bool UxCamera::downloadFile(const QString& path, const QString& file, long& read, const std::atomic<bool>* cancel)
{
    const QByteArray name = file.toUtf8();
    return DownloadDeviceFile(path, name.constData(), name.constData(), &read, cancel);
}
