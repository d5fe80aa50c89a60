#pragma once

#include <string>
#include <utility>

#include "journalservice/JournalServiceObserverIfc.h"

namespace host {

/// Two observers of the journal as one: the journal reads its lists anew for each one that subscribes.
///
/// Notifies the first one first, on the thread of the journal.
class ObserverPair final : public JournalServiceObserverIfc {
public:
    /// Both are borrowed and outlive the object.
    ObserverPair(JournalServiceObserverIfc& first, JournalServiceObserverIfc& second)
        : m_first(first), m_second(second) {}

    void missedCallsCountUpdate(int count) override {
        m_first.missedCallsCountUpdate(count);
        m_second.missedCallsCountUpdate(count);
    }
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override {
        both(&JournalServiceObserverIfc::missedCallsUpdate, item, entryId, action);
    }
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override {
        both(&JournalServiceObserverIfc::dialledCallsUpdate, item, entryId, action);
    }
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override {
        both(&JournalServiceObserverIfc::receivedCallsUpdate, item, entryId, action);
    }
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override {
        both(&JournalServiceObserverIfc::forwardedCallsUpdate, item, entryId, action);
    }
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override {
        both(&JournalServiceObserverIfc::callBacksUpdate, item, entryId, action);
    }
    void callBacksCountUpdate(int count) override {
        m_first.callBacksCountUpdate(count);
        m_second.callBacksCountUpdate(count);
    }

private:
    template <typename Item>
    void both(void (JournalServiceObserverIfc::*update)(Item, std::string, ActionType), Item& item,
              std::string& entryId, ActionType action) {
        (m_first.*update)(item, entryId, action);
        (m_second.*update)(std::move(item), std::move(entryId), action);
    }

    JournalServiceObserverIfc& m_first;
    JournalServiceObserverIfc& m_second;
};

}  // namespace host
