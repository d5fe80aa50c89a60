#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/data/CallRows.h"
#include "host/database/Database.h"

namespace host {

/// The number of calls of each list that began in one quarter of an hour.
struct QuarterOfCalls {
    std::chrono::sys_seconds begin;
    /// By the values of `ListName`, without the callbacks.
    std::array<std::int64_t, 4> calls{};

    [[nodiscard]] std::int64_t of(ListName list) const { return calls.at(static_cast<std::size_t>(list)); }
};

/// The start times of all calls of a line. The database counts; only the counts are read.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class CallTimes {
public:
    /// Both are borrowed.
    CallTimes(Database::Session& session, const std::string& line) : m_session(session), m_line(line) {}

    /// Returns the quarters with calls from `from` on, in order; calls before `from` are not counted, also
    /// those of its own quarter. A call whose time is not known is skipped.
    [[nodiscard]] std::vector<QuarterOfCalls> since(std::chrono::sys_seconds from);

private:
    Database::Session& m_session;
    const std::string& m_line;
};

}  // namespace host
