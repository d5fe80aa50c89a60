#include "host/csta-events/EventReader.h"

#include <cstddef>
#include <utility>

#include "host/calls/CallClock.h"
#include "host/calls/FollowCalls.h"
#include "host/csta-events/DeviceReader.h"
#include "host/csta-events/EventBuilder.h"
#include "host/csta-events/EventRules.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/EventSchemas.h"
#include "host/csta-wire/WireDocument.h"
#include "platform/csta/CSTAEventCause.h"

namespace host {

namespace {

/// The most parties of one call that are followed one by one; a conference has fewer.
constexpr std::size_t kMaxOthers = 64;

}  // namespace

EventReader::EventReader(std::string ownDevice, PhoneCalls& calls)
    : m_ownDevice(std::move(ownDevice)), m_calls(calls) {}

std::string EventReader::crossRefIdOf(const WireDocument& document) {
    return childText(document.root(), "monitorCrossRefID");
}

std::vector<PhoneEvent> EventReader::read(const WireDocument& document, const EventSource& source) {
    const EventSchema* schema = findEventSchema(document.name());
    if (schema == nullptr) {
        return {};
    }
    EventBuilder builder(*schema, document, DeviceReader(m_ownDevice, source.device), source.crossRefId);
    const std::string device = builder.monitoredDevice();
    const PhoneCall* known = m_calls.find(device, builder.callId());
    builder.setCall(known);

    std::vector<PhoneEvent> events;
    const EventDecision decision = decide(builder.context());
    if (known != nullptr && decision.endsKnownCall) {
        endKnownCall(events, *known, source.crossRefId);
        builder.setCall(nullptr);
    }
    switch (decision.action) {
        case EventDecision::Action::eDrop:
            if (known != nullptr) {
                noteDropped(*known, builder.context());
            }
            break;
        case EventDecision::Action::eEnd:
        case EventDecision::Action::eEndElsewhere:
            if (known != nullptr) {
                if (decision.action == EventDecision::Action::eEnd) {
                    add(events, {clearedEvent(*known, source.crossRefId, CSTA_EC_NormalClearing)}, device);
                } else {
                    endElsewhere(events, *known, builder.context(), source.crossRefId);
                }
            }
            break;
        case EventDecision::Action::eDeliver: carryOut(events, builder, source); break;
    }
    noteOther(builder.context(), device, builder.callId());
    return events;
}

void EventReader::carryOut(std::vector<PhoneEvent>& events, EventBuilder& builder,
                           const EventSource& source) {
    const std::string device = builder.monitoredDevice();
    const PhoneCall* const known = builder.context().call;
    if (known != nullptr && known->elsewhere && builder.context().event == WireEvent::eConnectionCleared) {
        endElsewhere(events, *known, builder.context(), source.crossRefId);
        return;
    }
    // All events are built before the first one changes the call.
    std::unique_ptr<CSTAEvent> clearing =
        endsWithoutClearedEvent(builder.context()) ? builder.buildClearing() : nullptr;
    if (std::unique_ptr<CSTAEvent> cleared = builder.buildSecondaryClearing()) {
        add(events, {std::move(cleared)}, device);
    }
    add(events, {builder.build()}, device, builder.causeAtSwitch());
    if (clearing != nullptr) {
        add(events, {std::move(clearing)}, device);
    }
    if (builder.context().event == WireEvent::eTransferred) {
        ringAfterTransfer(events, builder, source.crossRefId);
    }
}

/// The journal forgets a call that is transferred here while it rings. The new call rings with its caller.
void EventReader::ringAfterTransfer(std::vector<PhoneEvent>& events, const EventBuilder& builder,
                                    const std::string& crossRefId) {
    const PhoneCall* const moved = m_calls.find(builder.monitoredDevice(), builder.newCallId());
    if (moved == nullptr || moved->role != PhoneRole::eRinging) {
        return;
    }
    PhoneCall rings = *moved;
    rings.transferred = false;
    rings.calling = builder.transferredParty();
    m_calls.store(rings);
    add(events, {ringingEvent(rings, crossRefId)}, rings.device);
}

void EventReader::add(std::vector<PhoneEvent>& events, PhoneEvent event, const std::string& device,
                      std::optional<int> cause) {
    if (!event.time) {
        event.time =
            m_calls.timeOf(*event.event, device);  // the journal and the noted call have the same time
    }
    follow(m_calls, *event.event, device, *event.time, cause);
    events.push_back(std::move(event));
}

void EventReader::endElsewhere(std::vector<PhoneEvent>& events, const PhoneCall& call,
                               const EventContext& context, const std::string& crossRefId) {
    const int cause = context.pickup ? CSTA_EC_CallPickup : CSTA_EC_CompletedElsewhere;
    add(events, {clearedEvent(call, crossRefId, CSTA_EC_CompletedElsewhere)}, std::string(call.device),
        cause);
}

/// The end of the call was not reported, so its last event is taken for its end.
void EventReader::endKnownCall(std::vector<PhoneEvent>& events, const PhoneCall& call,
                               const std::string& crossRefId) {
    const PhoneCall ended = call;
    add(events,
        {.event = unreportedEndEvent(ended, crossRefId), .time = ended.lastEvent, .endApproximate = true},
        ended.device);
}

/// Notes that another device has joined the call, or has left it.
void EventReader::noteOther(const EventContext& context, const std::string& device,
                            const std::string& callId) {
    const PhoneCall* const known = m_calls.find(device, callId);
    const std::string number = comparableNumber(context.subject.device.number);
    // In an Established event that reverses the roles it is the far end, which may withhold its number.
    const bool isReversed = known != nullptr && context.event == WireEvent::eEstablished &&
                            known->role == PhoneRole::eConnected && !known->outgoing &&
                            context.calling.party == EventParty::eMonitored;
    if (known == nullptr || context.subject.party != EventParty::eOther || number.empty() || isReversed) {
        return;
    }
    const bool joins = context.event == WireEvent::eOffered || context.event == WireEvent::eDelivered ||
                       context.event == WireEvent::eEstablished;
    const bool leaves = context.event == WireEvent::eConnectionCleared || context.event == WireEvent::eFailed;
    const bool isKnown = known->others.contains(number);
    if (isKnown ? leaves : joins && known->others.size() < kMaxOthers) {
        PhoneCall call = *known;
        if (joins) {
            call.others.insert(number);
        } else {
            call.others.erase(number);
        }
        m_calls.store(std::move(call));
    }
}

void EventReader::noteDropped(const PhoneCall& known, const EventContext& context) {
    PhoneCall call = known;
    call.lastEvent = timeIn(call, Moment::now());
    call.unconfirmed = false;
    if (context.event == WireEvent::eEstablished && call.role == PhoneRole::eRinging) {
        call.elsewhere = true;
        call.reason = context.pickup ? CallReason::ePickUp : CallReason::eCompletedElsewhere;
    }
    m_calls.store(std::move(call));
}

}  // namespace host
