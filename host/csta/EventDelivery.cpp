#include "host/csta/EventDelivery.h"

#include "platform/csta/CSTAEvent.h"
#include "platform/csta/CSTAEventIfc.h"

namespace host {

void EventDelivery::deliver(const std::shared_ptr<EventSink>& sink, std::unique_ptr<CSTAEvent> event,
                            DeliveryContext context) const {
    if (sink->otherDevice != nullptr) {
        event = sink->otherDevice->adapt(std::move(event));
    }
    if (sink->receiver == nullptr) {
        return;
    }
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
