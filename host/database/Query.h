#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace SQLite {
class Statement;
}

namespace host {

/// One use of a prepared statement: values are bound from the first parameter on, rows are read from the
/// first column on.
///
///     Query query = session.query("SELECT id, surname FROM contact WHERE line = ?");
///     query.bind(line);
///     while (query.next()) {
///         ids.push_back(query.number());
///         surnames.push_back(query.text());
///     }
///
/// Texts keep every byte, also NUL and invalid UTF-8. Use it inside the `read` or `write` call that made
/// it, on its thread. Every operation throws if the database fails.
class Query {
public:
    /// Reserves the statement until the query is destroyed; see `Session::query`.
    Query(SQLite::Statement& statement, bool& inUse) noexcept;
    ~Query();
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    Query& bind(const std::string& text);
    Query& bind(const char*) = delete;
    Query& bind(std::int64_t number);
    Query& bind(std::int32_t number) { return bind(std::int64_t{number}); }
    /// Binds NULL for `std::nullopt`.
    Query& bind(const std::optional<std::int64_t>& number);
    Query& bind(bool flag) { return bind(std::int64_t{flag ? 1 : 0}); }

    /// Steps to the next row; false if there is none.
    [[nodiscard]] bool next();
    /// Runs a statement without rows; returns the number of rows that it changed.
    int run();
    /// Resets values and rows for another run with other values.
    Query& again();

    /// The next column of the row.
    [[nodiscard]] std::string text();
    [[nodiscard]] std::int64_t number();
    /// `std::nullopt` for NULL.
    [[nodiscard]] std::optional<std::int64_t> optionalNumber();
    [[nodiscard]] std::int32_t smallNumber() { return static_cast<std::int32_t>(number()); }
    [[nodiscard]] bool flag() { return number() != 0; }

private:
    SQLite::Statement& m_statement;
    bool& m_inUse;
    int m_nextParameter = 1;
    int m_nextColumn = 0;
};

}  // namespace host
