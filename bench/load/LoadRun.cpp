#include "bench/load/LoadRun.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

namespace bench {

namespace {

constexpr std::chrono::seconds kPatience{20};

}  // namespace

LoadResult::Microseconds LoadResult::latency(double share) const {
    const auto position = static_cast<std::size_t>(share * static_cast<double>(latencies.size()));
    return latencies.at(std::min(position, latencies.size() - 1));
}

void LoadResult::add(const LoadResult& other) {
    time += other.time;
    latencies.insert(latencies.end(), other.latencies.begin(), other.latencies.end());
    std::sort(latencies.begin(), latencies.end());
    mostInFlight = std::max(mostInFlight, other.mostInFlight);
}

LoadRun::LoadRun(LoadSwitch& callSwitch, ObserverSocket& observer, const CallPlan& plan, const Pace& pace)
    : m_switch(callSwitch),
      m_observer(observer),
      m_plan(plan),
      m_pace(pace),
      m_sentAt(plan.parties == 0 ? pace.calls : plan.parties, kNone) {
    m_calls.reserve(pace.calls);
    for (std::size_t call = 0; call < pace.calls; ++call) {
        m_calls.push_back(callSwitch.callBytes(plan, call));
    }
    m_result.latencies.reserve(pace.calls);
}

LoadResult LoadRun::play() {
    m_begin = Clock::now();
    while (m_result.latencies.size() < m_pace.calls) {
        sendCalls();
        wait();
        receive();
    }
    m_result.time = Clock::now() - m_begin;
    std::sort(m_result.latencies.begin(), m_result.latencies.end());
    return std::move(m_result);
}

LoadRun::Clock::time_point LoadRun::dueTime(std::size_t call) const {
    const std::chrono::duration<double> offset(m_pace.rate > 0 ? static_cast<double>(call) / m_pace.rate
                                                               : 0.0);
    return m_begin + std::chrono::duration_cast<Clock::duration>(offset);
}

bool LoadRun::mayBegin(Clock::time_point now) const {
    return m_sent < m_pace.calls && m_sent - m_result.latencies.size() < m_pace.inFlight &&
           dueTime(m_sent) <= now;
}

void LoadRun::sendCalls() {
    for (;;) {
        const Clock::time_point now = Clock::now();
        if (m_rest.empty()) {
            if (!mayBegin(now)) {
                return;
            }
            m_rest = m_calls[m_sent];
        }
        const std::size_t count = m_switch.send(m_rest);
        m_rest.remove_prefix(count);
        if (!m_rest.empty()) {
            return;
        }
        // The time before the system call: the server may receive the bytes before it returns.
        m_sentAt[m_plan.partyOf(m_sent) - m_plan.firstParty] = now;
        ++m_sent;
        m_result.mostInFlight = std::max(m_result.mostInFlight, m_sent - m_result.latencies.size());
    }
}

void LoadRun::wait() {
    const Clock::time_point now = Clock::now();
    Clock::duration limit = kPatience;
    if (m_rest.empty() && m_sent < m_pace.calls && m_sent - m_result.latencies.size() < m_pace.inFlight) {
        limit = std::clamp<Clock::duration>(dueTime(m_sent) - now, Clock::duration::zero(), limit);
    }
    const short switchEvents = m_rest.empty() ? POLLIN : POLLIN | POLLOUT;
    std::array<pollfd, 2> waits{
        {{m_observer.descriptor(), POLLIN, 0}, {m_switch.descriptor(), switchEvents, 0}}};
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(limit);
    const timespec time{seconds.count(), std::chrono::nanoseconds(limit - seconds).count()};
    if (::ppoll(waits.data(), waits.size(), &time, nullptr) == 0 && limit == kPatience) {
        throw std::runtime_error(std::to_string(m_sent - m_result.latencies.size()) +
                                 " calls have no notification");
    }
    if ((waits[1].revents & (POLLIN | POLLHUP)) != 0) {
        m_switch.receive();
    }
}

void LoadRun::receive() {
    const std::string_view bytes = m_observer.receive();
    if (bytes.empty()) {
        return;
    }
    const Clock::time_point now = Clock::now();
    m_tail += bytes;
    if (m_tail.find("event: resync") != std::string::npos) {
        throw std::runtime_error("the event stream has lost events");
    }
    std::size_t at = m_tail.find(CallPlan::kNumberPrefix);
    while (at != std::string::npos) {
        if (const std::optional<std::size_t> party = CallPlan::partyIn(std::string_view(m_tail).substr(at))) {
            notified(*party, now);
        }
        at = m_tail.find(CallPlan::kNumberPrefix, at + 1);
    }
    const std::size_t kept = std::min(m_tail.size(), CallPlan::kNumberPrefix.size() + CallPlan::kDigits - 1);
    m_tail.erase(0, m_tail.size() - kept);
}

void LoadRun::notified(std::size_t party, Clock::time_point now) {
    const std::size_t position = party - m_plan.firstParty;
    if (party < m_plan.firstParty || position >= m_sentAt.size() || m_sentAt[position] == kNone) {
        return;  // an entry of an earlier call, or a further notification of a call
    }
    m_result.latencies.emplace_back(now - m_sentAt[position]);
    m_sentAt[position] = kNone;
}

}  // namespace bench
