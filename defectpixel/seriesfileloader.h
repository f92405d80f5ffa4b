#pragma once

#include "bitmapfile.h"
#include "defectpixelparams.h"
#include "imagegeometry.h"
#include "imageseries.h"
#include "meanbatch.h"

#include <QStringList>
#include <QVector>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>

// One file offered to a series, and what became of it.
struct OfferedFile {
    ImageFile file; // its image is null once accepted
    SeriesChange change = SeriesChange::NullImage;
    ImageGeometry before; // the series' size when the file was offered
};

// Adds image files to one series in order, each with the outcome that
// addImageToSeries gives it one file after the other, in steps that run on a
// worker thread. A step either reads a batch of plain bitmaps of the series'
// size from disk straight into a new mean, all in one pass over it
// (applyMeanBatch) with no image in memory, or it reads one file whole: one
// the straight read does not take, the first dark image of a width that is no
// multiple of 4, and any file when memory for a batch is short.
// Between start and finish the worker reads the series' mean and its
// remainder, which it borrows: the calling thread leaves the series alone until
// then, unless it empties it, and then calls abandon instead of finish. Every
// step started is finished or abandoned: only they hand the remainder back.
class SeriesFileLoader {
public:
    SeriesFileLoader(const QStringList& paths, int kind, int maxBatchFiles = int(kMaxBatchCount));
    ~SeriesFileLoader(); // waits for a step under way
    SeriesFileLoader(const SeriesFileLoader&) = delete;
    SeriesFileLoader& operator=(const SeriesFileLoader&) = delete;

    bool atEnd() const { return !m_step.valid() && (m_stop || m_next >= m_paths.size()); }
    // Files offered by the steps finished so far.
    int offered() const { return m_next; }
    // Starts the next step from the series as it stands.
    void start(const ImageGeometry& geometry, DefectPixelParams& params, const QImage& mean);
    // True when the step has finished its work, waiting up to timeout for it.
    bool waitForStep(std::chrono::milliseconds timeout);
    // Waits for the step and puts its outcome into the series; the files it
    // offered, in order.
    QVector<OfferedFile> finish(ImageGeometry& geometry, DefectPixelParams& params, QImage& mean);
    // Waits for the step and drops it, and what the series lent it: for a
    // series emptied meanwhile.
    void abandon();
    // Ends the loading: a batch under way stops within a tile and offers no
    // file, and no step follows. Safe from any thread.
    void stop() { m_stop = true; }

private:
    struct FreeBytes {
        void operator()(unsigned char* bytes) const { std::free(bytes); }
    };
    using Bytes = std::unique_ptr<unsigned char[], FreeBytes>;

    // What a step hands back from the worker.
    struct Step {
        QVector<ImageFile> files;
        bool batch = false;
        QImage mean;     // the batch's new mean
        Bytes remainder; // the batch's new remainder
    };
    // The series as a step starts from it, and the memory it may fill.
    struct Input {
        ImageGeometry geometry;
        uint32_t count = 0;
        QImage mean;
        bool batch = false;                       // the step may read a batch
        const unsigned char* remainder = nullptr; // null for an empty series
        QImage spareMean;
        Bytes spareRemainder;
        QImage spareImage;
    };

    Step run(int first, Input input) const;
    bool runBatch(int first, Input& input, Step& step) const;

    QStringList m_paths;
    int m_kind;
    int m_maxBatchFiles;
    int m_next = 0;
    std::future<Step> m_step;
    std::atomic<bool> m_stop{false};
    Bytes m_lent; // the series' remainder while a step reads it
    size_t m_lentSize = 0;
    QImage m_spareMean;
    Bytes m_spareRemainder;
    QImage m_spareImage;
};
