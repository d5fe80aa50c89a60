#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

#include "host/access/Access.h"

namespace host {

/// Tickets of one use that a client may send in a URL, where a token must not stand. In memory only.
/// Thread-safe.
class Tickets {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds kLifetime{60};
    /// When there are more, the oldest is dropped.
    static constexpr std::size_t kMost = 1024;

    /// A new ticket that grants `access` once within `kLifetime`.
    [[nodiscard]] std::string issue(const Access& access, Clock::time_point now);
    /// The rights that the ticket grants; it is used up then. std::nullopt for another text, a used and an
    /// old ticket.
    [[nodiscard]] std::optional<Access> redeem(const std::string& ticket, Clock::time_point now);

private:
    struct Ticket {
        std::string text;
        Access access;
        Clock::time_point end;
    };

    std::mutex m_mutex;
    // Guarded by m_mutex.
    /// The oldest first.
    std::deque<Ticket> m_tickets;
};

}  // namespace host
