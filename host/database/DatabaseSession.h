#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "host/database/Query.h"

namespace host {

class DatabaseConnection;

/// A state of the database as one connection sees it. Two states are equal only if no other connection, of
/// this process or of another, has changed the database between them. A plain value.
struct DatabaseState {
    std::uint64_t connection = 0;
    std::int64_t version = 0;

    friend bool operator==(const DatabaseState&, const DatabaseState&) = default;
};

/// The connection during one `Database::read` or `write` call.
class DatabaseSession {
public:
    /// Borrows the connection.
    explicit DatabaseSession(DatabaseConnection& connection) noexcept : m_connection(connection) {}

    /// Sets what makes the minor changes that wait, for a change that leaves them.
    void setDeferred(std::function<void()> make) { m_makeDeferred = std::move(make); }
    /// Makes the minor changes that wait, in this transaction, if that is not done yet. Call it before work
    /// that depends on them, if the change is one that leaves them. Requires: no `Query` that they need is
    /// alive.
    void makeDeferred() {
        if (m_makeDeferred) {
            m_makeDeferred();
        }
    }

    /// Returns a statement by its text; it is prepared at its first use and kept. Requires: no earlier
    /// `Query` of the same text is alive.
    [[nodiscard]] Query query(const char* sql);
    /// The row id of the last row that was inserted.
    [[nodiscard]] std::int64_t lastInsertedId() const;
    /// Changes when a row is added to `call_item` or removed, if not by another process.
    [[nodiscard]] std::uint64_t itemChanges() const;

    /// The state that this work reads. Of work of `Database::read` it does not change by the writes of the
    /// same `Database`.
    [[nodiscard]] DatabaseState state();

    /// Call it in a transaction that deletes a text: when that is done, the log of the database is emptied.
    void emptyLogAfterwards() noexcept { m_emptiesLog = true; }
    [[nodiscard]] bool emptiesLog() const noexcept { return m_emptiesLog; }

private:
    DatabaseConnection& m_connection;
    std::function<void()> m_makeDeferred{};
    bool m_emptiesLog = false;
};

/// Work with the database. It must not call the database except through its session, and must not wait for
/// another thread.
using DatabaseWork = std::function<void(DatabaseSession&)>;

/// Runs the work in one transaction, which `begin` begins. Throws what SQLite or the work throws, after all
/// was rolled back. Requires: the connection's lock is held.
void carryOut(DatabaseConnection& connection, const char* begin, const DatabaseWork& work);

}  // namespace host
