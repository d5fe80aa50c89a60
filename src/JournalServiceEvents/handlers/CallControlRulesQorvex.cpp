#include "src/JournalServiceEvents/handlers/CallControlRulesQorvex.h"

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/switch-log/CallLogReadiness.h"

namespace journal {

namespace {

// The call id of a failure or a diversion that belongs to no call of this phone.
constexpr const char* kNoCallId = "0";

/// Returns the called device. Takes the name of the alerting device if the called device has none and the
/// numbers match.
CSTADevice calledDeviceOf(const CSTADeliveredEvent& event) {
    const CSTADevice& alerting = event.getAlertingDevice();
    CSTADevice called = firstKnown(event.getCalledDevice(), alerting);
    if (called.name.empty() && called.number == alerting.number) {
        called.name = alerting.name;
    }
    return called;
}

CSTADevice remoteOf(const Call& call) {
    return {call.m_sRemoteParty, call.m_sRemotePartyName};
}

}  // namespace

bool CallControlRulesQorvex::tracksCalls() const {
    return m_callControl.settings.values()->m_useCSTACallControlEvents;
}

bool CallControlRulesQorvex::ignoreEventByCause(int cause) noexcept {
    return cause == CSTA_EC_CallPickup || cause == CSTA_EC_CallPark;
}

// The dialled party keeps the number as the phone dialled it. The called party gets the notation of the
// switch, which callers have, too, so that a dialled and a received call of one party match.
void CallControlRulesQorvex::recordDialled(const CSTACallControlEvent& event) const {
    const CSTADevice& called = event.getCalledDevice();
    Call* const call = m_callControl.find(event);
    if (call == nullptr || !call->isOutgoing() || !isKnown(called)) {
        return;
    }
    if (call->m_sDialledParty.empty()) {
        call->m_sDialledParty = called.number;
        call->m_sDialledPartyName = called.name;
    }
    call->m_sCalledParty = called.number;
    call->m_sCalledPartyName = called.name;
}

void CallControlRulesQorvex::recordRedirecting(const CSTACallControlEvent& event,
                                               const char* operation) const {
    const CSTADevice& redirecting = event.getLastRedirectionDevice();
    Call* const call = m_callControl.find(event);
    if (call == nullptr || !isKnown(redirecting)) {
        return;
    }
    LOG_EVENTS(5, "%s():m_sRedirectingParty[%s]->[%s], m_sRedirectingPartyName[%s]->[%s]", operation,
               call->m_sRedirectingParty.c_str(), redirecting.number.c_str(),
               call->m_sRedirectingPartyName.c_str(), redirecting.name.c_str());
    call->m_sRedirectingParty = redirecting.number;
    call->m_sRedirectingPartyName = redirecting.name;
}

void CallControlRulesQorvex::originated(const CSTAOriginatedEvent& event) {
    constexpr const char* kLogName = "handleCSTAOriginatedEvent";
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& called = event.getCalledDevice();
    LOG_EVENTS(5, "%s():{%s} Calling: %s, Called: %s, Name: %s", kLogName, callId.c_str(),
               event.getCallingDevice().number.c_str(), called.number.c_str(), called.name.c_str());
    if (!tracksCalls() || ignoreEventByCause(event.getCause())) {
        return;
    }
    LOG_EVENTS(5, "%s():event not ignored", kLogName);
    m_callControl.track(m_callControl.find(event), {.state = Call::eOriginated,
                                                    .direction = Call::eOutgoing,
                                                    .callId = callId,
                                                    .remote = farEnd(called)});
    recordDialled(event);
}

void CallControlRulesQorvex::offered(const CSTAOfferedEvent& event) {
    if (!tracksCalls()) {
        m_readiness.m_callLogEventsReady = false;
        return;
    }
    m_callControl.track(m_callControl.find(event), {.state = Call::eOffered,
                                                    .direction = Call::eIncoming,
                                                    .callId = event.getOfferedConnectionCallID()});
}

void CallControlRulesQorvex::queued(const CSTAQueuedEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    logParties("handleCSTAQueuedEvent", event);
    if (!tracksCalls()) {
        return;
    }
    if (calling.isLocal()) {
        // The phone's own call is queued at a group.
        m_callControl.track(m_callControl.find(event), {.state = Call::eDelivered,
                                                        .direction = Call::eOutgoing,
                                                        .callId = callId,
                                                        .remote = farEnd(called)});
        recordDialled(event);
        return;
    }
    m_callControl.track(
        m_callControl.find(event),
        {.state = Call::eDelivered, .direction = Call::eIncoming, .callId = callId, .remote = calling});
}

// ---- Delivered ----

void CallControlRulesQorvex::delivered(const CSTADeliveredEvent& event) {
    constexpr const char* kLogName = "handleCSTADeliveredEvent";
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    const CSTADevice& newDestination = event.getAlertingDevice();
    LOG_EVENTS(5,
               "%s():{%s} Calling: %s, Name: %s, Called: %s, Name: %s, newDestinationNumber: %s, "
               "newDestinationName: %s",
               kLogName, callId.c_str(), calling.number.c_str(), calling.name.c_str(), called.number.c_str(),
               called.name.c_str(), newDestination.number.c_str(), newDestination.name.c_str());
    if (!tracksCalls()) {
        return;
    }
    const int cause = event.getCause();
    if (cause == CSTA_EC_Forwarded) {
        Call* const call = m_callControl.find(event);
        LOG_EVENTS(5, "%s():{%s} forwarded call received", kLogName, callId.c_str());
        if (call == nullptr || followsTransferHere(*call) ||
            (isKnown(newDestination) && !forwardedOn(*call, event))) {
            return;
        }
    }
    deliveredByLocalConnection(event);
    if (cause == CSTA_EC_Redirected || cause == CSTA_EC_RedirectedByDistribution) {
        recordRedirecting(event, kLogName);
        if (Call* const call = m_callControl.find(event)) {
            call->m_redirected = true;
        }
    }
}

// The called party has forwarded the phone's own call. Returns false if the record has been removed.
bool CallControlRulesQorvex::forwardedOn(Call& call, const CSTADeliveredEvent& event) {
    const CSTADevice& newDestination = event.getAlertingDevice();
    if (call.m_sFirstForwardedParty.empty()) {
        call.m_sFirstForwardedParty = newDestination.number;
        call.m_sFirstForwardedPartyName = newDestination.name;
    }
    m_callControl.track(&call, {.state = Call::eForwarded,
                                .direction = Call::eOutgoing,
                                .callId = event.getConnectionCallID(),
                                .remote = newDestination,
                                .diverted = farEnd(event.getCalledDevice())});
    return m_callControl.find(event) != nullptr;
}

void CallControlRulesQorvex::deliveredByLocalConnection(const CSTADeliveredEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    const int localConnection = event.getLocalConnectionInfo();
    switch (localConnection) {
        case CSTA_LCS_Connected:
            if (const Call* const call = m_callControl.find(event);
                call != nullptr && (call->m_transferred || !call->isOutgoing())) {
                break;  // the new partner of a transfer is alerting, or a third party
            }
            m_callControl.track(m_callControl.find(event), {.state = Call::eDelivered,
                                                            .direction = Call::eOutgoing,
                                                            .callId = callId,
                                                            .remote = calledDeviceOf(event)});
            recordDialled(event);
            break;
        case CSTA_LCS_Alerting:
        case CSTA_LCS_Null:
            if (event.getPrivateData() != communicationsServiceTexts::content_callstatus_ReminderCall) {
                m_callControl.track(m_callControl.find(event), {.state = Call::eDelivered,
                                                                .direction = Call::eIncoming,
                                                                .callId = callId,
                                                                .remote = farEnd(event.getCallingDevice())});
            }
            break;
        default:
            LOG_EVENTS(5, "%s():{%s} Unknown Local Connection Info %d", "handleCSTADeliveredEvent",
                       callId.c_str(), localConnection);
            break;
    }
}

// ---- Diverted ----

void CallControlRulesQorvex::diverted(const CSTADivertedEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    if (!tracksCalls()) {
        return;
    }
    if (callId != kNoCallId && !m_callControl.settings.values()->m_serverBasedFeatures) {
        LOG_EVENTS(5, "%s():callID = '%s' - server based features are off, IGNORE", "handleCSTADivertedEvent",
                   callId.c_str());
        return;
    }
    Call* const call = m_callControl.find(event);
    if (event.getCallingDevice().isLocal() || (call != nullptr && call->isOutgoing())) {
        divertedByCalledParty(call, event);
    } else {
        divertedAway(call, event);
    }
}

// The call was diverted away from this phone: the caller stays the remote party, the new destination is
// connected.
void CallControlRulesQorvex::divertedAway(Call* call, const CSTADivertedEvent& event) {
    CSTADevice caller = farEnd(event.getCallingDevice());
    if (call != nullptr && !call->m_sRemoteParty.empty()) {
        caller = remoteOf(*call);
    }
    const CSTADevice newDestination = farEnd(event.getNewDestination());
    if (!caller.number.empty()) {
        m_callControl.track(call, {.state = Call::eForwarded,
                                   .direction = Call::eIncoming,
                                   .callId = event.getConnectionCallID(),
                                   .remote = newDestination,
                                   .diverted = caller});
        return;
    }
    // The new destination must not replace an anonymous caller, so it is not passed as a party.
    if (call != nullptr) {
        call->m_sConnectedParty = newDestination.number;
        call->m_sConnectedPartyName = newDestination.name;
    }
    m_callControl.track(call, {.state = Call::eForwarded,
                               .direction = Call::eIncoming,
                               .callId = event.getConnectionCallID(),
                               .remote = caller});
}

// The called party has diverted the phone's own call. A call that is not tracked is ignored: its record would
// never end.
void CallControlRulesQorvex::divertedByCalledParty(Call* call, const CSTADivertedEvent& event) {
    if (call != nullptr) {
        m_callControl.track(call, {.state = Call::eForwarded,
                                   .direction = Call::eOutgoing,
                                   .callId = event.getConnectionCallID(),
                                   .remote = farEnd(event.getNewDestination()),
                                   .diverted = remoteOf(*call)});
    }
}

// ---- Failed ----

void CallControlRulesQorvex::failed(const CSTAFailedEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    const CSTADevice& forwarding = event.getLastRedirectionDevice();
    const int cause = event.getCause();
    LOG_EVENTS(5, "%s():{%s} Calling: (%s Name: %s), Called: %s Cause: %d Forwarding: (%s Name: %s)",
               "handleCSTAFailedEvent", callId.c_str(), calling.number.c_str(), calling.name.c_str(),
               called.number.c_str(), cause, forwarding.number.c_str(), forwarding.name.c_str());
    if (!tracksCalls()) {
        return;
    }
    Call* const call = m_callControl.find(event);
    if (callId == kNoCallId || cause == CSTA_EC_None || cause == CSTA_EC_Unknown) {
        failedOnItsOwn(call, event);
        return;
    }
    const auto direction =
        call != nullptr ? call->m_Direction : directionOf(calling, called, event.getFailingDevice(), nullptr);
    m_callControl.track(call, {.state = Call::eFailed,
                               .direction = direction,
                               .callId = callId,
                               .remote = direction == Call::eOutgoing ? farEnd(called) : farEnd(calling)});
}

// A failure that belongs to no call is an incoming call that did not reach this phone. It gets a record of
// its own, which is filed at once. An existing record with its id ends: an outgoing call is filed as dialled,
// an established one as received.
void CallControlRulesQorvex::failedOnItsOwn(Call* call, const CSTAFailedEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    CSTADevice caller = firstKnown(event.getCallingDevice(), event.getCalledDevice());
    const bool placedHere = call != nullptr && call->isOutgoing();
    if (placedHere) {
        m_callControl.track(call, {.state = Call::eFailed, .direction = Call::eOutgoing, .callId = callId});
    } else if (call != nullptr && call->m_State == Call::eEstablished) {
        m_callControl.track(call, {.state = Call::eCleared, .callId = callId});
    } else if (call != nullptr && caller.number.empty()) {
        caller = remoteOf(*call);
    }
    m_callControl.calls.removeCall(callId);
    if (!(placedHere && event.getCallingDevice().isLocal())) {
        m_callControl.track(
            nullptr,
            {.state = Call::eFailed, .direction = Call::eIncoming, .callId = callId, .remote = caller});
    }
}

}  // namespace journal
