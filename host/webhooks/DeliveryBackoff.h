#pragma once

#include <chrono>

namespace host {

/// The time of the next attempt to deliver: 1 s after the first failure, twice as long after each further
/// one, and no longer than 1 h. Not synchronised.
class DeliveryBackoff {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kFirst{1};
    static constexpr std::chrono::seconds kLongest{3600};

    [[nodiscard]] bool isDue(Clock::time_point now) const noexcept { return now >= m_next; }
    [[nodiscard]] Clock::time_point next() const noexcept { return m_next; }
    [[nodiscard]] bool hasFailed() const noexcept { return m_pause.count() > 0; }

    /// Returns the time until the next attempt.
    std::chrono::seconds failed(Clock::time_point now) noexcept;
    void succeeded() noexcept;

private:
    std::chrono::seconds m_pause{0};
    Clock::time_point m_next{};
};

}  // namespace host
