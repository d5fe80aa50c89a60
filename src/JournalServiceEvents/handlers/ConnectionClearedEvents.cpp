#include "src/JournalServiceEvents/handlers/ConnectionClearedEvents.h"

#include <memory>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/calls/Conferences.h"
#include "src/JournalServiceEvents/handlers/BlindTransfer.h"
#include "src/JournalServiceEvents/switch-log/PrivateEvents.h"

namespace journal {

namespace {

constexpr const char* kLogName = "handleCSTAConnectionClearedEvent";

/// True if the phone's own connection was dropped, not that of another member.
bool isOwnConnection(const CSTAConnectionClearedEvent& event) {
    return event.getConnectionDeviceID() == CSTADevice::kLocalDevice ||
           event.getLocalConnectionInfo() == CSTA_LCS_Null;
}

}  // namespace

void ConnectionClearedEvents::handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) {
    LOG_EVENTS(6, "handleCSTAConnectionClearedEvent[%s]", event->toString().c_str());
    std::unique_ptr<CSTAConnectionClearedEvent> displaced;
    if (!m_blindTransfer.isBlindTransferProcessing(*event, displaced)) {
        immediatelyhandleCSTAConnectionClearedEvent(event);
    } else if (displaced != nullptr) {
        immediatelyhandleCSTAConnectionClearedEvent(displaced.get());
    }
}

bool ConnectionClearedEvents::onTimer(int timerId) {
    if (!m_blindTransfer.isTimer(timerId)) {
        return false;
    }
    handleHeldBackEvent();
    return true;
}

void ConnectionClearedEvents::handleHeldBackEvent() {
    if (const auto pending = m_blindTransfer.takePending()) {
        immediatelyhandleCSTAConnectionClearedEvent(pending.get());
    }
}

void ConnectionClearedEvents::immediatelyhandleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) {
    LOG_EVENTS(6, "immediatealyCSTAConnectionClearedEvent[%s]", event->toString().c_str());
    LOG_EVENTS(5, "%s():{%s}, event cause: %d", kLogName, event->getDroppedConnectionCallID().c_str(),
               event->getCause());
    if (!m_callControl.acceptsEvents()) {
        forget(*event);
        return;
    }
    const auto settings = m_callControl.settings.values();
    if (!settings->isSip() && !settings->m_useCSTACallControlEvents) {
        if (settings->isQorvex()) {
            m_privateEvents.applyPendingCallLogEvents();
        }
        forget(*event);
        return;
    }
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    clear(*event);
}

// The call is over and not to be filed. Its record would be taken for that of a later call with its id.
void ConnectionClearedEvents::forget(const CSTAConnectionClearedEvent& event) {
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    const std::string& callId = event.getDroppedConnectionCallID();
    if (isOwnConnection(event) && m_callControl.calls.findCallFromId(callId) != nullptr) {
        m_callControl.calls.removeCall(callId);
    }
}

void ConnectionClearedEvents::clear(const CSTAConnectionClearedEvent& event) {
    int conference = -1;
    if (m_conferences.searchConferenceIDIndex(event.getDroppedConnectionCallID(), conference)) {
        LOG_EVENTS(5, "handleCSTAConnectionClearedEvent: the dropped call belongs to a conference");
        clearMember(conference, event);
        return;
    }
    if (m_conferences.m_sipConference &&
        m_conferences.m_sipConference->newConnectionCallId == event.getDroppedConnectionCallID()) {
        LOG_EVENTS(5, "handleCSTAConnectionClearedEvent: the dropped call belongs to a conference");
        clearSipMember(event);
        return;
    }
    LOG_EVENTS(5, "handleCSTAConnectionClearedEvent: ordinary call has cleared");
    clearOrdinaryCall(event);
}

void ConnectionClearedEvents::clearMember(int conference, const CSTAConnectionClearedEvent& event) {
    const std::string& device = event.getConnectionDeviceID();
    Conferences::Members::iterator member;
    if (device != CSTADevice::kLocalDevice &&
        m_conferences.searchDeviceIDInConference(conference, device, member)) {
        const std::string callId = member->callId;
        const bool last = m_conferences.members(conference).size() == 1;
        m_conferences.removeMember(conference, member);
        endCall(callId);
        if (last) {
            endCall(event.getDroppedConnectionCallID());
        }
    } else if (isOwnConnection(event)) {
        const Conferences::Members members = m_conferences.members(conference);
        m_conferences.removeConference(conference);
        for (const QorvexConferencedCallID& one : members) {
            endCall(one.callId);
        }
        endCall(event.getDroppedConnectionCallID());
    }
}

// The conference of a SIP phone does not record the members' devices, so the call whose far end has left
// ends.
void ConnectionClearedEvents::clearSipMember(const CSTAConnectionClearedEvent& event) {
    SipConference& conference = *m_conferences.m_sipConference;
    if (isOwnConnection(event)) {
        const SipConference ended = conference;
        m_conferences.m_sipConference.reset();
        for (const std::string& callId : ended.oldCallIds()) {
            endCall(callId);
        }
        endCall(ended.newConnectionCallId);
        return;
    }
    for (const std::string& callId : conference.oldCallIds()) {
        const Call* const call = m_callControl.calls.findCallFromId(callId);
        if (call != nullptr && (call->m_sRemoteParty == event.getConnectionDeviceID() ||
                                call->m_sConnectedParty == event.getConnectionDeviceID())) {
            conference.memberCleared = true;
            endCall(callId);
            return;
        }
    }
}

void ConnectionClearedEvents::clearOrdinaryCall(const CSTAConnectionClearedEvent& event) {
    const std::string& callId = event.getDroppedConnectionCallID();
    if (Call* const call = m_callControl.calls.findCallFromId(callId)) {
        if (event.getCause() == CSTA_EC_CompletedElsewhere) {
            LOG_EVENTS(5, "%s():Call was completed elsewhere", kLogName);
            call->m_completedElsewhere = true;
        } else if (event.getCause() == CSTA_EC_Transfer) {
            linkWithHeldCall(*call);
        }
    }
    m_conferences.removeEndedCall(callId);
    endCall(callId);
}

// Makes the entry of each call of a transfer show the far end of the other one as its redirecting party.
void ConnectionClearedEvents::linkWithHeldCall(Call& cleared) {
    Call* const held = m_callControl.calls.findCallFromId(m_blindTransfer.lastHeldCallId());
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
    m_callControl.track(m_callControl.calls.findCallFromId(callId),
                        {.state = Call::eCleared, .callId = callId});
}

}  // namespace journal
