#include "src/JournalServiceEvents/handlers/CallControlRulesSip.h"

#include <memory>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "src/JournalService/base/CrestUserInterface.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/calls/LineDevices.h"
#include "src/JournalServiceEvents/handlers/BlindTransfer.h"

namespace journal {

namespace {

bool isForwarding(int cause) {
    return cause >= CSTA_EC_CallForwardImmediate && cause <= CSTA_EC_CallForward;
}

/// Returns the far end from the record, for an event that names none: the remote party, else the dialled
/// party.
CSTADevice farEndOf(const Call* call) {
    if (call == nullptr) {
        return {};
    }
    if (!call->m_sRemoteParty.empty()) {
        return {call->m_sRemoteParty, call->m_sRemotePartyName};
    }
    return {call->m_sDialledParty, call->m_sDialledPartyName};
}

CSTADevice orElse(const CSTADevice& device, const CSTADevice& other) {
    return device.number.empty() && device.name.empty() ? other : device;
}

void logDevices(const CSTAEstablishedEvent& event) {
    constexpr const char* kLogName = "handleCSTAEstablishedEvent";
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    const CSTADevice& answering = event.getAnsweringDevice();
    const CSTADevice& redirecting = event.getLastRedirectionDevice();
    LOG_EVENTS(5, "%s():calledDevice calledNumber[%s] calledName[%s]", kLogName, called.number.c_str(),
               called.name.c_str());
    LOG_EVENTS(5, "%s():callingDevice callingNumber[%s] callingName[%s]", kLogName, calling.number.c_str(),
               calling.name.c_str());
    LOG_EVENTS(5, "%s():answeringDevice remoteNumber[%s] remoteName[%s]", kLogName, answering.number.c_str(),
               answering.name.c_str());
    LOG_EVENTS(5, "%s():connection state [%d]", kLogName, event.getLocalConnectionInfo());
    LOG_EVENTS(5, "%s():cause [%d]", kLogName, event.getCause());
    LOG_EVENTS(5, "%s():lastRedirectionDevice redirectingNumber[%s] redirectingName[%s]", kLogName,
               redirecting.number.c_str(), redirecting.name.c_str());
}

}  // namespace

void CallControlRulesSip::originated(const CSTAOriginatedEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& called = event.getCalledDevice();
    const int cause = event.getCause();
    LOG_EVENTS(5, "%s():{%s} Cause: %d Calling: %s, Called: %s", "handleCSTAOriginatedEvent", callId.c_str(),
               cause, event.getCallingDevice().number.c_str(), called.number.c_str());
    switch (cause) {
        case CSTA_EC_GroupPickupNotify:
        case CSTA_EC_CallPickup:
        case CSTA_EC_DirectedPickup:
        case CSTA_EC_PickupFromPark:
            // Placed to pick up another call: it is filed as an incoming one.
            m_callControl.track(m_callControl.find(event), {.state = Call::eOriginated,
                                                            .direction = Call::eOutgoing,
                                                            .callId = callId,
                                                            .treatAsIncoming = true});
            break;
        case CSTA_EC_CallPark:
        case CSTA_EC_CallRetrievePark: break;
        default:
            m_callControl.track(m_callControl.find(event), {.state = Call::eOriginated,
                                                            .direction = Call::eOutgoing,
                                                            .callId = callId,
                                                            .remote = {farEnd(called).number, {}}});
            break;
    }
}

void CallControlRulesSip::offered(const CSTAOfferedEvent& event) {
    m_callControl.track(m_callControl.find(event), {.state = Call::eOffered,
                                                    .direction = Call::eIncoming,
                                                    .callId = event.getOfferedConnectionCallID()});
}

void CallControlRulesSip::queued(const CSTAQueuedEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    logParties("handleCSTAQueuedEvent", event);
    if (calling.isLocal()) {
        // The phone's own call is queued at a group.
        m_callControl.track(m_callControl.find(event), {.state = Call::eDelivered,
                                                        .direction = Call::eOutgoing,
                                                        .callId = callId,
                                                        .remote = farEnd(called)});
        return;
    }
    m_callControl.track(m_callControl.find(event), {.state = Call::eDelivered,
                                                    .direction = Call::eIncoming,
                                                    .callId = callId,
                                                    .remote = calling,
                                                    .diverted = farEnd(called)});
}

// ---- Delivered ----

void CallControlRulesSip::delivered(const CSTADeliveredEvent& event) {
    const int localConnection = event.getLocalConnectionInfo();
    switch (localConnection) {
        case CSTA_LCS_Null:
        case CSTA_LCS_Alerting: ringing(event); break;
        case CSTA_LCS_Connected:
        case CSTA_LCS_Queued: ringBack(event); break;
        default:
            LOG_EVENTS(5, "%s():{%s} Unknown Local Connection Info %d", "handleCSTADeliveredEvent",
                       event.getConnectionCallID().c_str(), localConnection);
            break;
    }
}

void CallControlRulesSip::ringing(const CSTADeliveredEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    const std::string& deviceId = event.getConnectionDeviceID();
    LOG_EVENTS(5, "%s():CSTA_LCS_Null/CSTA_LCS_Alerting", "handleCSTADeliveredEvent");
    if (!m_devices.logsMissedCalls(deviceId)) {
        LOG_EVENTS(5, "Missed incoming call with id: %s to shared secondary line: %s - should not be logged",
                   callId.c_str(), deviceId.c_str());
        return;
    }
    m_callControl.track(m_callControl.find(event), {.state = Call::eDelivered,
                                                    .direction = Call::eIncoming,
                                                    .callId = callId,
                                                    .remote = farEnd(event.getCallingDevice()),
                                                    .diverted = farEnd(event.getLastRedirectionDevice())});
    Call* const call = m_callControl.find(event);
    if (call != nullptr && m_devices.isSharedLine(deviceId)) {
        call->m_sLineKey = deviceId;
    }
}

void CallControlRulesSip::ringBack(const CSTADeliveredEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    LOG_EVENTS(5, "%s():CSTA_LCS_Connected/CSTA_LCS_Queued", "handleCSTADeliveredEvent");
    Call* const call = m_callControl.find(event);
    const CSTADevice alerting = farEnd(event.getAlertingDevice());
    const CSTADevice called = farEnd(event.getCalledDevice());
    if (isForwarding(event.getCause()) && !(call != nullptr && followsTransferHere(*call))) {
        const auto state = isUsingCrestUX() ? Call::eForwarded : Call::eDelivered;
        m_callControl.track(call, {.state = state,
                                   .direction = Call::eOutgoing,
                                   .callId = callId,
                                   .remote = orElse(called, farEndOf(call)),
                                   .diverted = alerting,
                                   .treatAsIncoming = call != nullptr && call->m_treatAsIncoming});
        return;
    }
    if (call != nullptr && !call->isOutgoing() && !call->m_transferred) {
        return;  // a third party is alerting
    }
    const auto direction = call != nullptr ? call->m_Direction : Call::eOutgoing;
    m_callControl.track(call, {.state = Call::eDelivered,
                               .direction = direction,
                               .callId = callId,
                               .remote = firstKnown(alerting, called)});
}

// ---- Diverted ----

void CallControlRulesSip::diverted(const CSTADivertedEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    LOG_EVENTS(5, "%s():{%s}, cause = %d", "handleCSTADivertedEvent", callId.c_str(), event.getCause());
    // A record of an unknown call would never end, so its diversion is ignored.
    if (Call* const call = m_callControl.find(event)) {
        m_callControl.track(call, {.state = Call::eForwarded,
                                   .direction = Call::eOutgoing,
                                   .callId = callId,
                                   .remote = orElse(farEnd(event.getCalledDevice()), farEndOf(call)),
                                   .diverted = farEnd(event.getNewDestination())});
    }
}

// ---- Established ----

void CallControlRulesSip::established(const CSTAEstablishedEvent& event) {
    constexpr const char* kLogName = "handleCSTAEstablishedEvent";
    const std::string& callId = event.getConnectionCallID();
    logDevices(event);
    Call* call = m_callControl.find(event);
    const bool isBLFPickupCall = call != nullptr && call->m_treatAsIncoming;
    LOG_EVENTS(5, "%s():pCall[%p]; isBLFPickupCall(%d)", kLogName, static_cast<const void*>(call),
               isBLFPickupCall ? 1 : 0);

    // A call that was placed to pick up another one may be established with the parties of that other call.
    const auto direction =
        establishedDirection(m_callControl, call, event,
                             isBLFPickupCall ? call->m_Direction
                                             : directionOf(event.getCallingDevice(), event.getCalledDevice(),
                                                           event.getAnsweringDevice(), call));
    if (!direction) {
        return;
    }
    if (!callId.empty() && m_blindTransfer.followsHeldEvent() && m_blindTransfer.lastHeldCallId() == callId) {
        LOG_EVENTS(5, "handleCSTAEstablishedEvent: established event following a held event");
        if (call == nullptr) {
            call = m_callControl.tracker.enterCall(*direction, callId);
        }
    }
    if (*direction == Call::eOutgoing) {
        establishedOutgoing(call, event);
    } else {
        establishedIncoming(call, event, *direction);
    }
}

void CallControlRulesSip::establishedIncoming(Call* call, const CSTAEstablishedEvent& event,
                                              Call::directions_t direction) {
    LOG_EVENTS(5, "%s():establish incoming call", "handleCSTAEstablishedEvent");
    m_callControl.track(call, {.state = Call::eEstablished,
                               .direction = direction,
                               .callId = event.getConnectionCallID(),
                               .remote = farEnd(event.getCallingDevice()),
                               .diverted = farEnd(event.getLastRedirectionDevice())});
    call = m_callControl.find(event);
    if (call != nullptr && followsTransferHere(*call) && event.getCallingDevice().isLocal()) {
        // The event names no caller: it reports that the new partner has answered.
        const CSTADevice partner = firstKnown(event.getAnsweringDevice(), event.getCalledDevice());
        call->m_sConnectedParty = partner.number;
        call->m_sConnectedPartyName = partner.name;
    }
}

void CallControlRulesSip::establishedOutgoing(Call* call, const CSTAEstablishedEvent& event) {
    constexpr const char* kLogName = "handleCSTAEstablishedEvent";
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice called = farEnd(event.getCalledDevice());
    const CSTADevice answering = farEnd(event.getAnsweringDevice());
    LOG_EVENTS(5, "%s():establish outgoing call", kLogName);
    bool asIncoming = call != nullptr && call->m_treatAsIncoming;
    if (event.getCause() == CSTA_EC_GroupPickupNotify) {
        LOG_EVENTS(
            5, "%s():establish outgoing call, but cause is CSTA_EC_GroupPickupNotify so markCallasIncoming",
            kLogName);
        asIncoming = true;
    }
    if (asIncoming) {
        // The far end is the caller of the picked-up call.
        const CSTADevice caller = firstKnown(event.getCallingDevice(), firstKnown(answering, called));
        m_callControl.track(call, {.state = Call::eEstablished,
                                   .direction = Call::eOutgoing,
                                   .callId = callId,
                                   .remote = orElse(caller, farEndOf(call)),
                                   .treatAsIncoming = true});
        return;
    }
    if (isKnown(called) && isKnown(answering) && called.number != answering.number) {
        if (call == nullptr && isUsingCrestUX()) {
            return;  // filed when it was forwarded
        }
        if (call == nullptr) {
            // The call was not seen before, so the party that it was placed to is not known yet.
            m_callControl.track(nullptr, {.state = Call::eOriginated,
                                          .direction = Call::eOutgoing,
                                          .callId = callId,
                                          .remote = {called.number, {}}});
            call = m_callControl.find(event);
        }
        const auto state = isUsingCrestUX() ? Call::eForwarded : Call::eEstablished;
        m_callControl.track(call, {.state = state,
                                   .direction = Call::eOutgoing,
                                   .callId = callId,
                                   .remote = called,
                                   .diverted = answering});
        return;
    }
    m_callControl.track(call, {.state = Call::eEstablished,
                               .direction = Call::eOutgoing,
                               .callId = callId,
                               .remote = orElse(firstKnown(answering, called), farEndOf(call))});
}

// ---- Failed ----

void CallControlRulesSip::failed(const CSTAFailedEvent& event) {
    const std::string& callId = event.getConnectionCallID();
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    logParties("handleCSTAFailedEvent", event);
    Call* const call = m_callControl.find(event);
    const auto direction =
        call != nullptr ? call->m_Direction : directionOf(calling, called, event.getFailingDevice(), nullptr);
    m_callControl.track(call, {.state = Call::eFailed,
                               .direction = direction,
                               .callId = callId,
                               .remote = direction == Call::eOutgoing ? farEnd(called) : farEnd(calling)});
}

}  // namespace journal
