#include "host/presentation/ChangeText.h"

#include "host/presentation/ListName.h"
#include "host/presentation/PlainText.h"
#include "journal-items/Occurrences.h"
#include "journalservice/JournalServiceObserverIfc.h"

namespace host {
namespace {

bool isCall(int action) {
    return action == JournalServiceObserverIfc::eItemAdded ||
           action == JournalServiceObserverIfc::eItemUpdated;
}

/// The sentences without a call.
std::string describeList(ListName list, int action) {
    const std::string calls = callWord(list) + "s";
    switch (action) {
        case JournalServiceObserverIfc::eItemDeleted: return "a " + entryWord(list) + " was deleted";
        case JournalServiceObserverIfc::eListCleared: return "the " + calls + " were cleared";
        default: return "the " + calls + " changed";
    }
}

std::string numberAs(const std::string& number, Parties parties) {
    return parties == Parties::eMasked ? maskedNumber(number) : number;
}

template <typename Item>
std::string partyWith(const Item& item, const std::string& number, Parties parties) {
    return parties == Parties::eMasked
               ? partyText(maskedName(item.getFirstname() + item.getSurname()), "", maskedNumber(number))
               : partyText(item.getFirstname(), item.getSurname(), number);
}

template <typename Item>
std::string partyOf(const Item& item, Parties parties) {
    const auto& occurrences = occurrencesOf(item);
    return partyWith(item, occurrences.empty() ? std::string() : occurrences.front().getNumber(), parties);
}

template <typename Item>
std::string lastingText(const Item& item) {
    const auto& occurrences = occurrencesOf(item);
    const std::string duration = occurrences.empty() ? std::string() : occurrences.front().getDuration();
    return duration.empty() ? std::string() : ", " + duration;
}

std::string numberText(int count) {
    return count == 0 ? "no" : std::to_string(count);
}

}  // namespace

std::string describeChange(const MissedCallItem& item, int action, Parties parties) {
    if (!isCall(action)) {
        return describeList(ListName::eMissed, action);
    }
    const std::string party = "missed call from " + partyOf(item, parties);
    // A new call resets its item to unviewed; only viewing leaves it viewed.
    return item.getViewed() ? party + " was viewed" : party;
}

std::string describeChange(const DialledCallItem& item, int action, Parties parties) {
    return isCall(action) ? "dialled " + partyOf(item, parties) + lastingText(item)
                          : describeList(ListName::eDialled, action);
}

std::string describeChange(const ReceivedCallItem& item, int action, Parties parties) {
    return isCall(action) ? "received call from " + partyOf(item, parties) + lastingText(item)
                          : describeList(ListName::eReceived, action);
}

std::string describeChange(const ForwardedCallItem& item, int action, Parties parties) {
    if (!isCall(action)) {
        return describeList(ListName::eForwarded, action);
    }
    const auto& occurrences = item.getForwardedCallInfoList();
    const std::string target =
        occurrences.empty() ? std::string() : occurrences.front().getForwardedToNumber();
    return "forwarded call from " + partyOf(item, parties) +
           (target.empty() ? std::string() : " to " + numberAs(target, parties));
}

std::string describeChange(const CallBackItem& item, int action, Parties parties) {
    return isCall(action) ? "callback for " + partyWith(item, item.getNumber(), parties)
                          : describeList(ListName::eCallbacks, action);
}

std::string describeMissedCount(int count) {
    return count == 1 ? "1 missed entry is not viewed" : numberText(count) + " missed entries are not viewed";
}

std::string describeCallbackCount(int count) {
    return count == 1 ? "1 callback" : numberText(count) + " callbacks";
}

}  // namespace host
