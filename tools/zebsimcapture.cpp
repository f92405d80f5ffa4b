// zeb-sim-capture: writes dark and bright bitmap series of a camera through the
// camera SDK, and the seeded defects of a simulated camera as ground truth.

#include "ZebCPP.h"
#include "sim/simcontrol.h"
#include "simcameralookup.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTextStream>

#include <cstdlib>

using namespace ZebCPP;

namespace {

const char* const kDescription =
    "Writes dark_000.bmp ... and bright_000.bmp ... of one camera, taken with the SDK's\n"
    "single-image acquisition, and defects.txt with one \"x;y;kind\" line per seeded\n"
    "defect pixel. Monochrome frames are saved as 8-bit indexed images with a grey\n"
    "palette, colour (Bayer) frames demosaiced as 32-bit RGB images.\n"
    "Dark frames are taken with SimLightLevel 0, bright frames with SimLightLevel 100.\n"
    "The SDK loads the simulated cameras named by ZEB_SIM_CAMERAS (\"default\" or the\n"
    "path of a JSON camera set); when it is not set, the built-in set is used.";

// Where a camera's frames and defects come from.
class Capture {
public:
    Capture(CameraPtr camera, QString outDir) : camera_(std::move(camera)), out_(std::move(outDir)) {}

    bool series(const char* prefix, int count, double light, QTextStream& err)
    {
        FeaturePtr level;
        if (camera_->GetFeatureByName("SimLightLevel", level) != ZebErrorSuccess
            || level->SetValue(light) != ZebErrorSuccess) {
            err << "Cannot set the light level of the camera.\n";
            return false;
        }
        for (int i = 0; i < count; ++i) {
            FramePtr frame;
            if (camera_->AcquireSingleImage(frame, 5000) != ZebErrorSuccess) {
                err << "Acquisition failed.\n";
                return false;
            }
            const QString name = QString("%1_%2.bmp").arg(prefix).arg(i, 3, 10, QChar('0'));
            if (!toImage(*frame).save(QDir(out_).filePath(name), "BMP")) {
                err << "Cannot write " << name << ".\n";
                return false;
            }
        }
        return true;
    }

    bool defects(const std::string& serial, QTextStream& err)
    {
        std::vector<SimControl::SimDefect> list;
        if (SimControl::GetDefects(serial, list) != ZebErrorSuccess) {
            err << "The camera reports no seeded defects (not a simulated camera?).\n";
            return false;
        }
        QFile file(QDir(out_).filePath("defects.txt"));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
            err << "Cannot write defects.txt.\n";
            return false;
        }
        QTextStream text(&file);
        for (const SimControl::SimDefect& d : list)
            text << d.x << ';' << d.y << ';' << SimControl::DefectKindName(d.kind) << '\n';
        return true;
    }

private:
    static QImage toImage(const Frame& frame)
    {
        uint32_t width = 0, height = 0;
        PixelFormatType format = PixelFormatMono8;
        const uint8_t* data = nullptr;
        frame.GetWidth(width);
        frame.GetHeight(height);
        frame.GetPixelFormat(format);
        frame.GetBuffer(data);
        if (format == PixelFormatMono8)
            return mono(data, int(width), int(height));
        return demosaic(data, int(width), int(height), format);
    }

    static QImage mono(const uint8_t* data, int width, int height)
    {
        QImage image(width, height, QImage::Format_Indexed8);
        QVector<QRgb> grey(256);
        for (int i = 0; i < 256; ++i)
            grey[i] = qRgb(i, i, i);
        image.setColorTable(grey);
        for (int y = 0; y < height; ++y)
            std::copy(data + y * width, data + (y + 1) * width, image.scanLine(y));
        return image;
    }

    // Channel (0 red, 1 green, 2 blue) of a pixel behind the filter.
    static int channelAt(PixelFormatType format, int x, int y)
    {
        static const int kRG[4] = {0, 1, 1, 2}, kGR[4] = {1, 0, 2, 1}, kGB[4] = {1, 2, 0, 1}, kBG[4] = {2, 1, 1, 0};
        const int* order = format == PixelFormatBayerRG8 ? kRG
                           : format == PixelFormatBayerGR8 ? kGR
                           : format == PixelFormatBayerGB8 ? kGB : kBG;
        return order[(y % 2) * 2 + x % 2];
    }

    // Each pixel keeps its own channel; the other two are the mean of the
    // neighbours (3 x 3) that carry them.
    static QImage demosaic(const uint8_t* data, int width, int height, PixelFormatType format)
    {
        QImage image(width, height, QImage::Format_RGB32);
        for (int y = 0; y < height; ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < width; ++x) {
                int sum[3] = {0, 0, 0}, count[3] = {0, 0, 0};
                for (int v = std::max(0, y - 1); v <= std::min(height - 1, y + 1); ++v) {
                    for (int u = std::max(0, x - 1); u <= std::min(width - 1, x + 1); ++u) {
                        const int c = channelAt(format, u, v);
                        sum[c] += data[v * width + u];
                        ++count[c];
                    }
                }
                int rgb[3];
                const int own = channelAt(format, x, y);
                for (int c = 0; c < 3; ++c)
                    rgb[c] = c == own ? data[y * width + x] : (count[c] ? sum[c] / count[c] : 0);
                line[x] = qRgb(rgb[0], rgb[1], rgb[2]);
            }
        }
        return image;
    }

    CameraPtr camera_;
    QString out_;
};

int capture(const QCommandLineParser& options, QTextStream& err)
{
    bool darkOk = false, brightOk = false;
    const int dark = options.value("dark").toInt(&darkOk);
    const int bright = options.value("bright").toInt(&brightOk);
    const QString out = options.value("out");
    if (options.value("camera").isEmpty() || out.isEmpty() || !darkOk || !brightOk || dark < 0 || bright < 0) {
        err << "Give --camera, --out and non-negative --dark and --bright counts; see --help.\n";
        return 1;
    }
    if (!QDir().mkpath(out)) {
        err << "Cannot create " << out << ".\n";
        return 2;
    }
    CameraPtr camera = findCameraBySerialOrModel(options.value("camera"));
    if (!camera) {
        err << "No camera with serial number or model " << options.value("camera") << ".\n";
        return 2;
    }
    if (camera->Open(AccessModeFull) != ZebErrorSuccess) {
        err << "The camera cannot be opened with full access.\n";
        return 2;
    }
    std::string serial;
    camera->GetSerialNumber(serial);
    Capture run(camera, out);
    const bool ok = run.series("dark", dark, 0, err) && run.series("bright", bright, 100, err)
                    && run.defects(serial, err);
    camera->Close();
    return ok ? 0 : 2;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(kDescription);
    options.addHelpOption();
    options.addOption({"camera", "Serial number or model of the camera.", "serial or model"});
    options.addOption({"dark", "Number of dark frames.", "N", "0"});
    options.addOption({"bright", "Number of bright frames.", "N", "0"});
    options.addOption({"out", "Folder for the bitmaps and defects.txt.", "DIR"});
    options.process(app);

    setenv("ZEB_SIM_CAMERAS", "default", 0); // the SDK reads it at start-up
    QTextStream err(stderr);
    ZebSystem& system = ZebSystem::GetInstance();
    if (system.Startup() != ZebErrorSuccess) {
        err << "The camera SDK did not start (check ZEB_SIM_CAMERAS).\n";
        return 2;
    }
    const int result = capture(options, err);
    system.Shutdown();
    return result;
}
