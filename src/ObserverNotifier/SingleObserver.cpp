// The updates of one observer; see ObserverNotifier.cpp for the loop over all observers.

#include <algorithm>
#include <deque>
#include <utility>

#include "journalservice/JournalServiceIfc.h"
#include "journalservice/ObserverNotifier.h"
#include "src/JournalService/base/Log.h"

#define LOG_UPDATE(...) JOURNAL_LOG("Journal Service Events", "./src/ObserverNotifier", 6, __VA_ARGS__)

namespace {

void logNumbers(const DialledCallItem& item) {
    for (const DialledCallItem::DialledCallInfo& occurrence : item.getDialledCallInfoList()) {
        LOG_UPDATE("\tnumber:%s\n", occurrence.getNumber().c_str());
    }
}

/// Returns the last number of the log text about missed calls: presentation C of the newest occurrence, which
/// decides if a call is already recorded. 0 without occurrences.
int loggedNumberOf(const MissedCallItem& item) {
    return item.getMissedCallInfoList().empty() ? 0 : item.getMissedCallInfoList().front().getPresentationC();
}

}  // namespace

void ObserverNotifier::updateSingleMissedCallCount(JournalServiceObserverIfc& observer,
                                                   const ObserverData& data) {
    LOG_UPDATE("updateSingleMissedCallCount:%d:%s:%s:%d", static_cast<int>(data.count),
               data.missedCall.getEntryId().c_str(), data.entryId.c_str(), data.action);
    observer.missedCallsCountUpdate(static_cast<int>(data.count));
}

void ObserverNotifier::updateSingleMissedCallCountAndCalls(JournalServiceObserverIfc& observer,
                                                           const ObserverData& data) {
    LOG_UPDATE("updateSingleMissedCallCountAndCalls:%d:%s:%s:%d:%d", static_cast<int>(data.count),
               data.missedCall.getEntryId().c_str(), data.entryId.c_str(), data.action,
               loggedNumberOf(data.missedCall));
    observer.missedCallsCountUpdate(static_cast<int>(data.count));
    observer.missedCallsUpdate(data.missedCall, data.entryId, data.action);
}

void ObserverNotifier::updateSingleDialledCalls(JournalServiceObserverIfc& observer,
                                                const ObserverData& data) {
    LOG_UPDATE("updateSingleDialledCalls:%s:%s:%s:%d", data.dialledCall.getFirstname().c_str(),
               data.dialledCall.getSurname().c_str(), data.entryId.c_str(), data.action);
    logNumbers(data.dialledCall);
    observer.dialledCallsUpdate(data.dialledCall, data.entryId, data.action);
}

void ObserverNotifier::updateSingleReceivedCalls(JournalServiceObserverIfc& observer,
                                                 const ObserverData& data) {
    LOG_UPDATE("updateSingleReceivedCalls:%s:%s:%d", data.receivedCall.getEntryId().c_str(),
               data.entryId.c_str(), data.action);
    observer.receivedCallsUpdate(data.receivedCall, data.entryId, data.action);
}

void ObserverNotifier::updateSingleForwardedCalls(JournalServiceObserverIfc& observer,
                                                  const ObserverData& data) {
    LOG_UPDATE("updateSingleForwardedCalls:%s:%s:%d", data.forwardedCall.getEntryId().c_str(),
               data.entryId.c_str(), data.action);
    observer.forwardedCallsUpdate(data.forwardedCall, data.entryId, data.action);
}

void ObserverNotifier::updateSingleCallbacks(JournalServiceObserverIfc& observer, const ObserverData& data) {
    LOG_UPDATE("updateSingleCallbacks:%s:%s:%d", data.callBack.getEntryId().c_str(), data.entryId.c_str(),
               data.action);
    observer.callBacksUpdate(data.callBack, data.entryId, data.action);
}

void ObserverNotifier::updateSingleCallbackCount(JournalServiceObserverIfc& observer,
                                                 const ObserverData& /*data*/) {
    const int count = static_cast<int>(getCallBackListSize());
    LOG_UPDATE("updateSingleCallbackCount:%d", count);
    observer.callBacksCountUpdate(count);
}

void ObserverNotifier::updateSingleCallbacksAndCount(JournalServiceObserverIfc& observer,
                                                     const ObserverData& data) {
    updateSingleCallbacks(observer, data);
    updateSingleCallbackCount(observer, data);
}

void ObserverNotifier::updateSingleAllExceptCallbacks(JournalServiceObserverIfc& observer,
                                                      const ObserverData& data) {
    updateSingleMissedCallCountAndCalls(observer, data);
    updateSingleDialledCalls(observer, data);
    updateSingleReceivedCalls(observer, data);
    updateSingleForwardedCalls(observer, data);
}

void ObserverNotifier::updateSingleAll(JournalServiceObserverIfc& observer, const ObserverData& data) {
    updateSingleMissedCallCountAndCalls(observer, data);
    ObserverData newestDialled;
    if (m_service) {
        std::deque<DialledCallItem> dialled;
        m_service->getDialledCallList(dialled);
        if (!dialled.empty()) {
            newestDialled.dialledCall = std::move(dialled.front());
        }
    }
    updateSingleDialledCalls(observer, newestDialled);
    updateSingleReceivedCalls(observer, data);
    if (m_isSipSoftware) {
        updateSingleForwardedCalls(observer, data);
    }
    updateSingleCallbacksAndCount(observer, data);
}

void ObserverNotifier::updateSingleSubscriber(JournalServiceObserverIfc& observer, const ObserverData& data) {
    const DialledCallItem& lastDialled = data.dialledCall;
    observer.missedCallsCountUpdate(getUnviewedMissedCallsCount());
    LOG_UPDATE("subscribe:%s:%s:%s:%d", lastDialled.getFirstname().c_str(), lastDialled.getSurname().c_str(),
               data.entryId.c_str(), data.action);
    logNumbers(lastDialled);
    LOG_UPDATE("subscribe:%d:%s:%d", static_cast<int>(lastDialled.getDialledCallInfoList().size()),
               data.entryId.c_str(), data.action);
    observer.dialledCallsUpdate(lastDialled, data.entryId, data.action);
    const unsigned callBacks = getCallBackListSize();
    if (callBacks != 0) {
        observer.callBacksCountUpdate(static_cast<int>(callBacks));
    }
}

int ObserverNotifier::getUnviewedMissedCallsCount() {
    std::deque<MissedCallItem> missed;
    if (m_service) {
        m_service->getMissedCallList(missed);
    }
    return static_cast<int>(std::count_if(missed.begin(), missed.end(),
                                          [](const MissedCallItem& item) { return !item.getViewed(); }));
}

unsigned ObserverNotifier::getCallBackListSize() {
    std::deque<CallBackItem> callBacks;
    if (m_service) {
        m_service->getCallBackList(callBacks);
    }
    return static_cast<unsigned>(callBacks.size());
}
