#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/switch/calls/PlayedCalls.h"
#include "host/switch/scenario/Scenario.h"
#include "host/switch/server/SwitchSimulator.h"

namespace host {

/// Plays one scenario in time: does its steps, waits between them, and hands on what the phones hear. Belongs to
/// the simulator's thread, and must outlive the operations of the io_context.
class ScenarioPlayer {
public:
    struct Stage {
        std::function<void(const SimulatedEvent&)> happens;
        std::function<void(const std::string& word)> status;
        /// A change of the log that the switch keeps of the phone's calls.
        std::function<void(const ScenarioStep&)> callLog;
        /// A call id that no other call of the switch has.
        std::function<std::string()> newCallId;
        /// Somebody monitors the device now.
        std::function<bool(const std::string& device)> isMonitored;
        std::function<void()> finished;
    };

    /// `device` is the phone of a scenario that names none.
    ScenarioPlayer(asio::io_context& io, Scenario scenario, PlayOptions options, const std::string& device,
                   Stage stage);

    /// Begins, unless it waits for a monitor of the phone.
    void start();
    /// There is a monitor more. Begins when it is the phone's; the monitors of the other lines that the phone
    /// serves have a moment to follow, which a phone that monitors none of them lets pass.
    void monitorStarted();
    void stop();

private:
    // After so many steps in one go the others get their turn.
    static constexpr std::size_t kStepsAtOnce = 64;
    static constexpr std::chrono::milliseconds kLinePatience{1000};

    void play();
    void pauseFor(std::chrono::milliseconds pause);
    void perform(const ScenarioStep& step);
    void endPass();
    void show(const CallOccurrences& occurrences) const;
    [[nodiscard]] std::chrono::milliseconds paced(const ScenarioStep& step) const;

    const Scenario m_scenario;
    const PlayOptions m_options;
    const std::string m_device;
    const Stage m_stage;
    asio::steady_timer m_timer;
    bool m_started = false;
    bool m_stopped = false;
    std::size_t m_next = 0;
    PlayedCalls m_calls;
};

}  // namespace host
