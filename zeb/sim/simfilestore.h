#pragma once

#include "sim/simdescription.h"
#include "sim/simmapstore.h"

#include <optional>
#include <string>
#include <vector>

namespace ZebCPP {

// The device side of GenICam file access: the selected file, the open mode the
// file allows, the access buffer (64 KiB unless described smaller) and the operations Open, Close, Read,
// Write and Delete. Map slots are files "DefPixMap<n>" whose content is checked
// on Close; a write that does not close with a valid container leaves the slot
// as it was.
class SimFileStore {
public:
    enum OpenMode : uint32_t { ModeRead = 0, ModeWrite = 1, ModeReadWrite = 2 };
    enum Operation : uint32_t { OpOpen = 0, OpClose = 1, OpRead = 2, OpWrite = 3, OpDelete = 4 };

    SimFileStore(SimMapStore& maps, bool mapFiles, std::vector<SimFileDescription> files,
                 bool lengthWritable, uint32_t bufferSize);

    std::vector<std::string> fileNames() const;
    uint32_t selected() const { return selected_; }
    ZebErrorType select(uint32_t file);
    std::string selectedName() const { return files_[selected_].name; }
    ZebErrorType selectByName(const std::string& name);

    uint32_t openMode() const { return openMode_; }
    bool modeAllowed(uint32_t mode) const;
    ZebErrorType setOpenMode(uint32_t mode);

    uint32_t operation() const { return operation_; }
    void setOperation(uint32_t operation) { operation_ = operation; }

    int64_t offset() const { return offset_; }
    void setOffset(int64_t offset) { offset_ = offset; }
    bool lengthWritable() const { return lengthWritable_; }
    uint32_t bufferSize() const { return bufferSize_; }
    int64_t length() const { return length_; }
    void setLength(int64_t length) { length_ = length; }

    void readBuffer(uint8_t* out, uint32_t size) const;
    void writeBuffer(const uint8_t* data, uint32_t size);

    int64_t fileSize() const { return static_cast<int64_t>(content(selected_).size()); }
    uint32_t chunkId() const { return files_[selected_].chunkId; }
    bool lastSucceeded() const { return succeeded_; }
    int64_t result() const { return result_; }

    // Runs the selected operation. Protocol errors (not open, wrong mode) give
    // ZebErrorInvalidCall, a refused file ZebErrorInvalidAccess, a container the
    // slot rejects ZebErrorInvalidValue; the status features say the same.
    ZebErrorType execute();
    // Ends the selected operation as failed without doing it (an injected fault).
    ZebErrorType refuse(ZebErrorType err) { return finish(err, 0); }
    // The next Write takes only half of the bytes it is given.
    void shortenNextWrite() { shortWrite_ = true; }

    // Forgets an open file without committing it (the camera lost power).
    void abort() { open_.reset(); }

    // The committed content of a file by name, for the test control.
    bool fileContent(const std::string& name, std::vector<uint8_t>& out) const;

private:
    struct File {
        std::string name;
        uint32_t chunkId = 0;
        bool readable = true;
        bool writable = true;
        int mapSlot = -1;              // map slot behind the file, or -1
        std::vector<uint8_t> content;  // files that are not map slots
    };
    struct OpenFile {
        uint32_t file = 0;
        uint32_t mode = ModeRead;
        std::vector<uint8_t> staging;  // what Close commits
    };

    const std::vector<uint8_t>& content(uint32_t file) const;
    ZebErrorType finish(ZebErrorType err, int64_t result);
    ZebErrorType open();
    ZebErrorType close();
    ZebErrorType read();
    ZebErrorType write();
    ZebErrorType remove();

    SimMapStore& maps_;
    std::vector<File> files_;
    bool lengthWritable_;
    const uint32_t bufferSize_;
    uint32_t selected_ = 0;
    uint32_t openMode_ = ModeRead;
    uint32_t operation_ = OpOpen;
    int64_t offset_ = 0;
    int64_t length_;
    std::vector<uint8_t> buffer_;
    uint32_t lastBufferWrite_ = 0;
    bool shortWrite_ = false;
    std::optional<OpenFile> open_;
    bool succeeded_ = true;
    int64_t result_ = 0;
};

} // namespace ZebCPP
