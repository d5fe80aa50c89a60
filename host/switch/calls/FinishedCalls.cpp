#include "host/switch/calls/FinishedCalls.h"

#include <algorithm>

namespace host {

namespace {

// The id under which a call is reported that the phone never saw.
constexpr const char* kUnseenCallId = "-1";
constexpr const char* kAnsweredElsewhere = "multipleAlerting";

/// Nobody keeps a log for a device that is not named.
bool hasLog(const Party& device) {
    return !device.anonymous && !device.number.empty();
}

}  // namespace

std::vector<FinishedCall> FinishedCalls::follow(const SimulatedEvent& occurrence) {
    const Party& subject = occurrence.subject;
    const std::string& callId = occurrence.callId;
    switch (occurrence.event) {
        case WireEvent::eOriginated: note(subject, callId, {true, false, occurrence.called}); break;
        case WireEvent::eDelivered: note(subject, callId, {false, false, occurrence.calling}); break;
        case WireEvent::eEstablished: note(subject, callId, {false, true, occurrence.calling}); break;
        case WireEvent::eDiverted: m_calls.erase({subject.number, callId}); break;
        case WireEvent::eConnectionCleared: return cleared(occurrence);
        case WireEvent::eTransferred:
        case WireEvent::eConferenced: return joined(occurrence);
        case WireEvent::eCallInformation:
            if (callId == kUnseenCallId) {
                return {{subject.number, CallLogEntryEvent::eMissed, occurrence.calling}};
            }
            learnName(occurrence);
            break;
        default: break;
    }
    return {};
}

void FinishedCalls::note(const Party& device, const std::string& callId, const Call& call) {
    if (hasLog(device)) {
        m_calls[{device.number, callId}] = call;
    }
}

void FinishedCalls::learnName(const SimulatedEvent& occurrence) {
    const auto call = m_calls.find({occurrence.subject.number, occurrence.callId});
    if (call != m_calls.end() && isSameDevice(call->second.party, occurrence.calling)) {
        call->second.party = occurrence.calling;
    }
}

std::vector<FinishedCall> FinishedCalls::cleared(const SimulatedEvent& occurrence) {
    const auto call = m_calls.extract(Key{occurrence.subject.number, occurrence.callId});
    if (call.empty()) {
        return {};
    }
    const Call& over = call.mapped();
    if (!over.outgoing && !over.answered && occurrence.cause == kAnsweredElsewhere) {
        return {};
    }
    return {finished(call.key().first, over)};
}

std::vector<FinishedCall> FinishedCalls::joined(const SimulatedEvent& occurrence) {
    std::vector<FinishedCall> over;
    for (const std::string& oldCallId : {occurrence.callId, occurrence.secondaryCallId}) {
        for (const SimulatedEvent::Listener& listener : occurrence.listeners) {
            const auto call = m_calls.extract(Key{listener.device, oldCallId});
            if (call.empty()) {
                continue;
            }
            const bool stays = std::any_of(
                occurrence.connections.begin(), occurrence.connections.end(),
                [&listener](const auto& connection) { return connection.party.number == listener.device; });
            if (!stays ||
                !m_calls.emplace(Key{listener.device, occurrence.newCallId}, call.mapped()).second) {
                over.push_back(finished(listener.device, call.mapped()));
            }
        }
    }
    return over;
}

FinishedCall FinishedCalls::finished(const std::string& device, const Call& call) {
    const CallLogEntryEvent::_LogTarget log = call.outgoing   ? CallLogEntryEvent::eDialled
                                              : call.answered ? CallLogEntryEvent::eReceived
                                                              : CallLogEntryEvent::eMissed;
    return {device, log, call.party};
}

}  // namespace host
