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
#include "host/switch/calls/FinishedCalls.h"
#include "host/switch/server/MessageTrace.h"
#include "host/switch/server/RequestResponder.h"
#include "host/switch/server/ScenarioPlayer.h"
#include "host/switch/server/SwitchClient.h"
#include "host/switch/server/SwitchMonitors.h"
#include "host/switch/server/SwitchSimulator.h"

namespace host {

/// Everything that the simulated switch has while it runs: listening socket, clients, monitors, players. All of it, but for
/// the constructor and `io`, belongs to the thread that runs `io`.
class SwitchCore {
public:
    /// Listens. Throws `std::system_error`. The logs outlive the object.
    SwitchCore(const SwitchOptions& options, MessageTrace& log, CallLogStore& callLogs);

    [[nodiscard]] asio::io_context& io() noexcept { return m_io; }
    [[nodiscard]] std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }

    void play(Scenario scenario, PlayOptions options);
    void setResponseMode(const std::string& request, ResponseMode answering) {
        m_responseModes[request] = answering;
    }
    void sendSystemStatus(const std::string& word);
    void stopMonitors(const std::string& device);
    void dropClients();
    /// Closes everything; `io` then runs out of work.
    void close();

private:
    using ClientMap = std::map<int, std::shared_ptr<SwitchClient>>;

    void accept();
    void welcome(asio::ip::tcp::socket socket);
    void received(SwitchClient& client, const Frame& frame);
    void answer(SwitchClient& client, int invokeId, const WireDocument& request);
    void clientGone(int number);
    void happens(const SimulatedEvent& occurrence);
    void changeCallLog(const std::string& device, const ScenarioStep& step, const PlayOptions& options);
    void notifyCallLog(const std::string& device, const CallLog::Events& events);
    void send(int client, int invokeId, const std::string& xml);
    /// Into the program's log, in every detail, and into the simulator's own.
    void note(SwitchLogEntry entry);
    void sendRequest(int client, const std::string& xml);
    [[nodiscard]] ResponseMode responseModeOf(std::string_view request) const;

    const SwitchOptions m_options;
    MessageTrace& m_log;
    CallLogStore& m_callLogs;
    FinishedCalls m_finishedCalls;
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
