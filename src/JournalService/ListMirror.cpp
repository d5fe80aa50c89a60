#include "src/JournalService/ListMirror.h"

#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "src/JournalService/Log.h"

namespace journal {

using Helper = CallListDatabaseAdapterHelper;

std::string ListMirror::asEntry(const std::string& body) {
    return Helper::createXMLElement(Helper::ENTRY, body);
}

std::string ListMirror::updateEntry(const std::string& body, const std::string& requestType,
                                    const std::string& table) {
    return updateEntries(asEntry(body), requestType, table);
}

std::string ListMirror::updateEntries(const std::string& entries, const std::string& requestType,
                                      const std::string& table) {
    if (entries.empty()) {
        return {};
    }
    LOG_JOURNAL(6, "updateEntries[%s][%s]", table.c_str(), entries.c_str());
    const std::string response = m_adapter.updateEntries(entries, requestType, table);
    LOG_JOURNAL(6, "DAS resp %s \n", response.c_str());
    if (response == Helper::FAILED) {
        LOG_JOURNAL(2, "%s: the database refused a %s", table.c_str(), requestType.c_str());
        return {};
    }
    std::string uniqueId = JournalServiceHelper::parseLastUniqueId(response);
    const std::lock_guard lock(m_mutex);
    if (!uniqueId.empty()) {
        m_lastUniqueId = uniqueId;
        m_visitorCallLogSavePending = true;
    }
    return uniqueId;
}

void ListMirror::deleteWholeTable(const std::string& table) {
    updateEntries(Helper::allEntries(), Helper::DELETEREQUEST, table);
}

std::string ListMirror::lastUniqueId() const {
    const std::lock_guard lock(m_mutex);
    return m_lastUniqueId;
}

}  // namespace journal
