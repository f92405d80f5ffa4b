#include "framecapture.h"

#include <cmath>

using namespace ZebCPP;

namespace {

constexpr double kFullScale = 255.0;

std::optional<double> readNumber(const CameraPtr& camera, const char* name)
{
    FeaturePtr feature;
    FeatureDataType type = FeatureDataUnknown;
    bool readable = false;
    if (!camera || camera->GetFeatureByName(name, feature) != ZebErrorSuccess || !feature
        || feature->GetDataType(type) != ZebErrorSuccess || feature->IsReadable(readable) != ZebErrorSuccess
        || !readable)
        return std::nullopt;
    if (type == FeatureDataFloat) {
        double value = 0;
        if (feature->GetValue(value) == ZebErrorSuccess)
            return value;
    } else if (type == FeatureDataInt) {
        int64_t value = 0;
        if (feature->GetValue(value) == ZebErrorSuccess)
            return double(value);
    }
    return std::nullopt;
}

ZebErrorType writeNumber(const CameraPtr& camera, const char* name, double value)
{
    FeaturePtr feature;
    FeatureDataType type = FeatureDataUnknown;
    ZebErrorType err = camera->GetFeatureByName(name, feature);
    if (err == ZebErrorSuccess)
        err = feature->GetDataType(type);
    if (err != ZebErrorSuccess)
        return err;
    if (type == FeatureDataInt)
        return feature->SetValue(int64_t(std::llround(value)));
    return type == FeatureDataFloat ? feature->SetValue(value) : ZebErrorWrongType;
}

bool isLost(ZebErrorType err)
{
    return err == ZebErrorBadHandle || err == ZebErrorDeviceNotOpen;
}

// Significant bits per pixel of the formats a capture takes, 0 for the others.
// (The code's own size field counts the bits a pixel occupies: 16 for them all.)
int bitsOf(PixelFormatType format)
{
    switch (format) {
    case PixelFormatMono8: case PixelFormatBayerGR8: case PixelFormatBayerRG8:
    case PixelFormatBayerGB8: case PixelFormatBayerBG8:
        return 8;
    case PixelFormatMono10: case PixelFormatBayerGR10: case PixelFormatBayerRG10:
    case PixelFormatBayerGB10: case PixelFormatBayerBG10:
        return 10;
    case PixelFormatMono12: case PixelFormatBayerGR12: case PixelFormatBayerRG12:
    case PixelFormatBayerGB12: case PixelFormatBayerBG12:
        return 12;
    case PixelFormatMono16: case PixelFormatBayerGR16: case PixelFormatBayerRG16:
    case PixelFormatBayerGB16: case PixelFormatBayerBG16:
        return 16;
    }
    return 0;
}

// The same formats by their feature names: "Mono8" ... "Mono16", "BayerRG8" ... "BayerBG16".
bool isCapturableName(const QString& name)
{
    static const QStringList kPrefixes = {"Mono", "BayerRG", "BayerGR", "BayerGB", "BayerBG"};
    for (const QString& prefix : kPrefixes) {
        if (!name.startsWith(prefix))
            continue;
        const QString bits = name.mid(prefix.size());
        return bits == "8" || bits == "10" || bits == "12" || bits == "16";
    }
    return false;
}

} // namespace

FrameCapture::FrameCapture(CameraPtr camera) : m_camera(std::move(camera))
{
}

QString FrameCapture::unavailableReason() const
{
    if (!m_camera)
        return tr("No camera is open.");
    std::vector<StreamPtr> streams;
    if (m_camera->GetStreams(streams) != ZebErrorSuccess || streams.empty())
        return tr("The camera has no image stream to capture from.");
    FeaturePtr format;
    std::string name;
    if (m_camera->GetFeatureByName("PixelFormat", format) == ZebErrorSuccess && format
        && format->GetValue(name) == ZebErrorSuccess && !isCapturableName(QString::fromStdString(name)))
        return tr("The camera's pixel format %1 cannot be captured; Mono and Bayer formats of 8, 10, 12 "
                  "or 16 bits can.").arg(QString::fromStdString(name));
    return QString();
}

std::optional<double> FrameCapture::exposureTime() const
{
    return readNumber(m_camera, "ExposureTime");
}

std::optional<double> FrameCapture::gain() const
{
    return readNumber(m_camera, "Gain");
}

bool FrameCapture::apply(const FrameCaptureSettings& settings, QString* error)
{
    m_saved.clear();
    const std::pair<const char*, std::optional<double>> wanted[] = {{"ExposureTime", settings.exposureTime},
                                                                    {"Gain", settings.gain}};
    for (const auto& [name, value] : wanted) {
        if (!value)
            continue;
        const std::optional<double> old = readNumber(m_camera, name);
        if (old && *old == *value)
            continue;
        if (writeNumber(m_camera, name, *value) != ZebErrorSuccess) {
            if (error)
                *error = tr("The camera refused %1 = %2.").arg(name).arg(*value);
            restore();
            return false;
        }
        if (old)
            m_saved.push_back({name, *old});
    }
    return true;
}

void FrameCapture::restore()
{
    for (auto it = m_saved.rbegin(); it != m_saved.rend(); ++it)
        writeNumber(m_camera, it->name, it->value); // a camera gone keeps nothing to restore
    m_saved.clear();
}

CaptureEnd FrameCapture::acquire(int index, uint32_t timeoutMs, CapturedFrame& out, QString& message)
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        FramePtr frame;
        const ZebErrorType err = m_camera->AcquireSingleImage(frame, timeoutMs);
        if (isLost(err)) {
            message = tr("The camera was disconnected during frame %1.").arg(index + 1);
            return CaptureEnd::CameraLost;
        }
        FrameStatusType status = FrameStatusInvalid;
        if (err == ZebErrorSuccess && frame)
            frame->GetReceiveStatus(status);
        if (err == ZebErrorTimeout || (err == ZebErrorSuccess && status != FrameStatusComplete))
            continue;
        if (err != ZebErrorSuccess) {
            message = tr("Frame %1 could not be acquired (error: %2).").arg(index + 1).arg(int(err));
            return CaptureEnd::Failed;
        }
        if (!reduceTo8Bits(*frame, out)) {
            message = tr("Frame %1 has a pixel format that cannot be captured.").arg(index + 1);
            return CaptureEnd::Failed;
        }
        return CaptureEnd::Completed;
    }
    message = tr("Frame %1 timed out twice.").arg(index + 1);
    return CaptureEnd::TimedOut;
}

bool FrameCapture::measureLevel(const FrameCaptureSettings& settings, FrameLevel& level, QString* error)
{
    QString reason = unavailableReason();
    if (reason.isEmpty() && apply(settings, &reason)) {
        CapturedFrame frame;
        const CaptureEnd end = acquire(0, settings.timeoutMs, frame, reason);
        restore();
        if (end == CaptureEnd::Completed) {
            level = levelOf(frame);
            return true;
        }
    }
    if (error)
        *error = reason;
    return false;
}

CaptureOutcome FrameCapture::run(const FrameCaptureSettings& settings, const Sink& sink,
                                 const std::atomic<bool>* cancel)
{
    CaptureOutcome outcome;
    outcome.message = unavailableReason();
    if (!outcome.message.isEmpty() || !apply(settings, &outcome.message)) {
        outcome.end = CaptureEnd::Failed;
        return outcome;
    }
    CapturedFrame frame;
    for (int i = 0; i < settings.frames; ++i) {
        if (cancel && cancel->load()) {
            outcome.end = CaptureEnd::Cancelled;
            break;
        }
        outcome.end = acquire(i, settings.timeoutMs, frame, outcome.message);
        if (outcome.end != CaptureEnd::Completed)
            break;
        if (!sink(frame, i)) {
            outcome.end = CaptureEnd::Cancelled;
            break;
        }
        ++outcome.frames;
    }
    if (outcome.end != CaptureEnd::CameraLost)
        restore();
    m_saved.clear();
    if (outcome.end != CaptureEnd::Completed && outcome.end != CaptureEnd::Cancelled)
        outcome.message += QLatin1Char(' ') + tr("%n frame(s) were kept.", "", outcome.frames);
    return outcome;
}

bool FrameCapture::reduceTo8Bits(const Frame& frame, CapturedFrame& out)
{
    PixelFormatType format = PixelFormatMono8;
    const uint8_t* data = nullptr;
    uint32_t size = 0;
    frame.GetPixelFormat(format);
    frame.GetWidth(out.width);
    frame.GetHeight(out.height);
    frame.GetBuffer(data);
    frame.GetBufferSize(size);
    const int bits = bitsOf(format);
    const size_t pixels = size_t(out.width) * out.height;
    if (bits == 0 || data == nullptr || size < pixels * (bits > 8 ? 2 : 1))
        return false;
    out.bayer = format != PixelFormatMono8 && format != PixelFormatMono10 && format != PixelFormatMono12
                && format != PixelFormatMono16;
    out.pixels.resize(pixels);
    if (bits == 8) {
        std::copy(data, data + pixels, out.pixels.begin());
        return true;
    }
    const int shift = bits - 8;
    uint8_t* to = out.pixels.data();
    for (size_t i = 0; i < pixels; ++i) {
        const unsigned value = unsigned(data[2 * i]) | unsigned(data[2 * i + 1]) << 8;
        to[i] = uint8_t(std::min(value >> shift, 255u)); // stray high bits saturate
    }
    return true;
}

FrameLevel FrameCapture::levelOf(const CapturedFrame& frame)
{
    FrameLevel level;
    if (frame.pixels.empty())
        return level;
    uint64_t histogram[256] = {};
    for (uint8_t v : frame.pixels)
        ++histogram[v];
    double sum = 0, squares = 0;
    for (int v = 0; v < 256; ++v) {
        sum += double(histogram[v]) * v;
        squares += double(histogram[v]) * v * v;
    }
    const double n = double(frame.pixels.size());
    level.mean = sum / n;
    level.spread = std::sqrt(std::max(0.0, squares / n - level.mean * level.mean));
    return level;
}

QString FrameCapture::levelWarning(const FrameLevel& level, bool bright)
{
    const double percent = level.mean / kFullScale * 100.0;
    if (bright && (percent < 30 || percent > 80))
        return tr("The bright level is %1 % of full scale; light the sensor evenly to 30 to 80 %, "
                  "about half of full scale.").arg(percent, 0, 'f', 0);
    if (!bright && percent > 10)
        return tr("The dark level is %1 % of full scale, not near black; cover the lens.")
            .arg(percent, 0, 'f', 0);
    return QString();
}
