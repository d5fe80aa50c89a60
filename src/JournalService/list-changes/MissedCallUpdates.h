#pragma once

#include <set>
#include <string>

class MissedCallItem;

namespace journal {

class JournalLists;

/// Changes missed items in place for clients: an item is viewed, ages or is updated. Only the missed list has
/// these operations. Each is one `ListTransaction`.
///
/// Thread-safe. Do not call from inside an observer callback or with a list locked.
class MissedCallUpdates {
public:
    /// `lists` is borrowed and outlives this object.
    explicit MissedCallUpdates(JournalLists& lists) : m_lists(lists) {}

    /// Marks the item that equals `item` unviewed, or adds `item` at the front when there is none. An item
    /// without an entry id is ignored. Notifies no observer.
    void updateMissedCall(const MissedCallItem& item);
    /// Marks the entries of these ids viewed and notifies the observers of the count alone. Always true.
    bool setMissedCallListAsViewed(const std::set<std::string>& entryIds);
    /// Marks the entry viewed and notifies the observers of the changed item.
    void ageMissedCall(const std::string& entryId);

private:
    JournalLists& m_lists;
};

}  // namespace journal
