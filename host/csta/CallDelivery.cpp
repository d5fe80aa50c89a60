#include "host/csta/CallDelivery.h"

#include <algorithm>
#include <utility>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"

namespace host {

namespace {

/// Longer than the journal holds a clearing back.
constexpr std::chrono::seconds kHeldBack{3};

EventDelivery::Ended reportTo(LiveCallStoreIfc* store) {
    return store == nullptr ? EventDelivery::Ended()
                            : [store](const DeliveryContext& context) { store->delivered(context); };
}

}  // namespace

CallDelivery::CallDelivery(EventDelivery::Post post, PhoneCalls& calls, LiveCallStoreIfc* store,
                           UnloggedCalls::IsUnlogged isUnlogged)
    : m_calls(calls),
      m_store(store),
      m_delivery(std::move(post), reportTo(store)),
      m_unlogged(std::move(isUnlogged)) {
    m_calls.addListener({.changed = [this](const PhoneCall& call) { note(call); },
                         .ended =
                             [this](const PhoneCall& call) {
                                 if (m_unlogged.ended(call) == UnloggedCalls::Kept::eYes) {
                                     m_ended.push_back(keyOf(call));
                                 }
                             }});
}

void CallDelivery::note(const PhoneCall& call) {
    const bool isKept = m_unlogged.changed(call) == UnloggedCalls::Kept::eYes;
    if (m_store == nullptr) {
        return;
    }
    if (isKept) {
        m_store->store(call);
    } else if (!m_unlogged.isKnown(call)) {
        // An earlier run may have noted it, when its number was not excluded yet.
        m_store->delivered({.ends = {{.call = keyOf(call)}}});
    }
}

void CallDelivery::deliver(const std::shared_ptr<EventSink>& sink, const std::string& device,
                           std::vector<PhoneEvent> given) {
    std::vector<PhoneEvent> events = m_unlogged.filtered(device, std::move(given), m_ended);
    const bool isDiversion = events.size() > 1 && events.front().event->getType() == CSTAEventCode::eDiverted;
    for (PhoneEvent& event : events) {
        DeliveryContext context = contextOf(event, &event == &events.back(), isDiversion);
        m_delivery.deliver(sink, std::move(event.event), std::move(context));
    }
}

void CallDelivery::dropEnded() {
    DeliveryContext context;
    for (PhoneCallKey& call : std::exchange(m_ended, {})) {
        context.ends.push_back({.call = std::move(call)});
    }
    if (m_store != nullptr) {
        m_store->delivered(context);
    }
}

/// An event ends the call that it names; the last one of several also ends the other calls. Both events of a
/// diversion end the call: the settings of the phone decide by which one it files the call, if at all.
DeliveryContext CallDelivery::contextOf(const PhoneEvent& event, bool last, bool isDiversion) {
    const auto* const control = dynamic_cast<const CSTACallControlEvent*>(event.event.get());
    const bool isCleared = !isDiversion && event.event->getType() == CSTAEventCode::eConnectionCleared;
    const bool mayBeHeldBack = isCleared && control->getConnectionCallID() == m_heldForTransfer;
    if (event.event->getType() == CSTAEventCode::eHeld &&
        event.event->getCause() == CSTA_EC_HeldForTransfer) {
        m_heldForTransfer = control->getConnectionCallID();
    }
    DeliveryContext context{.time = event.time.value_or(std::chrono::system_clock::now()),
                            .endApproximate = event.endApproximate};
    const auto taken = std::stable_partition(m_ended.begin(), m_ended.end(), [&](const PhoneCallKey& call) {
        return !last && (control == nullptr || control->getConnectionCallID() != call.callId);
    });
    addHeldBack(context, *event.event);
    for (auto call = taken; call != m_ended.end(); ++call) {
        if (m_store != nullptr) {
            m_store->end(*call, *context.time, event.endApproximate);
        }
        if (mayBeHeldBack) {
            m_heldBack.emplace_back(std::chrono::steady_clock::now() + kHeldBack, *call);
        }
        const bool isHandledAgain = isDiversion && !last;
        context.ends.push_back({.call = *call,
                                .mayBeFiledLater = isCleared || isHandledAgain,
                                .mayBeHeldBack = mayBeHeldBack || isHandledAgain});
    }
    if (last || !isDiversion) {
        m_ended.erase(taken, m_ended.end());
    }
    return context;
}

void CallDelivery::addHeldBack(DeliveryContext& context, const CSTAEvent& event) {
    while (!m_heldBack.empty() && m_heldBack.front().first < std::chrono::steady_clock::now()) {
        m_heldBack.pop_front();
    }
    if (event.getType() == CSTAEventCode::eTransferred) {
        for (auto& [until, call] : std::exchange(m_heldBack, {})) {
            context.ends.push_back({.call = std::move(call), .mayBeFiledLater = true, .mayBeHeldBack = true});
        }
    }
}

}  // namespace host
