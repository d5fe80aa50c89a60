#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/presentation/ContactFields.h"
#include "journal-items/Contact.h"

namespace host {

/// A file without contacts in the expected format. `what()` gives the reason.
class ContactFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One contact of a file. A plain value.
struct ContactRecord {
    /// The line of text in which it begins, from 1 on.
    std::size_t line = 0;
    Contact contact;
    /// The reason why it is refused; empty if it is not.
    std::string refusal;
    /// The parts of it that are left out.
    std::vector<std::string> remarks;
};

/// The refusal of a contact with a field that is too long; empty if none is.
[[nodiscard]] inline std::string refusalOfLength(const Contact& contact) {
    const std::optional<std::string> fault = tooLongField(contact);
    return fault ? "its " + *fault : std::string();
}

/// Reads the contacts of a file one after the other; an error in one does not affect the next. Memory is
/// bounded for any file. One thread at a time.
class ContactReader {
public:
    ContactReader() = default;
    ContactReader(const ContactReader&) = delete;
    ContactReader& operator=(const ContactReader&) = delete;
    virtual ~ContactReader() = default;

    /// Returns the next contact; `std::nullopt` at the end of the file.
    [[nodiscard]] virtual std::optional<ContactRecord> next() = 0;
};

}  // namespace host
