#pragma once

#include <functional>
#include <vector>

#include "host/csta/EventDelivery.h"

namespace host {

/// Posts the deliveries that one read from the switch causes to the line's strand together, so that its
/// thread wakes once for them. Keeps their order. Reader thread only.
class EventBatch {
public:
    /// `postLast` posts the last deliveries of a read, `post` all others.
    EventBatch(EventDelivery::Post post, EventDelivery::Post postLast)
        : m_post(std::move(post)), m_postLast(std::move(postLast)) {}

    /// Until `end`, deliveries wait; outside of a batch they are posted at once.
    void begin() noexcept { m_collects = true; }
    void add(std::function<void()> delivery);
    /// Posts the deliveries that wait, and goes on to collect.
    void flush() { flush(m_post); }
    void end();

private:
    void flush(const EventDelivery::Post& post);

    const EventDelivery::Post m_post;
    const EventDelivery::Post m_postLast;
    std::vector<std::function<void()>> m_deliveries;
    bool m_collects = false;
};

}  // namespace host
