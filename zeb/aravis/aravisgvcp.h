#pragma once

// The few GigE Vision control packets the discovery sends itself, each to one
// device address only: a discovery command answered by the device's identity,
// and a register read for the control channel privilege. Nothing here broadcasts.

#include <cstdint>
#include <string>

namespace ZebCPP {

struct GvcpIdentity {
    std::string vendor;
    std::string model;
    std::string version;
    std::string manufacturerInfo;
    std::string serial;
    std::string userName;
    std::string mac; // "00:11:22:33:44:55"
};

class GvcpChannel {
public:
    // address: IPv4 text of the device. An invalid address gives a channel
    // whose calls all fail.
    explicit GvcpChannel(const std::string& address);
    ~GvcpChannel();
    GvcpChannel(const GvcpChannel&) = delete;
    GvcpChannel& operator=(const GvcpChannel&) = delete;

    // False when the device does not answer within a few hundred milliseconds.
    bool discover(GvcpIdentity& identity);
    bool readRegister(uint32_t address, uint32_t& value);
    // The local address the system routes to the device from; empty if none.
    std::string localAddress() const;

private:
    bool exchange(uint16_t command, const uint8_t* payload, uint16_t payloadSize, uint16_t answer,
                  uint8_t* reply, size_t replySize, size_t& received);

    int socket_ = -1;
    uint16_t requestId_ = 0;
};

// Name of the network interface that owns a local IPv4 address, e.g. "lo".
std::string networkInterfaceOf(const std::string& localAddress);

} // namespace ZebCPP
