#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "host/database/DatabaseSession.h"

namespace host {

/// The outcome of a change.
enum class ChangeOutcome {
    eStored,
    /// Kept, and stored after the changes that were kept before.
    eKept,
    /// Neither stored nor kept.
    eRefused,
};

/// A change whose maker cannot repeat it: if the database refuses it, it is kept and stored later. Its
/// functions own all that they use, and must not call the database except through the session.
struct DatabaseChange {
    /// Completes "... failed" in the log.
    std::string what{};
    /// May run several times, on any thread, until one transaction succeeds.
    DatabaseWork work{};
    /// The line that it belongs to, or null: changes of one line are never in one transaction.
    const void* line = nullptr;
    /// True if the change can wait for the next transaction, because losing it loses no information. `keep`
    /// is called then. Runs outside of a transaction; may be empty.
    std::function<bool(DatabaseSession&)> isMinor{};
    /// True if the minor changes that wait may go on waiting. Work that depends on them after all calls
    /// `makeDeferred` of its session.
    bool leavesMinor = false;
    /// Called once, before the change is kept, while the thread that makes it waits or on that thread. The
    /// lock of the kept changes may be held.
    std::function<void()> keep{};
    /// Called once, on any thread: with true after the transaction, while no other one runs, and with false
    /// when the change is lost.
    std::function<void(bool stored)> done{};
    /// The memory that the change needs.
    std::size_t bytes = 0;
    /// The number of ended calls that the change files.
    std::size_t calls = 0;

    /// Calls `done`, if there is one; a failure of it is logged.
    void finish(bool stored) const noexcept;
};

/// The changes that the database has refused, in order. Bounded; a change beyond the bounds is lost.
///
/// Thread-safe; no operation waits for the database.
class KeptChanges {
public:
    static constexpr std::size_t kMostChanges = 10'000;
    static constexpr std::size_t kMostBytes = std::size_t{64} * 1024 * 1024;

    struct Kept {
        std::shared_ptr<DatabaseChange> change;
        /// The number of attempts that failed for a reason that may lie in the change, and the time of the
        /// first.
        int failures = 0;
        std::chrono::steady_clock::time_point firstFailure{};
    };

    /// Calls `keep` of the change and appends it. Returns false if a bound is reached.
    [[nodiscard]] bool add(std::shared_ptr<DatabaseChange> change);
    /// The same if other changes are kept; `std::nullopt` if none is.
    [[nodiscard]] std::optional<bool> addBehindOthers(const std::shared_ptr<DatabaseChange>& change);

    [[nodiscard]] std::size_t size() const;
    /// The number of calls that the kept changes file.
    [[nodiscard]] std::size_t calls() const;
    /// The numbers of changes that were lost since the start, and of the calls that they file.
    [[nodiscard]] std::uint64_t lost() const;
    [[nodiscard]] std::uint64_t lostCalls() const;
    /// Counts a change that is neither stored nor kept.
    void countLost(const DatabaseChange& change);

    /// The first changes, at most `count`.
    [[nodiscard]] std::deque<Kept> first(std::size_t count) const;
    /// Notes a failed attempt of the first change. Returns true if it has failed often and for long, each
    /// time for a reason that may lie in the change.
    bool noteFailure(bool mayBeOfChange);
    /// True if one change is kept, which has failed so.
    [[nodiscard]] bool isHopelessAndAlone() const;
    /// Removes the change at `index`, which is stored or lost.
    void remove(std::size_t index, bool isLost);

private:
    [[nodiscard]] static bool isHopeless(const Kept& kept);
    [[nodiscard]] bool append(const std::shared_ptr<DatabaseChange>& change);

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::deque<Kept> m_changes;
    std::size_t m_bytes = 0;
    std::uint64_t m_lost = 0;
    std::uint64_t m_lostCalls = 0;
};

}  // namespace host
