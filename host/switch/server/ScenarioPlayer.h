#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/switch/calls/ScenarioCalls.h"
#include "host/switch/scenario/Scenario.h"
#include "host/switch/server/SwitchOptions.h"

namespace host {

/// Plays one scenario: performs its steps, waits between them, and publishes the events of the phones.
/// Simulator thread only. Must outlive the operations of the io_context.
class ScenarioPlayer {
public:
    struct Handlers {
        std::function<void(const SwitchEvent&)> event;
        std::function<void(const std::string& word)> status;
        /// Closes all connections of the switch.
        std::function<void()> disconnect;
        /// A change of the switch's call log of the phone.
        std::function<void(const ScenarioStep&)> callLog;
        /// Returns a call id that is unique at the switch.
        std::function<std::string()> newCallId;
        /// True if a client monitors the device.
        std::function<bool(const std::string& device)> isMonitored;
        std::function<void()> finished;
    };

    /// `device` is the phone of a scenario without a `device` statement.
    ScenarioPlayer(asio::io_context& io, Scenario scenario, PlayOptions options, const std::string& device,
                   Handlers handlers);

    /// Starts playing, or waits for a monitor of the phone, as `options` require.
    void start();
    /// A client has started a monitor. Starts playing once the phone and all its other lines are monitored,
    /// or `kLinePatience` after the phone itself is monitored.
    void monitorStarted();
    void stop();
    void addLiveCalls(std::vector<LiveCall>& calls) const { m_calls.addLiveCalls(calls); }
    [[nodiscard]] ScenarioCalls& calls() noexcept { return m_calls; }

private:
    // Yields to the other work of the thread after this number of steps.
    static constexpr std::size_t kStepsAtOnce = 64;
    static constexpr std::chrono::milliseconds kLinePatience{1000};

    void play();
    void pauseFor(std::chrono::milliseconds pause);
    void perform(const ScenarioStep& step);
    void endPass();
    void publish(const SwitchEvents& events) const;
    [[nodiscard]] std::chrono::milliseconds paced(const ScenarioStep& step) const;

    const Scenario m_scenario;
    const PlayOptions m_options;
    const std::string m_device;
    const Handlers m_handlers;
    asio::steady_timer m_timer;
    bool m_started = false;
    bool m_stopped = false;
    std::size_t m_next = 0;
    ScenarioCalls m_calls;
};

}  // namespace host
