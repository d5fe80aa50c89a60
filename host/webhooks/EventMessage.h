#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/database/Database.h"
#include "host/database/Query.h"

class DigitAnalysisServiceIfc;

namespace host {

/// A message to a receiver. A plain value.
struct EventMessage {
    /// The row of the event; 0 for the message that events were dropped.
    std::int64_t event = 0;
    /// JSON.
    std::string body{};
};

/// Builds the messages (docs/webhooks.md). Use it inside one `Database::readAsideSoon`.
class EventMessages {
public:
    /// Everything is borrowed; `digits` may be null.
    EventMessages(Database::Session& session, DigitAnalysisServiceIfc* digits)
        : m_session(session), m_digits(digits) {}

    /// The columns that `read` reads, in their order.
    static constexpr const char* kColumns =
        "id, line, kind, uid, time, call, list, call_id, device, outgoing, number, name, redirecting_number, "
        "redirecting_name, start, established";

    /// The message of the event in a row with `kColumns`. Without a body if the event's call is deleted.
    [[nodiscard]] EventMessage read(Query& row);

private:
    [[nodiscard]] std::string lookupOf(std::string number) const;

    Database::Session& m_session;
    DigitAnalysisServiceIfc* const m_digits;
};

/// The message that `count` events, the last of which has that row, are not sent.
[[nodiscard]] EventMessage droppedMessage(std::int64_t count, std::int64_t last);

}  // namespace host
