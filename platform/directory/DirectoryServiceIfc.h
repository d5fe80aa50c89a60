#pragma once

class Contact;

/// The phonebook. Registered as "DirectoryServiceIfc". Any thread may call, at any time.
class DirectoryServiceIfc {
public:
    DirectoryServiceIfc() = default;
    DirectoryServiceIfc(const DirectoryServiceIfc&) = delete;
    DirectoryServiceIfc& operator=(const DirectoryServiceIfc&) = delete;
    virtual ~DirectoryServiceIfc() = default;

    /// Looks the contact's search number up. Found: fills in the contact, notes which of its numbers matched (kind 1 second
    /// office, 2 office, 3 mobile, 4 private: not the order of `Contact::getPhoneNumber`), leaves the search number as it is,
    /// and answers true. Otherwise nothing changes.
    [[nodiscard]] virtual bool lookUpContact(Contact& contact) = 0;
};
