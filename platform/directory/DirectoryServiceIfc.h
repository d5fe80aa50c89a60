#pragma once

class Contact;

/// The phonebook. Registered as "DirectoryServiceIfc". Any thread may call, at any time.
class DirectoryServiceIfc {
public:
    DirectoryServiceIfc() = default;
    DirectoryServiceIfc(const DirectoryServiceIfc&) = delete;
    DirectoryServiceIfc& operator=(const DirectoryServiceIfc&) = delete;
    virtual ~DirectoryServiceIfc() = default;

    /// Looks up the contact's search number. If it is found, fills in the contact, stores the kind of the
    /// number that matched (1 second office, 2 office, 3 mobile, 4 private: not the order of
    /// `Contact::getPhoneNumber`), keeps the search number, and returns true. Otherwise changes nothing and
    /// returns false.
    [[nodiscard]] virtual bool lookUpContact(Contact& contact) = 0;
};
