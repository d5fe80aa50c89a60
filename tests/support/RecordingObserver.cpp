#include "tests/support/RecordingObserver.h"

#include <chrono>
#include <deque>
#include <ostream>
#include <type_traits>
#include <utility>

#include "include/JournalServiceIfc.h"

namespace journaltest {
namespace {

const char* nameOf(Callback::Kind kind) {
    switch (kind) {
        case Callback::Kind::eMissedCallsCountUpdate: return "missedCallsCountUpdate";
        case Callback::Kind::eMissedCallsUpdate: return "missedCallsUpdate";
        case Callback::Kind::eDialledCallsUpdate: return "dialledCallsUpdate";
        case Callback::Kind::eReceivedCallsUpdate: return "receivedCallsUpdate";
        case Callback::Kind::eForwardedCallsUpdate: return "forwardedCallsUpdate";
        case Callback::Kind::eCallBacksUpdate: return "callBacksUpdate";
        case Callback::Kind::eCallBacksCountUpdate: return "callBacksCountUpdate";
    }
    return "?";
}

std::string orDash(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string idOf(const Callback::Item& item) {
    return std::visit(
        [](const auto& held) -> std::string {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>) {
                return {};
            } else {
                return held.getEntryId();
            }
        },
        item);
}

}  // namespace

std::string Callback::text() const {
    const std::string name = nameOf(kind);
    if (std::holds_alternative<std::monostate>(item)) {
        return name + "(" + std::to_string(count) + ")";
    }
    return name + "(item " + orDash(idOf(item)) + ", entryId " + orDash(entryId) + ", action " +
           std::to_string(action) + ")";
}

std::ostream& operator<<(std::ostream& out, const Callback& callback) {
    return out << callback.text();
}

std::vector<Callback> RecordingObserver::callbacks() const {
    const std::lock_guard lock(m_mutex);
    return m_callbacks;
}

std::vector<Callback> RecordingObserver::callbacks(Callback::Kind kind) const {
    std::vector<Callback> found;
    for (Callback& callback : callbacks()) {
        if (callback.kind == kind) {
            found.push_back(std::move(callback));
        }
    }
    return found;
}

std::vector<std::string> RecordingObserver::texts() const {
    std::vector<std::string> texts;
    for (const Callback& callback : callbacks()) {
        texts.push_back(callback.text());
    }
    return texts;
}

std::size_t RecordingObserver::count() const {
    const std::lock_guard lock(m_mutex);
    return m_callbacks.size();
}

void RecordingObserver::clear() {
    const std::lock_guard lock(m_mutex);
    m_callbacks.clear();
}

bool RecordingObserver::waitFor(std::size_t number) const {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_callbacks.size() >= number; });
}

void RecordingObserver::note(Callback callback) {
    const Callback copy = callback;
    {
        const std::lock_guard lock(m_mutex);
        m_callbacks.push_back(std::move(callback));
    }
    m_changed.notify_all();
    if (m_during) {
        m_during(copy);
    }
}

void RecordingObserver::missedCallsCountUpdate(int count) {
    note({Callback::Kind::eMissedCallsCountUpdate, count, {}, {}, {}});
}

void RecordingObserver::missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) {
    note({Callback::Kind::eMissedCallsUpdate, 0, std::move(item), std::move(entryId), action});
}

void RecordingObserver::dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) {
    note({Callback::Kind::eDialledCallsUpdate, 0, std::move(item), std::move(entryId), action});
}

void RecordingObserver::receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) {
    note({Callback::Kind::eReceivedCallsUpdate, 0, std::move(item), std::move(entryId), action});
}

void RecordingObserver::forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) {
    note({Callback::Kind::eForwardedCallsUpdate, 0, std::move(item), std::move(entryId), action});
}

void RecordingObserver::callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) {
    note({Callback::Kind::eCallBacksUpdate, 0, std::move(item), std::move(entryId), action});
}

void RecordingObserver::callBacksCountUpdate(int count) {
    note({Callback::Kind::eCallBacksCountUpdate, count, {}, {}, {}});
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
