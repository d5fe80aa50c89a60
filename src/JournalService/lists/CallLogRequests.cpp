#include "src/JournalService/lists/CallLogRequests.h"

#include <algorithm>
#include <set>

#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/csta/CallLogEntryRequest.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"

namespace journal {

namespace {

// The private request type that carries a call-log entry request.
constexpr int kCallLogEntryRequestType = 0;
// A list of more occurrences than this loses its oldest one to the next call.
constexpr std::size_t kOccurrencesBeforeOverflow = 9;

CallLogEntryRequest deleteOne(CallLogEntryEvent::_LogTarget target, const CallInfo& info) {
    CallLogEntryRequest request;
    request.action = CallLogEntryRequest::eDeleteOne;
    request.logTarget = target;
    request.entryTime = info.getTimeAndDate();
    request.numberKind = CallLogEntryRequest::eEntry;
    request.subscriberNumber = info.getNumber();
    return request;
}

template <typename Info, typename Send>
void forEachDistinctNumber(const std::list<Info>& infos, Send send) {
    std::set<std::string> sent;
    for (const Info& info : infos) {
        if (sent.insert(info.getNumber()).second) {
            send(&info);
        }
    }
}

}  // namespace

bool CallLogRequests::sendCSTAEscapeRequest(const CallLogEntryRequest* request) const {
    LOG_EVENTS(5, "%s():TargetLog: %d, SubscriberNumber: %s", "sendCSTAEscapeRequest",
               static_cast<int>(request->logTarget), request->subscriberNumber.c_str());
    if (!send(*request)) {
        LOG_EVENTS(2, "sendCSTAEscapeRequest() : response code is error");
        return false;
    }
    LOG_EVENTS(5, "sendCSTAEscapeRequest() : response code is ok");
    return true;
}

bool CallLogRequests::send(const CallLogEntryRequest& request) const {
    if (m_platform.m_cstaService == nullptr) {
        return false;
    }
    CSTAEscapeRequest escape;
    escape.setSourceService(m_source);
    escape.setEventType(kCallLogEntryRequestType);
    escape.setCallLogEntry(&request);
    m_platform.m_cstaService->request(escape);
    return escape.getResponseCode() == 0;
}

bool CallLogRequests::sendDeleteAllCallLogEntryRequest(CallLogEntryEvent::_LogTarget target) const {
    CallLogEntryRequest request;
    request.action = CallLogEntryRequest::eDeleteAll;
    request.logTarget = target;
    request.numberKind = CallLogEntryRequest::eWholeLog;
    sendCSTAEscapeRequest(&request);
    return true;
}

bool CallLogRequests::sendMissedCallLogEntryRequest(const MissedCallItem::MissedCallInfo* info) const {
    const auto request = deleteOne(CallLogEntryEvent::eMissed, *info);
    sendCSTAEscapeRequest(&request);
    return true;
}

bool CallLogRequests::sendMissedGroupCallLogEntryRequest(const MissedCallItem::MissedCallInfo* info) const {
    auto request = deleteOne(CallLogEntryEvent::eMissedGroupRequest, *info);
    request.action = CallLogEntryRequest::eDeleteAll;
    request.entryTime.clear();
    request.further.back() = {1, info->getGroupText()};
    sendCSTAEscapeRequest(&request);
    return true;
}

bool CallLogRequests::sendDialledCallLogEntryRequest(const DialledCallItem::DialledCallInfo* info) const {
    const auto request = deleteOne(CallLogEntryEvent::eDialled, *info);
    sendCSTAEscapeRequest(&request);
    return true;
}

bool CallLogRequests::sendReceivedCallLogEntryRequest(const ReceivedCallItem::ReceivedCallInfo* info) const {
    const auto request = deleteOne(CallLogEntryEvent::eReceived, *info);
    sendCSTAEscapeRequest(&request);
    return true;
}

bool CallLogRequests::sendMissedCallLogEntryRequests(
    const std::list<MissedCallItem::MissedCallInfo>& infos) const {
    forEachDistinctNumber(infos, [this](const auto* info) { sendMissedCallLogEntryRequest(info); });
    return true;
}

bool CallLogRequests::sendDialledCallLogEntryRequests(
    const std::list<DialledCallItem::DialledCallInfo>& infos) const {
    forEachDistinctNumber(infos, [this](const auto* info) { sendDialledCallLogEntryRequest(info); });
    return true;
}

bool CallLogRequests::sendReceivedCallLogEntryRequests(
    const std::list<ReceivedCallItem::ReceivedCallInfo>& infos) const {
    forEachDistinctNumber(infos, [this](const auto* info) { sendReceivedCallLogEntryRequest(info); });
    return true;
}

bool CallLogRequests::sendCSTACAllLogEntryDeleteRequest(
    const std::list<DialledCallItem::DialledCallInfo>& infos,
    const DialledCallItem::DialledCallInfo& newInfo) const {
    if (infos.size() <= kOccurrencesBeforeOverflow || !m_settings.values()->m_serverBasedCallLog) {
        return true;
    }
    const auto& oldest = infos.back();
    const auto first = std::find_if(infos.begin(), infos.end(), [&oldest](const auto& info) {
        return info.getNumber() == oldest.getNumber();
    });
    if (&*first == &oldest && oldest.getNumber() != newInfo.getNumber()) {
        sendDialledCallLogEntryRequest(&oldest);
    }
    return true;
}

}  // namespace journal
