#include "host/csta/EventDelivery.h"

#include "platform/csta/CSTAEvent.h"
#include "platform/csta/CSTAEventIfc.h"

namespace host {

void EventDelivery::deliver(const std::shared_ptr<EventSink>& sink, std::unique_ptr<CSTAEvent> event) const {
    if (sink->receiver == nullptr) {
        return;
    }
    m_post([sink, shared = std::shared_ptr<CSTAEvent>(std::move(event))] {
        if (sink->live) {
            sink->receiver->deliverEvent(shared.get());
        }
    });
}

}  // namespace host
