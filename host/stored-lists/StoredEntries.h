#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/data/CallRows.h"
#include "host/database/Database.h"
#include "host/lists/ListOperations.h"

class DigitAnalysisServiceIfc;

namespace host {

/// Changes of stored entries by a user. The journal makes a change of an entry that it has, loaded or not,
/// and so notifies its observers and the switch; the rows of any other entry are changed directly, and then
/// `resync` is called.
///
/// Thread-safe. Errors: false or std::nullopt if the database fails; the log has the reason.
class StoredEntries {
public:
    /// All are borrowed, and outlive the object.
    struct Sources {
        JournalServiceIfc& journal;
        Database& database;
        std::string line;
        DigitAnalysisServiceIfc* digits = nullptr;
        /// Makes the readers of the event stream read again; any thread calls it.
        std::function<void()> resync;
        /// The time by which the phone's zone is ahead of UTC; any thread calls it. May be empty.
        std::function<std::chrono::seconds()> phoneAhead{};
        /// Gets the events of the changes; null without a webhook.
        const EventQueue* events = nullptr;
    };

    explicit StoredEntries(Sources sources) : m_sources(std::move(sources)) {}

    /// Deletes the entries with these entry ids or unique ids. Returns their number; unknown ids are skipped.
    [[nodiscard]] std::optional<std::size_t> remove(ListName list, const std::set<std::string>& ids);
    /// Deletes all entries of the list, and its calls that have no entry.
    [[nodiscard]] bool clear(ListName list);
    /// Sets the viewed mark of missed entries; unknown ids are skipped.
    [[nodiscard]] bool setViewed(const std::set<std::string>& ids, bool viewed);

    /// Makes a change of one entry: `change` gets the entry as it is stored, in a read of the database, and
    /// returns false to leave it. An entry without calls is deleted. Repeats it if a call is added meanwhile.
    template <typename Item>
    [[nodiscard]] bool change(
        std::int64_t id, bool reportsRemoved,
        const std::function<bool(Database::Session&, const HistoryRows::Context&, Item&)>& change);

    /// Excludes every other change of an entry, for a deletion of rows that such a change may have read. Do
    /// not call the other operations meanwhile.
    [[nodiscard]] std::unique_lock<std::mutex> exclusive() { return std::unique_lock(m_changes); }

    [[nodiscard]] const Sources& sources() const noexcept { return m_sources; }

private:
    template <typename Item>
    [[nodiscard]] std::optional<std::set<std::string>> entryIdsOf(const std::vector<std::int64_t>& rows);
    template <typename Item>
    [[nodiscard]] std::optional<std::size_t> removeEntries(const std::set<std::string>& ids);
    [[nodiscard]] std::optional<std::size_t> removeCallBacks(const std::set<std::string>& entryIds);
    /// Changes the rows of an entry that the journal does not have.
    template <typename Item>
    [[nodiscard]] bool changeRows(const Item& item);
    /// The rows of the entries that are stored.
    [[nodiscard]] std::optional<std::vector<std::int64_t>> find(ListName list,
                                                                const std::set<std::string>& ids);
    [[nodiscard]] HistoryRows::Context context() const;
    [[nodiscard]] bool hasCallBacks();
    /// True if all these missed entries that are stored have that mark.
    [[nodiscard]] bool areMarked(const std::vector<std::int64_t>& rows, bool viewed);

    const Sources m_sources;

    /// Held from the read of an entry to its change, so that no other change is lost.
    std::mutex m_changes;
};

}  // namespace host
