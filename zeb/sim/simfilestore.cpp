#include "sim/simfilestore.h"

#include <algorithm>
#include <cstring>

namespace ZebCPP {

SimFileStore::SimFileStore(SimMapStore& maps, bool mapFiles, std::vector<SimFileDescription> files,
                           bool lengthWritable, uint32_t bufferSize)
    : maps_(maps), lengthWritable_(lengthWritable), bufferSize_(bufferSize), length_(bufferSize),
      buffer_(bufferSize, 0)
{
    if (mapFiles) {
        for (uint32_t slot = 0; slot < maps.slotCount(); ++slot) {
            File file;
            file.name = "DefPixMap" + std::to_string(slot);
            file.chunkId = maps.chunkId(slot);
            file.writable = slot != 0;
            file.mapSlot = static_cast<int>(slot);
            files_.push_back(std::move(file));
        }
    }
    for (SimFileDescription& d : files) {
        File file;
        file.name = d.name;
        file.chunkId = d.chunkId;
        file.readable = d.readable;
        file.writable = d.writable;
        file.content = std::move(d.content);
        files_.push_back(std::move(file));
    }
    if (!files_.empty() && !modeAllowed(openMode_))
        openMode_ = ModeWrite;
}

std::vector<std::string> SimFileStore::fileNames() const
{
    std::vector<std::string> names;
    for (const File& file : files_)
        names.push_back(file.name);
    return names;
}

ZebErrorType SimFileStore::select(uint32_t file)
{
    if (file >= files_.size())
        return ZebErrorInvalidValue;
    selected_ = file;
    return ZebErrorSuccess;
}

ZebErrorType SimFileStore::selectByName(const std::string& name)
{
    const auto it = std::find_if(files_.begin(), files_.end(), [&](const File& f) { return f.name == name; });
    if (it == files_.end())
        return ZebErrorInvalidValue;
    selected_ = static_cast<uint32_t>(it - files_.begin());
    return ZebErrorSuccess;
}

bool SimFileStore::modeAllowed(uint32_t mode) const
{
    const File& file = files_[selected_];
    switch (mode) {
    case ModeRead:
        return file.readable;
    case ModeWrite:
        return file.writable;
    case ModeReadWrite:
        return file.readable && file.writable;
    default:
        return false;
    }
}

ZebErrorType SimFileStore::setOpenMode(uint32_t mode)
{
    if (!modeAllowed(mode))
        return ZebErrorInvalidAccess;
    openMode_ = mode;
    return ZebErrorSuccess;
}

void SimFileStore::readBuffer(uint8_t* out, uint32_t size) const
{
    std::memcpy(out, buffer_.data(), std::min<size_t>(size, buffer_.size()));
}

void SimFileStore::writeBuffer(const uint8_t* data, uint32_t size)
{
    lastBufferWrite_ = std::min<uint32_t>(size, bufferSize_);
    std::memcpy(buffer_.data(), data, lastBufferWrite_);
}

const std::vector<uint8_t>& SimFileStore::content(uint32_t file) const
{
    const File& f = files_[file];
    return f.mapSlot >= 0 ? maps_.container(static_cast<uint32_t>(f.mapSlot)) : f.content;
}

bool SimFileStore::fileContent(const std::string& name, std::vector<uint8_t>& out) const
{
    for (uint32_t i = 0; i < files_.size(); ++i) {
        if (files_[i].name == name) {
            out = content(i);
            return true;
        }
    }
    return false;
}

ZebErrorType SimFileStore::finish(ZebErrorType err, int64_t result)
{
    succeeded_ = err == ZebErrorSuccess;
    result_ = succeeded_ ? result : 0;
    return err;
}

ZebErrorType SimFileStore::execute()
{
    switch (operation_) {
    case OpOpen:
        return open();
    case OpClose:
        return close();
    case OpRead:
        return read();
    case OpWrite:
        return write();
    case OpDelete:
        return remove();
    default:
        return finish(ZebErrorInvalidValue, 0);
    }
}

ZebErrorType SimFileStore::open()
{
    if (open_)
        return finish(ZebErrorInvalidCall, 0);
    if (!modeAllowed(openMode_))
        return finish(ZebErrorInvalidAccess, 0);
    OpenFile file{selected_, openMode_, {}};
    if (openMode_ == ModeReadWrite)
        file.staging = content(selected_);
    open_ = std::move(file);
    return finish(ZebErrorSuccess, 0);
}

ZebErrorType SimFileStore::close()
{
    if (!open_)
        return finish(ZebErrorInvalidCall, 0);
    const OpenFile file = std::move(*open_);
    open_.reset();
    if (file.mode == ModeRead)
        return finish(ZebErrorSuccess, 0);
    File& f = files_[file.file];
    if (f.mapSlot < 0) {
        f.content = file.staging;
        return finish(ZebErrorSuccess, 0);
    }
    if (!maps_.store(static_cast<uint32_t>(f.mapSlot), file.staging))
        return finish(ZebErrorInvalidValue, 0);
    return finish(ZebErrorSuccess, 0);
}

ZebErrorType SimFileStore::read()
{
    if (!open_ || open_->mode == ModeWrite)
        return finish(ZebErrorInvalidCall, 0);
    const std::vector<uint8_t>& data = open_->mode == ModeReadWrite ? open_->staging : content(open_->file);
    if (offset_ < 0 || static_cast<uint64_t>(offset_) > data.size())
        return finish(ZebErrorInvalidValue, 0);
    const uint64_t remaining = data.size() - static_cast<uint64_t>(offset_);
    const uint64_t wanted = lengthWritable_ ? static_cast<uint64_t>(length_) : bufferSize_;
    const auto n = static_cast<uint32_t>(std::min<uint64_t>({wanted, remaining, bufferSize_}));
    std::memcpy(buffer_.data(), data.data() + offset_, n);
    if (!lengthWritable_)
        length_ = n;
    return finish(ZebErrorSuccess, n);
}

ZebErrorType SimFileStore::write()
{
    if (!open_ || open_->mode == ModeRead)
        return finish(ZebErrorInvalidCall, 0);
    std::vector<uint8_t>& data = open_->staging;
    if (offset_ < 0 || static_cast<uint64_t>(offset_) > data.size())
        return finish(ZebErrorInvalidValue, 0);
    auto n = lengthWritable_ ? static_cast<uint32_t>(length_) : lastBufferWrite_;
    if (shortWrite_)
        n /= 2;
    shortWrite_ = false;
    if (!lengthWritable_)
        length_ = n;
    data.resize(std::max<size_t>(data.size(), static_cast<size_t>(offset_) + n));
    std::memcpy(data.data() + offset_, buffer_.data(), n);
    return finish(ZebErrorSuccess, n);
}

ZebErrorType SimFileStore::remove()
{
    if (open_)
        return finish(ZebErrorInvalidCall, 0);
    File& f = files_[selected_];
    if (!f.writable)
        return finish(ZebErrorInvalidAccess, 0);
    if (f.mapSlot >= 0)
        return finish(maps_.clear(static_cast<uint32_t>(f.mapSlot)), 0);
    f.content.clear();
    return finish(ZebErrorSuccess, 0);
}

} // namespace ZebCPP
