#include "seriesfileloader.h"

#include "largebuffer.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <new>
#include <system_error>
#include <utility>
#include <vector>

namespace {

bool isSeriesKind(int kind)
{
    return kind == DarkSeries || kind == BrightSeries;
}

// A series already begun whose mean the batch path can read and replace: the
// size the series has, at least its run of bytes, and room for more images.
bool meanTakesBatch(const QImage& mean, const ImageGeometry& geometry, uint32_t count)
{
    return count >= 1 && count < kMaxBatchCount && !mean.isNull() && mean.depth() >= 8
           && uint32_t(mean.width()) == geometry.width && uint32_t(mean.height()) == geometry.height
           && size_t(mean.sizeInBytes()) >= size_t(geometry.width) * geometry.height;
}

// The memory a batch writes its mean into, holding past the run what a single
// update leaves there: the old mean's bytes, or the zeros of a first mean.
QImage batchMean(const QImage& mean, int kind, int width, int height, QImage&& spare, size_t run)
{
    const QImage::Format format =
        !mean.isNull() ? mean.format() : kind == DarkSeries ? QImage::Format_Grayscale8 : QImage::Format_Indexed8;
    const bool reusable = !spare.isNull() && spare.isDetached() && spare.format() == format
                          && spare.size() == QSize(width, height);
    QImage target = reusable ? std::move(spare) : newLargeImage(width, height, format);
    if (target.isNull())
        return target;
    const size_t tail = size_t(target.sizeInBytes()) - run;
    if (mean.isNull()) {
        std::memset(target.bits() + run, 0, tail);
    } else {
        target.setColorTable(mean.colorTable());
        std::memcpy(target.bits() + run, mean.constBits() + run, tail);
    }
    return target;
}

} // namespace

SeriesFileLoader::SeriesFileLoader(const QStringList& paths, int kind, int maxBatchFiles)
    : m_paths(paths)
    , m_kind(kind)
    , m_maxBatchFiles(std::max(1, maxBatchFiles))
{
}

SeriesFileLoader::~SeriesFileLoader()
{
    if (m_step.valid())
        m_step.wait();
}

void SeriesFileLoader::start(const ImageGeometry& geometry, DefectPixelParams& params, const QImage& mean)
{
    if (m_step.valid() || m_next >= m_paths.size())
        return;
    Input input;
    input.geometry = geometry;
    input.count = params.count;
    input.mean = mean;
    input.spareMean = std::move(m_spareMean);
    input.spareRemainder = std::move(m_spareRemainder);
    input.spareImage = std::move(m_spareImage);
    if (isSeriesKind(m_kind) && meanTakesBatch(mean, geometry, params.count)) {
        m_lentSize = size_t(geometry.width) * geometry.height;
        m_lent.reset(params.lendRemainder(m_lentSize));
        input.remainder = m_lent.get();
        input.batch = input.remainder != nullptr;
    } else {
        input.batch = isSeriesKind(m_kind) && params.count == 0 && mean.isNull();
    }
    const int first = m_next;
    try {
        m_step = std::async(std::launch::async, [this, first, input = std::move(input)]() mutable {
            return run(first, std::move(input));
        });
    } catch (const std::system_error&) {
        // No thread to be had: the step runs here, now.
        std::promise<Step> done;
        done.set_value(run(first, std::move(input)));
        m_step = done.get_future();
    }
}

bool SeriesFileLoader::waitForStep(std::chrono::milliseconds timeout)
{
    return !m_step.valid() || m_step.wait_for(timeout) == std::future_status::ready;
}

QVector<OfferedFile> SeriesFileLoader::finish(ImageGeometry& geometry, DefectPixelParams& params, QImage& mean)
{
    QVector<OfferedFile> offered;
    if (!m_step.valid())
        return offered;
    Step step = m_step.get();
    m_next += step.files.size();
    if (step.batch) {
        const ImageGeometry before = geometry;
        geometry.width = uint32_t(step.mean.width());
        geometry.height = uint32_t(step.mean.height());
        geometry.pixelCount = geometry.width * geometry.height;
        params.adoptRemainder(step.remainder.release(), size_t(geometry.pixelCount),
                              params.count + uint32_t(step.files.size()));
        m_spareRemainder = std::move(m_lent);
        m_spareMean = std::move(mean);
        mean = std::move(step.mean);
        for (ImageFile& file : step.files)
            offered.push_back({std::move(file), SeriesChange::Accepted, offered.isEmpty() ? before : geometry});
        return offered;
    }
    if (m_lent)
        params.adoptRemainder(m_lent.release(), m_lentSize, params.count);
    for (ImageFile& file : step.files) {
        const ImageGeometry before = geometry;
        const SeriesChange change = addImageToSeries(file.image, m_kind, geometry, params, mean);
        if (change == SeriesChange::Accepted)
            m_spareImage = std::move(file.image);
        offered.push_back({std::move(file), change, before});
    }
    return offered;
}

void SeriesFileLoader::abandon()
{
    if (m_step.valid())
        m_step.get();
    m_lent.reset();
    m_next = m_paths.size();
}

SeriesFileLoader::Step SeriesFileLoader::run(int first, Input input) const
{
    Step step;
    if (m_stop)
        return step;
    try {
        if (input.batch && runBatch(first, input, step))
            return step;
        if (m_stop)
            return Step();
    } catch (const std::bad_alloc&) {
        // No memory for a batch: the file is read whole, as on its own.
        step = Step();
    }
    try {
        step.files.push_back(readImage(m_paths[first], std::move(input.spareImage)));
    } catch (const std::bad_alloc&) {
        ImageFile refused;
        refused.path = m_paths[first];
        refused.problem = ImageFileProblem::Unreadable;
        step.files = {refused};
    }
    return step;
}

bool SeriesFileLoader::runBatch(int first, Input& input, Step& step) const
{
    // An empty series takes its size from the first file, as a single add does.
    uint32_t width = input.geometry.width, height = input.geometry.height;
    const bool sizeKnown = width != 0 && height != 0;
    const int room = int(std::min<uint32_t>(uint32_t(m_maxBatchFiles), kMaxBatchCount - input.count));
    std::vector<std::unique_ptr<QFile>> files;
    std::vector<PlainBitmap> layouts;
    for (int i = first; i < m_paths.size() && int(files.size()) < room; ++i) {
        auto file = std::make_unique<QFile>(m_paths[i]);
        PlainBitmap layout;
        if (!file->open(QIODevice::ReadOnly) || !readPlainBitmapHeader(*file, layout))
            break;
        if (files.empty() && !sizeKnown) {
            width = uint32_t(layout.width);
            height = uint32_t(layout.height);
        }
        if (uint32_t(layout.width) != width || uint32_t(layout.height) != height)
            break;
        files.push_back(std::move(file));
        layouts.push_back(layout);
    }
    // A first dark mean of such a width keeps the converted image's bytes in
    // its line padding, which only a whole image has.
    const bool firstMean = input.count == 0;
    if (files.empty() || (firstMean && m_kind == DarkSeries && width % 4 != 0))
        return false;

    const size_t run = size_t(width) * height;
    QImage mean = batchMean(input.mean, m_kind, int(width), int(height), std::move(input.spareMean), run);
    Bytes remainder = std::move(input.spareRemainder);
    if (!remainder) {
        remainder.reset(static_cast<unsigned char*>(std::malloc(run)));
        adviseLargePages(remainder.get(), run);
    }
    if (mean.isNull() || !remainder)
        return false;

    // A file cut short since its header was read fails the batch; the files
    // before it are tried again, and it is offered alone to be refused.
    while (!files.empty()) {
        std::vector<BatchImage> images;
        for (size_t i = 0; i < files.size(); ++i) {
            const int fd = files[i]->handle();
            const PlainBitmap& layout = layouts[i];
            images.push_back({layout.rgb32, [this, fd, &layout](int firstLine, int lines, unsigned char* into) {
                                  return !m_stop && readBitmapRows(fd, layout, firstLine, lines, into);
                              }});
        }
        const MeanBatch batch{firstMean ? nullptr : input.mean.constBits(), input.remainder, mean.bits(),
                              remainder.get(), input.count};
        const int failed = applyMeanBatch(batch, images, width, height);
        if (failed < 0)
            break;
        if (m_stop)
            return false;
        files.resize(size_t(failed));
        layouts.resize(size_t(failed));
    }
    if (files.empty())
        return false;
    for (size_t i = 0; i < files.size(); ++i) {
        ImageFile added;
        added.path = m_paths[first + int(i)];
        added.bitCount = layouts[i].rgb32 ? 32 : 8;
        step.files.push_back(added);
    }
    step.batch = true;
    step.mean = std::move(mean);
    step.remainder = std::move(remainder);
    return true;
}
