#pragma once

#include <cstddef>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/sync/Semaphore.h"

namespace journal {

/// The contacts that came with the lists, in the order in which they came. Threads: any.
class JournalContacts {
public:
    void getContactList(std::vector<Contact>& contacts);
    /// Answers how many there are then.
    std::size_t add(const std::vector<Contact>& contacts);
    void clear();

private:
    Semaphore m_contactLock{1, 1, true};
    // Guarded by m_contactLock.
    std::vector<Contact> m_contacts;
};

}  // namespace journal
