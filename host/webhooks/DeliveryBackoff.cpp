#include "host/webhooks/DeliveryBackoff.h"

#include <algorithm>

namespace host {

std::chrono::seconds DeliveryBackoff::failed(Clock::time_point now) noexcept {
    m_pause = hasFailed() ? std::min(2 * m_pause, kLongest) : kFirst;
    m_next = now + m_pause;
    return m_pause;
}

void DeliveryBackoff::succeeded() noexcept {
    *this = {};
}

}  // namespace host
