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
    const bool clearingWaits = rejectedDeletion(table) == Helper::allEntries();
    if (clearingWaits && !clears && sendOnce(Helper::allEntries(), RequestType::eDelete, table)) {
        clearRejectedDeletion(table);
    }
    std::optional<std::string> uniqueId = sendOnce(entries, requestType, table);
    const bool isDeletion = requestType == RequestType::eDelete;
    if (!uniqueId && isDeletion) {
        recordRejectedDeletion(entries, table);
    } else if (uniqueId && isDeletion && clears) {
        clearRejectedDeletion(table);
    } else if (uniqueId && !isDeletion && rejectedDeletion(table) == Helper::allEntries()) {
        LOG_JOURNAL(2, "%s: what was to be cleared stays, since newer entries are among it now",
                    table.c_str());
        clearRejectedDeletion(table);
    }
    return uniqueId;
}

void ListPersistence::retryDeletion(const std::string& table) {
    const std::string entries = rejectedDeletion(table);
    if (!entries.empty() && !sendOnce(entries, RequestType::eDelete, table)) {
        LOG_JOURNAL(2, "%s: what was to be deleted stays", table.c_str());
    }
    clearRejectedDeletion(table);
}

std::string ListPersistence::rejectedDeletion(const std::string& table) const {
    const std::lock_guard lock(m_mutex);
    const auto rejected = m_rejectedDeletions.find(table);
    return rejected == m_rejectedDeletions.end() ? std::string() : rejected->second;
}

void ListPersistence::clearRejectedDeletion(const std::string& table) {
    const std::lock_guard lock(m_mutex);
    m_rejectedDeletions.erase(table);
}

void ListPersistence::recordRejectedDeletion(const std::string& entries, const std::string& table) {
    const std::string all = Helper::allEntries();
    const std::lock_guard lock(m_mutex);
    std::string& rejected = m_rejectedDeletions[table];
    if (entries == all) {
        rejected = all;
    } else if (rejected != all) {
        rejected += entries;
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

void ListPersistence::recordRejected(const std::string& key, bool rejected) {
    const std::lock_guard lock(m_mutex);
    if (rejected) {
        m_rejectedWrites.insert(key);
    } else {
        m_rejectedWrites.erase(key);
    }
}

void ListPersistence::clearRejectedWrites() {
    const std::lock_guard lock(m_mutex);
    m_rejectedWrites.clear();
}

std::string ListPersistence::lastUniqueId() const {
    const std::lock_guard lock(m_mutex);
    return m_lastUniqueId;
}

}  // namespace journal
