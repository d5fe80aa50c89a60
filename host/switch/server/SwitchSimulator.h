#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/switch/scenario/Scenario.h"
#include "host/switch/server/MessageTrace.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

struct SwitchOptions {
    std::string address = "127.0.0.1";
    /// 0 lets the system choose; `SwitchSimulator::port` tells which.
    std::uint16_t port = 4242;
    /// The phone that scenarios without a `device` line are about.
    std::string device = Scenario::kUsualDevice;
    std::string edition = "ed4";
    /// Sends SystemStatus as soon as a client is there, before it has said anything.
    bool speaksFirst = false;
    /// Keeps a call log of its own for every device: files the calls of its scenarios when they are over and tells the
    /// device's monitors. (`log` statements of a scenario and requests of clients change the logs in any case.)
    bool callLog = false;
};

struct PlayOptions {
    /// Starts over at the end, for ever.
    bool loop = false;
    /// Above 0: calls per second. The scenario's waits are stretched or shrunk to reach it on average.
    double rate = 0;
    /// Waits until a client monitors the scenario's phone.
    bool awaitMonitor = true;
    /// Gets the text of `log print`, on the simulator's thread.
    std::function<void(const std::string&)> print{};
    /// Called once by the simulator's thread when the scenario is over; not when `stop` cuts it short. Must not call
    /// `stop` itself.
    std::function<void()> finished;
};

/// How the switch treats requests of one kind.
enum class ResponseMode {
    eNormally,
    eRefuse,   ///< with a CSTAErrorCode
    eWrongly,  ///< with an answer of another kind
    eNever,    ///< not at all
    eHangUp,   ///< closes the connection instead
};

/// A CSTA switch in a box: a TCP server that speaks CSTA XML to any number of clients, accepts monitors, honours
/// their filters, answers every request and plays scenarios.
///
/// Threads: one thread of its own does everything; the operations may be called from any thread, `start` and `stop`
/// from the owner's.
class SwitchSimulator {
public:
    explicit SwitchSimulator(SwitchOptions options = {});
    SwitchSimulator(const SwitchSimulator&) = delete;
    SwitchSimulator& operator=(const SwitchSimulator&) = delete;
    ~SwitchSimulator();

    /// Listens. Throws `std::system_error` when the address cannot be had. A stopped simulator may be started
    /// again; it then listens on the port that it had.
    void start();
    /// Drops every client and every monitor and ends the thread. Idempotent.
    void stop();
    /// The port that it listens on; 0 before the first `start`.
    [[nodiscard]] std::uint16_t port() const noexcept;

    /// Plays `scenario` on the simulator's thread and returns at once. Several may be played at a time, each with
    /// calls of its own. Played to the end, or until `stop`.
    void run(Scenario scenario, PlayOptions options = {});

    /// Treats the requests called `request` ("MonitorStart") so from now on.
    void setResponseMode(const std::string& request, ResponseMode answering);
    /// Sends the system status `word` ("normal", "initializing", ...) to every client that registered for it.
    void sendSystemStatus(const std::string& word);
    /// Ends every monitor of `device` and says so to its client.
    void stopMonitors(const std::string& device);
    /// Closes every connection; clients may connect again.
    void dropClients();

    /// The log that the switch keeps of the calls of `device` (by default the one of `SwitchOptions`), in the form in which
    /// its entries were told.
    [[nodiscard]] std::vector<CallLogEntryEvent> callLog(const std::string& device = {}) const;

    /// What was received and sent; the log takes care of its own lock.
    [[nodiscard]] MessageTrace& log() noexcept;

private:
    class Engine;
    std::unique_ptr<Engine> m_impl;
};

}  // namespace host
