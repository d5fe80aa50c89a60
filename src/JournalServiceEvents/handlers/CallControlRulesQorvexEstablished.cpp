#include "platform/csta/CSTACallControlEvents.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/handlers/CallControlRulesQorvex.h"

namespace journal {

void CallControlRulesQorvex::established(const CSTAEstablishedEvent& event) {
    constexpr const char* kLogName = "handleCSTAEstablishedEvent";
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    const CSTADevice& answering = event.getAnsweringDevice();
    LOG_EVENTS(5, "%s():{%s} Calling: %s, Name: %s, Called: %s, Name: %s, Answered: %s, Name: %s", kLogName,
               callId.c_str(), calling.number.c_str(), calling.name.c_str(), called.number.c_str(),
               called.name.c_str(), answering.number.c_str(), answering.name.c_str());
    if (!tracksCalls()) {
        return;
    }
    Call* call = m_callControl.find(event);
    const auto direction =
        establishedDirection(m_callControl, call, event, directionOf(calling, called, answering, call));
    if (!direction) {
        return;
    }
    if (*direction == Call::eOutgoing) {
        establishedOutgoing(call, event, *direction);
    } else {
        establishedIncoming(call, event, *direction);
    }
    recordRedirecting(event, kLogName);
}

void CallControlRulesQorvex::establishedIncoming(Call* call, const CSTAEstablishedEvent& event,
                                                 Call::directions_t direction) {
    const CSTADevice caller = farEnd(event.getCallingDevice());
    LOG_EVENTS(5, "%s():{%s} Incoming call established; Number: %s, Name: %s", "handleCSTAEstablishedEvent",
               event.getConnectionCallID().c_str(), caller.number.c_str(), caller.name.c_str());
    m_callControl.track(call, {.state = Call::eEstablished,
                               .direction = direction,
                               .callId = event.getConnectionCallID(),
                               .remote = caller});
}

void CallControlRulesQorvex::establishedOutgoing(Call* call, const CSTAEstablishedEvent& event,
                                                 Call::directions_t direction) {
    constexpr const char* kLogName = "handleCSTAEstablishedEvent";
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& called = event.getCalledDevice();
    const CSTADevice& answering = event.getAnsweringDevice();
    if (call != nullptr && call->m_Direction == Call::eIncoming && call->m_State < Call::eEstablished) {
        fileCalledBack(*call, event);
    }
    // Before the update, which may delete a missed entry of the called party; after it, because it may create
    // the record.
    recordDialled(event);
    if (isKnown(called) && isKnown(answering) && called.number != answering.number) {
        LOG_EVENTS(5,
                   "%s():{%s} Outoing call established, someone other than the called device has answered, "
                   "Number: %s, Name: %s",
                   kLogName, callId.c_str(), answering.number.c_str(), answering.name.c_str());
        m_callControl.track(call, {.state = Call::eEstablished,
                                   .direction = direction,
                                   .callId = callId,
                                   .remote = answering,
                                   .diverted = called});
    } else {
        const CSTADevice reached = firstKnown(answering, called);
        LOG_EVENTS(5, "%s():{%s} Outoing call established; Number: %s, Name: %s", kLogName, callId.c_str(),
                   reached.number.c_str(), reached.name.c_str());
        m_callControl.track(
            call, {.state = Call::eEstablished, .direction = direction, .callId = callId, .remote = reached});
    }
    recordDialled(event);
}

// The switch has called the phone to place a call for it (a callback, click to dial). The call alerted here
// like an incoming call, and its record has that direction; the user sees a dialled call.
void CallControlRulesQorvex::fileCalledBack(const Call& call, const CSTAEstablishedEvent& event) {
    const CSTADevice reached = firstKnown(event.getCalledDevice(), event.getAnsweringDevice());
    const CSTADevice connected = firstKnown(event.getAnsweringDevice(), event.getCalledDevice());
    DialledEntryDetails details;
    details.callId = call.m_sCallId;
    details.dialledParty = reached.number;
    details.remoteParty = reached.number;
    details.remotePartyName = reached.name;
    details.connectedParty = connected.number;
    details.connectedPartyName = connected.name;
    details.timeSec = call.m_startTimeSec;
    details.logTarget = CallLogEntryEvent::eDialled;
    details.presentationA = CallLogEntryEvent::ePresented;
    details.presentationB = CallLogEntryEvent::ePresented;
    m_entries.fileDialledCall(details);
}

}  // namespace journal
