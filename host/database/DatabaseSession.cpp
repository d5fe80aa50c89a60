#include "host/database/DatabaseSession.h"

#include "host/database/DatabaseConnection.h"

namespace host {

Query DatabaseSession::query(const char* sql) {
    return m_connection.query(sql);
}

std::int64_t DatabaseSession::lastInsertedId() const {
    return m_connection.lastInsertedId();
}

std::uint64_t DatabaseSession::itemChanges() const {
    return m_connection.itemChanges();
}

DatabaseState DatabaseSession::state() {
    return {m_connection.serial(), m_connection.dataVersion()};
}

void carryOut(DatabaseConnection& connection, const char* begin, const DatabaseWork& work) {
    try {
        connection.query(begin).run();
        DatabaseSession session(connection);
        work(session);
        connection.query("COMMIT").run();
    } catch (...) {
        connection.rollBack();
        throw;
    }
}

}  // namespace host
