#include "host/csta/EventBatch.h"

#include <utility>

#include "host/csta/requests/LinkLog.h"
#include "platform/logging/LogExceptions.h"

namespace host {

void EventBatch::add(std::function<void()> delivery) {
    if (m_collects) {
        m_deliveries.push_back(std::move(delivery));
    } else {
        m_post(std::move(delivery));
    }
}

void EventBatch::flush(const EventDelivery::Post& post) {
    if (m_deliveries.size() == 1) {
        post(std::move(m_deliveries.front()));
    } else if (!m_deliveries.empty()) {
        post([deliveries = std::move(m_deliveries)]() mutable {
            for (std::function<void()>& each : deliveries) {
                // One that fails does not cost the others.
                logExceptions({.component = kLinkComponent, .sourceFile = __FILE_NAME__, .line = __LINE__},
                              "the delivery of an event", each);
                each = nullptr;
            }
        });
    }
    m_deliveries.clear();
}

void EventBatch::end() {
    m_collects = false;
    flush(m_postLast);
}

}  // namespace host
