#pragma once

#include <deque>
#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

// The rules by which an item of a list belongs to a party. Pure functions over values. The contact's "number"
// is its search number: the number of the call.

namespace journal {

/// True if surname and first name are equal, byte for byte.
[[nodiscard]] bool namesMatch(const CallItem& item, const Contact& contact);

/// The rules, by the fields of the contact that are known:
///
///     surname   number   matches when
///     -------   ------   ------------------------------------------------------------------
///     none      known    the occurrence has this number
///     none      none     the occurrence has no number and the item no name: two anonymous calls
///     known     known    the occurrence has this number; equal names with other numbers do not match
///     known     none     the names are equal and the occurrence has no number
[[nodiscard]] bool contactMatchesCallInfo(const CallItem& item, const CallInfo& info, const Contact& contact);

/// True if the newest occurrence matches and is of the same line: a call missed on a line never belongs to an
/// item of another line or of none. An item without occurrences matches no contact, here and below.
[[nodiscard]] bool contactMatchesMissedCall(const MissedCallItem& item, const Contact& contact,
                                            const std::string& lineKey);
[[nodiscard]] bool contactMatchesReceivedCall(const ReceivedCallItem& item, const Contact& contact);
[[nodiscard]] bool contactMatchesForwardedCall(const ForwardedCallItem& item, const Contact& contact);
/// Dialled calls are grouped by the number that was looked up.
[[nodiscard]] bool contactMatchesDialledCall(const DialledCallItem& item, const Contact& contact);
[[nodiscard]] bool contactMatchesCallBack(const CallBackItem& item, const Contact& contact);
/// True if `found` is an item of `items`, not their end.
[[nodiscard]] inline bool dialledCallAlreadyInDialledCallList(
    const std::deque<DialledCallItem>& items, const std::deque<DialledCallItem>::const_iterator& found) {
    return found != items.end();
}

/// False for an empty first party, with any second one.
[[nodiscard]] bool partiesAreNotTheSame(const std::string& a, const std::string& b);

}  // namespace journal
