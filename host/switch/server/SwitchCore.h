#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

#include "host/csta-server/CstaServer.h"
#include "host/switch/call-log/CallLogStore.h"
#include "host/switch/calls/SwitchCallLogBuilder.h"
#include "host/switch/server/OrderedCalls.h"
#include "host/switch/server/ScenarioPlayer.h"
#include "host/switch/server/SwitchOptions.h"
#include "host/switch/traffic/TrafficPlayer.h"

namespace host {

/// A running simulated switch: the CSTA server and the players of calls. Call everything except the
/// constructor and `io` from the thread that runs `io` only.
class SwitchCore {
public:
    /// Starts listening. Throws `std::system_error`. `callLogs` must outlive the object.
    SwitchCore(const SwitchOptions& options, CallLogStore& callLogs);

    [[nodiscard]] asio::io_context& io() noexcept { return m_io; }
    [[nodiscard]] std::uint16_t port() const { return m_server.port(); }
    [[nodiscard]] CstaServer& server() noexcept { return m_server; }

    void play(Scenario scenario, PlayOptions options);
    void play(const TrafficOptions& traffic, const TrafficListeners& listeners);
    /// Closes all sockets and stops all players. `io` then runs out of work.
    void close();

private:
    [[nodiscard]] std::vector<LiveCall> liveCalls(const std::string& device) const;
    [[nodiscard]] SwitchCall* findCall(std::string_view callId, std::string_view device);
    void monitorStarted();
    void publish(const SwitchEvent& event);
    void changeCallLog(const std::string& device, const ScenarioStep& step, const PlayOptions& options);

    const SwitchOptions m_options;
    CallLogStore& m_callLogs;
    SwitchCallLogBuilder m_callLogBuilder;
    asio::io_context m_io;
    asio::executor_work_guard<asio::io_context::executor_type> m_work;
    CstaServer m_server;
    OrderedCalls m_ordered;
    std::vector<std::unique_ptr<ScenarioPlayer>> m_players;
    std::vector<std::unique_ptr<TrafficPlayer>> m_traffic;
    unsigned long m_lastCall = 0;
};

}  // namespace host
