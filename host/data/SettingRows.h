#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/database/Database.h"

namespace host {

/// Keys with values of one line as rows: the journal's own settings, and the phone's management values.
///
/// Use it inside one `Database::read` or `write` call. Every operation throws if the database fails.
class SettingRows {
public:
    enum class Table { eJournalSettings, eManagementValues };
    using KeyAndValue = std::pair<std::string, std::string>;

    /// Session and line are borrowed.
    SettingRows(Database::Session& session, Table table, const std::string& line)
        : m_session(session), m_table(table), m_line(line) {}

    void write(const KeyAndValue& setting);
    /// In the order of the keys.
    [[nodiscard]] std::vector<KeyAndValue> read();

private:
    Database::Session& m_session;
    const Table m_table;
    const std::string& m_line;
};

}  // namespace host
