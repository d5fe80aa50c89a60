#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/data/ContactRows.h"
#include "host/database/Database.h"
#include "journal-items/Contact.h"

namespace journalxml {
class ListDocument;
}

namespace host {

/// The phonebook of a line with the calls of each contact: first the contacts whose number is the number of
/// an item's newest call, each with these items, then all others by name.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class CallContacts {
public:
    /// Everything is borrowed; without `digits` numbers are compared as they are written.
    CallContacts(Database::Session& session, const std::string& line, DigitAnalysisServiceIfc* digits)
        : m_session(session), m_line(line), m_contacts(session, line, digits) {}

    /// Adds the contacts to the document, the one with the newest call first, those without calls last,
    /// beginning with number `offset`, at most `limit` and no more than the document can hold.
    void read(std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document);

private:
    using Records = std::vector<Contact::CallRecord>;

    /// The contacts' rows in order, and the call records of each.
    struct Found {
        std::vector<std::int64_t> order;
        std::map<std::int64_t, Records> records;
    };
    /// Finds all contacts with calls, and as many of the others as make `wanted` in total.
    [[nodiscard]] Found find(std::int64_t wanted);

    Database::Session& m_session;
    const std::string& m_line;
    ContactRows m_contacts;
};

}  // namespace host
