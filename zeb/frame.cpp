#include "frame.h"

namespace ZebCPP {

Frame::Frame(FrameStatusType status, uint32_t width, uint32_t height, PixelFormatType format,
             std::vector<uint8_t> buffer, uint64_t frameId)
    : status_(status), width_(width), height_(height), format_(format),
      buffer_(std::move(buffer)), frameId_(frameId)
{
}

ZebErrorType Frame::GetReceiveStatus(FrameStatusType& status) const
{
    status = status_;
    return ZebErrorSuccess;
}

ZebErrorType Frame::GetWidth(uint32_t& width) const
{
    width = width_;
    return ZebErrorSuccess;
}

ZebErrorType Frame::GetHeight(uint32_t& height) const
{
    height = height_;
    return ZebErrorSuccess;
}

ZebErrorType Frame::GetPixelFormat(PixelFormatType& format) const
{
    format = format_;
    return ZebErrorSuccess;
}

ZebErrorType Frame::GetBuffer(const uint8_t*& buffer) const
{
    buffer = buffer_.data();
    return ZebErrorSuccess;
}

ZebErrorType Frame::GetBufferSize(uint32_t& size) const
{
    size = static_cast<uint32_t>(buffer_.size());
    return ZebErrorSuccess;
}

ZebErrorType Frame::GetFrameID(uint64_t& frameId) const
{
    frameId = frameId_;
    return ZebErrorSuccess;
}

} // namespace ZebCPP
