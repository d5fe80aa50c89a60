#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "bench/calls/CallPlan.h"
#include "bench/load/LoadSwitch.h"
#include "bench/load/ObserverSocket.h"

namespace bench {

/// The pace of a run. A plain value.
struct Pace {
    /// Two calls of one party within the same second are one call to a journal: no more calls than repeated
    /// parties.
    std::size_t calls = 1000;
    /// So many calls wait for their notification at most. 1 is a closed loop.
    std::size_t inFlight = 1;
    /// Calls per second; as fast as `inFlight` allows if it is 0.
    double rate = 0;
};

/// The result of a run. A plain value.
struct LoadResult {
    using Microseconds = std::chrono::duration<double, std::micro>;

    std::chrono::duration<double> time{0};
    /// From the switch's last byte of a call to the first byte of the observer's notification; sorted.
    std::vector<Microseconds> latencies;
    /// The most calls that waited at the same time.
    std::size_t mostInFlight = 0;

    [[nodiscard]] double callsPerSecond() const {
        return static_cast<double>(latencies.size()) / time.count();
    }
    /// The latency that `share` (0 to 1) of the calls do not exceed.
    [[nodiscard]] Microseconds latency(double share) const;
    /// Adds the calls of another run.
    void add(const LoadResult& other);
};

/// Plays calls from a switch and waits until an observer is notified of each, on the calling thread. A
/// notification belongs to the call whose party's number it contains.
class LoadRun {
public:
    /// Requires: both outlive the run, and `plan` has more parties than `pace.inFlight`, or new ones only.
    LoadRun(LoadSwitch& callSwitch, ObserverSocket& observer, const CallPlan& plan, const Pace& pace);

    /// Throws `std::runtime_error` if a call has no notification for 20 seconds.
    [[nodiscard]] LoadResult play();

private:
    using Clock = std::chrono::steady_clock;

    /// A time that no call has.
    static constexpr Clock::time_point kNone = Clock::time_point::min();

    [[nodiscard]] bool mayBegin(Clock::time_point now) const;
    void sendCalls();
    void wait();
    void receive();
    void notified(std::size_t party, Clock::time_point now);
    [[nodiscard]] Clock::time_point dueTime(std::size_t call) const;

    LoadSwitch& m_switch;
    ObserverSocket& m_observer;
    const CallPlan m_plan;
    const Pace m_pace;

    std::vector<std::string> m_calls;
    /// When the call of a party was sent, by the party's position after the first.
    std::vector<Clock::time_point> m_sentAt;
    std::size_t m_sent = 0;
    /// The rest of the call that is being sent.
    std::string_view m_rest;
    /// The end of what the observer received, which may be the begin of a number.
    std::string m_tail;
    Clock::time_point m_begin{};
    LoadResult m_result;
};

}  // namespace bench
