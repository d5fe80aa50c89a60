#include "apps/calljournal/ListResponse.h"

#include <deque>
#include <iostream>
#include <nlohmann/json.hpp>

#include "host/presentation/ItemCsv.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/ItemSearch.h"
#include "host/presentation/PlainText.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "journal-items/Occurrences.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/ClientResponse.h"
#include "platform/journal-library/ListMessage.h"
#include "platform/journal-library/ListXml.h"

namespace calljournal {
namespace {

bool isUnviewed(const MissedCallItem& item) {
    return !item.getViewed();
}
template <typename Item>
bool isUnviewed(const Item& /*item*/) {
    return false;
}

std::string durationOf(const MissedCallItem::MissedCallInfo& /*occurrence*/) {
    return {};
}
std::string durationOf(const Duration& occurrence) {
    return occurrence.getDuration();
}

/// A caller who withholds the number has neither name nor number.
void nameUnknown(ListRow& row) {
    if (row.name.empty() && row.number.empty()) {
        row.name = "unknown";
    }
}

template <typename Item>
ListRow rowOf(const Item& item) {
    ListRow row;
    row.entryId = item.getEntryId();
    row.marked = isUnviewed(item);
    row.name = host::fullName(item.getFirstname(), item.getSurname());
    const auto& occurrences = occurrencesOf(item);
    if (!occurrences.empty()) {
        row.time = host::localTime(occurrences.front().getTimeAndDate());
        row.number = occurrences.front().getNumber();
        row.duration = durationOf(occurrences.front());
        row.count = std::to_string(occurrences.size());
    }
    nameUnknown(row);
    return row;
}

ListRow rowOf(const CallBackItem& item) {
    ListRow row;
    row.entryId = item.getEntryId();
    row.time = host::localTime(host::utcTime(item.getTimeDate()));
    row.name = host::fullName(item.getFirstname(), item.getSurname());
    row.number = item.getNumber();
    nameUnknown(row);
    return row;
}

template <typename Item>
std::optional<ListResponse> read(const std::string& text, const ListFilter& filter) {
    constexpr ListName kList = ListTraits<Item>::kList;
    std::deque<Item> items;
    if (journalxml::isFailure(text) || !ListXml<Item>::kParse(text, items)) {
        return std::nullopt;
    }
    const host::SearchText search(filter.search);
    ListResponse response;
    response.csv = host::csvHeader(kList);
    nlohmann::ordered_json shown = nlohmann::ordered_json::array();
    for (const Item& item : items) {
        if (!host::itemMatches(item, search)) {
            continue;
        }
        ++response.total;
        response.unviewed += isUnviewed(item) ? 1U : 0U;
        if (!filter.limit || response.rows.size() < *filter.limit) {
            response.rows.push_back(rowOf(item));
            shown.push_back(host::itemJson(item));
            response.csv += host::csvRows(kList, shown.back());
        }
    }
    response.json = host::jsonText({{"list", ListTraits<Item>::kWord},
                                    {"total", response.total},
                                    {"unviewed", response.unviewed},
                                    {"items", std::move(shown)}});
    return response;
}

}  // namespace

std::optional<ListResponse> readListResponse(ListName list, const std::string& response,
                                             const ListFilter& filter) {
    return withItemOf(list, [&]<typename Item>() { return read<Item>(response, filter); });
}

ListResponse fetchList(host::RemoteClient& client, ListName list, const ListFilter& filter) {
    const auto method = withItemOf(list, []<typename Item>() { return ListXml<Item>::kGetList; });
    auto response = readListResponse(list, client.call(journalxml::buildRequest(method)), filter);
    if (!response) {
        throw host::RemoteError("calljournal could not return the list; see its log");
    }
    return std::move(*response);
}

void reportUnloaded(host::RemoteClient& client, ListName list) {
    journalxml::ListRequest request;
    request.list = list;
    request.countsUnloaded = true;
    const auto count = journalxml::parseUnloadedCount(client.call(journalxml::buildListRequest(request)));
    if (count.value_or(0) != 0) {
        std::cerr << "calljournal: " << host::countText(list, *count)
                  << " more in the database, too old to be shown until newer entries are deleted"
                  << std::endl;
    }
}

}  // namespace calljournal
