#include "src/JournalService/list-changes/MissedCallUpdates.h"

#include <algorithm>

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/ListTransaction.h"

namespace journal {

void MissedCallUpdates::updateMissedCall(const MissedCallItem& item) {
    const std::string& entryId = item.getEntryId();
    if (entryId.empty()) {
        LOG_JOURNAL(2, "Item entry id is empty");
        return;
    }
    ListTransaction transaction(m_lists);
    const auto isSame = [&item](const MissedCallItem& stored) { return stored.equals(item); };
    auto& missed = transaction.open<MissedCallItem>(isSame);
    const auto found = std::find_if(missed.begin(), missed.end(), isSame);
    if (found != missed.end()) {
        found->setViewed(false);
        transaction.write(*found);
        LOG_JOURNAL(3, "Entry found entryId = [%s] but update can be needed!", entryId.c_str());
        return;
    }
    MissedCallItem added = item;
    // The client's copy may be out of date: another entry may have its ids now.
    added.setUniqueId({});
    added.setEntryId(transaction.makeUniqueEntryId(entryId));
    transaction.open<MissedCallItem>().push_front(std::move(added));
    transaction.write(missed.front());
    LOG_JOURNAL(5, "Entry NOT found entryId = [%s] and item has been added", entryId.c_str());
}

bool MissedCallUpdates::setMissedCallListAsViewed(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "setMissedCallListAsViewed");
    if (entryIds.empty()) {
        return true;
    }
    ListTransaction transaction(m_lists);
    auto& missed = transaction.open<MissedCallItem>();
    std::vector<const MissedCallItem*> stored;
    for (MissedCallItem& item : missed) {
        if (entryIds.contains(item.getEntryId())) {
            item.setViewed(true);
            LOG_JOURNAL(5, "setMissedCallListAsViewed Unique ID %s", item.getUniqueId().c_str());
            if (item.getUniqueId().empty()) {
                // Never stored yet: the item takes its unique id from a response of its own only.
                transaction.write(item);
            } else {
                stored.push_back(&item);
            }
        }
    }
    transaction.rewrite(stored);
    const unsigned unviewed = JournalLists::getUnviewedMissedCallsCount(missed);
    transaction.commit(
        [unviewed](ObserverNotifierIfc& notifier) { notifier.updateMissedCallCount(unviewed); });
    return true;
}

void MissedCallUpdates::ageMissedCall(const std::string& entryId) {
    LOG_JOURNAL(5, "ageMissedCall");
    ListTransaction transaction(m_lists);
    auto& missed = transaction.open<MissedCallItem>();
    std::deque<MissedCallItem> aged;
    for (MissedCallItem& item : missed) {
        if (item.getEntryId() == entryId) {
            item.setViewed(true);
            transaction.write(item);
            aged.push_back(item);
        }
    }
    const unsigned unviewed = JournalLists::getUnviewedMissedCallsCount(missed);
    transaction.commit([&](ObserverNotifierIfc& notifier) {
        for (const MissedCallItem& item : aged) {
            notifier.updateMissedCallCountAndCalls(item, unviewed, item.getUniqueId(),
                                                   JournalServiceObserverIfc::eItemUpdated);
        }
    });
}

}  // namespace journal
