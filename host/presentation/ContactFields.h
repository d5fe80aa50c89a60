#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "journal-items/Contact.h"

namespace host {

/// A field of a contact by name: a member in JSON, a column in a CSV file. A plain value.
struct ContactField {
    const char* name;
    std::string (*get)(const Contact&);
    /// Sets the field. Returns false, with the contact unchanged, for an invalid value.
    bool (*set)(Contact&, const std::string&);
    /// The longest value that users may enter.
    std::size_t maxBytes;
};

/// The stored fields of a contact in the order in which they are shown: surname, firstName, office, mobile,
/// private, office2, defaultNumber, email, company, jobFunction, group, address, address2, picture,
/// voiceDial, externalId, source. `defaultNumber` is the name of one of the four numbers or empty; `source`
/// is "unknown", "personal", "company", "ldap", "exchange" or "calllog", and an empty one is "unknown".
/// Constant; any thread may call.
[[nodiscard]] const std::vector<ContactField>& contactFields();

/// The reason why a contact is refused that has a field beyond its `maxBytes` ("surname is longer than 1024
/// bytes"); `std::nullopt` if none is.
[[nodiscard]] std::optional<std::string> tooLongField(const Contact& contact);

}  // namespace host
