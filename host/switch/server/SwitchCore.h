#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include "host/csta-wire/InvokeIds.h"
#include "host/switch/call-log/CallLogStore.h"
#include "host/switch/calls/SwitchCallLogBuilder.h"
#include "host/switch/server/RequestResponder.h"
#include "host/switch/server/ScenarioPlayer.h"
#include "host/switch/server/SwitchClient.h"
#include "host/switch/server/SwitchMonitors.h"
#include "host/switch/server/SwitchOptions.h"

namespace host {

/// A running simulated switch: listening socket, clients, monitors, scenario players. Call everything except
/// the constructor and `io` from the thread that runs `io` only.
class SwitchCore {
public:
    /// Starts listening. Throws `std::system_error`. `callLogs` must outlive the object.
    SwitchCore(const SwitchOptions& options, CallLogStore& callLogs);

    [[nodiscard]] asio::io_context& io() noexcept { return m_io; }
    [[nodiscard]] std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }

    void play(Scenario scenario, PlayOptions options);
    void setResponseMode(const std::string& request, ResponseMode mode) { m_responseModes[request] = mode; }
    void sendSystemStatus(const std::string& word);
    void stopMonitors(const std::string& device);
    void dropClients();
    /// Closes all sockets and stops all players. `io` then runs out of work.
    void close();

private:
    using ClientMap = std::map<int, std::shared_ptr<SwitchClient>>;

    static constexpr int kNoClient = 0;

    void accept();
    [[nodiscard]] std::vector<LiveCall> liveCalls() const;
    void addClient(asio::ip::tcp::socket socket);
    void received(SwitchClient& client, const Frame& frame);
    void respond(SwitchClient& client, int invokeId, const WireDocument& request);
    void removeClient(int number);
    void publish(const SimulatedEvent& event);
    void changeCallLog(const std::string& device, const ScenarioStep& step, const PlayOptions& options);
    void notifyCallLog(const std::string& device, const CallLog::Events& events, int requester = kNoClient);
    void send(int client, int invokeId, const std::string& xml);
    /// Writes the message to the program's log and calls the message listener.
    void trace(const SwitchMessage& message) const;
    void sendRequest(int client, const std::string& xml);
    [[nodiscard]] ResponseMode responseModeOf(std::string_view request) const;

    const SwitchOptions m_options;
    CallLogStore& m_callLogs;
    SwitchCallLogBuilder m_callLogBuilder;
    asio::io_context m_io;
    asio::executor_work_guard<asio::io_context::executor_type> m_work;
    asio::ip::tcp::acceptor m_acceptor;
    ClientMap m_clients;
    int m_lastClient = 0;
    std::set<int> m_registered;
    SwitchMonitors m_monitors;
    RequestResponder m_responses;
    InvokeIds m_ids;
    std::map<std::string, ResponseMode, std::less<>> m_responseModes;
    std::vector<std::unique_ptr<ScenarioPlayer>> m_players;
    unsigned long m_lastCall = 0;
};

}  // namespace host
