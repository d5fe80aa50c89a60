#include "host/csta-events/EventRules.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "host/csta-wire/DeviceText.h"
#include "platform/csta/CSTALocalConnectionState.h"

namespace host {

namespace {

// In the order of the state numbers.
constexpr std::array<std::string_view, 7> kStateWords = {"null", "initiated", "alerting", "connected",
                                                         "hold", "queued",    "fail"};

// Public numbers are compared by their last digits: one of them may lack a prefix.
constexpr int kComparedDigits = 6;

struct InferredState {
    WireEvent event;
    int ofOwn;
    int ofOther;
};

constexpr std::array kInferred = {
    InferredState{WireEvent::eOriginated, CSTA_LCS_Connected, CSTA_LCS_Connected},
    InferredState{WireEvent::eOffered, CSTA_LCS_Alerting, CSTA_LCS_Connected},
    InferredState{WireEvent::eQueued, CSTA_LCS_Queued, CSTA_LCS_Queued},
    InferredState{WireEvent::eDelivered, CSTA_LCS_Alerting, CSTA_LCS_Connected},
    InferredState{WireEvent::eDiverted, CSTA_LCS_Null, CSTA_LCS_Connected},
    InferredState{WireEvent::eEstablished, CSTA_LCS_Connected, CSTA_LCS_Connected},
    InferredState{WireEvent::eHeld, CSTA_LCS_Hold, CSTA_LCS_Connected},
    InferredState{WireEvent::eRetrieved, CSTA_LCS_Connected, CSTA_LCS_Connected},
    InferredState{WireEvent::eFailed, CSTA_LCS_Fail, CSTA_LCS_Connected},
    InferredState{WireEvent::eConnectionCleared, CSTA_LCS_Null, CSTA_LCS_Null},
    InferredState{WireEvent::eTransferred, CSTA_LCS_Null, CSTA_LCS_Connected},
};

using Action = EventDecision::Action;

bool isOwnCall(const EventContext& context) noexcept {
    return context.calling.party == EventParty::eMonitored ||
           (context.call != nullptr && context.call->outgoing);
}

/// True if the connection is that of another party. Where the event names no party, a phone that rings or
/// responds in an outgoing call is another party; in any other event it is this phone.
bool isByOther(const EventContext& context) noexcept {
    if (context.subject.party != EventParty::eUnknown) {
        return context.subject.party == EventParty::eOther;
    }
    switch (context.event) {
        case WireEvent::eDiverted:
        case WireEvent::eDelivered: return isOwnCall(context);
        default: return false;
    }
}

/// True if both are telephone numbers of one party. A switch may write a number with and without its prefix.
bool isSameParty(const CSTADevice& a, const CSTADevice& b) {
    if (a.isLocal() || b.isLocal()) {
        return a.isLocal() == b.isLocal();
    }
    const std::string first = comparableNumber(a.number);
    const std::string second = comparableNumber(b.number);
    return first == second ||
           (std::min(first.size(), second.size()) >= kComparedDigits &&
            std::equal(first.end() - kComparedDigits, first.end(), second.end() - kComparedDigits));
}

/// True if both parties are known and differ.
bool differ(const CSTADevice& a, const CSTADevice& b) {
    return !a.number.empty() && !b.number.empty() && !isSameParty(a, b);
}

/// True if a caller without a number has a name now, and another party was the caller before a gap.
bool isOtherAnonymousCaller(const EventContext& context) {
    const CSTADevice& caller = context.calling.device;
    return context.call->unconfirmed && caller.number.empty() && !caller.name.empty() &&
           !context.call->calling.number.empty() && caller.name != context.call->calling.name;
}

/// True if the far end of an Established event is not that of the call before a gap. A call that was placed
/// to pick up another one, or that was transferred, has a new far end.
bool hasOtherFarEnd(const EventContext& context) {
    const PhoneCall& call = *context.call;
    const bool placedHere = context.calling.party == EventParty::eMonitored;
    if (call.transferred) {
        return false;
    }
    if (placedHere != call.outgoing) {
        const bool mayBePickup = call.outgoing && call.role == PhoneRole::eCalling;
        return context.calling.party != EventParty::eUnknown && !mayBePickup &&
               differ(placedHere ? context.called : context.calling.device,
                      placedHere ? call.calling : call.called);
    }
    // A forwarded call may be named after the party that has answered it.
    const bool isPartner = !call.partner.number.empty() && !differ(context.called, call.partner);
    return placedHere ? !isPartner && differ(context.called, call.called)
                      : differ(context.calling.device, call.calling);
}

/// True if the phone rings for the caller of a call that it has established: the end of that call was not
/// reported. A switch may also ring for a call that the phone holds.
bool ringsAfterEstablished(const EventContext& context) {
    const PhoneCall& call = *context.call;
    return call.role == PhoneRole::eConnected && !call.outgoing && !call.held && !context.reminds &&
           !call.transferred && !call.conference && call.conferenceId.empty() &&
           context.calling.party != EventParty::eMonitored && localConnectionOf(context) == CSTA_LCS_Alerting;
}

/// True if this phone calls another party than before a gap: the far end rings.
bool callsOtherParty(const EventContext& context) {
    const PhoneCall& call = *context.call;
    return call.unconfirmed && !call.transferred && !call.conference &&
           context.calling.party == EventParty::eMonitored &&
           (!call.outgoing || differ(context.called, call.called));
}

/// True if the event belongs to a new call that has the id of a known one.
bool usesIdAgain(const EventContext& context) {
    if (context.call == nullptr) {
        return false;
    }
    const PhoneCall& call = *context.call;
    const bool byOther = isByOther(context);
    switch (context.event) {
        case WireEvent::eOriginated:
            return !call.outgoing || call.role == PhoneRole::eConnected ||
                   differ(context.called, call.called);
        case WireEvent::eOffered:
        case WireEvent::eDelivered:
            return byOther ? callsOtherParty(context)
                           : (context.calling.party == EventParty::eOther &&
                              (call.outgoing || differ(context.calling.device, call.calling))) ||
                                 isOtherAnonymousCaller(context) || ringsAfterEstablished(context);
        case WireEvent::eEstablished: return call.unconfirmed && hasOtherFarEnd(context);
        default: return false;
    }
}

bool isState(const EventContext& context, int state) noexcept {
    return context.localConnection && *context.localConnection == state;
}

Action always(bool deliver) noexcept {
    return deliver ? Action::eDeliver : Action::eDrop;
}

/// True if the call has been transferred and the event is about its new partner.
bool isByNewPartner(const EventContext& context) {
    return context.call->transferred && !differ(context.subject.device, context.call->partner);
}

/// Another phone is offered the call, or rings.
Action alertingElsewhere(const EventContext& context) {
    if (context.call == nullptr) {
        const bool mayBeOwnCall =
            context.calling.party == EventParty::eUnknown && isState(context, CSTA_LCS_Connected);
        return always(mayBeOwnCall || isOwnCall(context) || isState(context, CSTA_LCS_Alerting));
    }
    return always(context.call->role == PhoneRole::eCalling || isByNewPartner(context) ||
                  (context.call->role == PhoneRole::eRinging && isOwnCall(context)));
}

/// Another phone has established the call.
Action establishedElsewhere(const EventContext& context) {
    if (context.call == nullptr) {
        return always(isOwnCall(context));
    }
    switch (context.call->role) {
        case PhoneRole::eCalling: return Action::eDeliver;
        case PhoneRole::eConnected: return always(isByNewPartner(context));
        case PhoneRole::eRinging: break;
    }
    if (isOwnCall(context)) {
        return Action::eDeliver;  // the switch has called this phone first, to place the call for it
    }
    return isState(context, CSTA_LCS_Alerting) ? Action::eDrop : Action::eEndElsewhere;
}

/// This phone has established the call. An established call keeps its direction.
Action establishedHere(const EventContext& context) {
    const PhoneCall* const call = context.call;
    if (call == nullptr || call->role != PhoneRole::eConnected || call->transferred) {
        return Action::eDeliver;
    }
    return always((context.calling.party == EventParty::eMonitored) == call->outgoing);
}

/// Another party fails. That is the end of a call that this phone places only if it is the called party.
Action failedElsewhere(const EventContext& context) {
    if (isState(context, CSTA_LCS_Null) || isState(context, CSTA_LCS_Fail)) {
        return always(context.call != nullptr || isOwnCall(context));
    }
    const bool placing =
        context.call != nullptr ? context.call->role == PhoneRole::eCalling : isOwnCall(context);
    const CSTADevice& called =
        context.call != nullptr && context.called.number.empty() ? context.call->called : context.called;
    return always(placing && !differ(context.subject.device, called));
}

/// True if the device has an internal number. A far end outside may be named by its trunk instead.
bool isInternal(const EventContext& context) {
    const std::string number = comparableNumber(context.subject.device.number);
    return number.size() == context.ownDigits && number.find_first_not_of("0123456789") == std::string::npos;
}

/// Another party leaves. A call of two parties ends with either; the switch need not report the own
/// connection. Third parties and the members of a group leave without ending it.
Action clearedElsewhere(const EventContext& context) {
    const PhoneCall* const call = context.call;
    if (call != nullptr && call->conference) {
        return Action::eDeliver;
    }
    if (context.localConnection) {
        return always(isState(context, CSTA_LCS_Null));
    }
    if (call == nullptr) {
        return Action::eDeliver;
    }
    const bool known = call->others.contains(comparableNumber(context.subject.device.number));
    if (call->role == PhoneRole::eCalling) {
        const bool member = isInternal(context) && differ(context.subject.device, call->called);
        return always(known ? call->others.size() == 1 : !member || call->others.empty());
    }
    const CSTADevice& far = call->partner.number.empty() ? call->calling : call->partner;
    const bool toGroup = !call->outgoing && !call->called.isLocal() && !call->called.number.empty();
    const bool isFarEnd = far.number.empty() ? !known : !differ(context.subject.device, far);
    return always(isFarEnd || !(known || toGroup || isInternal(context)));
}

/// Another device diverts the call. A group that diverts its call takes it away from this phone, too.
Action divertedElsewhere(const EventContext& context) {
    if (context.localConnection) {
        return always(isState(context, CSTA_LCS_Null));
    }
    const bool rings = context.call == nullptr || context.call->role == PhoneRole::eRinging;
    return always(rings && !isOwnCall(context) && !differ(context.subject.device, context.called));
}

Action byOther(const EventContext& context) {
    switch (context.event) {
        case WireEvent::eOffered:
            return always(context.call == nullptr && !isOwnCall(context) &&
                          isState(context, CSTA_LCS_Alerting));
        case WireEvent::eDelivered: return alertingElsewhere(context);
        case WireEvent::eEstablished: return establishedElsewhere(context);
        case WireEvent::eFailed: return failedElsewhere(context);
        case WireEvent::eConnectionCleared: return clearedElsewhere(context);
        case WireEvent::eHeld: return always(isState(context, CSTA_LCS_Hold));
        case WireEvent::eRetrieved: return Action::eDrop;
        case WireEvent::eQueued:
            return always(context.call == nullptr || context.call->role == PhoneRole::eCalling);
        case WireEvent::eDiverted: return divertedElsewhere(context);
        default: return Action::eDeliver;
    }
}

}  // namespace

std::optional<int> localConnectionNumber(std::string_view word) noexcept {
    for (std::size_t number = 0; number < kStateWords.size(); ++number) {
        if (kStateWords[number] == word) {
            return static_cast<int>(number);
        }
    }
    return std::nullopt;
}

int localConnectionOf(const EventContext& context) noexcept {
    if (context.event == WireEvent::eTransferred && context.subject.party == EventParty::eMonitored) {
        return CSTA_LCS_Null;  // the phone has left; some switches still send the hold before it
    }
    if (context.localConnection) {
        return *context.localConnection;
    }
    const bool byOther = isByOther(context);
    if (byOther && context.event == WireEvent::eConnectionCleared && context.call != nullptr &&
        context.call->conference) {
        return CSTA_LCS_Connected;
    }
    if (byOther && context.event == WireEvent::eDiverted && !isOwnCall(context)) {
        return CSTA_LCS_Null;  // any diversion of an incoming call diverts it away from this phone
    }
    for (const InferredState& row : kInferred) {
        if (row.event == context.event) {
            return byOther ? row.ofOther : row.ofOwn;
        }
    }
    return CSTA_LCS_Null;
}

EventDecision decide(const EventContext& context) {
    if (usesIdAgain(context)) {
        return {.action = Action::eDeliver, .endsKnownCall = true};
    }
    if (isByOther(context)) {
        return {.action = byOther(context)};
    }
    if (context.event == WireEvent::eDiverted && context.pickup && !isOwnCall(context) &&
        localConnectionOf(context) == CSTA_LCS_Null) {
        return {.action = Action::eEndElsewhere};  // picked up by another phone, not forwarded
    }
    if (endsWithoutClearedEvent(context) && context.call != nullptr &&
        context.call->role == PhoneRole::eConnected) {
        return {.action = Action::eEnd};  // parked: only a call that is not established is forwarded
    }
    return {.action = context.event == WireEvent::eEstablished ? establishedHere(context) : Action::eDeliver};
}

bool endsWithoutClearedEvent(const EventContext& context) noexcept {
    return context.event == WireEvent::eDiverted && localConnectionOf(context) == CSTA_LCS_Null;
}

CauseContext causeContextOf(const EventContext& context) noexcept {
    switch (context.event) {
        case WireEvent::eDelivered:
            return localConnectionOf(context) == CSTA_LCS_Connected ? CauseContext::eDeliveredElsewhere
                                                                    : CauseContext::eDeliveredHere;
        case WireEvent::eEstablished: return CauseContext::eEstablished;
        case WireEvent::eHeld: return CauseContext::eHeld;
        case WireEvent::eFailed: return CauseContext::eFailed;
        case WireEvent::eConnectionCleared: return CauseContext::eConnectionCleared;
        default: return CauseContext::eOther;
    }
}

}  // namespace host
