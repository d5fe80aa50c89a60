#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/database/Database.h"
#include "host/stored-lists/EntryReader.h"
#include "host/stored-lists/ListSnapshot.h"
#include "host/stored-lists/UnviewedCount.h"
#include "journal-items/ListTraits.h"

namespace host {

/// The five lists of one line as they are stored: every entry, whether the journal has loaded it or not.
///
/// An entry is the JSON object of `itemJson`, with the newest ten calls, "calls" (the number of all calls
/// that it had), "displayName" from the phonebook as it is now, and "numberText" as people write it.
///
/// Thread-safe; reads beside the writes. Errors: std::nullopt if the database fails.
class StoredLists {
public:
    using Json = nlohmann::ordered_json;

    /// Everything is borrowed; `digits` and `texts` as those of `EntryReader`.
    StoredLists(Database& database, std::string line, DigitAnalysisServiceIfc* digits = nullptr,
                NumberTexts* texts = nullptr)
        : m_database(database),
          m_line(std::move(line)),
          m_entries{m_line, digits, texts},
          m_unviewed(database, m_line) {}
    StoredLists(const StoredLists&) = delete;
    StoredLists& operator=(const StoredLists&) = delete;

    struct Page {
        /// The number of entries in all pages, and of the unviewed ones among them.
        std::size_t total = 0;
        std::size_t unviewed = 0;
        /// Newest first.
        Json items = Json::array();
        /// The page is the same as long as the state of the database is (`state`); std::nullopt if it also
        /// depends on the time.
        std::optional<DatabaseState> state{};
    };
    /// The state of the database now.
    [[nodiscard]] std::optional<DatabaseState> state() const;
    /// The entries in whose names or numbers `search` is (`SearchText`), from number `offset` on, at most
    /// `limit`.
    [[nodiscard]] std::optional<Page> page(ListName list, const std::string& search, std::size_t offset,
                                           std::size_t limit) const;
    /// A page of a call list without a search, as the JSON text {"list","total","unviewed","items"}. It is
    /// built from a snapshot in memory, of which only the entries that have changed are read again.
    [[nodiscard]] std::optional<std::string> pageText(ListName list, std::size_t offset,
                                                      std::size_t limit) const;
    /// The entry with that unique id, if `id` is a number, or with that entry id; null if the list has none.
    [[nodiscard]] std::optional<Json> entry(ListName list, const std::string& id) const;
    /// The same for several, in their order, in one state of the database, which may still have entries that
    /// a full list has just dropped.
    [[nodiscard]] std::optional<std::vector<Json>> entries(
        const std::vector<std::pair<ListName, std::string>>& ids) const;
    /// The number of entries in each list.
    [[nodiscard]] std::optional<std::map<ListName, std::size_t>> counts() const;
    /// The number of calls in the history, which has also those that no entry shows.
    [[nodiscard]] std::optional<std::size_t> callCount() const;
    /// The number of unviewed missed entries.
    [[nodiscard]] std::optional<std::size_t> unviewed() const { return m_unviewed.now(); }

private:
    static constexpr std::size_t kCallLists = 4;

    [[nodiscard]] std::optional<DatabaseState> stateFor(Database::Session& session, ListName list) const;
    [[nodiscard]] std::optional<Page> callBackPage(const std::string& search, std::size_t offset,
                                                   std::size_t limit) const;

    // Constant after construction.
    Database& m_database;
    const std::string m_line;
    const EntryReader::Source m_entries;

    // Has its own lock.
    mutable UnviewedCount m_unviewed;

    mutable std::mutex m_snapshotMutex;
    // Guarded by m_snapshotMutex, which is held while a snapshot is read from the database.
    mutable std::array<ListSnapshot, kCallLists> m_snapshots;
};

}  // namespace host
