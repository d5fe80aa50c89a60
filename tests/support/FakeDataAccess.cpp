#include "tests/support/FakeDataAccess.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "journal-items/Occurrences.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataAnswer.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace journaltest {
namespace {

using Item = FakeDataAccess::Item;
using journalxml::DataRequest;

template <typename ItemType>
constexpr bool kIsCallBack = std::is_same_v<std::decay_t<ItemType>, CallBackItem>;

const std::string& sortKey(const Item& item) {
    return std::visit(
        [](const auto& held) -> const std::string& {
            if constexpr (kIsCallBack<decltype(held)>) {
                return held.getTimeDate();
            } else {
                return sortKeyOf(held);
            }
        },
        item);
}

const std::string& entryId(const Item& item) {
    return std::visit([](const auto& held) -> const std::string& { return held.getEntryId(); }, item);
}

/// What names the row: the unique id, for a callback the entry id.
const std::string& rowId(const Item& item) {
    return std::visit(
        [](const auto& held) -> const std::string& {
            if constexpr (kIsCallBack<decltype(held)>) {
                return held.getEntryId();
            } else {
                return held.getUniqueId();
            }
        },
        item);
}

void setUniqueId(Item& item, const std::string& uniqueId) {
    std::visit(
        [&uniqueId](auto& held) {
            if constexpr (!kIsCallBack<decltype(held)>) {
                held.setUniqueId(uniqueId);
            }
        },
        item);
}

bool isMeant(const DataRequest::Key& key, const Item& item) {
    return key.uniqueId.empty() ? key.entryId == entryId(item) : key.uniqueId == rowId(item);
}

}  // namespace

void FakeDataAccess::addRow(const std::string& table, Item item) {
    const std::lock_guard lock(m_mutex);
    const std::string& id = rowId(item);
    if (id.empty()) {
        put(table, std::move(item));
        return;
    }
    m_lastUniqueId = std::max(m_lastUniqueId, std::strtol(id.c_str(), nullptr, 10));
    m_tables[table].push_back(std::move(item));
}

void FakeDataAccess::addContact(const Contact& contact) {
    const std::lock_guard lock(m_mutex);
    m_contacts.push_back(contact);
}

void FakeDataAccess::setSetting(const std::string& key, const std::string& value) {
    const std::lock_guard lock(m_mutex);
    m_settings[key] = value;
}

void FakeDataAccess::setFailing(bool failing) {
    const std::lock_guard lock(m_mutex);
    m_failing = failing;
}

void FakeDataAccess::setAnswer(std::function<std::string(const std::string&)> answer) {
    const std::lock_guard lock(m_mutex);
    m_answer = std::move(answer);
}

void FakeDataAccess::setDuring(std::function<void(const std::string&)> during) {
    const std::lock_guard lock(m_mutex);
    m_during = std::move(during);
}

std::vector<std::string> FakeDataAccess::documents() const {
    const std::lock_guard lock(m_mutex);
    return m_documents;
}

std::vector<DataRequest> FakeDataAccess::requests() const {
    std::vector<DataRequest> understood;
    for (const std::string& document : documents()) {
        if (std::optional<DataRequest> request = journalxml::parseDataRequest(document)) {
            understood.push_back(std::move(*request));
        }
    }
    return understood;
}

std::vector<DataRequest> FakeDataAccess::requests(DataRequest::Reason reason,
                                                  const std::string& schema) const {
    std::vector<DataRequest> found;
    for (DataRequest& request : requests()) {
        if (request.reason == reason && request.schema == schema) {
            found.push_back(std::move(request));
        }
    }
    return found;
}

void FakeDataAccess::forgetRequests() {
    const std::lock_guard lock(m_mutex);
    m_documents.clear();
}

std::map<std::string, std::string> FakeDataAccess::settings() const {
    const std::lock_guard lock(m_mutex);
    return m_settings;
}

std::string FakeDataAccess::processRequest(const std::string& request) {
    std::function<void(const std::string&)> during;
    std::function<std::string(const std::string&)> answer;
    {
        const std::lock_guard lock(m_mutex);
        m_documents.push_back(request);
        during = m_during;
        answer = m_answer;
    }
    if (during) {
        during(request);
    }
    if (answer) {
        return answer(request);
    }
    const std::optional<DataRequest> understood = journalxml::parseDataRequest(request);
    const std::lock_guard lock(m_mutex);
    return understood && !m_failing ? carryOut(*understood) : CallListDatabaseAdapterHelper::FAILED;
}

std::string FakeDataAccess::carryOut(const DataRequest& request) {
    switch (request.reason) {
        case DataRequest::Reason::eRead: return read(request);
        case DataRequest::Reason::eWrite: return write(request);
        case DataRequest::Reason::eUpdate: return update(request);
        case DataRequest::Reason::eDelete: return erase(request);
    }
    return CallListDatabaseAdapterHelper::FAILED;
}

std::string FakeDataAccess::read(const DataRequest& request) const {
    using Helper = CallListDatabaseAdapterHelper;
    if (request.schema == JournalServiceHelper::SETTINGS_SCHEMA) {
        return readSettings();
    }
    journalxml::ListDocument document(request.schema);
    bool fits = true;
    std::vector<const Item*> rows;
    for (const auto& [table, items] : m_tables) {
        if (table == request.schema ||
            (request.schema == Helper::CONVERSATIONS_SCHEMA && table != Helper::DAS_CALLLOGCALLBACKS)) {
            for (const Item& item : items) {
                rows.push_back(&item);
            }
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Item* left, const Item* right) { return sortKey(*left) > sortKey(*right); });
    for (std::size_t row = request.offset;
         fits && row < rows.size() && row - request.offset < request.rowLimit; ++row) {
        fits = std::visit([&document](const auto& item) { return document.add(item); }, *rows[row]);
    }
    if (request.schema == Helper::CALLLOGPHONEBOOK_SCHEMA) {
        for (const Contact& contact : m_contacts) {
            fits = fits && document.add(contact);
        }
    }
    return document.text();
}

std::string FakeDataAccess::readSettings() const {
    return journalxml::buildSettingsAnswer({m_settings.begin(), m_settings.end()});
}

std::string FakeDataAccess::put(const std::string& table, Item item) {
    std::vector<Item>& rows = m_tables[table];
    const auto row = std::find_if(rows.begin(), rows.end(), [&item](const Item& held) {
        return !rowId(item).empty() && rowId(held) == rowId(item);
    });
    if (row != rows.end()) {
        *row = std::move(item);
        return rowId(*row);
    }
    if (!std::holds_alternative<CallBackItem>(item)) {
        setUniqueId(item, std::to_string(++m_lastUniqueId));
    }
    rows.push_back(std::move(item));
    return rowId(rows.back());
}

std::string FakeDataAccess::write(const DataRequest& request) {
    std::string last;
    for (const Item& item : request.items) {
        last = put(request.schema, item);
    }
    return journalxml::buildUpdateAnswer(request.schema, last);
}

std::string FakeDataAccess::update(const DataRequest& request) {
    for (const auto& [key, value] : request.settings) {
        m_settings[key] = value;
    }
    return journalxml::buildUpdateAnswer(request.schema);
}

std::string FakeDataAccess::erase(const DataRequest& request) {
    std::vector<Item>& rows = m_tables[request.schema];
    std::string last;
    const auto meant = [&request, &last](const Item& item) {
        const bool erased = request.allEntries ||
                            std::any_of(request.keys.begin(), request.keys.end(),
                                        [&item](const DataRequest::Key& key) { return isMeant(key, item); });
        if (erased) {
            last = rowId(item);
        }
        return erased;
    };
    const auto gone = std::remove_if(rows.begin(), rows.end(), meant);
    rows.erase(gone, rows.end());
    return journalxml::buildUpdateAnswer(request.schema, last);
}

}  // namespace journaltest
