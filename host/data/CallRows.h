#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "host/data/OccurrenceRows.h"
#include "host/database/Database.h"
#include "journal-items/ListTraits.h"

namespace journalxml {
class ListDocument;
}

namespace host {

/// The items of the four call lists of one line as rows; an item's unique id is its row's id. The rows are
/// not limited here: the journal deletes the oldest item itself, since it must notify observers of it.
/// Requires: a list is one of the four call lists.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class CallRows {
public:
    /// Both are borrowed.
    CallRows(Database::Session& session, const std::string& line)
        : m_session(session), m_line(line), m_occurrences(session, line) {}

    /// Replaces the row with the item's unique id, or adds a new one if its list has no row with that id.
    /// Returns the row's unique id.
    template <typename Item>
    std::string write(const Item& item);

    /// Removes the row with the unique id, or, if that is empty, the newest one with the entry id. Returns
    /// the unique id of the removed row; `std::nullopt` if there was none.
    std::optional<std::string> remove(ListName list, const std::string& uniqueId, const std::string& entryId);
    /// Removes all rows of the list. Returns the last one's unique id; `std::nullopt` if there was none.
    std::optional<std::string> removeAll(ListName list);

    /// The unique ids of the list's rows.
    [[nodiscard]] std::set<std::string> ids(ListName list);
    /// Adds the list's items to the document, newest first, beginning with number `offset`, at most `limit`
    /// and no more than the document can hold.
    void read(ListName list, std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document);
    /// The same over all four lists.
    void readAll(std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document);

private:
    [[nodiscard]] std::optional<std::int64_t> find(ListName list, const std::string& uniqueId,
                                                   const std::string& entryId);
    void addTo(journalxml::ListDocument& document, Query& rows);
    template <typename Item>
    [[nodiscard]] Item readItem(std::int64_t id, Query& row);

    Database::Session& m_session;
    const std::string& m_line;
    OccurrenceRows m_occurrences;
};

}  // namespace host
