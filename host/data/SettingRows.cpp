#include "host/data/SettingRows.h"

namespace host {
namespace {

struct Sql {
    const char* write;
    const char* read;
};

constexpr Sql kJournalSettings{"INSERT OR REPLACE INTO setting (line, key, value) VALUES (?, ?, ?)",
                               "SELECT key, value FROM setting WHERE line = ? ORDER BY key"};
constexpr Sql kManagementValues{"INSERT OR REPLACE INTO management_value (line, key, value) VALUES (?, ?, ?)",
                                "SELECT key, value FROM management_value WHERE line = ? ORDER BY key"};

const Sql& sqlOf(SettingRows::Table table) {
    return table == SettingRows::Table::eJournalSettings ? kJournalSettings : kManagementValues;
}

}  // namespace

void SettingRows::write(const KeyAndValue& setting) {
    m_session.query(sqlOf(m_table).write).bind(m_line).bind(setting.first).bind(setting.second).run();
}

std::vector<SettingRows::KeyAndValue> SettingRows::read() {
    Query query = m_session.query(sqlOf(m_table).read);
    query.bind(m_line);
    std::vector<KeyAndValue> settings;
    while (query.next()) {
        std::string key = query.text();
        settings.emplace_back(std::move(key), query.text());
    }
    return settings;
}

}  // namespace host
