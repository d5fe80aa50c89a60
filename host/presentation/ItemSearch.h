#pragma once

#include "host/search/SearchText.h"
#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"

/// True if an item matches a search: the text is in its name ("first surname") or in one of its numbers. An
/// empty text matches everything. Pure functions; any thread may call.
namespace host {

[[nodiscard]] bool itemMatches(const CallBackItem& item, const SearchText& text);
/// A contact also matches by its company and its e-mail address.
[[nodiscard]] bool itemMatches(const Contact& contact, const SearchText& text);

}  // namespace host
