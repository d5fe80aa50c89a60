#include "src/JournalService/list-changes/EntryReplacement.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <type_traits>

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/list-changes/EntryDeletion.h"
#include "src/JournalService/lists/ListTransaction.h"

namespace journal {

namespace {

using ActionType = JournalServiceObserverIfc::ActionType;

template <typename Infos>
Infos newestOf(const Infos& infos) {
    const auto count = std::min(infos.size(), CallItemWithPicture::kMaxOccurrences);
    return {infos.begin(), std::next(infos.begin(), static_cast<std::ptrdiff_t>(count))};
}

bool isSameCall(const CallInfo& a, const CallInfo& b) {
    return a.getTimeAndDate() == b.getTimeAndDate() && a.getNumber() == b.getNumber() &&
           a.getCallId() == b.getCallId();
}

/// The calls of `before` that `after` does not have, in their order.
template <typename Infos>
Infos lostOf(Infos before, const Infos& after) {
    std::erase_if(before, [&after](const CallInfo& lost) {
        return std::any_of(after.begin(), after.end(),
                           [&lost](const CallInfo& kept) { return isSameCall(lost, kept); });
    });
    return before;
}

/// True if a kept call has the number of the newest lost one.
template <typename Infos>
bool keepsNumber(const Infos& lost, const Infos& kept) {
    return !lost.empty() && std::any_of(kept.begin(), kept.end(), [&lost](const CallInfo& info) {
        return info.getNumber() == lost.front().getNumber();
    });
}

/// The entry keeps its ids, and a dialled one the number that it is found by.
template <typename Item>
void takeOver(Item& entry, const Item& item) {
    entry.setFirstname(item.getFirstname());
    entry.setSurname(item.getSurname());
    entry.setPictureClip(item.getPictureClip());
    setOccurrences(entry, newestOf(occurrencesOf(item)));
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        entry.setViewed(item.getViewed());
    }
}

void notifyUpdated(ObserverNotifierIfc& notifier, JournalLists& lists, const MissedCallItem& item) {
    notifier.updateMissedCallCountAndCalls(item, lists.getUnviewedMissedCallsCount(), item.getUniqueId(),
                                           ActionType::eItemUpdated);
}
void notifyUpdated(ObserverNotifierIfc& notifier, JournalLists& /*lists*/, const DialledCallItem& item) {
    notifier.updateDialledCalls(item, item.getUniqueId(), ActionType::eItemUpdated);
}
void notifyUpdated(ObserverNotifierIfc& notifier, JournalLists& /*lists*/, const ReceivedCallItem& item) {
    notifier.updateReceivedCalls(item, item.getUniqueId(), ActionType::eItemUpdated);
}
void notifyUpdated(ObserverNotifierIfc& notifier, JournalLists& /*lists*/, const ForwardedCallItem& item) {
    notifier.updateForwardedCalls(item, item.getUniqueId(), ActionType::eItemUpdated);
}

}  // namespace

template <typename Item>
bool EntryReplacement::replaceEntry(const Item& item, bool reportsRemoved) {
    const std::string& uniqueId = item.getUniqueId();
    LOG_JOURNAL(5, "JournalService::replaceEntry: uniqueId = %s", uniqueId.c_str());
    if (uniqueId.empty()) {
        return false;
    }
    ListTransaction transaction(m_lists);
    const auto isEntry = [&uniqueId](const Item& stored) { return stored.getUniqueId() == uniqueId; };
    auto& items = transaction.openLoaded<Item>(isEntry);
    const auto entry = std::find_if(items.begin(), items.end(), isEntry);
    if (entry == items.end() || (!item.getEntryId().empty() && entry->getEntryId() != item.getEntryId())) {
        return false;
    }
    const Item before = *entry;
    const bool isDeletion = occurrencesOf(item).empty();
    Item after;
    if (!isDeletion) {
        after = update(transaction, items, entry, item);
    }
    if (reportsRemoved) {
        reportLost(transaction, before, item);
    }
    if (isDeletion) {
        deleteEntry(transaction, m_lists, before);
    } else {
        transaction.commit([&](ObserverNotifierIfc& notifier) { notifyUpdated(notifier, m_lists, after); });
    }
    return true;
}

/// Returns a copy of the entry as it was written.
template <typename Item>
Item EntryReplacement::update(ListTransaction& transaction, std::deque<Item>& items,
                              typename std::deque<Item>::iterator entry, const Item& item) {
    const std::string place = sortKeyOf(*entry);
    takeOver(*entry, item);
    transaction.write(*entry);
    Item after = *entry;
    if (sortKeyOf(after) != place) {
        items.erase(entry);
        insertInOrder(items, after);
    }
    return after;
}

template <typename Item>
void EntryReplacement::reportLost(ListTransaction& transaction, const Item& before, const Item& after) {
    const PhoneSettings::Snapshot settings = m_settings.values();
    Item lost = before;
    setOccurrences(lost, lostOf(occurrencesOf(before), occurrencesOf(after)));
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        // The request for a group's call deletes all calls of its number.
        if (!settings->m_serverBasedCallLog && keepsNumber(occurrencesOf(lost), occurrencesOf(after))) {
            return;
        }
    }
    reportDeleted(transaction, *settings, lost);
}

template bool EntryReplacement::replaceEntry(const MissedCallItem&, bool);
template bool EntryReplacement::replaceEntry(const DialledCallItem&, bool);
template bool EntryReplacement::replaceEntry(const ReceivedCallItem&, bool);
template bool EntryReplacement::replaceEntry(const ForwardedCallItem&, bool);

}  // namespace journal
