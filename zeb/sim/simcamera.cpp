#include "sim/simcamera.h"

#include "frame.h"
#include <algorithm>
#include "sim/simfeaturetable.h"
#include "sim/simregisters.h"

namespace ZebCPP {

namespace {

using SimControl::FaultKind;

PixelFormatType pixelFormatOf(const SimSensorDescription& sensor)
{
    static const char* const kFilters[] = {"None", "BayerGR", "BayerRG", "BayerGB", "BayerBG"};
    static const PixelFormatType kFormats[4][5] = {
        {PixelFormatMono8, PixelFormatBayerGR8, PixelFormatBayerRG8, PixelFormatBayerGB8, PixelFormatBayerBG8},
        {PixelFormatMono10, PixelFormatBayerGR10, PixelFormatBayerRG10, PixelFormatBayerGB10, PixelFormatBayerBG10},
        {PixelFormatMono12, PixelFormatBayerGR12, PixelFormatBayerRG12, PixelFormatBayerGB12, PixelFormatBayerBG12},
        {PixelFormatMono16, PixelFormatBayerGR16, PixelFormatBayerRG16, PixelFormatBayerGB16, PixelFormatBayerBG16}};
    const auto filter = std::find(std::begin(kFilters), std::end(kFilters), sensor.colorFilter) - std::begin(kFilters);
    const int depth = sensor.bitDepth == 10 ? 1 : sensor.bitDepth == 12 ? 2 : sensor.bitDepth == 16 ? 3 : 0;
    return kFormats[depth][filter < 5 ? filter : 0];
}

bool grantsFull(AccessModeType access)
{
    return (access & (AccessModeFull | AccessModeExclusive)) != 0;
}

// Bit position of byte b of a register word on the wire.
int byteShift(bool bigEndian, int b)
{
    return bigEndian ? 24 - 8 * b : 8 * b;
}

} // namespace

SimCamera::SimCamera(const SimCameraDescription& description, InterfaceType type)
    : description_(description), state_(description),
      features_(buildSimFeatureTable(state_, type)), permitted_(description.permittedAccess)
{
}

void SimCamera::setListener(Listener listener)
{
    std::lock_guard<std::mutex> lock(mutex_);
    listener_ = std::move(listener);
}

template <typename Body>
ZebErrorType SimCamera::locked(Body&& body)
{
    std::unique_lock<std::mutex> lock(mutex_);
    const ZebErrorType err = body();
    std::vector<Event> events = std::move(pending_);
    pending_.clear();
    const Listener listener = listener_;
    lock.unlock();
    if (listener) {
        for (Event event : events)
            listener(*this, event);
    }
    return err;
}

uint64_t SimCamera::plug()
{
    std::lock_guard<std::mutex> lock(mutex_);
    plugged_ = true;
    return ++connection_;
}

void SimCamera::unplug()
{
    std::lock_guard<std::mutex> lock(mutex_);
    loseConnectionLocked(false);
}

// Power is gone: nothing volatile survives, the maps and files do.
void SimCamera::loseConnectionLocked(bool tellSdk)
{
    if (!plugged_)
        return;
    plugged_ = false;
    openMode_ = AccessModeNone;
    state_.streaming = false;
    if (state_.files)
        state_.files->abort();
    commandDoneAt_.clear();
    if (tellSdk)
        pending_.push_back(Event::Unplugged);
}

ZebErrorType SimCamera::checkConnection(uint64_t connection) const
{
    return plugged_ && connection == connection_ ? ZebErrorSuccess : ZebErrorBadHandle;
}

ZebErrorType SimCamera::checkOpen(uint64_t connection) const
{
    const ZebErrorType err = checkConnection(connection);
    if (err != ZebErrorSuccess)
        return err;
    return openMode_ == AccessModeNone ? ZebErrorDeviceNotOpen : ZebErrorSuccess;
}

ZebErrorType SimCamera::open(uint64_t connection, AccessModeType mode)
{
    return locked([&] {
        ZebErrorType err = checkConnection(connection);
        if (err != ZebErrorSuccess)
            return err;
        if (mode != AccessModeFull && mode != AccessModeRead && mode != AccessModeConfig
            && mode != AccessModeExclusive)
            return ZebErrorBadParameter;
        if (openMode_ != AccessModeNone)
            return ZebErrorInvalidCall;
        const bool allowed = mode == AccessModeRead ? (permitted_ & (AccessModeFull | AccessModeRead | AccessModeExclusive)) != 0
                                                    : grantsFull(permitted_);
        if (!allowed)
            return ZebErrorInvalidAccess;
        err = faults_.hit(FaultKind::Open);
        if (err != ZebErrorSuccess)
            return err;
        openMode_ = mode;
        pending_.push_back(Event::AccessChanged);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::close(uint64_t connection)
{
    return locked([&] {
        ZebErrorType err = checkOpen(connection);
        if (err != ZebErrorSuccess)
            return err;
        err = faults_.hit(FaultKind::Close);
        if (err != ZebErrorSuccess)
            return err;
        openMode_ = AccessModeNone;
        pending_.push_back(Event::AccessChanged);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::permittedAccess(uint64_t connection, AccessModeType& access)
{
    return locked([&] {
        const ZebErrorType err = checkConnection(connection);
        if (err != ZebErrorSuccess)
            return err;
        // While we hold the camera, others can at most read it.
        const bool heldHere = openMode_ != AccessModeNone && openMode_ != AccessModeRead;
        access = heldHere ? AccessModeRead : permitted_;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::readMemory(uint64_t connection, uint64_t address, uint8_t* buffer,
                                   uint32_t size, uint32_t& done)
{
    return locked([&] {
        done = 0;
        ZebErrorType err = checkOpen(connection);
        if (err != ZebErrorSuccess)
            return err;
        err = faults_.hit(FaultKind::MemoryRead);
        if (err != ZebErrorSuccess)
            return err;
        std::vector<uint32_t> words;
        err = simReadRegisters(state_, address, size / 4, words);
        if (err != ZebErrorSuccess)
            return err;
        if (!transferLocked(size))
            return ZebErrorBadHandle;
        for (size_t i = 0; i < words.size(); ++i) {
            for (int b = 0; b < 4; ++b)
                buffer[4 * i + b] = static_cast<uint8_t>(words[i] >> byteShift(description_.bigEndian, b));
        }
        done = size;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::writeMemory(uint64_t connection, uint64_t address, const uint8_t* buffer,
                                    uint32_t size, uint32_t& done)
{
    return locked([&] {
        done = 0;
        ZebErrorType err = checkOpen(connection);
        if (err != ZebErrorSuccess)
            return err;
        if (!grantsFull(openMode_))
            return ZebErrorInvalidAccess;
        err = faults_.hit(FaultKind::MemoryWrite);
        if (err != ZebErrorSuccess)
            return err;
        if (!transferLocked(size))
            return ZebErrorBadHandle;
        std::vector<uint32_t> words(size / 4);
        for (size_t i = 0; i < words.size(); ++i) {
            for (int b = 0; b < 4; ++b)
                words[i] |= uint32_t(buffer[4 * i + b]) << byteShift(description_.bigEndian, b);
        }
        uint32_t wordsDone = 0;
        err = simWriteRegisters(state_, address, words, wordsDone);
        done = wordsDone * 4;
        return err;
    });
}

ZebErrorType SimCamera::acquire(uint64_t connection, FramePtr& frame)
{
    return locked([&] {
        const ZebErrorType err = checkOpen(connection);
        if (err != ZebErrorSuccess)
            return err;
        if (state_.streaming)
            return ZebErrorInvalidCall;
        if (!description_.hasStreams)
            return ZebErrorNotSupported;
        const ZebErrorType fault = faults_.hit(FaultKind::Acquisition);
        if (fault != ZebErrorSuccess)
            return fault;
        const SimSensor& sensor = state_.sensor;
        const uint64_t index = state_.frameIndex++;
        frame = std::make_shared<Frame>(FrameStatusComplete, sensor.width(), sensor.height(),
                                        pixelFormatOf(description_.sensor),
                                        sensor.frame(index, state_.exposureUs, state_.lightPercent, state_.gainDb),
                                        index);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::requireOpen(uint64_t connection)
{
    return locked([&] { return checkOpen(connection); });
}

ZebErrorType SimCamera::feature(uint64_t connection, bool onStream, const std::string& name,
                                FeatureBackendPtr& feature)
{
    return locked([&] {
        const ZebErrorType err = checkOpen(connection);
        if (err != ZebErrorSuccess)
            return err;
        for (const auto& def : features_) {
            if (def->onStream == onStream && def->name == name) {
                feature = std::make_shared<SimFeature>(shared_from_this(), connection, def.get());
                return ZebErrorSuccess;
            }
        }
        return ZebErrorNotFound;
    });
}

ZebErrorType SimCamera::features(uint64_t connection, bool onStream, std::vector<FeatureBackendPtr>& list)
{
    return locked([&] {
        const ZebErrorType err = checkOpen(connection);
        if (err != ZebErrorSuccess)
            return err;
        list.clear();
        for (const auto& def : features_) {
            if (def->onStream == onStream)
                list.push_back(std::make_shared<SimFeature>(shared_from_this(), connection, def.get()));
        }
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::featureCall(uint64_t connection, const SimFeatureDef& def, SimAccess access,
                                    const std::function<ZebErrorType()>& body)
{
    return locked([&] {
        ZebErrorType err = checkOpen(connection);
        if (err != ZebErrorSuccess)
            return err;
        switch (access) {
        case SimAccess::Query:
            break;
        case SimAccess::Read:
            if (!def.readable)
                return ZebErrorInvalidAccess;
            err = faults_.hit(FaultKind::FeatureRead);
            break;
        case SimAccess::Write:
        case SimAccess::Command:
            if (!grantsFull(openMode_) || !writableLocked(def))
                return ZebErrorInvalidAccess;
            err = faults_.hit(access == SimAccess::Write ? FaultKind::FeatureWrite : FaultKind::Command);
            if (err == ZebErrorSuccess && access == SimAccess::Command && isFileOperation(def)) {
                const ZebErrorType status = faults_.hit(FaultKind::FileStatus);
                if (status != ZebErrorSuccess) {
                    // The command itself completes; only the status tells.
                    state_.files->refuse(status);
                    return ZebErrorSuccess;
                }
                if (state_.files->operation() == SimFileStore::OpWrite
                    && faults_.hit(FaultKind::ShortWrite) != ZebErrorSuccess)
                    state_.files->shortenNextWrite();
            }
            break;
        }
        return err != ZebErrorSuccess ? err : body();
    });
}

bool SimCamera::isFileOperation(const SimFeatureDef& def) const
{
    return state_.files && def.name == "FileOperationExecute";
}

bool SimCamera::writableLocked(const SimFeatureDef& def) const
{
    return def.writable && !(def.lockable && state_.streaming) && (!def.writableNow || def.writableNow());
}

void SimCamera::commandStartedLocked(const SimFeatureDef& def)
{
    commandDoneAt_[&def] = std::chrono::steady_clock::now() + std::chrono::milliseconds(def.commandDelayMs);
}

bool SimCamera::commandDoneLocked(const SimFeatureDef& def) const
{
    const auto it = commandDoneAt_.find(&def);
    return it == commandDoneAt_.end() || std::chrono::steady_clock::now() >= it->second;
}

bool SimCamera::transferLocked(uint64_t bytes)
{
    if (faults_.transfer(bytes))
        return true;
    loseConnectionLocked(true);
    return false;
}

ZebErrorType SimCamera::setPermittedAccess(AccessModeType access)
{
    return locked([&] {
        permitted_ = access;
        if (plugged_)
            pending_.push_back(Event::AccessChanged);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::setStreaming(bool streaming)
{
    return locked([&] {
        if (!plugged_)
            return ZebErrorBadHandle;
        state_.streaming = streaming;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::setIllumination(double percent)
{
    return locked([&] {
        if (!plugged_)
            return ZebErrorBadHandle;
        state_.lightPercent = percent;
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::injectFault(SimControl::FaultKind kind, uint32_t nth, ZebErrorType code, uint32_t times)
{
    return locked([&] {
        faults_.arm(kind, nth, code, times);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::disconnectAfterBytes(uint64_t bytes)
{
    return locked([&] {
        faults_.disconnectAfter(bytes);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::clearFaults()
{
    return locked([&] {
        faults_.clear();
        return ZebErrorSuccess;
    });
}

std::vector<SimControl::SimDefect> SimCamera::defects() const
{
    return state_.sensor.defects(); // fixed at construction
}

ZebErrorType SimCamera::storedMap(uint32_t slot, std::vector<SimControl::SimMapEntry>& entries)
{
    return locked([&] {
        if (slot >= state_.maps.slotCount())
            return ZebErrorInvalidValue;
        entries = state_.maps.entries(slot);
        return ZebErrorSuccess;
    });
}

ZebErrorType SimCamera::deviceFile(const std::string& name, std::vector<uint8_t>& content)
{
    return locked([&] {
        if (!state_.files)
            return ZebErrorNotSupported;
        return state_.files->fileContent(name, content) ? ZebErrorSuccess : ZebErrorNotFound;
    });
}

} // namespace ZebCPP
