#pragma once

#include <string_view>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// Whether an item is what somebody looks for: `text` stands in its name ("first surname") or in one of its numbers, capital
/// and small letters alike. An empty text finds everything. Pure functions; any thread may call.
///
/// Letters are those of ASCII, Latin-1, Latin Extended-A, Greek and Cyrillic; others are compared as they are.
namespace host {

[[nodiscard]] bool itemMatches(const MissedCallItem& item, std::string_view text);
[[nodiscard]] bool itemMatches(const DialledCallItem& item, std::string_view text);
[[nodiscard]] bool itemMatches(const ReceivedCallItem& item, std::string_view text);
[[nodiscard]] bool itemMatches(const ForwardedCallItem& item, std::string_view text);
[[nodiscard]] bool itemMatches(const CallBackItem& item, std::string_view text);
/// A contact is also found by its company and its e-mail address.
[[nodiscard]] bool itemMatches(const Contact& contact, std::string_view text);

}  // namespace host
