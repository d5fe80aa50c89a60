#pragma once

#include <string>

#include "host/contact-files/ContactReader.h"
#include "journal-items/Contact.h"

/// Contacts as text for files; `makeContactReader` reads them back. Pure functions; any thread may call.
namespace host {

/// What stands before the first contact of a file.
[[nodiscard]] std::string contactFileHead(ContactFormat format);

/// One contact: a card of vCard 3.0, which the most programs read, or a row of the CSV file. What UTF-8 cannot carry is
/// replaced; the unique id, which has a meaning only here, is left out.
[[nodiscard]] std::string contactFileEntry(ContactFormat format, const Contact& contact);

}  // namespace host
