#include "src/JournalServiceEvents/switch-log/CallLogRemoval.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/csta/CallLogEntryEvent.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/ListTransaction.h"
#include "src/JournalServiceEvents/switch-log/SwitchTime.h"

// `CallLogRemoval::remove` is the sequence that all lists share; the policies have the rules of one list:
//
//     Item                              the list's items
//     takesPart(info)                   true if a call may be the one that is meant
//     write(transaction, item)          writes an item that has lost a call to the database
//     notifyShortened, notifyRemoved    notify the observers. An item that has lost a call is announced as a
//                                       changed list: as an updated item it would look like one more call

namespace journal {

namespace {

struct Changed {
    /// True if the item has lost its last call and is deleted.
    bool removed = false;
    std::string uniqueId{};
    /// The number of unviewed items; of the missed list only.
    unsigned unviewed = 0;
};

template <typename ListItem>
struct AnyCall {
    using Item = ListItem;

    template <typename Info>
    static bool takesPart(const Info& /*info*/) {
        return true;
    }
    static void write(ListTransaction& transaction, Item& item) { transaction.write(item); }
};

struct MissedPolicy : AnyCall<MissedCallItem> {
    static void notifyShortened(ObserverNotifierIfc& notifier, JournalLists& /*lists*/,
                                const Changed& change) {
        notifier.updateMissedCallCountAndCalls(change.unviewed);
    }
    static void notifyRemoved(ObserverNotifierIfc& notifier, JournalLists& /*lists*/, const Changed& change) {
        notifier.updateMissedCallCountAndCalls(change.unviewed, change.uniqueId);
    }
};

struct MissedGroupPolicy : MissedPolicy {
    static bool takesPart(const MissedCallItem::MissedCallInfo& info) {
        return info.getLogTarget() == CallLogEntryEvent::eMissedGroup || !info.getLineKey().empty();
    }
    static void write(ListTransaction& transaction, Item& item) {
        transaction.deleteRow(item);
        item.setUniqueId({});
        transaction.write(item);
    }
};

struct DialledPolicy : AnyCall<DialledCallItem> {
    static void notifyShortened(ObserverNotifierIfc& notifier, JournalLists& lists,
                                const Changed& /*change*/) {
        notifier.updateDialledCalls(lists.front<DialledCallItem>());
    }
    static void notifyRemoved(ObserverNotifierIfc& notifier, JournalLists& lists, const Changed& change) {
        notifier.updateDialledCalls(lists.front<DialledCallItem>(), change.uniqueId);
    }
};

struct ReceivedPolicy : AnyCall<ReceivedCallItem> {
    static void notifyShortened(ObserverNotifierIfc& notifier, JournalLists& /*lists*/,
                                const Changed& /*change*/) {
        notifier.updateReceivedCalls();
    }
    static void notifyRemoved(ObserverNotifierIfc& notifier, JournalLists& /*lists*/, const Changed& change) {
        notifier.updateReceivedCalls(change.uniqueId);
    }
};

/// Removes the first call that matches from the item; false when there is none.
template <typename Item, typename Matches>
bool takeOccurrence(Item& item, Matches matches) {
    const auto& infos = occurrencesOf(item);
    const auto found = std::find_if(infos.begin(), infos.end(), matches);
    if (found == infos.end()) {
        return false;
    }
    auto remaining = infos;
    remaining.erase(std::next(remaining.begin(), std::distance(infos.begin(), found)));
    setOccurrences(item, remaining);
    return true;
}

}  // namespace

void CallLogRemoval::removeMissedCallEntry(const std::string& subscriberNumber,
                                           const std::string& entryTime) {
    remove<MissedPolicy>("removeMissedCallEntry", subscriberNumber, entryTime);
}

void CallLogRemoval::removeDialledCallEntry(const std::string& subscriberNumber,
                                            const std::string& entryTime) {
    remove<DialledPolicy>("removeDialledCallEntry", subscriberNumber, entryTime);
}

void CallLogRemoval::removeReceivedCallEntry(const std::string& subscriberNumber,
                                             const std::string& entryTime) {
    remove<ReceivedPolicy>("removeReceivedCallEntry", subscriberNumber, entryTime);
}

void CallLogRemoval::removeMissedGroupCallEntry(const std::string& subscriberNumber,
                                                const std::string& entryTime) {
    remove<MissedGroupPolicy>("removeMissedGroupCallEntry", subscriberNumber, entryTime);
}

template <typename Policy>
void CallLogRemoval::remove(const char* operation, const std::string& number, const std::string& entryTime) {
    using Item = typename Policy::Item;
    LOG_EVENTS(5, "%s():Subscriber Number: %s, entryTime: %s", operation, number.c_str(), entryTime.c_str());
    ListTransaction transaction(m_lists);
    const auto matches = [&](const auto& info) {
        return info.getNumber() == number && Policy::takesPart(info) &&
               isNotLater(operation, entryTime, timeOf(info));
    };
    auto& items = transaction.openLoaded<Item>([&matches](const Item& item) {
        const auto& infos = occurrencesOf(item);
        return std::any_of(infos.begin(), infos.end(), matches);
    });
    auto item = items.begin();
    while (item != items.end() && !takeOccurrence(*item, matches)) {
        ++item;
    }
    if (item == items.end()) {
        return;
    }
    Changed change{.removed = occurrencesOf(*item).empty(), .uniqueId = item->getUniqueId()};
    if (change.removed) {
        transaction.remove(items, item);
    } else {
        Policy::write(transaction, *item);
        Item shortened = std::move(*item);
        items.erase(item);
        insertInOrder(items, std::move(shortened),
                      [this](const Item& a, const Item& b) { return isNewer(a, b); });
    }
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        change.unviewed = JournalLists::getUnviewedMissedCallsCount(items);
    }
    transaction.commit([&](ObserverNotifierIfc& notifier) {
        if (change.removed) {
            Policy::notifyRemoved(notifier, m_lists, change);
        } else {
            Policy::notifyShortened(notifier, m_lists, change);
        }
    });
}

template <typename Item>
bool CallLogRemoval::isNewer(const Item& a, const Item& b) const {
    int result = 0;
    const auto& infosOfA = occurrencesOf(a);
    const auto& infosOfB = occurrencesOf(b);
    if (infosOfA.empty() || infosOfB.empty() ||
        !m_clock.compareTimes(timeOf(infosOfA.front()), timeOf(infosOfB.front()), result)) {
        return journal::isNewer(a, b);
    }
    return result > 0;
}

bool CallLogRemoval::isNotLater(const char* operation, const std::string& entryTime,
                                const std::string& occurrenceTime) const {
    int result = 0;
    if (!m_clock.compareTimes(entryTime, occurrenceTime, result)) {
        if (!m_clock.isAvailable()) {
            LOG_EVENTS(2, "%s():ClockSvc not available", operation);
        }
        return false;
    }
    return result >= 0;
}

template <typename Info>
std::string CallLogRemoval::timeOf(const Info& info) const {
    return comparableTime(info.getTimeAndDate(), info.getTimeFormat(), *m_settings.values());
}

}  // namespace journal
