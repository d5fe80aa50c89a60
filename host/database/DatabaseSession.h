#pragma once

#include <cstdint>
#include <functional>

#include "host/database/Query.h"

namespace host {

class DatabaseConnection;

/// The connection during one `Database::read` or `write` call.
class DatabaseSession {
public:
    /// Returns a statement by its text; it is prepared at its first use and kept. Requires: no earlier
    /// `Query` of the same text is alive.
    [[nodiscard]] Query query(const char* sql);
    /// The row id of the last row that was inserted.
    [[nodiscard]] std::int64_t lastInsertedId() const;
    /// Changes when a row is added to `call_item` or removed, if not by another process.
    [[nodiscard]] std::uint64_t itemChanges() const;

    /// Call it in a transaction that deletes a text: when that is done, the log of the database is emptied.
    void emptyLogAfterwards() noexcept { m_emptiesLog = true; }

private:
    friend class Database;
    friend class DeferredChanges;
    explicit DatabaseSession(DatabaseConnection& connection) noexcept : m_connection(connection) {}

    DatabaseConnection& m_connection;
    bool m_emptiesLog = false;
};

/// Work with the database. It must not call the database except through its session, and must not wait for
/// another thread.
using DatabaseWork = std::function<void(DatabaseSession&)>;

}  // namespace host
