#pragma once

#include <string_view>

#include "journal-items/Contact.h"

/// The element names and values that items, database documents and client messages share. Constants and pure
/// functions; any thread may call.
namespace journalxml {

/// The element of one item in a list or a message.
inline constexpr const char* kEntry = "ENTRY";
inline constexpr const char* kEntryId = "EntryId";
/// The database's id of a row.
inline constexpr const char* kUniqueId = "UniqueId";

/// The value of a contact's source in documents; "unknown" for a value without one.
[[nodiscard]] const char* nameOf(Contact::eOrderedContactSource source) noexcept;
/// The inverse; `eUnknown` for an unknown value.
[[nodiscard]] Contact::eOrderedContactSource contactSourceNamed(std::string_view name) noexcept;

}  // namespace journalxml
