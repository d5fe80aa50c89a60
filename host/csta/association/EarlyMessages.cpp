#include "host/csta/association/EarlyMessages.h"

#include <utility>

namespace host {

void EarlyMessages::keep(ReferenceKind kind, std::string id, WireDocument message, Clock::time_point now) {
    dropExpired(now);
    if (m_messages.size() == kMaxMessages) {
        m_messages.pop_front();
    }
    m_messages.push_back({kind, std::move(id), std::move(message), now});
}

std::vector<WireDocument> EarlyMessages::take(ReferenceKind kind, std::string_view id,
                                              Clock::time_point now) {
    dropExpired(now);
    std::vector<WireDocument> taken;
    std::erase_if(m_messages, [&](Message& each) {
        const bool isWanted = each.kind == kind && each.id == id;
        if (isWanted) {
            taken.push_back(std::move(each.document));
        }
        return isWanted;
    });
    return taken;
}

void EarlyMessages::dropExpired(Clock::time_point now) {
    while (!m_messages.empty() && now - m_messages.front().since > kMaxAge) {
        m_messages.pop_front();
    }
}

}  // namespace host
