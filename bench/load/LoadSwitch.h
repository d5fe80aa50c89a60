#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "bench/calls/CallPlan.h"
#include "host/csta-server/RequestResponder.h"
#include "host/csta-server/SwitchMonitors.h"
#include "host/csta-wire/FrameReader.h"
#include "host/framework/FileDescriptor.h"
#include "host/switch/call-log/CallLogStore.h"

namespace bench {

/// The switch side of one CSTA link over TCP: listens on a loopback port, responds to the requests of its one
/// client, and sends calls of device 2001 that were written beforehand, so that little work remains while
/// they are measured.
///
/// Not thread-safe. Errors: operations throw `std::system_error`, or `std::runtime_error` if the client
/// disconnects.
class LoadSwitch {
public:
    LoadSwitch();

    /// The address that a client connects to, "127.0.0.1:PORT".
    [[nodiscard]] std::string address() const;
    [[nodiscard]] std::uint16_t port() const noexcept { return m_port; }
    /// Accepts the client, and responds to it until it monitors the device and pauses.
    void awaitMonitor();

    /// The bytes of one call (`messagesOf`). Requires: the device is monitored.
    [[nodiscard]] std::string callBytes(const CallPlan& plan, std::size_t call) const;

    /// The connection, for poll.
    [[nodiscard]] int descriptor() const noexcept { return m_client.get(); }
    /// Sends as much as the connection takes; returns the number of bytes.
    [[nodiscard]] std::size_t send(std::string_view bytes);
    /// Sends all bytes.
    void sendAll(std::string_view bytes);
    /// Responds to what the client has sent.
    void receive();

private:
    void respond(const host::Frame& frame);

    host::FileDescriptor m_listener;
    std::uint16_t m_port = 0;
    host::FileDescriptor m_client;
    host::FrameReader m_reader;
    host::CallLogStore m_callLogs;
    host::SwitchMonitors m_monitors;
    host::RequestResponder m_responses;
};

}  // namespace bench
