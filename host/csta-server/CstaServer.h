#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include "host/csta-server/RequestResponder.h"
#include "host/csta-server/SwitchClient.h"
#include "host/csta-server/SwitchMessage.h"
#include "host/csta-server/SwitchMonitors.h"
#include "host/csta-wire/InvokeIds.h"
#include "host/switch/call-log/CallLogStore.h"
#include "host/switch/calls/LiveCall.h"
#include "host/switch/calls/SwitchEvent.h"
#include "host/tls/ServerCertificate.h"

namespace host {

/// Settings of a CSTA server. A plain value.
struct CstaServerOptions {
    std::string address = "127.0.0.1";
    /// 0 selects a free port, see `CstaServer::port`.
    std::uint16_t port = 0;
    /// If set, clients must speak TLS.
    std::shared_ptr<const ServerCertificate> certificate{};
    /// Used for an empty device in a request.
    std::string device;
    std::string edition = "ed4";
    /// Refuses monitors and snapshots of any other device.
    bool hasOnlyOwnDevice = false;
    /// Sends SystemStatus to a client as soon as it has connected.
    bool speaksFirst = false;
    /// Notifies a client of the deletion of single entries of the call log that it requested itself.
    bool echoDeletions = false;
    /// Called for each message. May be empty.
    std::function<void(const SwitchMessage&)> messageListener{};
};

/// The switch's side of the CSTA link: listens, accepts clients and their monitors, responds to their
/// requests, and sends them the events of the switch. The calls belong to the owner.
///
/// Call everything from the thread that runs the io_context only. Must outlive the operations of the
/// io_context.
class CstaServer {
public:
    /// Sends the response to a request, now or later. Has no effect if the client has disconnected.
    using Reply = std::function<void(const std::string& xml)>;

    struct Handlers {
        /// Returns at least the live calls in which the device takes part.
        std::function<std::vector<LiveCall>(const std::string& device)> liveCalls;
        /// A client has started a monitor. May be empty.
        std::function<void()> monitorStarted{};
        /// Handles a request of the owner's own services, and calls `reply` once, now or later; false leaves
        /// the request to the server. May be empty.
        std::function<bool(const WireDocument& request, const Reply& reply)> service{};
    };

    /// Starts listening. Throws `std::system_error`. `io` and `callLogs` must outlive the object.
    CstaServer(asio::io_context& io, CstaServerOptions options, CallLogStore& callLogs, Handlers handlers);

    [[nodiscard]] std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }
    [[nodiscard]] const std::string& nameSpace() const noexcept { return m_responses.nameSpace(); }
    [[nodiscard]] bool isMonitored(std::string_view device) const {
        return !m_monitors.ofDevice(device).empty();
    }

    /// Sends the event to the monitors of its listeners.
    void publish(const SwitchEvent& event);
    /// Sends the changes of the device's call log to its monitors. The client that requested the deletions
    /// of single entries, if any, is not notified of them.
    void notifyCallLog(const std::string& device, const CallLog::Events& events, int requester = kNoClient);
    /// Sets the system status, and sends it to every client that has registered for it.
    void sendSystemStatus(const std::string& word);
    /// Stops every monitor of `device` and notifies the clients.
    void stopMonitors(const std::string& device);
    void dropClients();
    /// Adds telephone lines of the phone `device`.
    void addLines(const std::string& device, const std::vector<std::string>& lines) {
        m_responses.addLines(device, lines);
    }
    void setResponseMode(const std::string& request, ResponseMode mode) { m_responseModes[request] = mode; }
    /// Closes all sockets.
    void close();

private:
    using ClientMap = std::map<int, std::shared_ptr<SwitchClient>>;

    static constexpr int kNoClient = 0;
    static constexpr std::chrono::milliseconds kLate{500};

    void accept();
    void addClient(asio::ip::tcp::socket socket);
    void received(SwitchClient& client, const Frame& frame);
    void respond(SwitchClient& client, int invokeId, const WireDocument& request);
    void respondNormally(int client, const Reply& reply, const WireDocument& request);
    void removeClient(int number);
    void send(int client, int invokeId, const std::string& xml);
    void sendLater(int client, int invokeId, const std::string& xml);
    void sendRequest(int client, const std::string& xml);
    /// Writes the message to the program's log and calls the message listener.
    void trace(const SwitchMessage& message) const;
    [[nodiscard]] ResponseMode responseModeOf(std::string_view request) const;

    const CstaServerOptions m_options;
    const Handlers m_handlers;
    asio::io_context& m_io;
    asio::ip::tcp::acceptor m_acceptor;
    ClientMap m_clients;
    int m_lastClient = 0;
    std::set<int> m_registered;
    SwitchMonitors m_monitors;
    RequestResponder m_responses;
    InvokeIds m_ids;
    std::map<std::string, ResponseMode, std::less<>> m_responseModes;
};

}  // namespace host
