#pragma once

#include <vector>

#include "journal-items/Contact.h"

/// Gives out the contacts that the journal loaded with its lists. Any thread may call.
class ContactGetterIfc {
public:
    ContactGetterIfc() = default;
    ContactGetterIfc(const ContactGetterIfc&) = delete;
    ContactGetterIfc& operator=(const ContactGetterIfc&) = delete;
    virtual ~ContactGetterIfc() = default;

    /// Replaces `contacts` by a copy of the contact list.
    virtual void getContactList(std::vector<Contact>& contacts) = 0;
};
