#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/data/CallRows.h"
#include "host/data/Database.h"

namespace host {

/// How many calls of each list began in one quarter of an hour.
struct QuarterOfCalls {
    std::chrono::sys_seconds begin;
    /// By the values of `CallList`.
    std::array<std::int64_t, 4> calls{};

    [[nodiscard]] std::int64_t of(CallList list) const { return calls.at(static_cast<std::size_t>(list)); }
};

/// When the calls of a line began, as far as its rows have them: all items, the kept occurrences of each. The database
/// counts; nothing but the counts is read.
///
/// Lives inside one piece of work of the database. Every operation throws when the database fails.
class CallTimes {
public:
    /// Both are borrowed.
    CallTimes(Database::Session& session, const std::string& line) : m_session(session), m_line(line) {}

    /// The quarters with calls from `from` on, in order; calls before it count nowhere, also those of its own quarter.
    /// A time that a switch wrote as its local one is `phoneAhead` of UTC. A text that is no time is passed over.
    [[nodiscard]] std::vector<QuarterOfCalls> since(std::chrono::sys_seconds from,
                                                    std::chrono::seconds phoneAhead);

private:
    Database::Session& m_session;
    const std::string& m_line;
};

}  // namespace host
