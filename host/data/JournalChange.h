#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "host/data/CallFiling.h"
#include "host/data/CallRows.h"
#include "host/data/HistoryRows.h"
#include "host/database/KeptChanges.h"
#include "platform/journal-library/DataRequest.h"

class DigitAnalysisServiceIfc;

namespace host {

class Database;
class EventQueue;
class LiveCallStoreIfc;

/// A request of the journal that changes rows, with all that it needs to be carried out later on another
/// thread.
///
/// `make` and `keep` run on the thread of the request, the rest in or after a transaction.
class JournalChange {
public:
    /// The entry id and the calls of a group's entry that was deleted and may be written again.
    using Rewritten = std::optional<std::pair<std::string, HistoryRows::Detached>>;

    /// The part that the changes of one line share.
    struct Line {
        std::string device;
        /// The services are borrowed and outlive the changes; they may be missing.
        DigitAnalysisServiceIfc* digits = nullptr;
        LiveCallStoreIfc* calls = nullptr;
        /// Gets the events of the changes; null without a webhook.
        const EventQueue* events = nullptr;
        // Of the last transaction; used by one at a time.
        Rewritten rewritten{};
        /// The list in which an entry was written, and the thread whose change that was.
        std::optional<std::pair<ListName, std::thread::id>> written{};
        /// The number of entries of the list that was counted last, since counting takes time.
        struct Count {
            ListName list{};
            std::int64_t entries = 0;
            /// The `itemChanges` up to which it holds.
            std::uint64_t changes = 0;
        };
        std::optional<Count> count{};
        /// The number of entries of each list whose eviction waits for another transaction.
        std::map<ListName, std::int64_t> waiting{};
    };

    JournalChange(journalxml::DataRequest request, std::shared_ptr<Line> line,
                  std::chrono::seconds phoneAhead);

    void carryOut(Database::Session& session);
    /// True for the deletion with which the journal shortens a list that is too long. A power cut that brings
    /// the entry back does no harm: the next start shortens the list.
    [[nodiscard]] bool isEviction(Database::Session& session);
    /// True if the change may be made before the evictions that wait: the filing of an entry.
    [[nodiscard]] bool leavesEvictions() const;
    /// Prepares the change to be carried out later: new rows get their ids now.
    void keep(Database& database);
    void done(bool stored);

    [[nodiscard]] const journalxml::DataRequest& request() const noexcept { return m_request; }
    /// The number of ended calls that the request files.
    [[nodiscard]] std::size_t callCount() const noexcept { return m_filing.callCount(); }
    /// The last unique id of the rows that are or will be changed; empty for none.
    [[nodiscard]] const std::string& lastUniqueId() const noexcept { return m_lastUniqueId; }

private:
    [[nodiscard]] HistoryRows::Context context() const;
    /// True if the list is too long and the deletion follows, on the same thread, the writing of an entry of
    /// it. The order of the rows does not matter: the journal may have another one within a second.
    [[nodiscard]] bool isEvictionFrom(ListName list, Database::Session& session) const;
    /// The number of entries without those whose eviction waits.
    [[nodiscard]] std::int64_t countOf(ListName list, Database::Session& session) const;
    void noteCount() const;
    [[nodiscard]] std::optional<std::pair<ListName, std::thread::id>> written() const;
    [[nodiscard]] std::string change(Database::Session& session, CallRows& calls) const;
    [[nodiscard]] std::string writeItems(Database::Session& session, CallRows& calls) const;
    [[nodiscard]] std::string deleteCalls(CallRows& calls, ListName list) const;
    [[nodiscard]] CallRows::Calls callsOfDeleted(ListName list) const;
    [[nodiscard]] Rewritten detachRewritten(CallRows& calls) const;
    void attachRewritten(CallRows& calls, const std::string& uniqueId) const;

    // Constant after construction.
    const journalxml::DataRequest m_request;
    const std::shared_ptr<Line> m_line;
    const std::chrono::seconds m_phoneAhead;
    const std::thread::id m_thread = std::this_thread::get_id();
    /// An event of the switch is being delivered.
    bool m_isDelivered = false;
    /// Set if that event establishes a call: its time.
    std::optional<std::chrono::sys_seconds> m_calledBackAt{};

    CallFiling m_filing;
    bool m_isKept = false;
    /// The ids of new rows, by the item; empty if the change was not kept.
    std::vector<std::optional<std::int64_t>> m_newIds;
    Rewritten m_rewritten;
    /// Once true it stays so, when the change is repeated too.
    bool m_isEviction = false;
    /// The list of an eviction that waits for another transaction.
    std::optional<ListName> m_waitingIn{};
    /// `itemChanges` before and after the change.
    std::pair<std::uint64_t, std::uint64_t> m_itemChanges{};
    std::string m_lastUniqueId;
};

}  // namespace host
