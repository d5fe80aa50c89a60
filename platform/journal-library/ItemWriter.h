#pragma once

#include <string>
#include <string_view>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// Items as XML: the content of an `ENTRY`. Pure functions; internal to this library.
namespace journalxml {

[[nodiscard]] std::string itemBody(const MissedCallItem& item);
[[nodiscard]] std::string itemBody(const DialledCallItem& item);
[[nodiscard]] std::string itemBody(const ReceivedCallItem& item);
[[nodiscard]] std::string itemBody(const ForwardedCallItem& item);
[[nodiscard]] std::string itemBody(const CallBackItem& item);
[[nodiscard]] std::string itemBody(const Contact& contact);

/// The content of an `ENTRY` in a delete request: the ids that name the item's row.
[[nodiscard]] std::string keyBody(const CallItemWithPicture& item);
[[nodiscard]] std::string keyBody(const CallBackItem& item);

/// `<ENTRY>body</ENTRY>`.
[[nodiscard]] std::string entryElement(const std::string& body);

/// Appends `<name>body</name>`; the body is XML already.
void appendElement(std::string& out, std::string_view name, std::string_view body);
/// Appends `<name>value</name>`, the value escaped.
void appendField(std::string& out, const char* name, const std::string& value);

}  // namespace journalxml
