#pragma once

#include <optional>
#include <string>
#include <vector>

#include "journal-items/Contact.h"

/// How a remote client reads the journal's answers. Items and lists are read with the `parseXML...`
/// operations of `JournalServiceHelper`, since they stand in answers as they stand in list documents; the
/// rest is here. Pure functions; any thread may call; nothing throws.
namespace journalxml {

/// Whether the answer is the failure text. The parsers give false for it too.
[[nodiscard]] bool isFailure(const std::string& answer) noexcept;

/// The result in a yes-or-no answer; nothing when the answer is of another kind or a failure.
[[nodiscard]] std::optional<bool> parseBoolResponse(const std::string& answer);

/// Reads the contact list of the contact interface: `Entry` elements without an enclosing one. Appends in
/// order; false, with `contacts` unchanged, when the text cannot be read. An empty text is an empty list.
[[nodiscard]] bool parseContactList(const std::string& text, std::vector<Contact>& contacts);

}  // namespace journalxml
