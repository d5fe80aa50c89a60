#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "host/database/Database.h"
#include "journal-items/CallBackItem.h"

namespace journalxml {
class ListDocument;
}

namespace host {

/// The callbacks of one line as rows; a callback's entry id is its key.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class CallBackRows {
public:
    /// Both are borrowed.
    CallBackRows(Database::Session& session, const std::string& line) : m_session(session), m_line(line) {}

    /// Replaces the row with the callback's entry id, or adds it.
    /// All callbacks, newest first.
    [[nodiscard]] std::vector<CallBackItem> all();
    void write(const CallBackItem& item);
    void remove(const std::string& entryId);
    void removeAll();
    /// The entry ids of all callbacks.
    [[nodiscard]] std::set<std::string> ids();
    /// Adds the callbacks to the document, newest first, beginning with number `offset`, at most `limit` and
    /// no more than the document can hold.
    void read(std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document);

private:
    Database::Session& m_session;
    const std::string& m_line;
};

}  // namespace host
