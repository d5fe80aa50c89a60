#include "host/switch/traffic/TrafficPlayer.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace host {

TrafficPlayer::TrafficPlayer(asio::io_context& io, TrafficOptions options, Handlers handlers)
    : m_options(std::move(options)), m_handlers(std::move(handlers)), m_plan(m_options), m_timer(io) {}

void TrafficPlayer::monitorStarted() {
    if (m_started || m_stopped) {
        return;
    }
    while (m_monitored < m_options.devices.size() && m_handlers.isMonitored(m_options.devices[m_monitored])) {
        ++m_monitored;
    }
    if (m_monitored == m_options.devices.size()) {
        m_started = true;
        m_start = Clock::now();
        m_next = m_plan.next();
        play();
    }
}

void TrafficPlayer::published(const SwitchEvent& event) {
    const auto live = m_calls.find(event.callId);
    if (live == m_calls.end()) {
        return;
    }
    if (const std::optional<TrafficPart> part = live->second.call.endedPart(event)) {
        m_handlers.ended(event.callId, *part);
    }
}

void TrafficPlayer::stop() {
    m_stopped = true;
    m_timer.cancel();
}

SwitchCall* TrafficPlayer::find(std::string_view callId, std::string_view device) {
    if (!callId.empty()) {
        const auto live = m_calls.find(std::string(callId));
        return live == m_calls.end() ? nullptr : live->second.call.find(device);
    }
    for (auto& [id, live] : m_calls) {
        if (SwitchCall* const call = live.call.find(device)) {
            return call;
        }
    }
    return nullptr;
}

void TrafficPlayer::addLiveCalls(std::vector<LiveCall>& calls) const {
    for (const auto& [id, live] : m_calls) {
        live.call.addLiveCalls(calls);
    }
}

void TrafficPlayer::play() {
    for (std::size_t steps = 0; steps < kStepsAtOnce; ++steps) {
        if (!playNext()) {
            break;
        }
    }
    if (!m_next && m_due.empty()) {
        m_handlers.finished();
        return;
    }
    Clock::time_point when = m_due.empty() ? Clock::time_point::max() : m_due.top().when;
    if (m_next) {
        when = std::min(when, m_start + m_next->begin);
    }
    m_timer.expires_at(when);
    m_timer.async_wait([this](std::error_code error) {
        if (!error && !m_stopped) {
            play();
        }
    });
}

/// Plays the call or step that is due first; false if there is none.
bool TrafficPlayer::playNext() {
    const Clock::time_point now = Clock::now();
    const bool stepIsDue = !m_due.empty() && m_due.top().when <= now;
    if (m_next && m_start + m_next->begin <= now &&
        (!stepIsDue || m_start + m_next->begin <= m_due.top().when)) {
        begin(*m_next);
        m_next = m_plan.next();
        return true;
    }
    if (stepIsDue) {
        const Due due = m_due.top();
        m_due.pop();
        perform(due);
    }
    return stepIsDue;
}

void TrafficPlayer::begin(const PlannedCall& plan) {
    const std::string callId = m_handlers.newCallId();
    Live& live = m_calls.emplace(callId, Live{TrafficCall(callId, plan), plan.talking}).first->second;
    m_handlers.begun();
    publish(live.call.begin());
    m_due.push({m_start + plan.begin + plan.ringing, callId, Step::eStopRinging});
}

void TrafficPlayer::perform(const Due& due) {
    Live& live = m_calls.at(due.callId);
    if (due.step == Step::eStopRinging) {
        publish(live.call.stopRinging());
        if (!live.call.isOver()) {
            m_due.push({due.when + live.talking, due.callId, Step::eHangUp});
            return;
        }
    } else {
        publish(live.call.hangUp());
    }
    m_calls.erase(due.callId);
}

void TrafficPlayer::publish(const SwitchEvents& events) {
    for (const SwitchEvent& event : events) {
        m_handlers.event(event);
    }
}

}  // namespace host
