#pragma once

#include <algorithm>
#include <deque>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "journal-items/Contact.h"
#include "journal-items/Occurrences.h"
#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/lists/ListTransaction.h"
#include "src/JournalServiceEvents/entries/EntryDetails.h"
#include "src/JournalServiceEvents/entries/PartyNames.h"

namespace journal {

/// Returns the time text of an occurrence: the call's time as the clock shows it, else the text that came
/// with the entry, else the time now.
[[nodiscard]] inline std::string timeTextOf(const EntryDetails& details, const JournalClock& clock) {
    if (details.timeSec != -1) {
        return clock.formatTimeDate(details.timeSec);
    }
    return details.timeText.empty() ? clock.getCurrentTime() : details.timeText;
}

/// Copies the fields that every occurrence takes from the details.
inline void populateCallInfo(CallInfo& info, const EntryDetails& details, const JournalClock& clock) {
    info.setCallId(details.callId);
    info.setNumber(details.remoteParty);
    info.setTimeAndDate(timeTextOf(details, clock));
    info.setLogTarget(details.logTarget);
    info.setPresentationA(details.presentationA);
    info.setPresentationB(details.presentationB);
    info.setPresentationC(details.presentationC);
    info.setPresentationD(details.presentationD);
    info.setTextC(details.textC);
    info.setTextD(details.textD);
}

inline void populateRedirecting(Redirecting& info, const EntryDetails& details) {
    info.setRedirectingNumber(details.redirectingParty);
    info.setRedirectingName(details.redirectingPartyName);
}

/// The arguments of the observer notification.
template <typename Item>
struct FiledOccurrence {
    /// A copy of the item that the occurrence is in.
    Item item{};
    /// The unique id of the item that the occurrence was merged into; empty for a new item.
    std::string mergedUniqueId{};
    JournalServiceObserverIfc::ActionType action = JournalServiceObserverIfc::eItemAdded;
    /// The number of unviewed items; of the missed list only.
    unsigned unviewed = 0;
};

/// Files one occurrence in its list, in the steps that `EntryCreation` names. The rules of one list come as
/// `Policy`:
///
///     Item, Info                      the list's types
///     kLimitsItems                    true if filing keeps the list at `kMaxItems`
///     matcher(contact)                the predicate that finds the party's item
///     nameContact(items, found)       optional: names the contact by what is known of the party's item
///     isDuplicate(item, info)         true if the occurrence is recorded already; logs it
///     onMerge(item), onNew(item)      changes the list's own fields before the occurrence is added; logs
///     reportOverflow(requests, info)  reports the oldest occurrence that a full item loses to the switch
///     reportDropped(requests, item)   reports an item that a limited list loses to the switch
///     announce(notifier, filed)       notifies the observers
///
/// Lives on the stack of one operation; all references are borrowed.
template <typename Policy>
class OccurrenceFiling {
public:
    using Item = typename Policy::Item;
    using Info = typename Policy::Info;

    OccurrenceFiling(ListTransaction& transaction, const PhoneSettings& settings, const JournalClock& clock,
                     const PartyNames& names, Policy policy)
        : m_transaction(transaction),
          m_settings(settings),
          m_clock(clock),
          m_names(names),
          m_policy(std::move(policy)) {}

    /// Returns true when the occurrence was filed, false when it is a duplicate. The policy may change
    /// `contact` in `nameContact`.
    bool file(const Contact& contact, const Info& info, const std::string& callId) {
        const std::string entryId = m_transaction.makeUniqueEntryId(m_clock.createEntryId(callId));
        // No structured binding: clang 14 takes none in the requirement below.
        const auto opened =
            m_transaction.template openToFile<Item>(contact.getSearchNumber(), m_policy.matcher(contact));
        std::deque<Item>& items = opened.items;
        const auto found = opened.found;
        const bool merges = found != items.end();
        if constexpr (requires { m_policy.nameContact(items, found); }) {
            m_policy.nameContact(items, found);
        }
        if (merges && m_policy.isDuplicate(*found, info)) {
            m_transaction.releaseEntryId(entryId);
            return false;
        }
        Item item = merges ? merge(items, found, info) : create(info);
        nameItem(item, contact, merges);
        insertAtFront(items, std::move(item), entryId);
        report();
        m_transaction.commit([this](ObserverNotifierIfc& notifier) { m_policy.announce(notifier, m_filed); });
        return true;
    }

private:
    /// Takes the party's item out of the list and adds the occurrence to it.
    Item merge(std::deque<Item>& items, typename std::deque<Item>::iterator found, const Info& info) {
        Item item = std::move(*found);
        items.erase(found);
        m_transaction.releaseEntryId(item.getEntryId());
        m_filed.mergedUniqueId = item.getUniqueId();
        m_filed.action = JournalServiceObserverIfc::eItemUpdated;
        const auto& infos = occurrencesOf(item);
        if (infos.size() >= Item::kMaxOccurrences && infos.back().getNumber() != info.getNumber()) {
            m_overflowed = infos.back();
        }
        m_policy.onMerge(item);
        item.addCallInfoToList(info);
        return item;
    }

    Item create(const Info& info) {
        Item item;
        setOccurrences(item, {info});
        m_policy.onNew(item);
        return item;
    }

    /// A call that brings no name does not remove the name that an earlier call brought.
    void nameItem(Item& item, const Contact& contact, bool merges) const {
        m_names.populateDialledCallItemWithPicture(contact, item);
        if (!merges || !contact.getSurname().empty() || !contact.getFirstname().empty()) {
            m_names.populateItemNames(item, contact);
        }
    }

    void insertAtFront(std::deque<Item>& items, Item item, const std::string& entryId) {
        item.setEntryId(entryId);
        items.push_front(std::move(item));
        m_transaction.write(items.front());
        if constexpr (Policy::kLimitsItems) {
            m_dropped = m_transaction.dropOldest(items);
        }
        m_transaction.recordFiled(items);
        m_filed.item = items.front();
        if constexpr (std::is_same_v<Item, MissedCallItem>) {
            m_filed.unviewed = JournalLists::getUnviewedMissedCallsCount(items);
        }
    }

    /// Reports what the list has lost to a switch that keeps the log.
    void report() {
        const CallLogRequests& requests = m_transaction.requests();
        if (!m_settings.values()->m_serverBasedCallLog) {
            return;
        }
        if (m_overflowed) {
            m_policy.reportOverflow(requests, *m_overflowed);
        }
        if constexpr (Policy::kLimitsItems) {
            for (const Item& oldest : m_dropped) {
                m_policy.reportDropped(requests, oldest);
            }
        }
    }

    ListTransaction& m_transaction;
    const PhoneSettings& m_settings;
    const JournalClock& m_clock;
    const PartyNames& m_names;
    Policy m_policy;

    FiledOccurrence<Item> m_filed;
    std::optional<Info> m_overflowed;
    std::vector<Item> m_dropped;
};

}  // namespace journal
