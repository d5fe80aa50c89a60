#pragma once

#include <cstddef>
#include <istream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "journal-items/Contact.h"

namespace host {

enum class ContactFormat { eVCard, eCsv };

/// The format of a file by the end of its name, ".vcf", ".vcard" or ".csv"; nothing for another.
[[nodiscard]] std::optional<ContactFormat> contactFormatOf(std::string_view fileName);

/// A file that holds no contacts in the format that it should be in. `what()` says why.
class ContactFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What a file says about one contact. A plain value.
struct ContactRecord {
    /// Where it begins, from 1 on.
    std::size_t line = 0;
    Contact contact;
    /// Why it cannot be taken; empty when it can.
    std::string refusal;
    /// What of it is left out.
    std::vector<std::string> remarks;
};

/// Reads the contacts of a file, one after the other; what is wrong with one does not hinder the next. Memory is bounded
/// whatever the file holds. One thread at a time.
class ContactReader {
public:
    ContactReader() = default;
    ContactReader(const ContactReader&) = delete;
    ContactReader& operator=(const ContactReader&) = delete;
    virtual ~ContactReader() = default;

    /// Nothing at the end of the file.
    [[nodiscard]] virtual std::optional<ContactRecord> next() = 0;
};

/// `stream` is borrowed and outlives the reader. Throws `ContactFileError` when its beginning shows that it is not in
/// that format, or not in UTF-8.
[[nodiscard]] std::unique_ptr<ContactReader> makeContactReader(std::istream& stream, ContactFormat format);

}  // namespace host
