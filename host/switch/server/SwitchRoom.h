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
#include "host/switch/call-log/SwitchCallLogs.h"
#include "host/switch/calls/FinishedCalls.h"
#include "host/switch/server/RequestAnswers.h"
#include "host/switch/server/ScenarioPlayer.h"
#include "host/switch/server/SwitchClient.h"
#include "host/switch/server/SwitchLog.h"
#include "host/switch/server/SwitchMonitors.h"
#include "host/switch/server/SwitchSimulator.h"

namespace host {

/// Everything that the simulated switch has while it runs: listening socket, clients, monitors, players. All of it, but for
/// the constructor and `io`, belongs to the thread that runs `io`.
class SwitchRoom {
public:
    /// Listens. Throws `std::system_error`. The logs outlive the object.
    SwitchRoom(const SwitchOptions& options, SwitchLog& log, SwitchCallLogs& callLogs);

    [[nodiscard]] asio::io_context& io() noexcept { return m_io; }
    [[nodiscard]] std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }

    void play(Scenario scenario, PlayOptions options);
    void setAnswering(const std::string& request, SwitchAnswering answering) {
        m_answering[request] = answering;
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
    void happens(const CallOccurrence& occurrence);
    void changeCallLog(const std::string& device, const ScenarioStep& step, const PlayOptions& options);
    void tellCallLog(const std::string& device, const SwitchCallLog::Events& events);
    void send(int client, int invokeId, const std::string& xml);
    /// Into the program's log, in every detail, and into the simulator's own.
    void note(SwitchLogEntry entry);
    void sendRequest(int client, const std::string& xml);
    [[nodiscard]] SwitchAnswering answeringOf(std::string_view request) const;

    const SwitchOptions m_options;
    SwitchLog& m_log;
    SwitchCallLogs& m_callLogs;
    FinishedCalls m_finishedCalls;
    asio::io_context m_io;
    asio::executor_work_guard<asio::io_context::executor_type> m_work;
    asio::ip::tcp::acceptor m_acceptor;
    ClientMap m_clients;
    int m_lastClient = 0;
    std::set<int> m_registered;
    SwitchMonitors m_monitors;
    RequestAnswers m_answers;
    InvokeIds m_ids;
    std::map<std::string, SwitchAnswering, std::less<>> m_answering;
    std::vector<std::unique_ptr<ScenarioPlayer>> m_players;
    unsigned long m_lastCall = 0;
};

}  // namespace host
