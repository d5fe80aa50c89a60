#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace host {

/// Decides which connections stay when there are too many:
///
///  1. A new connection is anonymous. There are few places for anonymous ones, and fewer for those of one
///     address; the connection that has been idle for the longest time is disconnected for a new one.
///  2. The first request with the token moves its connection to the trusted ones, which have places of their
///     own. If these are all taken, the trusted connection that has been idle for the longest time is
///     disconnected; if none is idle, the new one stays anonymous.
///
/// So clients without the token never take the place of one that has shown it, and a new client is accepted
/// at once.
///
/// Call from the server's loop thread only.
class ConnectionTable {
public:
    using Id = std::uint64_t;
    using Clock = std::chrono::steady_clock;
    /// Disconnects a client. `closed` follows, not necessarily within the call.
    using Disconnect = std::function<void()>;

    struct Limits {
        std::size_t trusted;
        std::size_t anonymous;
        std::size_t anonymousOfOneAddress;
    };

    explicit ConnectionTable(Limits limits) : m_limits(limits) {}

    void accepted(Id id, std::string address, Disconnect disconnect, Clock::time_point now);
    /// `isTrusted`: the request has the token. The connection is not idle until `responded` is called as
    /// often.
    void requested(Id id, bool isTrusted, Clock::time_point now);
    void responded(Id id, Clock::time_point now);
    /// An unknown connection is ignored.
    void closed(Id id);

    [[nodiscard]] std::size_t size() const noexcept { return m_connections.size(); }

private:
    struct Connection {
        std::string address;
        Disconnect disconnect;
        Clock::time_point lastUse;
        int requests = 0;
        bool isTrusted = false;
    };
    using Connections = std::map<Id, Connection>;
    using Condition = std::function<bool(const Connection&)>;

    [[nodiscard]] std::size_t count(const Condition& matches) const;
    /// Disconnects the connection that meets the condition and is idle for the longest time; one with a
    /// request only if all have one. Returns false if none meets it.
    bool disconnectIdlest(const Condition& matches);

    const Limits m_limits;
    Connections m_connections;
};

}  // namespace host
