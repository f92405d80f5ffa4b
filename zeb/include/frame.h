#pragma once

#include "zebtypes.h"

#include <vector>

namespace ZebCPP {

// One acquired image, rows without padding. 8-bit formats take one byte per
// pixel; 10-, 12- and 16-bit formats two, little-endian, the value in the low bits.
class Frame {
public:
    Frame(FrameStatusType status, uint32_t width, uint32_t height, PixelFormatType format,
          std::vector<uint8_t> buffer, uint64_t frameId);

    ZebErrorType GetReceiveStatus(FrameStatusType& status) const;
    ZebErrorType GetWidth(uint32_t& width) const;
    ZebErrorType GetHeight(uint32_t& height) const;
    ZebErrorType GetPixelFormat(PixelFormatType& format) const;
    // The pixels; valid as long as the frame lives.
    ZebErrorType GetBuffer(const uint8_t*& buffer) const;
    ZebErrorType GetBufferSize(uint32_t& size) const;
    ZebErrorType GetFrameID(uint64_t& frameId) const;

private:
    FrameStatusType status_;
    uint32_t width_;
    uint32_t height_;
    PixelFormatType format_;
    std::vector<uint8_t> buffer_;
    uint64_t frameId_;
};

} // namespace ZebCPP
