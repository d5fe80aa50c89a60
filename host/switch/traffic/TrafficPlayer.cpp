#include "host/switch/traffic/TrafficPlayer.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "host/csta-wire/DeviceText.h"

namespace host {

namespace {

std::vector<std::string> partiesOf(const PlannedCall& plan) {
    std::vector<std::string> parties = plan.called;
    parties.push_back(plan.caller);
    return parties;
}

}  // namespace

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
    if (const std::optional<TrafficPart> part = live->second.endedPart(event)) {
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
        return live == m_calls.end() ? nullptr : live->second.find(device);
    }
    const auto [first, last] = m_callsOf.equal_range(comparableNumber(device));
    for (auto each = first; each != last; ++each) {
        if (SwitchCall* const call = m_calls.at(each->second).find(device)) {
            return call;
        }
    }
    return nullptr;
}

void TrafficPlayer::addLiveCalls(const std::string& device, std::vector<LiveCall>& calls) const {
    const auto [first, last] = m_callsOf.equal_range(comparableNumber(device));
    for (auto each = first; each != last; ++each) {
        m_calls.at(each->second).addLiveCalls(calls);
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
    TrafficCall& call = m_calls.emplace(callId, TrafficCall(callId, plan)).first->second;
    for (const std::string& party : partiesOf(plan)) {
        m_callsOf.emplace(party, callId);
    }
    m_handlers.begun();
    publish(call.begin());
    m_due.push({m_start + plan.begin + plan.ringing, callId, Step::eStopRinging});
}

void TrafficPlayer::perform(const Due& due) {
    TrafficCall& call = m_calls.at(due.callId);
    if (due.step == Step::eStopRinging) {
        publish(call.stopRinging());
        if (!call.isOver()) {
            m_due.push({due.when + call.plan().talking, due.callId, Step::eHangUp});
            return;
        }
    } else {
        publish(call.hangUp());
    }
    remove(due.callId);
}

void TrafficPlayer::remove(const std::string& callId) {
    const auto call = m_calls.find(callId);
    for (const std::string& party : partiesOf(call->second.plan())) {
        const auto [first, last] = m_callsOf.equal_range(party);
        m_callsOf.erase(
            std::find_if(first, last, [&callId](const auto& each) { return each.second == callId; }));
    }
    m_calls.erase(call);
}

void TrafficPlayer::publish(const SwitchEvents& events) {
    for (const SwitchEvent& event : events) {
        m_handlers.event(event);
    }
}

}  // namespace host
