#include "host/calls/FollowCalls.h"

#include <algorithm>
#include <utility>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/texts/communicationsServiceTexts.h"

namespace host {

namespace {

void setIfKnown(CSTADevice& device, const CSTADevice& value) {
    if (!value.number.empty() || !value.name.empty()) {
        device = value;
    }
}

CallReason reasonOf(int cause) {
    switch (cause) {
        case CSTA_EC_Transfer: return CallReason::eTransfer;
        case CSTA_EC_CallForwardBusy: return CallReason::eForwardBusy;
        case CSTA_EC_CallForwardNoAnswer: return CallReason::eForwardNoAnswer;
        case CSTA_EC_CallForward:  // a switch that does not distinguish the kinds
        case CSTA_EC_CallForwardImmediate: return CallReason::eForwardAlways;
        case CSTA_EC_CallPickup:
        case CSTA_EC_DirectedPickup:
        case CSTA_EC_GroupPickupNotify: return CallReason::ePickUp;
        case CSTA_EC_CompletedElsewhere: return CallReason::eCompletedElsewhere;
        default: return CallReason::eNone;
    }
}

/// Why a call that was placed here has failed.
CallReason failureOf(int cause) {
    switch (cause) {
        case CSTA_EC_Busy: return CallReason::eBusy;
        case CSTA_EC_CallCancelled: return CallReason::eRejected;
        case CSTA_EC_CallNotAnswered: return CallReason::eUnanswered;
        case CSTA_EC_DestNotObtainable: return CallReason::eNoSuchNumber;
        case CSTA_EC_NetworkCongestion: return CallReason::eCongestion;
        default: return CallReason::eNone;
    }
}

bool isByOtherPhone(CallReason reason) {
    return reason == CallReason::ePickUp || reason == CallReason::eCompletedElsewhere;
}

/// The reason that an event with that cause gives for the parties of the call; `eNone` if it gives none.
CallReason reasonOf(const CSTACallControlEvent& event, int cause, const PhoneCall& call) {
    const CallReason reason = reasonOf(cause);
    const bool isRedirected = !event.getLastRedirectionDevice().number.empty();
    switch (event.getType()) {
        case CSTAEventCode::eOriginated: return reason == CallReason::ePickUp ? reason : CallReason::eNone;
        case CSTAEventCode::eOffered:
        case CSTAEventCode::eQueued:
        case CSTAEventCode::eDelivered:
            return isRedirected && !isByOtherPhone(reason) ? reason : CallReason::eNone;
        case CSTAEventCode::eEstablished:
            return isRedirected || reason == CallReason::ePickUp ? reason : CallReason::eNone;
        case CSTAEventCode::eDiverted: return reason;
        case CSTAEventCode::eFailed: {
            const bool isOutcome = call.role == PhoneRole::eCalling && call.reason == CallReason::eNone;
            return isOutcome ? failureOf(cause) : CallReason::eNone;
        }
        case CSTAEventCode::eConnectionCleared: {
            const bool isElsewhere = call.role == PhoneRole::eRinging && isByOtherPhone(reason);
            return isElsewhere || reason == CallReason::eTransfer ? reason : CallReason::eNone;
        }
        default: return CallReason::eNone;
    }
}

/// A call that another phone has picked up is also completed elsewhere.
void setReason(PhoneCall& call, CallReason reason) {
    const bool isKnown = reason == CallReason::eCompletedElsewhere && call.reason == CallReason::ePickUp;
    if (reason != CallReason::eNone && !isKnown) {
        call.reason = reason;
    }
}

/// One event, the call that it belongs to, and the calls of the line.
class Step {
public:
    Step(PhoneCalls& calls, const std::string& device, PhoneCall::Time now, std::optional<int> cause)
        : m_calls(calls), m_device(device), m_now(now), m_cause(cause) {}

    void conferenced(const CSTAConferencedEvent& event) {
        const std::string& conferenceId = event.getConferenceCallID();
        for (const std::string& callId :
             {event.getPrimaryoldcallCallID(), event.getSecondaryoldcallCallID()}) {
            if (callId != conferenceId) {
                join(callId, conferenceId);
            }
        }
        const PhoneCall* const known = m_calls.find(m_device, conferenceId);
        PhoneCall joined = known != nullptr ? *known : callOf(conferenceId);
        joined.conference = true;
        joined.lastEvent = m_now;
        establish(joined);
        m_calls.store(std::move(joined));
    }

    void transferred(const CSTATransferredEvent& event) {
        const PhoneCall* old = m_calls.find(m_device, event.getPrimaryoldcallCallID());
        if (old == nullptr) {
            old = m_calls.find(m_device, event.getSecondaryoldcallCallID());
        }
        PhoneCall call = old != nullptr ? *old : callOf(event.getConnectionCallID());
        call.callId = event.getConnectionCallID();
        // The journal has filed the leg before the transfer.
        call.firstEvent = call.lastEvent = m_now;
        if (call.established) {
            call.established = m_now;
        }
        call.transferred = true;
        call.reason = CallReason::eTransfer;
        // The journal does not follow a call that is transferred here after this phone has established it.
        const bool endsHere =
            isOwn(event.getTransferredToDevice()) && (old == nullptr || call.role == PhoneRole::eConnected);
        for (const std::string& callId :
             {event.getPrimaryoldcallCallID(), event.getSecondaryoldcallCallID()}) {
            if (isOwn(event.getTransferringDevice())) {
                noteReason(callId, CallReason::eTransfer);
            }
            m_calls.remove(m_device, callId);
        }
        const bool stays = !isOwn(event.getTransferringDevice()) &&
                           (old != nullptr || event.getLocalConnectionInfo() == CSTA_LCS_Connected);
        if (!stays || endsHere || call.callId.empty()) {
            return;
        }
        if (old == nullptr) {
            establish(call);
        }
        if (!isOwn(event.getTransferredToDevice())) {
            setIfKnown(call.partner, event.getTransferredToDevice());
        }
        if (call.established) {
            setIfKnown(call.redirecting, event.getTransferringDevice());
        }
        m_calls.store(std::move(call));
    }

    void control(const CSTACallControlEvent& event) {
        const std::string& callId = event.getConnectionCallID();
        const PhoneCall* const known = m_calls.find(m_device, callId);
        if (callId.empty() || ends(event, known)) {
            for (const PhoneCall& member : m_calls.membersOf(m_device, callId)) {
                m_calls.remove(m_device, member.callId);
            }
            endBy(event, known);
            return;
        }
        if (known != nullptr && known->conference) {
            inConference(event, *known);
            return;
        }
        if (known == nullptr && !begins(event)) {
            return;
        }
        PhoneCall call = known != nullptr ? *known : callOf(callId);
        if (known == nullptr) {
            call.outgoing = event.getType() == CSTAEventCode::eOriginated ||
                            isOwn(event.getCallingDevice()) ||
                            (event.getType() == CSTAEventCode::eDelivered &&
                             event.getLocalConnectionInfo() == CSTA_LCS_Connected);
            call.role = call.outgoing ? PhoneRole::eCalling : PhoneRole::eRinging;
            call.pickUp =
                event.getType() == CSTAEventCode::eOriginated && event.getCause() == CSTA_EC_CallPickup;
        }
        call.markedMissed =
            call.markedMissed ||
            event.getPrivateData() == communicationsServiceTexts::content_callstatus_MissedCall;
        const bool reachesPartner =
            call.transferred && call.established && event.getType() == CSTAEventCode::eEstablished;
        if (const auto* established = dynamic_cast<const CSTAEstablishedEvent*>(&event)) {
            establishedBy(call, *established);
        }
        setReason(call, reasonOf(event, causeOf(event), call));
        setIfKnown(call.calling, event.getCallingDevice());
        setIfKnown(call.redirecting, event.getLastRedirectionDevice());
        // The called device keeps the digits that were dialled.
        if (call.called.number.empty()) {
            setIfKnown(call.called, event.getCalledDevice());
        }
        if (reachesPartner && !call.partner.number.empty()) {
            (call.outgoing ? call.called : call.calling) = call.partner;
        }
        call.offered = event.getType() == CSTAEventCode::eOffered ||
                       (call.offered && event.getType() == CSTAEventCode::eQueued);
        call.held = event.getLocalConnectionInfo() == CSTA_LCS_Hold;
        call.lastEvent = m_now;
        call.unconfirmed = false;
        if (isSharedLine() && call.role != PhoneRole::eRinging) {
            m_calls.remove(m_device, callId);
            return;
        }
        m_calls.store(std::move(call));
    }

private:
    [[nodiscard]] int causeOf(const CSTAEvent& event) const { return m_cause.value_or(event.getCause()); }

    /// A call that is diverted before it rings here begins and ends with that event.
    void endBy(const CSTACallControlEvent& event, const PhoneCall* known) {
        const std::string& callId = event.getConnectionCallID();
        if (known != nullptr) {
            const CallReason atSwitch = reasonOf(event, causeOf(event), *known);
            // The switch's words for a call that is completed elsewhere have another meaning in other events.
            noteReason(callId,
                       atSwitch == CallReason::eNone ? reasonOf(event, event.getCause(), *known) : atSwitch);
        } else if (event.getType() == CSTAEventCode::eDiverted && !callId.empty() &&
                   !isOwn(event.getCallingDevice())) {
            PhoneCall call = callOf(callId);
            call.calling = event.getCallingDevice();
            call.called = event.getCalledDevice();
            call.reason = reasonOf(causeOf(event));
            call.offered = true;
            m_calls.store(std::move(call));
        }
        m_calls.remove(m_device, callId);
    }

    /// For a call that ends: its listener gets the reason.
    void noteReason(const std::string& callId, CallReason reason) {
        const PhoneCall* const known = m_calls.find(m_device, callId);
        if (known == nullptr || reason == CallReason::eNone) {
            return;
        }
        PhoneCall call = *known;
        setReason(call, reason);
        if (call.reason != known->reason) {
            m_calls.store(std::move(call));
        }
    }

    /// The call, and all calls of a conference that it was, continue in the conference.
    void join(const std::string& callId, const std::string& conferenceId) {
        for (PhoneCall& member : m_calls.membersOf(m_device, callId)) {
            member.conferenceId = conferenceId;
            m_calls.store(std::move(member));
        }
        const PhoneCall* const old = m_calls.find(m_device, callId);
        if (old == nullptr) {
            return;
        }
        if (isOnlyConference(*old)) {
            m_calls.remove(m_device, callId);
            return;
        }
        PhoneCall member = *old;
        member.conference = false;
        member.conferenceId = conferenceId;
        m_calls.store(std::move(member));
    }

    /// The event of a conference names its parties, or those that leave, and none of the phone's calls.
    void inConference(const CSTACallControlEvent& event, const PhoneCall& conference) {
        PhoneCall changed = conference;
        changed.lastEvent = m_now;
        changed.unconfirmed = false;
        m_calls.store(std::move(changed));
        if (event.getType() != CSTAEventCode::eConnectionCleared) {
            return;
        }
        for (const PhoneCall& member : m_calls.membersOf(m_device, event.getConnectionCallID())) {
            if (farEndOf(member).number == event.getConnectionDeviceID()) {
                m_calls.remove(m_device, member.callId);
            }
        }
    }

    /// True for another person's line: a call that its owner places or establishes is none of this phone.
    [[nodiscard]] bool isSharedLine() const {
        return m_device != CSTADevice::kLocalDevice &&
               m_device != communicationsServiceTexts::content_bluetoothDeviceId;
    }
    [[nodiscard]] bool isOwn(const CSTADevice& device) const {
        return device.isLocal() || device.number == m_device;
    }

    [[nodiscard]] PhoneCall callOf(const std::string& callId) const {
        PhoneCall call;
        call.callId = callId;
        call.device = m_device;
        call.firstEvent = m_now;
        call.lastEvent = m_now;
        return call;
    }

    void establish(PhoneCall& call) const {
        call.role = PhoneRole::eConnected;
        if (!call.established) {
            call.established = m_now;
        }
    }

    void establishedBy(PhoneCall& call, const CSTAEstablishedEvent& event) const {
        const CSTADevice& calling = event.getCallingDevice();
        const bool pickedUp = call.role == PhoneRole::eCalling && isOwn(event.getAnsweringDevice()) &&
                              !calling.number.empty() && !isOwn(calling);
        if (pickedUp) {
            call.outgoing = false;
            call.called = {};
            call.reason = CallReason::ePickUp;
        } else if (call.reason == CallReason::eCompletedElsewhere) {
            call.reason = CallReason::eNone;  // this phone has it after all
        }
        if (call.role == PhoneRole::eConnected) {
            call.transferred = false;  // the new partner has answered
        }
        establish(call);
        setIfKnown(call.partner, isOwn(event.getAnsweringDevice()) ? calling : event.getAnsweringDevice());
    }

    /// True if the event ends the phone's part in the call.
    static bool ends(const CSTACallControlEvent& event, const PhoneCall* call) {
        switch (event.getType()) {
            case CSTAEventCode::eConnectionCleared:
                return call == nullptr || !call->conference ||
                       event.getLocalConnectionInfo() == CSTA_LCS_Null;
            case CSTAEventCode::eDiverted: return event.getLocalConnectionInfo() == CSTA_LCS_Null;
            case CSTAEventCode::eFailed: return true;
            default: return false;
        }
    }

    static bool begins(const CSTACallControlEvent& event) {
        switch (event.getType()) {
            case CSTAEventCode::eOriginated:
            case CSTAEventCode::eOffered:
            case CSTAEventCode::eQueued:
            case CSTAEventCode::eDelivered:
            case CSTAEventCode::eEstablished: return true;
            default: return false;
        }
    }

    PhoneCalls& m_calls;
    const std::string& m_device;
    const PhoneCall::Time m_now;
    const std::optional<int> m_cause;
};

}  // namespace

void follow(PhoneCalls& calls, const CSTAEvent& event, const std::string& device, PhoneCall::Time now,
            std::optional<int> cause) {
    Step step(calls, device, now, cause);
    if (const auto* conferenced = dynamic_cast<const CSTAConferencedEvent*>(&event)) {
        step.conferenced(*conferenced);
    } else if (const auto* transferred = dynamic_cast<const CSTATransferredEvent*>(&event)) {
        step.transferred(*transferred);
    } else if (const auto* control = dynamic_cast<const CSTACallControlEvent*>(&event)) {
        step.control(*control);
    }
}

}  // namespace host
