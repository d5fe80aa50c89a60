#include "host/calls/PhoneCallEvents.h"

#include <cstddef>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/texts/communicationsServiceTexts.h"

namespace host {

namespace {

/// The phone's own end: the monitored device.
CSTADevice ownEnd(const PhoneCall& call) {
    return {call.device, {}};
}

template <typename Event>
std::unique_ptr<Event> eventOf(const PhoneCall& call, const std::string& crossRefId, int localConnection) {
    auto event = std::make_unique<Event>();
    event->setMonitorCrossRefID(crossRefId);
    event->setCause(CSTA_EC_NewCall);
    event->setConnection(call.callId, call.device);
    event->setCallingDevice(call.outgoing ? ownEnd(call) : call.calling);
    event->setCalledDevice(call.called);
    event->setLastRedirectionDevice(call.redirecting);
    event->setLocalConnectionInfo(localConnection);
    return event;
}

std::unique_ptr<CSTAEvent> conferencedEvent(const std::string& conferenceId, const PhoneCall& primary,
                                            const PhoneCall* secondary, const std::string& crossRefId) {
    auto event = std::make_unique<CSTAConferencedEvent>();
    event->setMonitorCrossRefID(crossRefId);
    event->setCause(CSTA_EC_Conference);
    event->setConferenceCallID(conferenceId);
    event->setPrimaryOldCall(primary.callId, farEndOf(primary).number);
    if (secondary != nullptr) {
        event->setSecondaryOldCall(secondary->callId, farEndOf(*secondary).number);
    }
    event->addNewConnectionCallID(conferenceId);
    return event;
}

/// The first two members begin the conference; each other one joins it.
void addConference(std::vector<PhoneEvent>& events, const PhoneCall& conference,
                   std::vector<PhoneCall> members, const std::string& crossRefId) {
    if (!isOnlyConference(conference)) {
        members.insert(members.begin(), conference);
    }
    for (std::size_t i = 0; i < members.size(); ++i) {
        const PhoneCall* const secondary = i == 0 && members.size() > 1 ? &members[1] : nullptr;
        events.push_back(
            {conferencedEvent(conference.callId, members[i], secondary, crossRefId), conference.established});
        i += secondary != nullptr ? 1 : 0;
    }
}

}  // namespace

std::unique_ptr<CSTAEvent> ringingEvent(const PhoneCall& call, const std::string& crossRefId) {
    auto event = eventOf<CSTADeliveredEvent>(call, crossRefId, CSTA_LCS_Alerting);
    event->setAlertingDevice(ownEnd(call));
    return event;
}

std::unique_ptr<CSTAEvent> originatedEvent(const PhoneCall& call, const std::string& crossRefId) {
    auto event = eventOf<CSTAOriginatedEvent>(call, crossRefId, CSTA_LCS_Connected);
    if (call.pickUp) {
        event->setCause(CSTA_EC_CallPickup);
    }
    return event;
}

std::unique_ptr<CSTAEvent> missedMarkEvent(const PhoneCall& call, const std::string& crossRefId) {
    auto event = eventOf<CSTACallInformationEvent>(call, crossRefId, CSTA_LCS_Alerting);
    event->setDevice(call.calling);
    event->setPrivateData(communicationsServiceTexts::content_callstatus_MissedCall);
    return event;
}

std::unique_ptr<CSTAEvent> establishedEvent(const PhoneCall& call, const std::string& crossRefId) {
    auto event = eventOf<CSTAEstablishedEvent>(call, crossRefId, CSTA_LCS_Connected);
    event->setAnsweringDevice(call.outgoing ? call.partner : ownEnd(call));
    return event;
}

std::unique_ptr<CSTAEvent> clearedEvent(const PhoneCall& call, const std::string& crossRefId, int cause) {
    auto event = eventOf<CSTAConnectionClearedEvent>(call, crossRefId, CSTA_LCS_Null);
    event->setCause(cause);
    return event;
}

std::unique_ptr<CSTAEvent> unreportedEndEvent(const PhoneCall& call, const std::string& crossRefId) {
    const bool elsewhere = call.elsewhere || call.reason == CallReason::eCompletedElsewhere;
    return clearedEvent(call, crossRefId, elsewhere ? CSTA_EC_CompletedElsewhere : CSTA_EC_NormalClearing);
}

std::vector<PhoneEvent> eventsOf(const PhoneCall& known, const std::vector<PhoneCall>& members,
                                 const std::string& crossRefId) {
    PhoneCall call = known;
    if (call.transferred && !call.partner.number.empty()) {
        (call.outgoing ? call.called : call.calling) = call.partner;
    }
    std::vector<PhoneEvent> events;
    if (!isOnlyConference(call)) {
        events.push_back({call.outgoing ? originatedEvent(call, crossRefId) : ringingEvent(call, crossRefId),
                          call.firstEvent});
        if (call.established) {
            events.push_back({establishedEvent(call, crossRefId), call.established});
        } else if (call.markedMissed) {
            events.push_back({missedMarkEvent(call, crossRefId), call.lastEvent});
        }
    }
    if (call.conference) {
        addConference(events, call, members, crossRefId);
    }
    return events;
}

}  // namespace host
