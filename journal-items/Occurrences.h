#pragma once

#include <list>
#include <string>

#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// Uniform access to the occurrence list of each of the four items, for code that treats the lists alike.
/// Free functions over values: the owner of the item synchronises. A returned reference is valid until the
/// item changes.

inline const std::list<MissedCallItem::MissedCallInfo>& occurrencesOf(const MissedCallItem& item) {
    return item.getMissedCallInfoList();
}
inline const std::list<DialledCallItem::DialledCallInfo>& occurrencesOf(const DialledCallItem& item) {
    return item.getDialledCallInfoList();
}
inline const std::list<ReceivedCallItem::ReceivedCallInfo>& occurrencesOf(const ReceivedCallItem& item) {
    return item.getReceivedCallInfoList();
}
inline const std::list<ForwardedCallItem::ForwardedCallInfo>& occurrencesOf(const ForwardedCallItem& item) {
    return item.getForwardedCallInfoList();
}

inline void setOccurrences(MissedCallItem& item, const std::list<MissedCallItem::MissedCallInfo>& list) {
    item.setMissedCallInfoList(list);
}
inline void setOccurrences(DialledCallItem& item, const std::list<DialledCallItem::DialledCallInfo>& list) {
    item.setDialledCallInfoList(list);
}
inline void setOccurrences(ReceivedCallItem& item,
                           const std::list<ReceivedCallItem::ReceivedCallInfo>& list) {
    item.setReceivedCallInfoList(list);
}
inline void setOccurrences(ForwardedCallItem& item,
                           const std::list<ForwardedCallItem::ForwardedCallInfo>& list) {
    item.setForwardedCallInfoList(list);
}

/// The sort key of a list, newest (greatest) first, compared as bytes: the time of the front occurrence, or
/// the entry id of an item without occurrences. Both begin with an ISO date and time.
template <typename Item>
[[nodiscard]] const std::string& sortKeyOf(const Item& item) {
    const auto& occurrences = occurrencesOf(item);
    return occurrences.empty() ? item.getEntryId() : occurrences.front().getTimeAndDate();
}
