#include "host/switch/traffic/TrafficCall.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {

namespace {

using Side = SwitchCall::Side;

constexpr const char* kAnsweredElsewhere = "multipleAlerting";

void append(SwitchEvents& events, SwitchEvents more) {
    events.insert(events.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

bool isIn(const SwitchCall& call, Side side) {
    return call.end(side).state != "null";
}

}  // namespace

TrafficCall::TrafficCall(std::string callId, const PlannedCall& plan) : m_plan(plan) {
    const SwitchParty group{plan.group, {}, false};
    for (const std::string& called : plan.called) {
        m_legs.emplace_back(callId, SwitchParty{plan.caller, {}, false}, SwitchParty{called, {}, false},
                            group, plan.group.empty() ? "" : "distributed");
    }
}

SwitchEvents TrafficCall::begin() {
    SwitchEvents events;
    for (SwitchCall& leg : m_legs) {
        append(events, leg.originate(m_plan.callerIsHere ? "makeCall" : ""));
        events.push_back(leg.ring());
    }
    return events;
}

SwitchEvents TrafficCall::stopRinging() {
    SwitchEvents events;
    for (std::size_t each = 0; each < m_legs.size(); ++each) {
        SwitchCall& leg = m_legs[each];
        if (!leg.isRinging()) {
            continue;
        }
        if (!m_plan.established) {
            append(events, leg.hangUp(Side::eCaller, "normalClearing"));
        } else if (each == m_plan.taker) {
            events.push_back(leg.answerCall());
        } else {
            events.push_back(leg.answerElsewhere());
        }
    }
    return events;
}

SwitchEvents TrafficCall::hangUp() {
    SwitchEvents events;
    for (SwitchCall& leg : m_legs) {
        if (isIn(leg, Side::eCalled)) {
            append(events, leg.hangUp(Side::eCaller, "normalClearing"));
        }
    }
    return events;
}

bool TrafficCall::isOver() const {
    return std::none_of(m_legs.begin(), m_legs.end(),
                        [](const SwitchCall& leg) { return isIn(leg, Side::eCalled); });
}

std::optional<TrafficPart> TrafficCall::endedPart(const SwitchEvent& event) const {
    if (event.type != WireEvent::eConnectionCleared) {
        return std::nullopt;
    }
    const std::string& device = event.subject.number;
    if (device == m_plan.caller) {
        return m_plan.callerIsHere
                   ? std::optional(TrafficPart{device, TrafficResult::eDialled, m_plan.called.front()})
                   : std::nullopt;
    }
    const auto leg = std::find_if(m_legs.begin(), m_legs.end(), [&device](const SwitchCall& one) {
        return one.party(Side::eCalled).number == device;
    });
    if (leg == m_legs.end() || !m_plan.calledIsHere) {
        return std::nullopt;
    }
    const TrafficResult result = leg->wasEstablished()               ? TrafficResult::eReceived
                                 : event.cause == kAnsweredElsewhere ? TrafficResult::eElsewhere
                                                                     : TrafficResult::eMissed;
    return TrafficPart{device, result, m_plan.caller};
}

SwitchCall* TrafficCall::find(std::string_view device) {
    const auto leg = std::find_if(m_legs.begin(), m_legs.end(),
                                  [device](const SwitchCall& one) { return one.sideOf(device).has_value(); });
    return leg == m_legs.end() ? nullptr : &*leg;
}

void TrafficCall::addLiveCalls(std::vector<LiveCall>& calls) const {
    for (const SwitchCall& leg : m_legs) {
        if (!leg.isOver()) {
            calls.push_back(leg.live());
        }
    }
}

}  // namespace host
