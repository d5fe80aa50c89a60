#include "host/database/Query.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

namespace host {

Query::Query(SQLite::Statement& statement, bool& inUse) noexcept : m_statement(statement), m_inUse(inUse) {
    m_inUse = true;
}

Query::~Query() {
    static_cast<void>(m_statement.tryReset());
    m_inUse = false;
}

Query& Query::bind(const std::string& text) {
    m_statement.bind(m_nextParameter++, text);
    return *this;
}

Query& Query::bind(std::int64_t number) {
    m_statement.bind(m_nextParameter++, number);
    return *this;
}

Query& Query::bind(const std::optional<std::int64_t>& number) {
    if (number) {
        return bind(*number);
    }
    m_statement.bind(m_nextParameter++);
    return *this;
}

bool Query::next() {
    m_nextColumn = 0;
    return m_statement.executeStep();
}

int Query::run() {
    return m_statement.exec();
}

Query& Query::again() {
    m_statement.reset();
    m_statement.clearBindings();
    m_nextParameter = 1;
    m_nextColumn = 0;
    return *this;
}

std::string Query::text() {
    return m_statement.getColumn(m_nextColumn++).getString();
}

std::optional<std::int64_t> Query::optionalNumber() {
    const SQLite::Column value = m_statement.getColumn(m_nextColumn++);
    return value.isNull() ? std::nullopt : std::optional<std::int64_t>(value.getInt64());
}

std::int64_t Query::number() {
    return m_statement.getColumn(m_nextColumn++).getInt64();
}

}  // namespace host
