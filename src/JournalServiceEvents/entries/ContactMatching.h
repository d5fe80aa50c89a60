#pragma once

#include <deque>
#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

// Which item of a list belongs to a party. Pure functions over values; whoever owns the item synchronises. The
// contact's "number" is its search number: the number of the call.

namespace journal {

/// Surname and first name are both equal, byte for byte.
[[nodiscard]] bool namesMatch(const CallItem& item, const Contact& contact);

/// The rules, by what is known of the contact:
///
///     surname   number   matches when
///     -------   ------   ------------------------------------------------------------------
///     none      known    the occurrence has this number
///     none      none     the occurrence has no number and the item no name: two anonymous calls
///     known     known    the occurrence has this number; equal names with other numbers do not match
///     known     none     the names are equal and the occurrence has no number
[[nodiscard]] bool contactMatchesCallInfo(const CallItem& item, const CallInfo& info, const Contact& contact);

/// As the newest occurrence matches, on the same line: a call missed on a line never belongs to an item of another
/// line or of none. An item without occurrences matches nobody, here and below.
[[nodiscard]] bool contactMatchesMissedCall(const MissedCallItem& item, const Contact& contact,
                                            const std::string& lineKey);
[[nodiscard]] bool contactMatchesReceivedCall(const ReceivedCallItem& item, const Contact& contact);
[[nodiscard]] bool contactMatchesForwardedCall(const ForwardedCallItem& item, const Contact& contact);
/// Dialled calls are gathered by the number that was looked up.
[[nodiscard]] bool contactMatchesDialledCall(const DialledCallItem& item, const Contact& contact);
[[nodiscard]] bool contactMatchesCallBack(const CallBackItem& item, const Contact& contact);
/// True when `found` is an item of `items`, not their end.
[[nodiscard]] inline bool dialledCallAlreadyInDialledCallList(
    const std::deque<DialledCallItem>& items, const std::deque<DialledCallItem>::const_iterator& found) {
    return found != items.end();
}

/// An empty first party counts as the same as anything.
[[nodiscard]] bool partiesAreNotTheSame(const std::string& a, const std::string& b);

}  // namespace journal
