#include "host/http/ConnectionTable.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace host {

void ConnectionTable::accepted(Id id, std::string address, Disconnect disconnect, Clock::time_point now) {
    const Condition isAnonymous = [](const Connection& each) { return !each.isTrusted; };
    const Condition isNeighbour = [&address](const Connection& each) {
        return !each.isTrusted && each.address == address;
    };
    if (count(isNeighbour) >= m_limits.anonymousOfOneAddress) {
        disconnectIdlest(isNeighbour);
    } else if (count(isAnonymous) >= m_limits.anonymous) {
        disconnectIdlest(isAnonymous);
    }
    m_connections[id] = {.address = std::move(address), .disconnect = std::move(disconnect), .lastUse = now};
}

void ConnectionTable::requested(Id id, bool isTrusted, Clock::time_point now) {
    const auto found = m_connections.find(id);
    if (found == m_connections.end()) {
        return;
    }
    Connection& connection = found->second;
    connection.lastUse = now;
    ++connection.requests;
    if (isTrusted && !connection.isTrusted) {
        const Condition isAnyTrusted = [](const Connection& each) { return each.isTrusted; };
        const Condition isIdle = [](const Connection& each) { return each.isTrusted && each.requests == 0; };
        connection.isTrusted = count(isAnyTrusted) < m_limits.trusted || disconnectIdlest(isIdle);
    }
}

void ConnectionTable::responded(Id id, Clock::time_point now) {
    const auto found = m_connections.find(id);
    if (found != m_connections.end()) {
        --found->second.requests;
        found->second.lastUse = now;
    }
}

void ConnectionTable::closed(Id id) {
    m_connections.erase(id);
}

std::size_t ConnectionTable::count(const Condition& matches) const {
    return static_cast<std::size_t>(
        std::count_if(m_connections.begin(), m_connections.end(),
                      [&matches](const auto& each) { return matches(each.second); }));
}

bool ConnectionTable::disconnectIdlest(const Condition& matches) {
    const auto order = [](const Connection& each) { return std::tuple(each.requests > 0, each.lastUse); };
    auto idlest = m_connections.end();
    for (auto each = m_connections.begin(); each != m_connections.end(); ++each) {
        if (matches(each->second) &&
            (idlest == m_connections.end() || order(each->second) < order(idlest->second))) {
            idlest = each;
        }
    }
    if (idlest == m_connections.end()) {
        return false;
    }
    const Disconnect disconnect = std::move(idlest->second.disconnect);
    m_connections.erase(idlest);
    disconnect();
    return true;
}

}  // namespace host
