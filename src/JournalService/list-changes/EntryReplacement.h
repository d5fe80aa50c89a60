#pragma once

#include <deque>

namespace journal {

class JournalLists;
class ListTransaction;
class PhoneSettings;

/// Replaces the calls, the names and the picture of an entry: for a client that keeps more calls than the
/// list shows, and deletes or renames some of them. Each replacement is one `ListTransaction`.
///
/// Thread-safe. Do not call from inside an observer callback or with a list locked.
class EntryReplacement {
public:
    /// Both are borrowed and outlive this object.
    EntryReplacement(const PhoneSettings& settings, JournalLists& lists)
        : m_settings(settings), m_lists(lists) {}

    /// The entry that has the item's unique id, loaded or not, takes over the item's names, picture, calls
    /// and, of a missed entry, the viewed mark. The calls are given newest first; the entry keeps the
    /// first `kMaxOccurrences`. Its entry id stays; its place in the list follows from its newest call. The
    /// observers are notified once of an updated item. An item without calls deletes the entry.
    ///
    /// If `reportsRemoved` is true, the calls that the item no longer has are reported to a switch that
    /// keeps the log, as a deletion reports them. Returns false, and changes nothing, if the item has no
    /// unique id, the list has no entry with it, or the item has an entry id that the entry no longer has.
    ///
    /// For the items of the four call lists.
    template <typename Item>
    bool replaceEntry(const Item& item, bool reportsRemoved);

private:
    template <typename Item>
    static Item update(ListTransaction& transaction, std::deque<Item>& items,
                       typename std::deque<Item>::iterator entry, const Item& item);
    template <typename Item>
    void reportLost(ListTransaction& transaction, const Item& before, const Item& after);

    const PhoneSettings& m_settings;
    JournalLists& m_lists;
};

}  // namespace journal
