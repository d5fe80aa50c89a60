#include "host/access/Tickets.h"

#include <algorithm>

#include "host/access/AccessTokens.h"

namespace host {

std::string Tickets::issue(const Access& access, Clock::time_point now) {
    std::string text = newSecret();
    const std::lock_guard lock(m_mutex);
    if (m_tickets.size() >= kMost) {
        m_tickets.pop_front();
    }
    m_tickets.push_back({text, access, now + kLifetime});
    return text;
}

std::optional<Access> Tickets::redeem(const std::string& ticket, Clock::time_point now) {
    const std::lock_guard lock(m_mutex);
    while (!m_tickets.empty() && m_tickets.front().end <= now) {
        m_tickets.pop_front();
    }
    const auto found = std::find_if(m_tickets.begin(), m_tickets.end(),
                                    [&ticket](const Ticket& each) { return each.text == ticket; });
    if (found == m_tickets.end()) {
        return std::nullopt;
    }
    Access access = std::move(found->access);
    m_tickets.erase(found);
    return access;
}

}  // namespace host
