#pragma once

#include <string>

#include "host/contact-files/ContactFormat.h"
#include "journal-items/Contact.h"

/// Contacts as text for files, in the formats that `makeContactReader` reads. Pure functions; any thread may
/// call.
namespace host {

/// The text before the first contact of a file.
[[nodiscard]] std::string contactFileHead(ContactFormat format);

/// One contact: a card of vCard 3.0 (RFC 2426), the most widely read version, or a row of the CSV file.
/// Invalid UTF-8 is replaced; the unique id, which is only valid here, is left out.
[[nodiscard]] std::string contactFileEntry(ContactFormat format, const Contact& contact);

}  // namespace host
