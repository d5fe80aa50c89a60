#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/switch/Scenario.h"
#include "host/switch/SimulatedCall.h"
#include "host/switch/SwitchSimulator.h"

namespace host {

/// Plays one scenario: makes its calls, lets time pass, and hands on what the phones hear. Belongs to the simulator's thread,
/// and must outlive the operations of the io_context.
class ScenarioPlayer {
public:
    struct Stage {
        std::function<void(const CallOccurrence&)> happens;
        std::function<void(const std::string& word)> status;
        /// A call id that no other call of the switch has.
        std::function<std::string()> newCallId;
        std::function<void()> finished;
    };

    /// `device` is the phone of a scenario that names none.
    ScenarioPlayer(asio::io_context& io, Scenario scenario, PlayOptions options, const std::string& device,
                   Stage stage);

    /// Begins, or waits for a monitor of the phone to begin with.
    void start(bool monitored);
    /// A monitor of `device` exists now.
    void monitorStarted(const std::string& device);
    void stop();

private:
    // After so many steps in one go the others get their turn.
    static constexpr std::size_t kStepsAtOnce = 64;

    void play();
    void pauseFor(std::chrono::milliseconds pause);
    void perform(const ScenarioStep& step);
    void perform(const ScenarioStep& step, SimulatedCall& call);
    void makeCall(const ScenarioStep& step);
    void endPass();
    void show(const SimulatedCall::Occurrences& occurrences) const;
    [[nodiscard]] SimulatedCall::Side sideOf(const ScenarioStep& step, const SimulatedCall& call) const;
    [[nodiscard]] Party orPhone(const Party& party) const;
    [[nodiscard]] std::chrono::milliseconds paced(const ScenarioStep& step) const;

    const Scenario m_scenario;
    const PlayOptions m_options;
    const std::string m_device;
    const Stage m_stage;
    asio::steady_timer m_timer;
    bool m_started = false;
    bool m_stopped = false;
    std::size_t m_next = 0;
    std::map<std::string, SimulatedCall> m_calls;
};

}  // namespace host
