#include "host/line/ObserverFan.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace host {

void ObserverFan::add(JournalServiceObserverIfc& observer) {
    const std::unique_lock lock(m_mutex);
    m_observers.push_back(&observer);
}

void ObserverFan::remove(JournalServiceObserverIfc& observer) {
    const std::unique_lock lock(m_mutex);
    std::erase(m_observers, &observer);
}

template <typename Item>
void ObserverFan::all(void (JournalServiceObserverIfc::*update)(Item, std::string, ActionType), Item item,
                      std::string entryId, ActionType action) {
    const std::shared_lock lock(m_mutex);
    for (std::size_t at = 0; at + 1 < m_observers.size(); ++at) {
        (m_observers[at]->*update)(item, entryId, action);
    }
    if (!m_observers.empty()) {
        (m_observers.back()->*update)(std::move(item), std::move(entryId), action);
    }
}

void ObserverFan::missedCallsCountUpdate(int count) {
    const std::shared_lock lock(m_mutex);
    for (JournalServiceObserverIfc* each : m_observers) {
        each->missedCallsCountUpdate(count);
    }
}

void ObserverFan::missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) {
    all(&JournalServiceObserverIfc::missedCallsUpdate, std::move(item), std::move(entryId), action);
}

void ObserverFan::dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) {
    all(&JournalServiceObserverIfc::dialledCallsUpdate, std::move(item), std::move(entryId), action);
}

void ObserverFan::receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) {
    all(&JournalServiceObserverIfc::receivedCallsUpdate, std::move(item), std::move(entryId), action);
}

void ObserverFan::forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) {
    all(&JournalServiceObserverIfc::forwardedCallsUpdate, std::move(item), std::move(entryId), action);
}

void ObserverFan::callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) {
    all(&JournalServiceObserverIfc::callBacksUpdate, std::move(item), std::move(entryId), action);
}

void ObserverFan::callBacksCountUpdate(int count) {
    const std::shared_lock lock(m_mutex);
    for (JournalServiceObserverIfc* each : m_observers) {
        each->callBacksCountUpdate(count);
    }
}

}  // namespace host
