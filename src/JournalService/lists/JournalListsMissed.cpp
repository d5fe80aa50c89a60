#include <algorithm>

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListPersistence.h"

// What only the missed list has: items that are viewed, aged and updated in place.

namespace journal {

using Helper = CallListDatabaseAdapterHelper;

void JournalLists::updateMissedCall(const MissedCallItem& item) {
    const std::string& entryId = item.getEntryId();
    if (entryId.empty()) {
        LOG_JOURNAL(2, "Item entry id is empty");
        return;
    }
    const Change change(*this);
    const auto isMeant = [&item](const MissedCallItem& stored) { return stored.equals(item); };
    restore<MissedCallItem>(isMeant);
    const auto missed = list<MissedCallItem>().access();
    const auto found = std::find_if(missed->begin(), missed->end(), isMeant);
    if (found != missed->end()) {
        found->setViewed(false);
        m_persistence.updateMissedEntry(*found, Helper::WRITEREQUEST);
        LOG_JOURNAL(3, "Entry found entryId = [%s] but update can be needed!", entryId.c_str());
        return;
    }
    missed->push_front(item);
    // The id of a row belongs to the item that was written there; the copy of a client may be an old one.
    missed->front().setUniqueId({});
    m_persistence.updateMissedEntry(missed->front(), Helper::WRITEREQUEST);
    LOG_JOURNAL(5, "Entry NOT found entryId = [%s] and item has been added", entryId.c_str());
}

bool JournalLists::setMissedCallListAsViewed(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "setMissedCallListAsViewed");
    if (entryIds.empty()) {
        return true;
    }
    const Change change(*this);
    unsigned unviewed = 0;
    {
        const auto missed = list<MissedCallItem>().access();
        std::vector<const MissedCallItem*> stored;
        for (MissedCallItem& item : *missed) {
            if (entryIds.contains(item.getEntryId())) {
                item.setViewed(true);
                LOG_JOURNAL(5, "setMissedCallListAsViewed Unique ID %s", item.getUniqueId().c_str());
                if (item.getUniqueId().empty()) {
                    // Never stored yet: only an answer of its own can tell the item its unique id.
                    m_persistence.updateMissedEntry(item, Helper::WRITEREQUEST);
                } else {
                    stored.push_back(&item);
                }
            }
        }
        m_persistence.rewrite(stored);
        unviewed = getUnviewedMissedCallsCount(*missed);
    }
    m_notifier.updateMissedCallCount(unviewed);
    return true;
}

void JournalLists::ageMissedCall(const std::string& entryId) {
    LOG_JOURNAL(5, "ageMissedCall");
    const Change change(*this);
    std::deque<MissedCallItem> aged;
    unsigned unviewed = 0;
    {
        const auto missed = list<MissedCallItem>().access();
        for (MissedCallItem& item : *missed) {
            if (item.getEntryId() == entryId) {
                item.setViewed(true);
                m_persistence.updateMissedEntry(item, Helper::WRITEREQUEST);
                aged.push_back(item);
            }
        }
        unviewed = getUnviewedMissedCallsCount(*missed);
    }
    for (const MissedCallItem& item : aged) {
        m_notifier.updateMissedCallCountAndCalls(item, unviewed, item.getUniqueId(),
                                                 JournalServiceObserverIfc::eItemUpdated);
    }
}

}  // namespace journal
