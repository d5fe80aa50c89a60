#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/database/Database.h"
#include "host/database/RowChanges.h"
#include "host/stored-lists/EntryReader.h"
#include "journal-items/ListTraits.h"

namespace host {

/// The JSON texts of the entries of one list in their order, as they were in one state of the database.
///
/// Not thread-safe. Errors: the operations throw if the database fails; then call `clear`.
class ListSnapshot {
public:
    /// The limits of a snapshot.
    static constexpr std::size_t kMostEntries = 2000;
    static constexpr std::size_t kMostBytes = 8U * 1024U * 1024U;

    struct Source {
        ListName list = ListName::eMissed;
        EntryReader::Source entries;
    };
    /// Reads what has changed since the last update, in the transaction of the session. `settled` is
    /// `changes.settled()` before that began. Returns false, and has no entries, if the list is too long.
    /// Requires: every call has the same source.
    [[nodiscard]] bool update(Database::Session& session, const Source& source, const RowChanges& changes,
                              std::uint64_t settled);
    void clear() { *this = {}; }

    /// {"list","total","unviewed","items"}: the entries from number `offset` on, at most `limit`.
    [[nodiscard]] std::string page(ListName list, std::size_t offset, std::size_t limit) const;

private:
    struct Entry {
        std::int64_t id = 0;
        std::string sortKey{};
        std::string entryId{};
        bool viewed = true;
        std::string text{};
    };

    [[nodiscard]] bool isTooLong() const noexcept {
        return m_entries.size() > kMostEntries || m_bytes > kMostBytes;
    }
    void readAll(Database::Session& session, const Source& source, EntryReader& reader);
    void readSome(Database::Session& session, const Source& source, EntryReader& reader,
                  const std::vector<RowChanges::Row>& rows);
    void add(ListName list, EntryReader& reader, Query& row);
    /// Also moves the entries whose place depends on the time: those that are dated in the future come last.
    void putInOrder();

    /// The state is known up to this number of `RowChanges`; std::nullopt before the first update.
    std::optional<std::uint64_t> m_known{};
    /// The rules of the numbers by which contacts are found.
    std::string m_rules{};
    std::vector<Entry> m_entries{};
    /// Of missed entries.
    std::size_t m_unviewed = 0;
    std::size_t m_bytes = 0;
};

}  // namespace host
