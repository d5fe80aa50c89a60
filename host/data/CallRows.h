#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "host/data/HistoryRows.h"
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
    /// Everything is borrowed.
    CallRows(Database::Session& session, const HistoryRows::Context& context)
        : m_session(session), m_line(context.line), m_events(context.events), m_history(session, context) {}

    /// Replaces the row with the item's unique id, or adds a new one if its list has no row with that id; its
    /// calls become those of `HistoryRows::write`. `facts` belong to the newest call and may be null. Returns
    /// the row's unique id, which is `newId` for a new row, if that is given (`Database::newItemId`).
    template <typename Item>
    std::string write(const Item& item, const CallFacts* facts = nullptr,
                      const std::optional<std::int64_t>& newId = {});

    /// The treatment of the calls of an item that is removed.
    struct Calls {
        enum class Fate {
            eDeleted,
            /// The calls that the journal's entry has are deleted, the older ones stay in the history.
            eListedDeleted,
            eKept,
        };
        Fate fate = Fate::eDeleted;
        /// Set if the calls are kept because the party was called back.
        std::optional<std::chrono::sys_seconds> calledBackAt{};
    };
    /// Removes the row with the unique id, or, if that is empty, the newest one with the entry id. Returns
    /// the unique id of the removed row; `std::nullopt` if there was none.
    std::optional<std::string> remove(ListName list, const std::string& uniqueId, const std::string& entryId,
                                      const Calls& calls);
    /// Removes all rows of the list, and all its calls. Returns the last one's unique id; `std::nullopt` if
    /// there was none.
    std::optional<std::string> removeAll(ListName list);

    /// Reads the item of a row, with its listed calls. Returns false if the list of the item has no such row.
    template <typename Item>
    [[nodiscard]] bool find(std::int64_t id, Item& item);
    /// The same with its newest calls, listed or not.
    template <typename Item>
    [[nodiscard]] bool findWithNewest(std::int64_t id, Item& item);
    /// The row with that unique id, if `text` is a number, or the newest one with that entry id.
    [[nodiscard]] std::optional<std::int64_t> idOf(ListName list, const std::string& text);

    /// Lists the newest calls of every item, if an import that did not finish has left others listed.
    /// Requires: the journal has not loaded its lists.
    void listNewestCalls();
    /// Removes the oldest entries of the lists that are too long, because the deletion of one was lost; their
    /// calls stay in the history. Requires: the journal has not loaded its lists.
    void shortenLists();
    /// The row of a missed item that the journal deletes and writes again, shortened: one with several listed
    /// calls, the newest of which came to a group or a shared line.
    [[nodiscard]] std::optional<std::int64_t> rewrittenGroup(const std::string& uniqueId);
    /// The number of items in the list.
    [[nodiscard]] std::int64_t count(ListName list);
    [[nodiscard]] HistoryRows& history() noexcept { return m_history; }
    /// The sort key beyond which an item is dated in the future, by a clock that was wrong. Such items come
    /// last in a list, so that they do not hide the new ones.
    [[nodiscard]] static std::string latestSortKey();
    /// Adds the list's items to the document, newest first, beginning with number `offset`, at most `limit`
    /// and no more than the document can hold.
    void read(ListName list, std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document);
    /// The same over all four lists.
    void readAll(std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document);

private:
    [[nodiscard]] std::optional<std::int64_t> findId(ListName list, const std::string& uniqueId,
                                                     const std::string& entryId);
    void addTo(journalxml::ListDocument& document, Query& rows);
    template <typename Item>
    [[nodiscard]] Item readItem(std::int64_t id, Query& row);
    template <typename Item>
    [[nodiscard]] Item readHead(std::int64_t id, Query& row);

    [[nodiscard]] bool isViewed(std::int64_t id);

    Database::Session& m_session;
    const std::string& m_line;
    const EventQueue* const m_events;
    HistoryRows m_history;
};

}  // namespace host
