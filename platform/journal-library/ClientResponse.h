#pragma once

#include <optional>
#include <string>
#include <vector>

#include "journal-items/Contact.h"

/// Readers for the journal's responses to remote clients. For items and lists use the `parseXML...`
/// operations of `JournalServiceHelper`: they have the same form in responses and in list documents. Pure
/// functions; any thread may call; they never throw.
namespace journalxml {

/// True if the response is the failure text. The parsers return false for it, too.
[[nodiscard]] bool isFailure(const std::string& response) noexcept;

/// The result of a yes-or-no response; `std::nullopt` for a failure and for any other kind of response.
[[nodiscard]] std::optional<bool> parseBoolResponse(const std::string& response);

/// Reads the contact list of the contact interface: `Entry` elements without an enclosing one. Appends in
/// order. Returns false, with `contacts` unchanged, if the text cannot be read. An empty text is an empty
/// list.
[[nodiscard]] bool parseContactList(const std::string& text, std::vector<Contact>& contacts);

}  // namespace journalxml
