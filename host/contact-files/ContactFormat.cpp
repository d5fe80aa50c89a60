#include "host/contact-files/ContactFormat.h"

#include "host/contact-files/CsvReader.h"
#include "host/contact-files/VCardReader.h"
#include "host/text-files/FileText.h"

namespace host {
namespace {

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && lower(text.substr(text.size() - end.size())) == end;
}

/// The byte order marks of UTF-16 begin with bytes that never occur in UTF-8.
void refuseUtf16(std::istream& stream) {
    const int first = stream.peek();
    if (first == 0xFF || first == 0xFE) {
        throw ContactFileError("it is in UTF-16; save it as UTF-8");
    }
}

}  // namespace

std::optional<ContactFormat> contactFormatOf(std::string_view fileName) {
    if (endsWith(fileName, ".vcf") || endsWith(fileName, ".vcard")) {
        return ContactFormat::eVCard;
    }
    return endsWith(fileName, ".csv") ? std::optional(ContactFormat::eCsv) : std::nullopt;
}

std::unique_ptr<ContactReader> makeContactReader(std::istream& stream, ContactFormat format) {
    refuseUtf16(stream);
    if (format == ContactFormat::eCsv) {
        return std::make_unique<CsvReader>(stream);
    }
    return std::make_unique<VCardReader>(stream);
}

}  // namespace host
