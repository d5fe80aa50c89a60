#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "host/database/Database.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

namespace host {

/// The occurrences of items as rows, each with its position; 0 is the front, the newest. A column without a
/// field in the occurrence's class holds its default.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class OccurrenceRows {
public:
    /// Both are borrowed.
    OccurrenceRows(Database::Session& session, const std::string& line) : m_session(session), m_line(line) {}

    /// Replaces the item's occurrences by `occurrences`.
    template <typename Info>
    void replace(std::int64_t item, const std::list<Info>& occurrences);

    /// Appends the item's occurrences in order to `occurrences`.
    template <typename Info>
    void read(std::int64_t item, std::list<Info>& occurrences);

private:
    Database::Session& m_session;
    const std::string& m_line;
};

}  // namespace host
