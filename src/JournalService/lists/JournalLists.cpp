#include "src/JournalService/lists/JournalLists.h"

#include <algorithm>

#include "platform/sync/CriticalSection.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/ListSourceIfc.h"

namespace journal {

void JournalContacts::getContactList(std::vector<Contact>& contacts) {
    const CriticalSection<Semaphore> section(m_contactLock);
    contacts = m_contacts;
    LOG_JOURNAL(6, "getContactList[%d]", static_cast<int>(contacts.size()));
}

void JournalContacts::swap(std::vector<Contact>& contacts) {
    const CriticalSection<Semaphore> section(m_contactLock);
    m_contacts.swap(contacts);
}

void JournalContacts::clear() {
    const CriticalSection<Semaphore> section(m_contactLock);
    m_contacts.clear();
}

bool JournalLists::loadToRead() {
    if (m_isUnloaded) {
        const CriticalSection<NestableSemaphore> change(m_changeLock);
        ensureLoaded();
    }
    return !m_isUnloaded;
}

void JournalLists::ensureLoaded() {
    if (m_source != nullptr && !m_isLoading && (m_isUnloaded || !m_source->hasLoaded())) {
        m_source->load();
    }
}

unsigned JournalLists::getUnviewedMissedCallsCount(const std::deque<MissedCallItem>& missed) {
    return static_cast<unsigned>(
        std::count_if(missed.begin(), missed.end(), [](const auto& item) { return !item.getViewed(); }));
}

unsigned JournalLists::getUnviewedMissedCallsCount() {
    return getUnviewedMissedCallsCount(*read<MissedCallItem>());
}

}  // namespace journal
