#include "src/JournalService/lists/ListPersistence.h"

#include "src/JournalService/base/Log.h"

namespace journal {

using Helper = CallListDatabaseAdapterHelper;

std::string ListPersistence::asEntry(const std::string& body) {
    return Helper::createXMLElement(Helper::ENTRY, body);
}

const char* ListPersistence::textOf(RequestType requestType) noexcept {
    return requestType == RequestType::eWrite ? Helper::WRITEREQUEST : Helper::DELETEREQUEST;
}

std::string ListPersistence::updateEntry(const std::string& body, RequestType requestType,
                                         const std::string& table) {
    return updateEntries(asEntry(body), requestType, table);
}

std::string ListPersistence::updateEntries(const std::string& entries, RequestType requestType,
                                           const std::string& table) {
    return entries.empty() ? std::string() : send(entries, requestType, table).value_or("");
}

std::optional<std::string> ListPersistence::send(const std::string& entries, RequestType requestType,
                                                 const std::string& table) {
    const bool clears = entries == Helper::allEntries();
    const bool clearingWaits = refusedDeletion(table) == Helper::allEntries();
    if (clearingWaits && !clears && sendOnce(Helper::allEntries(), RequestType::eDelete, table)) {
        forgetDeletion(table);
    }
    std::optional<std::string> uniqueId = sendOnce(entries, requestType, table);
    const bool isDeletion = requestType == RequestType::eDelete;
    if (!uniqueId && isDeletion) {
        recordRefusedDeletion(entries, table);
    } else if (uniqueId && isDeletion && clears) {
        forgetDeletion(table);
    } else if (uniqueId && !isDeletion && refusedDeletion(table) == Helper::allEntries()) {
        LOG_JOURNAL(2, "%s: what was to be cleared stays, since newer entries are among it now",
                    table.c_str());
        forgetDeletion(table);
    }
    return uniqueId;
}

void ListPersistence::repeatDeletion(const std::string& table) {
    const std::string entries = refusedDeletion(table);
    if (!entries.empty() && !sendOnce(entries, RequestType::eDelete, table)) {
        LOG_JOURNAL(2, "%s: what was to be deleted stays", table.c_str());
    }
    forgetDeletion(table);
}

std::string ListPersistence::refusedDeletion(const std::string& table) const {
    const std::lock_guard lock(m_mutex);
    const auto refused = m_refusedDeletions.find(table);
    return refused == m_refusedDeletions.end() ? std::string() : refused->second;
}

void ListPersistence::forgetDeletion(const std::string& table) {
    const std::lock_guard lock(m_mutex);
    m_refusedDeletions.erase(table);
}

void ListPersistence::recordRefusedDeletion(const std::string& entries, const std::string& table) {
    const std::string all = Helper::allEntries();
    const std::lock_guard lock(m_mutex);
    std::string& refused = m_refusedDeletions[table];
    if (entries == all) {
        refused = all;
    } else if (refused != all) {
        refused += entries;
    }
}

std::optional<std::string> ListPersistence::sendOnce(const std::string& entries, RequestType requestType,
                                                     const std::string& table) {
    LOG_JOURNAL(6, "updateEntries[%s][%s]", table.c_str(), entries.c_str());
    const std::string response = m_adapter.updateEntries(entries, textOf(requestType), table);
    LOG_JOURNAL(6, "DAS resp %s \n", response.c_str());
    if (response == Helper::FAILED) {
        LOG_JOURNAL(2, "%s: the database refused a %s", table.c_str(), textOf(requestType));
        return std::nullopt;
    }
    std::string uniqueId = JournalServiceHelper::parseLastUniqueId(response);
    if (!uniqueId.empty()) {
        {
            const std::lock_guard lock(m_mutex);
            m_lastUniqueId = uniqueId;
        }
        if (m_onWritten) {
            m_onWritten();
        }
    }
    return uniqueId;
}

void ListPersistence::clearTable(const std::string& table) {
    updateEntries(Helper::allEntries(), RequestType::eDelete, table);
}

void ListPersistence::recordRefused(const std::string& key, bool refused) {
    const std::lock_guard lock(m_mutex);
    if (refused) {
        m_refused.insert(key);
    } else {
        m_refused.erase(key);
    }
}

void ListPersistence::forgetRefused() {
    const std::lock_guard lock(m_mutex);
    m_refused.clear();
}

std::string ListPersistence::lastUniqueId() const {
    const std::lock_guard lock(m_mutex);
    return m_lastUniqueId;
}

}  // namespace journal
