#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <queue>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/switch/traffic/TrafficCall.h"
#include "host/switch/traffic/TrafficPlan.h"

namespace host {

/// Plays the calls of a traffic plan: waits until all its devices are monitored, then begins each call at its
/// time, whether the earlier ones are over or not. Simulator thread only. Must outlive the operations of the
/// io_context.
class TrafficPlayer {
public:
    struct Handlers {
        std::function<void(const SwitchEvent&)> event;
        /// Returns a call id that is unique at the switch.
        std::function<std::string()> newCallId;
        std::function<bool(const std::string& device)> isMonitored;
        /// A call has begun to ring; a device's part has ended, and its last event was sent.
        std::function<void()> begun;
        std::function<void(const std::string& callId, const TrafficPart&)> ended;
        /// The last call is over.
        std::function<void()> finished;
    };

    TrafficPlayer(asio::io_context& io, TrafficOptions options, Handlers handlers);

    /// A client has started a monitor; also for the check at the beginning.
    void monitorStarted();
    /// An event was sent to the phones, of any call.
    void published(const SwitchEvent& event);
    void stop();
    /// The live call with that id in which the device takes part, or null. An empty id stands for any call.
    [[nodiscard]] SwitchCall* find(std::string_view callId, std::string_view device);
    void addLiveCalls(const std::string& device, std::vector<LiveCall>& calls) const;

private:
    using Clock = std::chrono::steady_clock;

    enum class Step { eStopRinging, eHangUp };
    struct Due {
        Clock::time_point when;
        std::string callId;
        Step step = Step::eStopRinging;

        [[nodiscard]] bool operator>(const Due& other) const { return when > other.when; }
    };

    // Yields to the other work of the thread after this number of steps.
    static constexpr std::size_t kStepsAtOnce = 64;

    void play();
    [[nodiscard]] bool playNext();
    void begin(const PlannedCall& plan);
    void perform(const Due& due);
    void publish(const SwitchEvents& events);
    void remove(const std::string& callId);

    const TrafficOptions m_options;
    const Handlers m_handlers;
    TrafficPlan m_plan;
    asio::steady_timer m_timer;
    /// The devices before this one are monitored.
    std::size_t m_monitored = 0;
    bool m_started = false;
    bool m_stopped = false;
    Clock::time_point m_start;
    std::optional<PlannedCall> m_next;
    std::priority_queue<Due, std::vector<Due>, std::greater<>> m_due;
    std::unordered_map<std::string, TrafficCall> m_calls;
    /// Their ids by the numbers of their parties.
    std::unordered_multimap<std::string, std::string> m_callsOf;
};

}  // namespace host
