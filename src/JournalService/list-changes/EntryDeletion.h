#pragma once

#include "src/JournalService/lists/ListTransaction.h"

class ObserverNotifierIfc;

namespace journal {

struct SettingsSnapshot;

/// With this identifier the switch keeps the entries of group calls only.
inline constexpr int kGroupCallSystem = 1;

// The steps by which one entry is deleted. Call them inside a `ListTransaction`, on its thread.

// Each reports the calls of `item` to a switch that keeps them, and waits for its response; without such a
// switch it has no effect. Releases the list that is open, if any.
void reportDeleted(ListTransaction& transaction, const SettingsSnapshot& settings,
                   const MissedCallItem& item);
void reportDeleted(ListTransaction& transaction, const SettingsSnapshot& settings,
                   const DialledCallItem& item);
void reportDeleted(ListTransaction& transaction, const SettingsSnapshot& settings,
                   const ReceivedCallItem& item);
/// No switch keeps a log of forwarded calls and callbacks: these two have no effect.
void reportDeleted(ListTransaction& transaction, const SettingsSnapshot& settings,
                   const ForwardedCallItem& item);
void reportDeleted(ListTransaction& transaction, const SettingsSnapshot& settings, const CallBackItem& item);

// Each notifies the observers that the entry was deleted. Requires: no list is locked.
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& lists, const MissedCallItem& deleted);
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& lists, const DialledCallItem& deleted);
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& lists, const ReceivedCallItem& deleted);
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& lists, const ForwardedCallItem& deleted);
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& lists, const CallBackItem& deleted);

/// Deletes the entry in its list and in the database, and notifies the observers. `deleted` is a copy of the
/// entry. Requires: the list is loaded with it.
template <typename Item>
void deleteEntry(ListTransaction& transaction, JournalLists& lists, const Item& deleted) {
    auto& items = transaction.open<Item>();
    transaction.remove(items, findEntry(items, deleted.getEntryId()));
    transaction.commit([&](ObserverNotifierIfc& notifier) { notifyDeleted(notifier, lists, deleted); });
}

}  // namespace journal
