#include "host/switch/calls/SwitchCallLogBuilder.h"

#include <algorithm>

namespace host {

namespace {

// The call id of a missed call that is only reported.
constexpr const char* kUnseenCallId = "-1";
constexpr const char* kAnsweredElsewhere = "multipleAlerting";

/// Only devices with a number have a log.
bool hasLog(const SwitchParty& device) {
    return !device.anonymous && !device.number.empty();
}

}  // namespace

std::vector<FinishedCall> SwitchCallLogBuilder::process(const SwitchEvent& event) {
    const SwitchParty& subject = event.subject;
    const std::string& callId = event.callId;
    switch (event.type) {
        case WireEvent::eOriginated: record(subject, callId, {true, false, event.called}); break;
        case WireEvent::eDelivered: record(subject, callId, {false, false, event.calling}); break;
        case WireEvent::eEstablished: record(subject, callId, {false, true, event.calling}); break;
        case WireEvent::eDiverted: m_calls.erase({subject.number, callId}); break;
        case WireEvent::eConnectionCleared: return cleared(event);
        case WireEvent::eTransferred:
        case WireEvent::eConferenced: return joined(event);
        case WireEvent::eCallInformation:
            if (callId == kUnseenCallId) {
                return {{subject.number, CallLogEntryEvent::eMissed, event.calling}};
            }
            updateName(event);
            break;
        default: break;
    }
    return {};
}

void SwitchCallLogBuilder::record(const SwitchParty& device, const std::string& callId, const Call& call) {
    if (hasLog(device)) {
        m_calls[{device.number, callId}] = call;
    }
}

void SwitchCallLogBuilder::updateName(const SwitchEvent& event) {
    const auto call = m_calls.find({event.subject.number, event.callId});
    if (call != m_calls.end() && isSameDevice(call->second.party, event.calling)) {
        call->second.party = event.calling;
    }
}

std::vector<FinishedCall> SwitchCallLogBuilder::cleared(const SwitchEvent& event) {
    const auto call = m_calls.extract(Key{event.subject.number, event.callId});
    if (call.empty()) {
        return {};
    }
    const Call& over = call.mapped();
    if (!over.outgoing && !over.established && event.cause == kAnsweredElsewhere) {
        return {};
    }
    return {finished(call.key().first, over)};
}

std::vector<FinishedCall> SwitchCallLogBuilder::joined(const SwitchEvent& event) {
    std::vector<FinishedCall> over;
    for (const std::string& oldCallId : {event.callId, event.secondaryCallId}) {
        for (const SwitchEvent::Listener& listener : event.listeners) {
            const auto call = m_calls.extract(Key{listener.device, oldCallId});
            if (call.empty()) {
                continue;
            }
            const bool stays = std::any_of(
                event.connections.begin(), event.connections.end(),
                [&listener](const auto& connection) { return connection.party.number == listener.device; });
            if (!stays || !m_calls.emplace(Key{listener.device, event.newCallId}, call.mapped()).second) {
                over.push_back(finished(listener.device, call.mapped()));
            }
        }
    }
    return over;
}

FinishedCall SwitchCallLogBuilder::finished(const std::string& device, const Call& call) {
    const CallLogEntryEvent::_LogTarget log = call.outgoing      ? CallLogEntryEvent::eDialled
                                              : call.established ? CallLogEntryEvent::eReceived
                                                                 : CallLogEntryEvent::eMissed;
    return {device, log, call.party};
}

}  // namespace host
