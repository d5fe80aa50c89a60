#include "journalservice/ObserverNotifier.h"

#include <algorithm>
#include <cstddef>
#include <exception>

#include "platform/sync/CriticalSection.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/base/Log.h"

namespace {

void logThrown(const char* what) noexcept {
    JOURNAL_LOG("Journal Service Events", "./src/ObserverNotifier", 2, "telling an observer failed: %s",
                what);
}

}  // namespace

using Data = ObserverNotifierIfc::ObserverData;

template <typename Fill>
void ObserverNotifier::forEachObserver(UpdateSingle update, Fill fill) {
    const CriticalSection section(m_observerLock);
    if (m_observers.empty()) {
        return;
    }
    ObserverData data;
    fill(data);
    // Reads the size again after each call: the lock protects the vector from other threads, not from an
    // observer that runs on this one.
    // NOLINTNEXTLINE(modernize-loop-convert)
    for (std::size_t index = 0; index < m_observers.size(); ++index) {
        notify(update, *m_observers[index], data);
    }
}

void ObserverNotifier::notify(UpdateSingle update, JournalServiceObserverIfc& observer,
                              const ObserverData& data) {
    try {
        (this->*update)(observer, data);
    } catch (const std::exception& error) {
        logThrown(error.what());
    } catch (...) {
        logThrown("no standard exception");
    }
}

void ObserverNotifier::init(JournalServiceIfc* service, const std::string& softwareType) {
    m_service = service;
    m_isSipSoftware = softwareType == softwaretypes::sip;
}

bool ObserverNotifier::subscribe(JournalServiceObserverIfc* observer, const DialledCallItem& lastDialled) {
    if (!observer) {
        return false;
    }
    const CriticalSection section(m_observerLock);
    m_observers.push_back(observer);
    ObserverData data;
    data.dialledCall = lastDialled;
    notify(&ObserverNotifier::updateSingleSubscriber, *observer, data);
    return true;
}

bool ObserverNotifier::unsubscribe(JournalServiceObserverIfc* observer) {
    const CriticalSection section(m_observerLock);
    const auto found = std::find(m_observers.begin(), m_observers.end(), observer);
    if (found == m_observers.end()) {
        return false;
    }
    m_observers.erase(found);
    return true;
}

void ObserverNotifier::updateMissedCallCountAndCalls(ActionType action) {
    forEachObserver(&ObserverNotifier::updateSingleMissedCallCountAndCalls,
                    [action](Data& data) { data.action = action; });
}

void ObserverNotifier::updateMissedCallCountAndCalls() {
    forEachObserver(&ObserverNotifier::updateSingleMissedCallCountAndCalls, [](Data&) {});
}

void ObserverNotifier::updateMissedCallCountAndCalls(unsigned count) {
    forEachObserver(&ObserverNotifier::updateSingleMissedCallCountAndCalls,
                    [count](Data& data) { data.count = count; });
}

void ObserverNotifier::updateMissedCallCountAndCalls(unsigned count, const std::string& entryId) {
    forEachObserver(&ObserverNotifier::updateSingleMissedCallCountAndCalls, [&](Data& data) {
        data.count = count;
        data.entryId = entryId;
        data.action = JournalServiceObserverIfc::eItemDeleted;
    });
}

void ObserverNotifier::updateMissedCallCountAndCalls(const MissedCallItem& item, unsigned count,
                                                     const std::string& entryId, ActionType action) {
    forEachObserver(&ObserverNotifier::updateSingleMissedCallCountAndCalls, [&](Data& data) {
        data.missedCall = item;
        data.count = count;
        data.entryId = entryId;
        data.action = action;
    });
}

void ObserverNotifier::updateMissedCallCount(unsigned count) {
    forEachObserver(&ObserverNotifier::updateSingleMissedCallCount,
                    [count](Data& data) { data.count = count; });
}

void ObserverNotifier::updateDialledCalls(ActionType action) {
    forEachObserver(&ObserverNotifier::updateSingleDialledCalls,
                    [action](Data& data) { data.action = action; });
}

void ObserverNotifier::updateDialledCalls(const DialledCallItem& item) {
    forEachObserver(&ObserverNotifier::updateSingleDialledCalls,
                    [&](Data& data) { data.dialledCall = item; });
}

void ObserverNotifier::updateDialledCalls(const DialledCallItem& item, const std::string& entryId) {
    updateDialledCalls(item, entryId, JournalServiceObserverIfc::eItemDeleted);
}

void ObserverNotifier::updateDialledCalls(const DialledCallItem& item, const std::string& entryId,
                                          ActionType action) {
    forEachObserver(&ObserverNotifier::updateSingleDialledCalls, [&](Data& data) {
        data.dialledCall = item;
        data.entryId = entryId;
        data.action = action;
    });
}

void ObserverNotifier::updateReceivedCalls(ActionType action) {
    forEachObserver(&ObserverNotifier::updateSingleReceivedCalls,
                    [action](Data& data) { data.action = action; });
}

void ObserverNotifier::updateReceivedCalls() {
    forEachObserver(&ObserverNotifier::updateSingleReceivedCalls, [](Data&) {});
}

void ObserverNotifier::updateReceivedCalls(const std::string& entryId) {
    forEachObserver(&ObserverNotifier::updateSingleReceivedCalls, [&](Data& data) {
        data.entryId = entryId;
        data.action = JournalServiceObserverIfc::eItemDeleted;
    });
}

void ObserverNotifier::updateReceivedCalls(const ReceivedCallItem& item, const std::string& entryId,
                                           ActionType action) {
    forEachObserver(&ObserverNotifier::updateSingleReceivedCalls, [&](Data& data) {
        data.receivedCall = item;
        data.entryId = entryId;
        data.action = action;
    });
}

void ObserverNotifier::updateForwardedCalls() {
    forEachObserver(&ObserverNotifier::updateSingleForwardedCalls, [](Data&) {});
}

void ObserverNotifier::updateForwardedCalls(const std::string& entryId) {
    forEachObserver(&ObserverNotifier::updateSingleForwardedCalls, [&](Data& data) {
        data.entryId = entryId;
        data.action = JournalServiceObserverIfc::eItemDeleted;
    });
}

void ObserverNotifier::updateForwardedCalls(const ForwardedCallItem& item, const std::string& entryId,
                                            ActionType action) {
    forEachObserver(&ObserverNotifier::updateSingleForwardedCalls, [&](Data& data) {
        data.forwardedCall = item;
        data.entryId = entryId;
        data.action = action;
    });
}

void ObserverNotifier::updateAllExceptCallbacks(unsigned count) {
    forEachObserver(&ObserverNotifier::updateSingleAllExceptCallbacks,
                    [count](Data& data) { data.count = count; });
}

void ObserverNotifier::updateAll(unsigned count) {
    forEachObserver(&ObserverNotifier::updateSingleAll, [count](Data& data) { data.count = count; });
}

void ObserverNotifier::updateCallbacks(const CallBackItem& item, const std::string& entryId,
                                       ActionType action) {
    forEachObserver(&ObserverNotifier::updateSingleCallbacks, [&](Data& data) {
        data.callBack = item;
        data.entryId = entryId;
        data.action = action;
    });
}

void ObserverNotifier::updateCallbackCount() {
    forEachObserver(&ObserverNotifier::updateSingleCallbackCount, [](Data&) {});
}

void ObserverNotifier::updateCallbacksAndCount() {
    forEachObserver(&ObserverNotifier::updateSingleCallbacksAndCount, [](Data&) {});
}

void ObserverNotifier::updateCallbacksAndCount(const std::string& entryId) {
    forEachObserver(&ObserverNotifier::updateSingleCallbacksAndCount, [&](Data& data) {
        data.entryId = entryId;
        data.action = JournalServiceObserverIfc::eItemDeleted;
    });
}
