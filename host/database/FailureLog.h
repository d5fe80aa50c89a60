#pragma once

#include <chrono>
#include <cstdint>
#include <list>
#include <mutex>
#include <string>

namespace host {

/// Logs failures, the same one once a minute with the number of those between: work that meets a damaged page
/// fails at each attempt. Thread-safe.
class FailureLog {
public:
    using Clock = std::chrono::steady_clock;

    /// `what` completes "... failed".
    void write(const std::string& what, const std::string& reason,
               Clock::time_point now = Clock::now()) noexcept;

private:
    struct Known {
        std::string text;
        Clock::time_point written;
        std::uint64_t repeated = 0;
    };

    /// The text that is logged now; empty for none.
    [[nodiscard]] std::string textFor(const std::string& text, Clock::time_point now);

    std::mutex m_mutex;
    // Guarded by m_mutex: the last ones, the newest first.
    std::list<Known> m_known;
};

}  // namespace host
