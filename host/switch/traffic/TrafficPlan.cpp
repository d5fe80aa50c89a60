#include "host/switch/traffic/TrafficPlan.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {

namespace {

constexpr double kFromOutside = 0.5;
constexpr double kToOutside = 0.75;
constexpr double kToGroup = 0.2;
/// With few devices there may be no other parties.
constexpr int kTries = 10;

/// The group numbers follow the devices.
std::string groupNumber(const TrafficOptions& options, std::size_t group) {
    return std::to_string(std::stoull(options.devices.back()) + 1 + group);
}

}  // namespace

TrafficPlan::TrafficPlan(TrafficOptions options) : m_options(std::move(options)), m_random(m_options.seed) {}

std::optional<PlannedCall> TrafficPlan::next() {
    if (const std::uint64_t calls = count(); calls != 0 && m_planned == calls) {
        return std::nullopt;
    }
    PlannedCall call;
    if (m_options.together) {
        call.caller = outsideNumber();
        call.called = {m_options.devices[m_planned]};
        call.calledIsHere = true;
    } else {
        m_last += exponential(std::chrono::microseconds(std::llround(1e6 / m_options.rate)));
        call.begin = m_last;
        for (int tries = 0; tries == 0 || (tries < kTries && isAgain(call)); ++tries) {
            chooseParties(call);
        }
    }
    call.ringing = m_options.together ? m_options.ringTime : exponential(m_options.ringTime);
    call.established = share() < m_options.established;
    call.taker = below(call.called.size());
    call.talking = m_options.together ? m_options.talkTime : exponential(m_options.talkTime);
    ++m_planned;
    return call;
}

std::uint64_t TrafficPlan::count() const {
    const std::uint64_t devices = m_options.devices.size();
    if (!m_options.together) {
        return m_options.calls;
    }
    return m_options.calls == 0 ? devices : std::min(m_options.calls, devices);
}

// The distributions of the standard library are not used: their results differ between implementations.
std::size_t TrafficPlan::below(std::size_t bound) {
    return static_cast<std::size_t>(m_random() % bound);
}

double TrafficPlan::share() {
    constexpr double kScale = 1.0 / (1ULL << 53U);
    return static_cast<double>(m_random() >> 11U) * kScale;
}

std::chrono::microseconds TrafficPlan::exponential(std::chrono::microseconds mean) {
    return std::chrono::microseconds(std::llround(-std::log1p(-share()) * static_cast<double>(mean.count())));
}

std::string TrafficPlan::outsideNumber() {
    // Of the range that is reserved for examples.
    return "+1555" + std::to_string(1'000'000 + below(100'000));
}

bool TrafficPlan::isAgain(const PlannedCall& call) {
    while (!m_recentInOrder.empty() && m_recentInOrder.front().first < call.begin - kAgain) {
        m_recent.erase(m_recentInOrder.front().second);
        m_recentInOrder.pop_front();
    }
    const auto isRecent = [this, &call](const std::string& called) {
        return m_recent.contains({call.caller, called});
    };
    if (std::any_of(call.called.begin(), call.called.end(), isRecent)) {
        return true;
    }
    for (const std::string& called : call.called) {
        m_recent.emplace(call.caller, called);
        m_recentInOrder.emplace_back(call.begin, std::pair(call.caller, called));
    }
    return false;
}

void TrafficPlan::chooseParties(PlannedCall& call) {
    call.group.clear();
    const std::vector<std::string>& devices = m_options.devices;
    const double kind = share();
    const std::size_t device = below(devices.size());
    call.callerIsHere = kind >= kFromOutside;
    call.calledIsHere = kind < kFromOutside || (kind >= kToOutside && devices.size() > 1);
    if (!call.callerIsHere) {
        call.caller = outsideNumber();
        call.called = {devices[device]};
        if (m_options.groupSize > 1 && share() < kToGroup) {
            callGroup(call);
        }
        return;
    }
    call.caller = devices[device];
    call.called = {call.calledIsHere ? devices[(device + 1 + below(devices.size() - 1)) % devices.size()]
                                     : outsideNumber()};
}

void TrafficPlan::callGroup(PlannedCall& call) {
    const std::vector<std::string>& devices = m_options.devices;
    const std::size_t group = below((devices.size() + m_options.groupSize - 1) / m_options.groupSize);
    const std::size_t first = group * m_options.groupSize;
    const std::size_t end = std::min(first + m_options.groupSize, devices.size());
    call.group = groupNumber(m_options, group);
    call.called.assign(devices.begin() + static_cast<std::ptrdiff_t>(first),
                       devices.begin() + static_cast<std::ptrdiff_t>(end));
}

}  // namespace host
