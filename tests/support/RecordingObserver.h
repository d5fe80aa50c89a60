#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "journalservice/JournalServiceObserverIfc.h"
#include "platform/journal-library/ObserverMessage.h"

class JournalServiceIfc;

namespace journaltest {

/// One call of an observer, with what came with it.
struct Callback : journalxml::ObserverMessage {
    /// The call in short: "missedCount(2)"; of a list's update the item's entry id, the entry id that came
    /// with it, and the action: "dialled(e1, 7, 2)", "callBacks(-, -, 3)".
    [[nodiscard]] std::string text() const;
};

/// An observer that notes every call in order.
///
/// Calls may come on any thread, and any thread may read what was noted. What a test wants done inside each
/// callback (read the lists, throw, wait) is a function that runs after the call is noted, with no lock held.
class RecordingObserver final : public JournalServiceObserverIfc {
public:
    using During = std::function<void(const Callback&)>;

    explicit RecordingObserver(During during = {}) : m_during(std::move(during)) {}
    RecordingObserver(const RecordingObserver&) = delete;
    RecordingObserver& operator=(const RecordingObserver&) = delete;
    virtual ~RecordingObserver() = default;

    /// Not while callbacks may come.
    void setDuring(During during) { m_during = std::move(during); }

    /// The calls since the last `clear` as one text, "missedCount(1); missed(-, 17, 2)"; empty for none.
    [[nodiscard]] std::string heard() const;
    void clear() {
        const std::lock_guard lock(m_mutex);
        m_callbacks.clear();
    }

    void missedCallsCountUpdate(int count) override { recordCount(Event::eMissedCallsCountUpdate, count); }
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override {
        note({{Event::eMissedCallsUpdate, 0, action, std::move(entryId), std::move(item)}});
    }
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override {
        note({{Event::eDialledCallsUpdate, 0, action, std::move(entryId), std::move(item)}});
    }
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override {
        note({{Event::eReceivedCallsUpdate, 0, action, std::move(entryId), std::move(item)}});
    }
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override {
        note({{Event::eForwardedCallsUpdate, 0, action, std::move(entryId), std::move(item)}});
    }
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override {
        note({{Event::eCallBacksUpdate, 0, action, std::move(entryId), std::move(item)}});
    }
    void callBacksCountUpdate(int count) override { recordCount(Event::eCallBacksCountUpdate, count); }

private:
    using Event = Callback::Event;
    void recordCount(Event event, int count) { note({{event, static_cast<unsigned>(count), 0, {}, {}}}); }
    void note(const Callback& callback);

    // Constant while callbacks may come.
    During m_during;

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::vector<Callback> m_callbacks;
};

/// Reads all five lists through `journal`, for use inside a callback.
void readAllLists(JournalServiceIfc& journal);

}  // namespace journaltest
