#include "src/JournalServiceEvents/handlers/CallInformationEvents.h"

#include <string>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/switch-log/GenerateCallId.h"

namespace journal {

namespace {

constexpr const char* kLogName = "handleCSTACallInformationEvent";
/// The call id of a call that never reached the phone.
constexpr const char* kUnseenCallId = "-1";

}  // namespace

void CallInformationEvents::handleCSTACallInformationEvent(CSTACallInformationEvent* event) {
    LOG_EVENTS(6, "handleCSTACallInformationEvent [%s]", event->toString().c_str());
    if (!m_callControl.acceptsEvents()) {
        return;
    }
    const std::string& callId = event->getConnectionCallID();
    LOG_EVENTS(5, "%s():{%s} Calling: %s, Name: %s", kLogName, callId.c_str(),
               event->getDevice().number.c_str(), event->getDevice().name.c_str());
    if (!m_callControl.settings.values()->m_useCSTACallControlEvents) {
        return;
    }
    const std::string& privateData = event->getPrivateData();
    LOG_EVENTS(5, "%s():event private data [%s]", kLogName, privateData.c_str());
    if (privateData == communicationsServiceTexts::content_callstatus_MissedCall) {
        if (!(callId == kUnseenCallId ? fileUnseenCall(*event) : markAsMissed(*event))) {
            LOG_EVENTS(5, "%s():{%s} CSTA Event not plausible", kLogName, callId.c_str());
        }
    } else if (privateData.empty()) {
        LOG_EVENTS(5, "%s(): maybe RemotePartyName available", kLogName);
        updateName(*event);
    }
}

bool CallInformationEvents::markAsMissed(const CSTACallInformationEvent& event) {
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    const std::string& callId = event.getConnectionCallID();
    LOG_EVENTS(5, "%s():{%s} mark call as missed", kLogName, callId.c_str());
    Call* const call = m_callControl.calls.findCallFromId(callId);
    if (call == nullptr || call->m_Direction != Call::eIncoming || call->m_State != Call::eDelivered) {
        return false;
    }
    call->m_markedMissed = true;
    if (m_callControl.settings.values()->isSip()) {
        // A call of a SIP phone is missed without a mark, by its state.
        return true;
    }
    m_callControl.track(call,
                        {.state = Call::eCallInformation, .direction = Call::eIncoming, .callId = callId});
    return true;
}

bool CallInformationEvents::fileUnseenCall(const CSTACallInformationEvent& event) {
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    LOG_EVENTS(5, "%s():{%s} create new missed call entry", kLogName, event.getConnectionCallID().c_str());
    const bool journalledElsewhere = m_callControl.settings.values()->m_xsiConfigured;
    LOG_EVENTS(5, "m_xsiConfigured=%d", journalledElsewhere ? 1 : 0);
    if (journalledElsewhere) {
        return false;
    }
    MissedEntryDetails details;
    details.callId = generateCallId();
    details.remoteParty = farEnd(event.getDevice()).number;
    details.remotePartyName = farEnd(event.getDevice()).name;
    details.timeSec = m_clock.getCurrentTimeSec();
    details.logTarget = CallLogEntryEvent::eMissed;
    m_entries.newMissedCallEntry(details);
    return true;
}

void CallInformationEvents::updateName(const CSTACallInformationEvent& event) {
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    const std::string& callId = event.getConnectionCallID();
    Call* const call = m_callControl.calls.findCallFromId(callId);
    if (call == nullptr) {
        LOG_EVENTS(3, "{%s} CSTA Event not plausible", callId.c_str());
        return;
    }
    const CSTADevice& device = event.getDevice();
    if (call->m_sRemoteParty != device.number) {
        return;
    }
    // Changes names only. The update repeats the established state where the connected party gets the name,
    // and has no state otherwise, so that the call neither ends nor starts again.
    const bool talking = call->m_State == Call::eEstablished && !call->m_treatAsIncoming &&
                         call->m_sConnectedParty == device.number;
    m_callControl.track(
        call, {.state = talking ? Call::eEstablished : Call::eUnknown, .callId = callId, .remote = device});
    LOG_EVENTS(5, "%s():{%s} RemotePartyName: %s", kLogName, callId.c_str(), device.name.c_str());
}

}  // namespace journal
