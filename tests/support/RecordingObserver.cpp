#include "tests/support/RecordingObserver.h"

#include <algorithm>
#include <deque>
#include <type_traits>
#include <variant>

#include "journalservice/JournalServiceIfc.h"

namespace journaltest {

std::string Callback::text() const {
    std::string text = nameOf(event);
    for (const std::string filler : {"Calls", "Update"}) {
        text.erase(std::min(text.find(filler), text.size()), filler.size());
    }
    const auto orDash = [](const std::string& word) { return word.empty() ? "-" : word; };
    const auto details = [&](const auto& held) {
        if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>) {
            return std::to_string(count);
        } else {
            return orDash(held.getEntryId()) + ", " + orDash(entryId) + ", " + std::to_string(action);
        }
    };
    return text + "(" + std::visit(details, item) + ")";
}

std::string RecordingObserver::heard() const {
    const std::lock_guard lock(m_mutex);
    std::string text;
    for (const Callback& callback : m_callbacks) {
        text += (text.empty() ? "" : "; ") + callback.text();
    }
    return text;
}

void RecordingObserver::note(const Callback& callback) {
    {
        const std::lock_guard lock(m_mutex);
        m_callbacks.push_back(callback);
    }
    if (m_during) {
        m_during(callback);
    }
}

void readAllLists(JournalServiceIfc& journal) {
    std::deque<MissedCallItem> missed;
    journal.getMissedCallList(missed);
    std::deque<DialledCallItem> dialled;
    journal.getDialledCallList(dialled);
    std::deque<ReceivedCallItem> received;
    journal.getReceivedCallList(received);
    std::deque<ForwardedCallItem> forwarded;
    journal.getForwardedCallList(forwarded);
    std::deque<CallBackItem> callBacks;
    journal.getCallBackList(callBacks);
}

}  // namespace journaltest
