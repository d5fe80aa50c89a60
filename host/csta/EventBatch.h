#pragma once

#include <functional>
#include <vector>

#include "host/csta/EventDelivery.h"

namespace host {

/// Posts the deliveries that one read from the switch causes to the line's strand together, so that its
/// thread wakes once for them. Keeps their order. Reader thread only.
class EventBatch {
public:
    explicit EventBatch(EventDelivery::Post post) : m_post(std::move(post)) {}

    /// Until `end`, deliveries wait; outside of a batch they are posted at once.
    void begin() noexcept { m_collects = true; }
    void add(std::function<void()> delivery);
    /// Posts the deliveries that wait, and goes on to collect.
    void flush();
    void end();

private:
    const EventDelivery::Post m_post;
    std::vector<std::function<void()>> m_deliveries;
    bool m_collects = false;
};

}  // namespace host
