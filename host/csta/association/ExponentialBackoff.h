#pragma once

#include <algorithm>
#include <chrono>

namespace host {

/// Delays between attempts: the first delay, then twice the previous one, up to the maximum. Not thread-safe.
class ExponentialBackoff {
public:
    ExponentialBackoff(std::chrono::milliseconds first, std::chrono::milliseconds max)
        : m_first(std::min(first, max)), m_max(max), m_next(m_first) {}

    [[nodiscard]] std::chrono::milliseconds next() {
        const std::chrono::milliseconds delay = m_next;
        m_next = std::min(m_next * 2, m_max);
        return delay;
    }
    void reset() { m_next = m_first; }

private:
    const std::chrono::milliseconds m_first;
    const std::chrono::milliseconds m_max;
    std::chrono::milliseconds m_next;
};

}  // namespace host
