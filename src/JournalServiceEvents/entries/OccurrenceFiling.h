#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "journal-items/Contact.h"
#include "journal-items/Occurrences.h"
#include "journalservice/JournalServiceObserverIfc.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListPersistence.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/entries/EntryDetails.h"
#include "src/JournalServiceEvents/entries/PartyNames.h"

namespace journal {

/// The number of items that a list keeps.
inline constexpr std::size_t kMaxItems = 1000;

/// The time text of an occurrence: the call's time as the clock shows it, else the text that came with the entry, else now.
[[nodiscard]] inline std::string timeTextOf(const EntryDetails& details, const JournalClock& clock) {
    if (details.timeSec != -1) {
        return clock.formatTimeDate(details.timeSec);
    }
    return details.timeText.empty() ? clock.getCurrentTime() : details.timeText;
}

/// What every occurrence takes over from the details.
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

/// The inputs of a received or a forwarded entry, for the log.
inline void logParty(const char* operation, const EntryDetails& details, const Contact& contact) {
    LOG_EVENTS(
        5,
        "%s():{%s} Remote Party: %s, Remote Party Name: %s, Surname: %s, Firstname: %s, sRedirectingNumber: "
        "%s, sRedirectingName: %s",
        operation, details.callId.c_str(), details.remoteParty.c_str(), details.remotePartyName.c_str(),
        contact.getSurname().c_str(), contact.getFirstname().c_str(), details.redirectingParty.c_str(),
        details.redirectingPartyName.c_str());
}

/// An entry id that no item of the list has, and that the merged item did not have before (`formerId`, empty for a new
/// one): two calls that end in one second may carry ids that are no numbers, and an id must name one entry.
template <typename Item>
[[nodiscard]] std::string freeEntryId(const std::deque<Item>& items, const std::string& formerId,
                                      std::string entryId) {
    constexpr std::size_t kDigits = 8;
    const auto isTaken = [&items, &formerId](const std::string& id) {
        if (id == formerId) {
            return true;
        }
        for (const Item& item : items) {
            if (item.getEntryId() == id) {
                return true;
            }
        }
        return false;
    };
    const std::string time = entryId.substr(0, entryId.size() - kDigits);
    auto number = static_cast<std::uint32_t>(std::strtoul(entryId.substr(time.size()).c_str(), nullptr, 16));
    while (isTaken(entryId)) {
        char digits[kDigits + 1];
        std::snprintf(digits, sizeof digits, "%.8X", ++number);
        entryId = time + digits;
    }
    return entryId;
}

/// Takes the items beyond `kMaxItems` out of the list, or where it does not hold them out of what is older, and out of the
/// database; answers them, the oldest first, since a switch that keeps the log is to be told. The caller holds the list.
template <typename Item>
[[nodiscard]] std::vector<Item> dropOldest(const EntryCreation::Parts& parts, std::deque<Item>& items) {
    std::vector<Item> dropped = parts.lists.olderEntries().takeBeyond(kMaxItems, items);
    for (Item& oldest : dropped) {
        parts.persistence.update(oldest, CallListDatabaseAdapterHelper::DELETEREQUEST);
    }
    return dropped;
}

/// The common road of an occurrence into its list; `EntryCreation` names its steps. What a list has of its own comes
/// as `Policy`:
///
///     Item, Info                      the list's types
///     kLimitsItems                    whether the road keeps the list below `kMaxItems`
///     matcher(contact)                the predicate that finds the party's item
///     nameContact(items, found)       names the contact where that depends on the party's item; may be absent
///     isDuplicate(item, info)         the occurrence is recorded already; logs it
///     onMerge(item), onNew(item)      logs, and changes what the list changes, before the occurrence goes in
///     reportOverflow(oldest)          tells the switch that a full item loses its oldest occurrence
///     reportDropped(item)             tells the switch that an item fell off the end of the list
///     announce(front, unviewed, uniqueId, action)
///
/// The caller holds a `JournalLists::Change`. Requests to the switch wait for an answer, so they go out with the
/// list released. True when the occurrence was filed.
template <typename Policy>
// NOLINTNEXTLINE(readability-function-size): the road is told in one piece, so that its order can be read.
bool fileOccurrence(const EntryCreation::Parts& parts, Policy& policy, const Contact& contact,
                    const typename Policy::Info& info, const std::string& callId) {
    using Item = typename Policy::Item;
    if (parts.loadAtFirstNeed) {
        parts.loadAtFirstNeed();
    }
    parts.lists.restore<Item>(policy.matcher(contact));
    Item front;
    std::string mergedUniqueId;
    bool merged = false;
    unsigned unviewed = 0;
    std::optional<typename Policy::Info> overflowed;
    std::vector<Item> dropped;
    {
        const auto items = parts.lists.list<Item>().access();
        const auto found = std::find_if(items->begin(), items->end(), policy.matcher(contact));
        merged = found != items->end();
        if constexpr (requires { policy.nameContact(*items, found); }) {
            policy.nameContact(*items, found);
        }
        if (merged && policy.isDuplicate(*found, info)) {
            return false;
        }
        Item item;
        if (merged) {
            item = std::move(*found);
            items->erase(found);
            mergedUniqueId = item.getUniqueId();
            const auto& infos = occurrencesOf(item);
            if (infos.size() >= Item::kMaxOccurrences && infos.back().getNumber() != info.getNumber()) {
                overflowed = infos.back();
            }
            policy.onMerge(item);
            item.addCallInfoToList(info);
        } else {
            setOccurrences(item, {info});
            policy.onNew(item);
        }
        parts.names.populateDialledCallItemWithPicture(contact, item);
        // A call that brings no name does not take away the one that an earlier call brought.
        if (!merged || !contact.getSurname().empty() || !contact.getFirstname().empty()) {
            parts.names.populateItemNames(item, contact);
        }
        item.setEntryId(freeEntryId(*items, item.getEntryId(), parts.clock.createEntryId(callId)));
        items->push_front(std::move(item));
        parts.persistence.update(items->front(), CallListDatabaseAdapterHelper::WRITEREQUEST);
        if (Policy::kLimitsItems) {
            dropped = dropOldest(parts, *items);
        }
        front = items->front();
        if constexpr (std::is_same_v<Item, MissedCallItem>) {
            unviewed = JournalLists::getUnviewedMissedCallsCount(*items);
        }
    }
    if (parts.settings.values()->m_serverBasedCallLog) {
        if (overflowed) {
            policy.reportOverflow(*overflowed);
        }
        for (const Item& oldest : dropped) {
            policy.reportDropped(oldest);
        }
    }
    policy.announce(front, unviewed, mergedUniqueId,
                    merged ? JournalServiceObserverIfc::eItemUpdated : JournalServiceObserverIfc::eItemAdded);
    return true;
}

}  // namespace journal
