#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "host/data/ContactRows.h"
#include "host/database/Database.h"
#include "host/history/Call.h"

namespace host {

/// Reads single calls of one line with the names that their contacts have now.
///
/// Use it inside one `Database::read`. Every operation throws if the database fails.
class CallReader {
public:
    /// Everything is borrowed.
    CallReader(Database::Session& session, const std::string& line)
        : m_session(session), m_line(line), m_contacts(session, line, nullptr) {}

    /// std::nullopt if the line has no such call.
    [[nodiscard]] std::optional<Call> find(std::int64_t id);
    /// The name of the contact with that number; empty if there is none. Requires: the number is in the form
    /// of the table `contact_number`.
    [[nodiscard]] std::string contactName(const std::string& lookup);

private:
    Database::Session& m_session;
    const std::string& m_line;
    ContactRows m_contacts;
    /// The names by number, as far as they were read.
    std::map<std::string, std::string> m_names;
};

}  // namespace host
