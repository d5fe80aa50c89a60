#include "host/lists/ListInvoker.h"

#include <algorithm>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/lists/ListOperations.h"
#include "journalservice/JournalServiceIfc.h"
#include "platform/framework/Executable.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ListMessage.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

using Ids = std::set<std::string>;

template <typename Item>
std::string idOfRow(const Item& item) {
    if constexpr (std::is_same_v<Item, CallBackItem>) {
        return item.getEntryId();
    } else {
        return item.getUniqueId();
    }
}

/// Returns the ids of the rows of those entries. Moves the ids of entries that the list does not have to
/// `unknown`.
template <typename Item>
Ids takeKnown(JournalServiceIfc& journal, Ids& entryIds, std::vector<std::string>& unknown) {
    Ids known;
    Ids rows;
    for (const Item& item : readList<Item>(journal)) {
        if (entryIds.contains(item.getEntryId())) {
            known.insert(item.getEntryId());
            rows.insert(idOfRow(item));
        }
    }
    std::set_difference(entryIds.begin(), entryIds.end(), known.begin(), known.end(),
                        std::back_inserter(unknown));
    entryIds = std::move(known);
    return rows;
}

/// Returns the number of the rows that no entry of the list has.
template <typename Item>
std::size_t countUnloaded(JournalServiceIfc& journal, Ids rows) {
    for (const Item& item : readList<Item>(journal)) {
        rows.erase(idOfRow(item));
    }
    return rows.size();
}

}  // namespace

std::string ListInvoker::responseTo(std::string_view message, Executable* target) const {
    auto* const journal = dynamic_cast<JournalServiceIfc*>(target);
    const auto request = journalxml::parseListRequest(message);
    std::optional<Ids> rows = request ? m_storedIds(request->list) : std::nullopt;
    if (journal == nullptr || !rows) {
        logAppUni("Lists", __FILE_NAME__, 3, __LINE__, "a request for a list cannot be carried out: %s",
                  request ? "the database fails" : "it cannot be read");
        return JournalServiceHelper::FAILURE;
    }
    if (request->countsUnloaded) {
        return journalxml::buildUnloadedCount(
            withItemOf(request->list, [&]<typename Item>() { return countUnloaded<Item>(*journal, *rows); }));
    }
    journalxml::ListDeleted result;
    withItemOf(request->list, [&]<typename Item>() {
        Ids entryIds(request->entryIds.begin(), request->entryIds.end());
        if (entryIds.empty()) {
            result.deleted = rows->size();
            (journal->*listOperations<Item>().clear)();
        } else {
            rows = takeKnown<Item>(*journal, entryIds, result.unknown);
            result.deleted = entryIds.size();
            (journal->*listOperations<Item>().deleteSet)(entryIds);
        }
    });
    const std::optional<Ids> stored = m_storedIds(request->list);
    if (!stored) {
        return JournalServiceHelper::FAILURE;
    }
    result.remaining = static_cast<std::size_t>(std::count_if(
        rows->begin(), rows->end(), [&stored](const std::string& id) { return stored->contains(id); }));
    result.deleted -= result.remaining;
    return journalxml::buildListDeleted(result);
}

}  // namespace host
