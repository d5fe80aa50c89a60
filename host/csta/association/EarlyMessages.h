#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/requests/RequestChannel.h"

namespace host {

/// Buffer for messages whose cross reference no line has claimed yet: a switch may send the first event of a
/// new monitor before its MonitorStartResponse, and a segment before the response that names its reference.
/// Limited in size and age. Not thread-safe.
class EarlyMessages {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kMaxAge{2};
    static constexpr std::size_t kMaxMessages = 1024;

    void keep(ReferenceKind kind, std::string id, WireDocument message, Clock::time_point now);
    /// Removes and returns the messages with that reference, oldest first.
    [[nodiscard]] std::vector<WireDocument> take(ReferenceKind kind, std::string_view id,
                                                 Clock::time_point now);
    void clear() { m_messages.clear(); }

private:
    struct Message {
        ReferenceKind kind;
        std::string id;
        WireDocument document;
        Clock::time_point since;
    };

    void dropExpired(Clock::time_point now);

    std::deque<Message> m_messages;
};

}  // namespace host
