#pragma once

#include <istream>
#include <memory>
#include <optional>
#include <string_view>

#include "host/contact-files/ContactReader.h"

namespace host {

/// The formats of contact files, and the reader for each. Pure functions; any thread may call.
enum class ContactFormat { eVCard, eCsv };

/// Returns the format for the end of a file's name (".vcf", ".vcard" or ".csv", in any case); `std::nullopt`
/// for any other.
[[nodiscard]] std::optional<ContactFormat> contactFormatOf(std::string_view fileName);

/// Makes a reader. `stream` is borrowed and outlives it. Throws `ContactFileError` if the beginning of the
/// stream is not in that format, or not in UTF-8.
[[nodiscard]] std::unique_ptr<ContactReader> makeContactReader(std::istream& stream, ContactFormat format);

}  // namespace host
