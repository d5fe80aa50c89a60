#include "journalservice/JournalServiceObserverProxy.h"

#include "platform/framework/ProxyRequest.h"
#include "platform/journal-library/JournalServiceHelper.h"

void JournalServiceObserverProxy::initProxy(ProxyRequest& request) {
    m_request = &request;
    request.selectProtocol("opera_text");
}

void JournalServiceObserverProxy::send(const std::string& message) {
    if (m_request) {
        m_request->send(message);
    }
}

void JournalServiceObserverProxy::missedCallsCountUpdate(int count) {
    send(JournalServiceHelper::obsReqMissedCallsCountUpdate(static_cast<unsigned>(count)));
}

void JournalServiceObserverProxy::missedCallsUpdate(MissedCallItem item, std::string entryId,
                                                    ActionType action) {
    send(JournalServiceHelper::obsReqMissedCallsUpdate(item, entryId, action));
}

void JournalServiceObserverProxy::dialledCallsUpdate(DialledCallItem item, std::string entryId,
                                                     ActionType action) {
    send(JournalServiceHelper::obsReqDialledCallsUpdate(item, entryId, action));
}

void JournalServiceObserverProxy::receivedCallsUpdate(ReceivedCallItem item, std::string entryId,
                                                      ActionType action) {
    send(JournalServiceHelper::obsReqReceivedCallsUpdate(item, entryId, action));
}

void JournalServiceObserverProxy::forwardedCallsUpdate(ForwardedCallItem item, std::string entryId,
                                                       ActionType action) {
    send(JournalServiceHelper::obsReqForwardedCallsUpdate(item, entryId, action));
}

void JournalServiceObserverProxy::callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) {
    send(JournalServiceHelper::obsReqCallBacksUpdate(item, entryId, action));
}

void JournalServiceObserverProxy::callBacksCountUpdate(int count) {
    send(JournalServiceHelper::obsReqCallBacksCountUpdate(static_cast<unsigned>(count)));
}
