#pragma once

#include <vector>

#include "journal-items/Contact.h"

/// Returns the contacts that the journal loaded together with its lists. Thread-safe.
class ContactGetterIfc {
public:
    ContactGetterIfc() = default;
    ContactGetterIfc(const ContactGetterIfc&) = delete;
    ContactGetterIfc& operator=(const ContactGetterIfc&) = delete;
    virtual ~ContactGetterIfc() = default;

    /// Replaces `contacts` by a copy of the contact list.
    virtual void getContactList(std::vector<Contact>& contacts) = 0;
};
