#pragma once

#include <cstddef>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/sync/Semaphore.h"

namespace journal {

/// The contacts that were loaded with the lists, in the order in which they were loaded. Thread-safe.
class JournalContacts {
public:
    void getContactList(std::vector<Contact>& contacts);
    /// Returns the number of contacts after the addition.
    std::size_t add(const std::vector<Contact>& contacts);
    void clear();

private:
    Semaphore m_contactLock{1, 1, true};
    // Guarded by m_contactLock.
    std::vector<Contact> m_contacts;
};

}  // namespace journal
