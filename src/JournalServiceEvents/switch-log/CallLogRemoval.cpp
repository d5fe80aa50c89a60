#include "src/JournalServiceEvents/switch-log/CallLogRemoval.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/csta/CallLogEntryEvent.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/ListPersistence.h"
#include "src/JournalServiceEvents/switch-log/SwitchTime.h"

// The common road is `CallLogRemoval::remove`; what differs stands in the policies:
//
//     Item                              the list's items
//     takesPart(info)                   whether a call may be the one that is meant
//     write(mirror, item)               an item that has lost a call, into the database
//     notifyShortened, notifyRemoved        the observers' calls; `change` is what happened. An item that has lost a call is told
//                                       as a changed list: as an updated item it would look like one more call

namespace journal {

using Helper = CallListDatabaseAdapterHelper;

namespace {

struct Changed {
    /// Whether the item has lost its last call, and is gone.
    bool gone = false;
    /// As the observers know it.
    std::string uniqueId;
    /// Missed items that nobody has viewed.
    unsigned unviewed = 0;
};

template <typename ListItem>
struct AnyCall {
    using Item = ListItem;

    template <typename Info>
    static bool takesPart(const Info& /*info*/) {
        return true;
    }
    static void write(ListPersistence& persistence, Item& item) {
        persistence.update(item, Helper::WRITEREQUEST);
    }
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
    static void write(ListPersistence& persistence, Item& item) {
        persistence.update(item, Helper::DELETEREQUEST);
        item.setUniqueId({});
        persistence.update(item, Helper::WRITEREQUEST);
    }
};

struct DialledPolicy : AnyCall<DialledCallItem> {
    static void notifyShortened(ObserverNotifierIfc& notifier, JournalLists& lists,
                                const Changed& /*change*/) {
        notifier.updateDialledCalls(lists.getFrontDialledCall());
    }
    static void notifyRemoved(ObserverNotifierIfc& notifier, JournalLists& lists, const Changed& change) {
        notifier.updateDialledCalls(lists.getFrontDialledCall(), change.uniqueId);
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

/// Takes the first call that matches out of the item; false when there is none.
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
    const JournalLists::Change section(m_parts.lists);
    if (m_parts.loadAtFirstNeed) {
        m_parts.loadAtFirstNeed();
    }
    const auto isMeant = [&](const auto& info) {
        return info.getNumber() == number && Policy::takesPart(info) &&
               isNotLater(operation, entryTime, timeOf(info));
    };
    m_parts.lists.restore<Item>([&isMeant](const Item& item) {
        const auto& infos = occurrencesOf(item);
        return std::any_of(infos.begin(), infos.end(), isMeant);
    });
    Changed change;
    {
        const auto items = m_parts.lists.list<Item>().access();
        auto item = items->begin();
        while (item != items->end() && !takeOccurrence(*item, isMeant)) {
            ++item;
        }
        if (item == items->end()) {
            return;
        }
        change.uniqueId = item->getUniqueId();
        change.gone = occurrencesOf(*item).empty();
        if (change.gone) {
            m_parts.persistence.update(*item, Helper::DELETEREQUEST);
            items->erase(item);
        } else {
            Policy::write(m_parts.persistence, *item);
            Item shortened = std::move(*item);
            items->erase(item);
            insertInOrder(*items, std::move(shortened),
                          [this](const Item& a, const Item& b) { return isNewer(a, b); });
        }
        if constexpr (std::is_same_v<Item, MissedCallItem>) {
            change.unviewed = JournalLists::getUnviewedMissedCallsCount(*items);
        }
    }
    if (change.gone) {
        Policy::notifyRemoved(m_parts.notifier, m_parts.lists, change);
    } else {
        Policy::notifyShortened(m_parts.notifier, m_parts.lists, change);
    }
}

template <typename Item>
bool CallLogRemoval::isNewer(const Item& a, const Item& b) const {
    int result = 0;
    const auto& infosOfA = occurrencesOf(a);
    const auto& infosOfB = occurrencesOf(b);
    if (infosOfA.empty() || infosOfB.empty() ||
        !m_parts.clock.compareTimes(timeOf(infosOfA.front()), timeOf(infosOfB.front()), result)) {
        return journal::isNewer(a, b);
    }
    return result > 0;
}

bool CallLogRemoval::isNotLater(const char* operation, const std::string& entryTime,
                                const std::string& occurrenceTime) const {
    int result = 0;
    if (!m_parts.clock.compareTimes(entryTime, occurrenceTime, result)) {
        if (!m_parts.clock.isAvailable()) {
            LOG_EVENTS(2, "%s():ClockSvc not available", operation);
        }
        return false;
    }
    return result >= 0;
}

template <typename Info>
std::string CallLogRemoval::timeOf(const Info& info) const {
    return comparableTime(info.getTimeAndDate(), info.getTimeFormat(), *m_parts.settings.values());
}

}  // namespace journal
