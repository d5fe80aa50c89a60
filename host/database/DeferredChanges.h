#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

#include "host/database/KeptChanges.h"

namespace host {

class DatabaseConnection;

/// Changes that need no transaction of their own, because losing them loses no information: several are made
/// together with another transaction, since they change the same pages.
///
/// Requires, except for `isEmpty`: the database's lock is held.
class DeferredChanges {
public:
    /// A transaction that could leave them makes them if there are so many. More would delay it too much.
    static constexpr std::size_t kMany = 16;

    /// Calls `keep` of the change.
    void add(const std::shared_ptr<DatabaseChange>& change);
    /// True if no change waits. Any thread may call; no lock is needed.
    [[nodiscard]] bool isEmpty() const noexcept { return m_isEmpty; }

    [[nodiscard]] bool areMany() const noexcept { return m_changes.size() >= kMany; }
    /// True if the open transaction has made them.
    [[nodiscard]] bool areCarriedOut() const noexcept { return m_areCarriedOut; }

    /// Call it at the begin of each transaction, also of one that does not make them, and when the part of a
    /// transaction that has made them was rolled back.
    void begin() noexcept;
    /// Makes, once in a transaction, all of them, each for itself: one that fails is rolled back alone.
    /// Throws if the whole transaction was rolled back.
    void carryOut(DatabaseConnection& connection);
    /// Call it after the commit: if they were carried out, it calls `done` of each and drops all.
    void committed() noexcept;

private:
    struct Deferred {
        std::shared_ptr<DatabaseChange> change;
        bool isMade = false;
    };

    [[nodiscard]] static bool make(DatabaseChange& change, DatabaseConnection& connection);

    std::vector<Deferred> m_changes;
    /// The open transaction has carried them out.
    bool m_areCarriedOut = false;
    std::atomic<bool> m_isEmpty{true};
};

}  // namespace host
