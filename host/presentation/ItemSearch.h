#pragma once

#include "host/search/SearchText.h"
#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// True if an item matches a search: the text is in its name ("first surname") or in one of its numbers. An
/// empty text matches everything. Pure functions; any thread may call.
namespace host {

[[nodiscard]] bool itemMatches(const MissedCallItem& item, const SearchText& text);
[[nodiscard]] bool itemMatches(const DialledCallItem& item, const SearchText& text);
[[nodiscard]] bool itemMatches(const ReceivedCallItem& item, const SearchText& text);
[[nodiscard]] bool itemMatches(const ForwardedCallItem& item, const SearchText& text);
[[nodiscard]] bool itemMatches(const CallBackItem& item, const SearchText& text);
/// A contact also matches by its company and its e-mail address.
[[nodiscard]] bool itemMatches(const Contact& contact, const SearchText& text);

}  // namespace host
