#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "host/database/KeptChanges.h"

namespace host {

class DatabaseConnection;

/// Changes that need no transaction of their own, because losing them loses no information: each is made
/// with the next transaction.
///
/// Requires, except for `isEmpty`: the database's lock is held.
class DeferredChanges {
public:
    /// Calls `keep` of the change.
    void add(const std::shared_ptr<DatabaseChange>& change);
    /// True if no change waits. Any thread may call; no lock is needed.
    [[nodiscard]] bool isEmpty() const noexcept { return m_isEmpty; }

    /// Makes all of them inside the open transaction, each for itself: one that fails is rolled back alone.
    /// Throws if the whole transaction was rolled back.
    void carryOut(DatabaseConnection& connection);
    /// Call it after the commit: calls `done` of those that were carried out and drops all.
    void committed() noexcept;

private:
    struct Deferred {
        std::shared_ptr<DatabaseChange> change;
        bool isMade = false;
    };

    [[nodiscard]] static bool make(DatabaseChange& change, DatabaseConnection& connection);

    std::vector<Deferred> m_changes;
    std::atomic<bool> m_isEmpty{true};
};

}  // namespace host
