#pragma once

#include <chrono>
#include <cstdint>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/calls/CallReason.h"
#include "host/data/PartyRows.h"
#include "host/database/Database.h"
#include "journal-items/CallInfo.h"
#include "journal-items/ListTraits.h"

namespace host {

class EventQueue;

/// The facts that the link knows of a call that is filed, and the journal's occurrence does not have.
struct CallFacts {
    std::optional<std::chrono::sys_seconds> established{};
    std::optional<std::chrono::sys_seconds> ended{};
    bool endApproximate = false;
    CallReason reason = CallReason::eNone;
    /// The party at the far end of an established call; empty if it is not known.
    std::string connectedNumber{};
    std::string connectedName{};
};

/// The calls of one line as rows of the table `call`, one for each call that was ever filed. The calls that
/// the journal's entry has are "listed"; the older ones of the entry are not.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class HistoryRows {
public:
    struct Context {
        const std::string& line;
        DigitAnalysisServiceIfc* digits = nullptr;
        /// The time by which the phone's zone is ahead of UTC, for occurrences in local time.
        std::chrono::seconds phoneAhead{0};
        /// Gets an event for each new call, in the transaction that stores it; null for none.
        const EventQueue* events = nullptr;
    };

    /// Everything is borrowed.
    HistoryRows(Database::Session& session, const Context& context)
        : m_session(session), m_context(context), m_parties(session, context.line, context.digits) {}

    /// Makes `occurrences` (newest first) the listed calls of the entry:
    ///  1. A new occurrence becomes a call. `name` is the name under which it is filed, `facts` belong to the
    ///     newest one and may be null.
    ///  2. The oldest calls that a full entry has lost stay in the history and are not listed any more.
    ///  3. Every other call that the entry has lost is deleted.
    /// `isNew` says that the entry was added just now.
    template <typename Item>
    void write(std::int64_t item, const std::string& name,
               const std::list<typename ListTraits<Item>::Info>& occurrences, const CallFacts* facts,
               bool isNew);

    /// Appends the listed calls of the entry, newest first, to `occurrences`.
    template <typename Info>
    void readListed(std::int64_t item, std::list<Info>& occurrences);
    /// Appends the newest calls of the entry, listed or not, at most `limit`.
    template <typename Info>
    void readNewest(std::int64_t item, std::int64_t limit, std::list<Info>& occurrences);

    /// Appends those calls of the entry, newest first.
    template <typename Info>
    void read(std::int64_t item, const std::vector<std::int64_t>& calls, std::list<Info>& occurrences);

    /// The newest call of the entry; std::nullopt if it has none.
    [[nodiscard]] std::optional<std::int64_t> newestOf(std::int64_t item);

    /// Deletes the calls of an entry.
    void removeOf(std::int64_t item);
    /// Deletes the listed calls of an entry and keeps the others.
    void removeListedOf(std::int64_t item);
    /// The calls of an entry whose row is deleted and written again.
    struct Detached {
        std::vector<std::int64_t> listed{};
        std::vector<std::int64_t> older{};
    };
    /// Keeps the calls of an entry until `attach`.
    [[nodiscard]] Detached detach(std::int64_t item);
    /// Gives the older ones to the entry, and deletes the listed ones that it was not written with.
    void attach(std::int64_t item, const Detached& calls);
    /// Keeps the calls of an entry that leaves its list; `calledBackAt` is set for a missed call that was
    /// called back.
    void release(std::int64_t item, const std::optional<std::chrono::sys_seconds>& calledBackAt);
    /// Deletes the calls of a list, those without an entry too.
    void removeAll(ListName list);

    /// Removes the parties that no call has any more. Returns true if a call was deleted; then
    /// `Database::truncateLog` must follow the transaction.
    bool removeTraces();

private:
    template <typename Info>
    struct Stored;

    template <typename Info>
    [[nodiscard]] std::list<Stored<Info>> listedOf(std::int64_t item);
    template <typename Info>
    void lose(const std::list<Stored<Info>>& stored, const std::list<Info>& occurrences);
    template <typename Info>
    void store(const Stored<Info>& call, std::int64_t item, ListName list, const std::string& name,
               const CallFacts* facts);
    /// Deletes the calls of a condition with one parameter, and notes their parties.
    void removeWhere(const std::string& condition, std::int64_t value);
    [[nodiscard]] std::int64_t newestOrder(std::int64_t item);

    Database::Session& m_session;
    const Context& m_context;
    PartyRows m_parties;
    bool m_hasDeleted = false;
    /// The parties of deleted calls; all parties if there are many.
    std::set<std::int64_t> m_traces;
    bool m_hasManyTraces = false;
};

}  // namespace host
