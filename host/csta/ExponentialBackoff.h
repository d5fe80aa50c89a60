#pragma once

#include <algorithm>
#include <chrono>

namespace host {

/// How long to wait before the next attempt: the first pause, then twice the one before, never above the longest.
class ExponentialBackoff {
public:
    ExponentialBackoff(std::chrono::milliseconds first, std::chrono::milliseconds longest)
        : m_first(std::min(first, longest)), m_longest(longest), m_next(m_first) {}

    [[nodiscard]] std::chrono::milliseconds next() {
        const std::chrono::milliseconds pause = m_next;
        m_next = std::min(m_next * 2, m_longest);
        return pause;
    }
    void reset() { m_next = m_first; }

private:
    const std::chrono::milliseconds m_first;
    const std::chrono::milliseconds m_longest;
    std::chrono::milliseconds m_next;
};

}  // namespace host
