#include "host/csta/EventDelivery.h"

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventIfc.h"

namespace host {

namespace {

/// Empty for an event of no call.
std::string callIdOf(const CSTAEvent* event) {
    const auto* const control = dynamic_cast<const CSTACallControlEvent*>(event);
    return control == nullptr ? std::string() : control->getConnectionCallID();
}

}  // namespace

void EventDelivery::deliver(const std::shared_ptr<EventSink>& sink, std::unique_ptr<CSTAEvent> event,
                            DeliveryContext context) const {
    if (sink->otherDevice != nullptr) {
        const std::string callId = callIdOf(event.get());
        event = sink->otherDevice->adapt(std::move(event));
        for (DeliveryContext::EndedCall& each : context.ends) {
            each.deliveredId = each.call.callId == callId ? callIdOf(event.get()) : std::string();
        }
    }
    if (sink->receiver == nullptr) {
        return;
    }
    context.establishes = event != nullptr && event->getType() == CSTAEventCode::eEstablished;
    if (!context.time) {
        context.time = std::chrono::system_clock::now();
    }
    m_post([sink, shared = std::shared_ptr<CSTAEvent>(std::move(event)), context = std::move(context),
            ended = m_ended]() mutable {
        if (sink->live && shared != nullptr) {
            context.around([&] { sink->receiver->deliverEvent(shared.get()); });
        }
        if (!context.ends.empty() && ended) {
            ended(context);
        }
    });
}

}  // namespace host
