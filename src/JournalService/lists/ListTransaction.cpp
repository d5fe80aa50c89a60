#include "src/JournalService/lists/ListTransaction.h"

#include "src/JournalService/lists/ListSourceIfc.h"

namespace journal {

void ListTransaction::ensureLoaded() {
    if (m_lists.m_source != nullptr && !m_lists.m_source->hasLoaded()) {
        m_lists.m_source->load();
    }
}

template <typename Item>
bool ListTransaction::retryRejectedOf() {
    ListPersistence& persistence = m_lists.m_persistence;
    persistence.retryDeletion<Item>();
    std::deque<Item>& items = open<Item>();
    // Stops at the first item that is rejected again: a locked database delays each write by seconds.
    const bool accepted = std::none_of(items.begin(), items.end(), [this, &persistence](Item& item) {
        if (persistence.isRejected(item)) {
            write(item);
        }
        return persistence.isRejected(item);
    });
    close();
    return accepted;
}

bool ListTransaction::retryRejected() {
    const bool accepted = retryRejectedOf<MissedCallItem>() && retryRejectedOf<DialledCallItem>() &&
                          retryRejectedOf<ReceivedCallItem>() && retryRejectedOf<ForwardedCallItem>() &&
                          retryRejectedOf<CallBackItem>();
    if (accepted) {
        m_lists.m_persistence.clearRejectedWrites();
    }
    return accepted;
}

}  // namespace journal
