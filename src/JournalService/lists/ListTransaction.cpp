#include "src/JournalService/lists/ListTransaction.h"

#include "src/JournalService/lists/ListSourceIfc.h"

namespace journal {

void ListTransaction::loadAtFirstNeed() {
    if (m_lists.m_source != nullptr && !m_lists.m_source->hasLoaded()) {
        m_lists.m_source->load();
    }
}

template <typename Item>
bool ListTransaction::repeatRefusedOf() {
    ListPersistence& persistence = m_lists.m_persistence;
    persistence.repeatDeletion<Item>();
    std::deque<Item>& items = open<Item>();
    // Up to the first that is refused again: a locked database delays each of them by seconds.
    const bool accepted = std::none_of(items.begin(), items.end(), [this, &persistence](Item& item) {
        if (persistence.isRefused(item)) {
            write(item);
        }
        return persistence.isRefused(item);
    });
    close();
    return accepted;
}

bool ListTransaction::repeatRefused() {
    const bool accepted = repeatRefusedOf<MissedCallItem>() && repeatRefusedOf<DialledCallItem>() &&
                          repeatRefusedOf<ReceivedCallItem>() && repeatRefusedOf<ForwardedCallItem>() &&
                          repeatRefusedOf<CallBackItem>();
    if (accepted) {
        m_lists.m_persistence.forgetRefused();
    }
    return accepted;
}

}  // namespace journal
