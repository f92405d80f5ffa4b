#include "aravis/aravisgvcp.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace ZebCPP {

namespace {

constexpr uint16_t kGvcpPort = 3956;
constexpr uint8_t kGvcpKey = 0x42;
constexpr uint8_t kAckRequired = 0x01;
constexpr uint16_t kDiscoveryCmd = 0x0002;
constexpr uint16_t kDiscoveryAck = 0x0003;
constexpr uint16_t kReadRegCmd = 0x0080;
constexpr uint16_t kReadRegAck = 0x0081;
constexpr int kAttempts = 2;
constexpr int kAnswerTimeoutMs = 150;
constexpr size_t kHeaderSize = 8;
constexpr size_t kDiscoveryPayloadSize = 248;

uint16_t be16(const uint8_t* p) { return static_cast<uint16_t>(p[0] << 8 | p[1]); }

uint32_t be32(const uint8_t* p)
{
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | uint32_t(p[3]);
}

void putBe16(uint8_t* p, uint16_t v)
{
    p[0] = static_cast<uint8_t>(v >> 8);
    p[1] = static_cast<uint8_t>(v);
}

void putBe32(uint8_t* p, uint32_t v)
{
    putBe16(p, static_cast<uint16_t>(v >> 16));
    putBe16(p + 2, static_cast<uint16_t>(v));
}

// A fixed-size text field of the discovery answer, NUL-padded or full.
std::string field(const uint8_t* p, size_t size)
{
    size_t n = 0;
    while (n < size && p[n] != 0)
        ++n;
    return std::string(reinterpret_cast<const char*>(p), n);
}

} // namespace

GvcpChannel::GvcpChannel(const std::string& address)
{
    sockaddr_in device{};
    device.sin_family = AF_INET;
    device.sin_port = htons(kGvcpPort);
    if (inet_pton(AF_INET, address.c_str(), &device.sin_addr) != 1)
        return;
    socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    // Connected: only this device's answers arrive, and a closed port on the
    // loopback is reported at once instead of after the timeout.
    if (socket_ >= 0 && ::connect(socket_, reinterpret_cast<sockaddr*>(&device), sizeof device) != 0) {
        ::close(socket_);
        socket_ = -1;
    }
}

GvcpChannel::~GvcpChannel()
{
    if (socket_ >= 0)
        ::close(socket_);
}

bool GvcpChannel::exchange(uint16_t command, const uint8_t* payload, uint16_t payloadSize,
                           uint16_t answer, uint8_t* reply, size_t replySize, size_t& received)
{
    if (socket_ < 0)
        return false;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const uint16_t id = ++requestId_ == 0 ? ++requestId_ : requestId_;
        uint8_t packet[kHeaderSize + 16] = {kGvcpKey, kAckRequired};
        putBe16(packet + 2, command);
        putBe16(packet + 4, payloadSize);
        putBe16(packet + 6, id);
        if (payloadSize > 0)
            std::memcpy(packet + kHeaderSize, payload, payloadSize);
        if (::send(socket_, packet, kHeaderSize + payloadSize, 0) < 0)
            return false;
        pollfd waiting{socket_, POLLIN, 0};
        while (::poll(&waiting, 1, kAnswerTimeoutMs) > 0) {
            const ssize_t n = ::recv(socket_, reply, replySize, 0);
            if (n < 0)
                return false; // nothing listens on that port
            if (static_cast<size_t>(n) >= kHeaderSize && be16(reply) == 0 && be16(reply + 2) == answer
                && be16(reply + 6) == id) {
                received = static_cast<size_t>(n);
                return true;
            }
        }
    }
    return false;
}

bool GvcpChannel::discover(GvcpIdentity& identity)
{
    uint8_t reply[kHeaderSize + kDiscoveryPayloadSize + 64];
    size_t received = 0;
    if (!exchange(kDiscoveryCmd, nullptr, 0, kDiscoveryAck, reply, sizeof reply, received)
        || received < kHeaderSize + kDiscoveryPayloadSize)
        return false;
    const uint8_t* p = reply + kHeaderSize;
    char mac[18];
    std::snprintf(mac, sizeof mac, "%02x:%02x:%02x:%02x:%02x:%02x", p[10], p[11], p[12], p[13], p[14], p[15]);
    identity.mac = mac;
    identity.vendor = field(p + 72, 32);
    identity.model = field(p + 104, 32);
    identity.version = field(p + 136, 32);
    identity.manufacturerInfo = field(p + 168, 48);
    identity.serial = field(p + 216, 16);
    identity.userName = field(p + 232, 16);
    return true;
}

bool GvcpChannel::readRegister(uint32_t address, uint32_t& value)
{
    uint8_t payload[4];
    putBe32(payload, address);
    uint8_t reply[kHeaderSize + 16];
    size_t received = 0;
    if (!exchange(kReadRegCmd, payload, sizeof payload, kReadRegAck, reply, sizeof reply, received)
        || received < kHeaderSize + 4)
        return false;
    value = be32(reply + kHeaderSize);
    return true;
}

std::string GvcpChannel::localAddress() const
{
    sockaddr_in local{};
    socklen_t size = sizeof local;
    if (socket_ < 0 || ::getsockname(socket_, reinterpret_cast<sockaddr*>(&local), &size) != 0)
        return {};
    char text[INET_ADDRSTRLEN] = {};
    return inet_ntop(AF_INET, &local.sin_addr, text, sizeof text) != nullptr ? text : std::string();
}

std::string networkInterfaceOf(const std::string& localAddress)
{
    in_addr wanted{};
    if (inet_pton(AF_INET, localAddress.c_str(), &wanted) != 1)
        return {};
    ifaddrs* list = nullptr;
    if (::getifaddrs(&list) != 0)
        return {};
    std::string name;
    for (ifaddrs* entry = list; entry != nullptr && name.empty(); entry = entry->ifa_next) {
        if (entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_INET
            && reinterpret_cast<sockaddr_in*>(entry->ifa_addr)->sin_addr.s_addr == wanted.s_addr)
            name = entry->ifa_name;
    }
    ::freeifaddrs(list);
    return name;
}

} // namespace ZebCPP
