#include "uxdefectpixelcorrection.h"
#include "uxdialogs.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QListWidget>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

constexpr int kWidth = 5472;
constexpr int kHeight = 3648;
constexpr int kImages = 16;

// Sixteen 8-bit bitmaps of a noisy dark scene, written once.
struct DarkFiles {
    QTemporaryDir dir;
    QStringList paths;

    DarkFiles()
    {
        QImage image(kWidth, kHeight, QImage::Format_Indexed8);
        QVector<QRgb> grey(256);
        for (int i = 0; i < 256; ++i)
            grey[i] = qRgb(i, i, i);
        image.setColorTable(grey);
        for (int n = 0; n < kImages; ++n) {
            uint32_t state = 2463534242u + uint32_t(n);
            for (int y = 0; y < kHeight; ++y) {
                uchar* line = image.scanLine(y);
                for (int x = 0; x < kWidth; ++x) {
                    state ^= state << 13;
                    state ^= state >> 17;
                    state ^= state << 5;
                    line[x] = uchar(8 + (state & 7));
                }
            }
            paths << dir.filePath(QString("dark%1.bmp").arg(n));
            image.save(paths.last(), "BMP");
        }
    }
};

// Chooses the files in place of the user; no message box is expected.
class ChosenFiles : public UXCDialogs {
public:
    QStringList paths;
    int boxes = 0;

    QStringList getOpenFileNames(QWidget*, const QString&, const QString&, const QString&) override { return paths; }
    QMessageBox::StandardButton information(QWidget*, const QString&, const QString&,
                                            QMessageBox::StandardButtons) override
    {
        ++boxes;
        return QMessageBox::Ok;
    }
    QMessageBox::StandardButton critical(QWidget*, const QString&, const QString&,
                                         QMessageBox::StandardButtons) override
    {
        ++boxes;
        return QMessageBox::Ok;
    }
    QMessageBox::StandardButton detailed(QWidget*, QMessageBox::Icon, const QString&, const QString&,
                                         const QString&) override
    {
        ++boxes;
        return QMessageBox::Ok;
    }
};

// The longest stretch in which the GUI thread handled no event: a zero timer
// fires on every pass of event processing.
class GapMeter {
public:
    GapMeter()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { lap(); });
        m_timer.start(0);
        m_clock.start();
    }
    qint64 stop()
    {
        lap();
        m_timer.stop();
        return m_longest;
    }

private:
    void lap()
    {
        m_longest = std::max(m_longest, m_clock.restart());
    }
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
};

template <bool batch>
void BM_PanelAddImages(benchmark::State& state)
{
    static DarkFiles files;
    ChosenFiles dialogs;
    dialogs.paths = files.paths;
    qint64 longestGap = 0;
    for (auto _ : state) {
        state.PauseTiming();
        UXCDefectPixelCorrection panel;
        panel.setDialogs(&dialogs);
        panel.resize(1200, 800);
        panel.show();
        QCoreApplication::processEvents();
        state.ResumeTiming();
        GapMeter gaps;
        if (batch) {
            QMetaObject::invokeMethod(&panel, "on_btnAddDarkImage_clicked");
        } else {
            // The straightforward way: one file after another, the label shown each time.
            for (const QString& path : files.paths)
                panel.loadImagefromFile(path, 0);
        }
        longestGap = std::max(longestGap, gaps.stop());
        state.PauseTiming();
        if (panel.darkParams().count != uint32_t(kImages) || dialogs.boxes != 0)
            state.SkipWithError("not every image was added");
        state.ResumeTiming();
    }
    state.counters["longestGapMs"] = double(longestGap);
    state.counters["MPixel/s"] = benchmark::Counter(double(kWidth) * kHeight * kImages / 1e6 * double(state.iterations()),
                                                    benchmark::Counter::kIsRate);
    state.SetLabel("16 bitmaps 5472 x 3648 added to the dark series of the panel");
}

} // namespace

BENCHMARK_TEMPLATE(BM_PanelAddImages, true)->Name("PanelAddImages")->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK_TEMPLATE(BM_PanelAddImages, false)
    ->Name("PanelAddImagesOneByOne")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
