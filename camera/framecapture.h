#pragma once

#include <ZebCPP.h>

#include <QCoreApplication>
#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

// One frame of a capture, reduced to 8 bits per pixel, rows without padding.
struct CapturedFrame {
    uint32_t width = 0;
    uint32_t height = 0;
    bool bayer = false;          // a colour mosaic, kept as the sensor gave it
    std::vector<uint8_t> pixels; // width * height bytes
};

// Mean and spread (standard deviation) of a frame, in 8-bit grey levels.
struct FrameLevel {
    double mean = 0;
    double spread = 0;
};

// What a capture sets on the camera; unset values stay as the camera has them.
// Whatever was set is put back when the capture ends.
struct FrameCaptureSettings {
    int frames = 16;
    std::optional<double> exposureTime; // "ExposureTime", microseconds
    std::optional<double> gain;         // "Gain"
    uint32_t timeoutMs = 3000;          // per frame; a frame that times out is tried once more
};

enum class CaptureEnd {
    Completed,  // every frame was taken
    Cancelled,  // cancel was set or the sink refused a frame
    TimedOut,   // a frame timed out twice
    CameraLost, // the camera went away
    Failed,     // the camera refused the acquisition or sent what cannot be used
};

struct CaptureOutcome {
    CaptureEnd end = CaptureEnd::Completed;
    int frames = 0;  // frames the sink took
    QString message; // why it ended early; empty when completed or cancelled
};

// Takes dark or bright series from an opened camera through the SDK, without
// widgets, so that the panel and command-line tools share it. Frames are
// acquired one by one on the caller's thread; a sink takes each as it comes.
class FrameCapture {
    Q_DECLARE_TR_FUNCTIONS(FrameCapture)

public:
    using Sink = std::function<bool(const CapturedFrame& frame, int index)>;

    explicit FrameCapture(ZebCPP::CameraPtr camera);

    // Empty when the camera can capture; otherwise why it cannot.
    QString unavailableReason() const;
    // The camera's current values; unset when it lacks the feature or cannot read it.
    std::optional<double> exposureTime() const;
    std::optional<double> gain() const;

    // Takes one frame with the settings (restored afterwards) and measures it.
    bool measureLevel(const FrameCaptureSettings& settings, FrameLevel& level, QString* error);
    // Acquires settings.frames frames and hands each to the sink; a sink that
    // returns false stops the capture as cancel does. cancel is read before
    // every frame. The frames taken before an early end stay with the sink.
    CaptureOutcome run(const FrameCaptureSettings& settings, const Sink& sink,
                       const std::atomic<bool>* cancel = nullptr);

    // 8-bit formats as they are; 10-, 12- and 16-bit formats shifted right by
    // their bits beyond 8. False for other formats and short buffers.
    static bool reduceTo8Bits(const ZebCPP::Frame& frame, CapturedFrame& out);
    static FrameLevel levelOf(const CapturedFrame& frame);
    // Empty when the level suits the series: a dark frame near black, a bright
    // frame at 30 to 80 % of full scale.
    static QString levelWarning(const FrameLevel& level, bool bright);

private:
    // Sets the settings' values, remembering what they replaced.
    bool apply(const FrameCaptureSettings& settings, QString* error);
    void restore();
    // One complete frame, trying once more after a timeout or an incomplete frame.
    CaptureEnd acquire(int index, uint32_t timeoutMs, CapturedFrame& out, QString& message);

    struct Saved {
        const char* name;
        double value;
    };
    ZebCPP::CameraPtr m_camera;
    std::vector<Saved> m_saved;
};
