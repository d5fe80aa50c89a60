#include "src/JournalServiceEvents/ConnectionClearedEvents.h"

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "src/JournalService/Log.h"
#include "src/JournalServiceEvents/BlindTransfer.h"
#include "src/JournalServiceEvents/Conferences.h"

namespace journal {

namespace {
constexpr const char* kOperation = "handleCSTAConnectionClearedEvent";
}

void ConnectionClearedEvents::immediatelyhandleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) {
    LOG_EVENTS(6, "immediatealyCSTAConnectionClearedEvent[%s]", event->toString().c_str());
    LOG_EVENTS(5, "%s():{%s}, event cause: %d", kOperation, event->getDroppedConnectionCallID().c_str(),
               event->getCause());
    if (!m_parts.acceptsEvents()) {
        return;
    }
    const auto settings = m_parts.settings.values();
    if (!settings->isSip() && !settings->m_useCSTACallControlEvents) {
        return;
    }
    const CallMap::Section section(m_parts.calls.m_callMapLock);
    clear(*event);
}

void ConnectionClearedEvents::clear(const CSTAConnectionClearedEvent& event) {
    int conference = -1;
    if (m_conferences.searchConferenceIDIndex(event.getDroppedConnectionCallID(), conference)) {
        LOG_EVENTS(5, "handleCSTAConnectionClearedEvent: the dropped call belongs to a conference");
        clearMember(conference, event);
        return;
    }
    LOG_EVENTS(5, "handleCSTAConnectionClearedEvent: ordinary call has cleared");
    clearOrdinaryCall(event);
}

void ConnectionClearedEvents::clearMember(int conference, const CSTAConnectionClearedEvent& event) {
    Conferences::Members::iterator member;
    if (m_conferences.searchDeviceIDInConference(conference, event.getConnectionDeviceID(), member)) {
        const std::string callId = member->callId;
        m_conferences.removeMember(conference, member);
        endCall(callId);
    }
}

void ConnectionClearedEvents::clearOrdinaryCall(const CSTAConnectionClearedEvent& event) {
    const std::string& callId = event.getDroppedConnectionCallID();
    if (Call* const call = m_parts.calls.findCallFromId(callId)) {
        if (event.getCause() == CSTA_EC_CompletedElsewhere) {
            LOG_EVENTS(5, "%s():Call was completed elsewhere", kOperation);
            call->m_completedElsewhere = true;
        } else if (event.getCause() == CSTA_EC_Transfer) {
            linkWithHeldCall(*call);
        }
    }
    endCall(callId);
}

// The two calls of a transfer: each one's entry shows who stood behind the other.
void ConnectionClearedEvents::linkWithHeldCall(Call& cleared) {
    Call* const held = m_parts.calls.findCallFromId(m_blindTransfer.lastHeldCallId());
    if (held == nullptr) {
        return;
    }
    if (held != &cleared) {
        cleared.m_sRedirectingParty = held->m_sRemoteParty;
        cleared.m_sRedirectingPartyName = held->m_sRemotePartyName;
        held->m_sRedirectingParty = cleared.m_sRemoteParty;
        held->m_sRedirectingPartyName = cleared.m_sRemotePartyName;
    }
    cleared.m_transferred = true;
    held->m_transferred = true;
}

void ConnectionClearedEvents::endCall(const std::string& callId) {
    m_parts.pass(m_parts.calls.findCallFromId(callId), Call::eCleared, Call::eDirectionUnknown, callId, {});
}

}  // namespace journal
