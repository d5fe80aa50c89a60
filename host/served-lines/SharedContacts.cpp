#include "host/served-lines/SharedContacts.h"

#include <utility>

#include "host/line/LineSettings.h"
#include "host/served-lines/ServedLine.h"

namespace host {

SharedContacts::SharedContacts(Database& database, WorkerPool& pool, const LineSettings& rules,
                               std::function<std::vector<std::shared_ptr<ServedLine>>()> lines)
    : m_digits(rules.region, rules.featureAccessCodes),
      m_phonebook(database, m_digits, ""),
      m_lines(std::move(lines)),
      m_strand(pool) {
    m_phonebook.setChangeListener([this] {
        if (!m_isDue.exchange(true)) {
            m_strand.post([this] { renameAll(); });
        }
    });
}

void SharedContacts::start() {
    static_cast<void>(m_phonebook.reindexIfRulesChanged(m_digits.rulesKey()));
}

void SharedContacts::stop() {
    m_ends = true;
    m_strand.close();
}

void SharedContacts::renameAll() {
    m_isDue = false;
    for (const std::shared_ptr<ServedLine>& line : m_lines()) {
        if (m_ends) {
            return;
        }
        line->renameEntries();
    }
}

}  // namespace host
