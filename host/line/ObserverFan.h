#pragma once

#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

#include "journalservice/JournalServiceObserverIfc.h"

namespace host {

/// Observers of the journal as one: the journal reads its lists anew for each one that subscribes.
///
/// Notifies them in the order in which they were added, on the thread of the journal. Thread-safe; an
/// observer must not add or remove one while it is notified.
class ObserverFan final : public JournalServiceObserverIfc {
public:
    ObserverFan() = default;
    virtual ~ObserverFan() = default;
    ObserverFan(const ObserverFan&) = delete;
    ObserverFan& operator=(const ObserverFan&) = delete;

    /// The observer is borrowed until `remove`.
    void add(JournalServiceObserverIfc& observer);
    /// When it returns, the observer is notified no more. Has no effect on one that was not added.
    void remove(JournalServiceObserverIfc& observer);

    // JournalServiceObserverIfc
    void missedCallsCountUpdate(int count) override;
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override;
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override;
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override;
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override;
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override;
    void callBacksCountUpdate(int count) override;

private:
    template <typename Item>
    void all(void (JournalServiceObserverIfc::*update)(Item, std::string, ActionType), Item item,
             std::string entryId, ActionType action);

    std::shared_mutex m_mutex;
    // Guarded by m_mutex.
    std::vector<JournalServiceObserverIfc*> m_observers;
};

}  // namespace host
