#include "tests/support/FakeDataAccess.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <type_traits>

#include "journal-items/Occurrences.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace journaltest {

using journalxml::DataRequest;
using Helper = CallListDatabaseAdapterHelper;

FakeDataAccess::Row FakeDataAccess::rowOf(Item item) {
    Row row;
    row.item = std::move(item);
    std::visit(
        [&row](const auto& held) {
            row.entryId = held.getEntryId();
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, CallBackItem>) {
                row.id = held.getEntryId();
                row.sortKey = held.getTimeDate();
            } else {
                row.id = held.getUniqueId();
                row.sortKey = sortKeyOf(held);
            }
        },
        row.item);
    return row;
}

std::string FakeDataAccess::put(const std::string& table, Row row, bool keepsId) {
    std::vector<Row>& rows = m_tables[table];
    auto place = std::find_if(rows.begin(), rows.end(),
                              [&row](const Row& held) { return !row.id.empty() && held.id == row.id; });
    if (place == rows.end()) {
        std::visit(
            [&](auto& held) {
                if constexpr (!std::is_same_v<std::decay_t<decltype(held)>, CallBackItem>) {
                    row.id = keepsId && !row.id.empty() ? row.id : std::to_string(m_lastUniqueId + 1);
                    held.setUniqueId(row.id);
                    m_lastUniqueId = std::max(m_lastUniqueId, std::strtol(row.id.c_str(), nullptr, 10));
                }
            },
            row.item);
        place = rows.emplace(rows.end());
    }
    *place = std::move(row);
    return place->id;
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

std::string FakeDataAccess::processRequest(const std::string& request) {
    {
        const std::lock_guard lock(m_mutex);
        m_documents.push_back(request);
    }
    return m_response ? m_response(request) : carryOut(request);
}

std::string FakeDataAccess::carryOut(const std::string& document) {
    const std::optional<DataRequest> request = journalxml::parseDataRequest(document);
    const std::lock_guard lock(m_mutex);
    if (!request || (m_failing && document.find(*m_failing) != std::string::npos)) {
        return Helper::FAILED;
    }
    if (request->reason == DataRequest::Reason::eRead) {
        return read(*request);
    }
    std::string lastId = erase(*request);
    for (const Item& item : request->items) {
        lastId = put(request->schema, rowOf(item));
    }
    for (const auto& [key, value] : request->settings) {
        settings[key] = value;
    }
    return journalxml::buildUpdateResponse(request->schema, lastId);
}

std::string FakeDataAccess::read(const DataRequest& request) const {
    if (request.schema == JournalServiceHelper::SETTINGS_SCHEMA) {
        return journalxml::buildSettingsResponse({settings.begin(), settings.end()});
    }
    std::vector<const Row*> rows;
    for (const auto& [table, held] : m_tables) {
        if (table == request.schema ||
            (request.schema == Helper::CONVERSATIONS_SCHEMA && table != Helper::DAS_CALLLOGCALLBACKS)) {
            for (const Row& row : held) {
                rows.push_back(&row);
            }
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row* left, const Row* right) { return left->sortKey > right->sortKey; });
    journalxml::ListDocument document(request.schema);
    bool fits = true;
    for (std::size_t row = request.offset;
         fits && row < rows.size() && row - request.offset < request.rowLimit; ++row) {
        fits = std::visit([&document](const auto& item) { return document.add(item); }, rows[row]->item);
    }
    if (request.schema == Helper::CALLLOGPHONEBOOK_SCHEMA) {
        for (const Contact& contact : contacts) {
            fits = fits && document.add(contact);
        }
    }
    return document.text();
}

std::string FakeDataAccess::erase(const DataRequest& request) {
    std::string last;
    const auto isMeant = [&request, &last](const Row& row) {
        const bool erased =
            request.allEntries ||
            std::any_of(request.keys.begin(), request.keys.end(), [&row](const auto& key) {
                return key.uniqueId.empty() ? key.entryId == row.entryId : key.uniqueId == row.id;
            });
        last = erased ? row.id : last;
        return erased;
    };
    std::erase_if(m_tables[request.schema], isMeant);
    return last;
}

}  // namespace journaltest
