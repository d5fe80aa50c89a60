#include "src/JournalServiceEvents/handlers/ConferenceEvents.h"

#include <utility>

#include "platform/csta/CSTAConferenceEvents.h"
#include "src/JournalService/base/Log.h"

namespace journal {

void ConferenceEvents::handleCSTAConferencedEvent(CSTAConferencedEvent* event) {
    constexpr const char* kLogName = "handleCSTAConferencedEvent";
    LOG_EVENTS(6, "handleCSTAConferencedEvent[%s]", event->toString().c_str());
    LOG_EVENTS(5, "%s():{Calls ID %s and %s become %s}", kLogName, event->getPrimaryoldcallCallID().c_str(),
               event->getSecondaryoldcallCallID().c_str(),
               event->getConferenceconnectionsNewconnectionCallID(1).c_str());
    const auto settings = m_callControl.settings.values();
    if (!m_callControl.acceptsEvents() || !settings->m_useCSTACallControlEvents) {
        return;
    }
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    if (settings->isSip()) {
        recordSipConference(*event);
    } else {
        recordConference(*event);
    }
}

void ConferenceEvents::recordConference(const CSTAConferencedEvent& event) {
    const std::string& conferenceCallId = event.getConferenceCallID();
    QorvexConferencedCallID primary{event.getPrimaryoldcallCallID(), {}};
    QorvexConferencedCallID secondary{event.getSecondaryoldcallCallID(), {}};
    event.getPrimaryoldcallDeviceID(primary.deviceId);
    event.getSecondaryoldcallDeviceID(secondary.deviceId);
    LOG_EVENTS(
        4,
        "confCallID = %s, primaryOldCallID = %s, primaryOldDeviceIDNumber = %s, secondaryOldCallID = %s, "
        "secondaryOldDeviceIDNumber = %s",
        conferenceCallId.c_str(), primary.callId.c_str(), primary.deviceId.c_str(), secondary.callId.c_str(),
        secondary.deviceId.c_str());
    int index = -1;
    if (m_conferences.searchConferenceIDIndex(conferenceCallId, index)) {
        expand(index, conferenceCallId, primary, secondary.callId);
    } else {
        create(conferenceCallId, primary, secondary);
    }
}

void ConferenceEvents::expand(int index, const std::string& conferenceCallId,
                              const QorvexConferencedCallID& primary, const std::string& secondaryCallId) {
    Conferences::Members::iterator known;
    if (Conferences::isEmptyCallId(primary.callId)) {
        LOG_EVENTS(4, "conference already exists and primaryOldCallID is empty");
    } else if (m_conferences.searchDeviceIDInConference(index, primary.deviceId, known)) {
        LOG_EVENTS(3, "primaryOldDeviceIDNumber already entered in conference");
    } else {
        auto& members = m_conferences.members(index);
        members.splice(members.end(), primary.callId == conferenceCallId ? Conferences::Members{primary}
                                                                         : membersOf(primary));
    }
    if (!Conferences::isEmptyCallId(secondaryCallId)) {
        LOG_EVENTS(3, "existing conference gets expanded but secondaryOldCallID exists");
    }
}

void ConferenceEvents::create(const std::string& conferenceCallId, const QorvexConferencedCallID& primary,
                              const QorvexConferencedCallID& secondary) {
    constexpr const char* kLogName = "handleCSTAConferencedEvent";
    // Take the members first: that frees the slot of a conference that continues under another id.
    Conferences::Members members;
    if (!Conferences::isEmptyCallId(primary.callId)) {
        members = membersOf(primary);
        if (!Conferences::isEmptyCallId(secondary.callId)) {
            members.splice(members.end(), membersOf(secondary));
        }
    }
    int index = -1;
    if (!m_conferences.getNewConferenceIDIndex(index)) {
        LOG_EVENTS(5, "%s():new conference not possible - max. number already reached", kLogName);
        return;
    }
    if (members.empty()) {
        LOG_EVENTS(5, "%s():new conference but primaryOldCallID is empty", kLogName);
        return;
    }
    m_conferences.addConference(index, conferenceCallId);
    m_conferences.members(index) = std::move(members);
}

// Returns the members of an old call: those of the conference that it was, or the call itself. A tracked call
// with the id of that conference is a member, too, so that it ends with the new one.
Conferences::Members ConferenceEvents::membersOf(const QorvexConferencedCallID& oldCall) {
    Conferences::Members members = m_conferences.takeMembers(oldCall.callId);
    if (members.empty() || m_callControl.calls.findCallFromId(oldCall.callId) != nullptr) {
        members.push_back(oldCall);
    }
    return members;
}

void ConferenceEvents::recordSipConference(const CSTAConferencedEvent& event) {
    SipConference conference{event.getConferenceconnectionsNewconnectionCallID(1),
                             event.getPrimaryoldcallCallID(), event.getSecondaryoldcallCallID()};
    const auto& before = m_conferences.m_sipConference;
    if (before && conference.continues(before->newConnectionCallId)) {
        conference.formerOldCallIds = before->oldCallIds();
    }
    m_conferences.m_sipConference = std::move(conference);
}

void ConferenceEvents::handleCSTAConferenceMembershipEvent(CSTAConferenceMembershipEvent* event) {
    constexpr const char* kLogName = "handleCSTAConferenceMembershipEvent";
    LOG_EVENTS(5, "%s():{%s} [%s]", kLogName, event->getCallID().c_str(), event->toString().c_str());
    if (!m_callControl.settings.values()->isSip() || !m_callControl.acceptsEvents()) {
        return;
    }
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    Call* const call = m_callControl.calls.findCallFromId(event->getCallID());
    if (call == nullptr) {
        LOG_EVENTS(5, "%s():Call Not Found!", kLogName);
        return;
    }
    if (call->m_sRemoteParty != event->getDeviceID() || call->m_sCalledParty != event->getDeviceID()) {
        return;
    }
    std::string name;
    std::string number;
    if (!event->getUserInformation(1, name, number)) {
        return;
    }
    LOG_EVENTS(5, "%s():m_sRemotePartyName[%s]->[%s], m_sCalledPartyName[%s]->[%s]", kLogName,
               call->m_sRemotePartyName.c_str(), name.c_str(), call->m_sCalledPartyName.c_str(),
               name.c_str());
    call->m_sRemotePartyName = name;
    call->m_sCalledPartyName = name;
}

}  // namespace journal
