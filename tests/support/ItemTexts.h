#pragma once

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace journaltest {

/// What each list's items are called in requests, answers and messages, for tests that treat the lists alike.
template <typename Item>
struct ItemTexts;

template <>
struct ItemTexts<MissedCallItem> {
    static constexpr const char* kTable = CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLMissedCallItemBody;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLMissedCallItem;
    static constexpr auto kParseList = &JournalServiceHelper::parseXMLMissedCallList;
    static constexpr auto kListAnswer = &JournalServiceHelper::respGetMissedCallList;
    static constexpr auto kObserver = &JournalServiceHelper::obsReqMissedCallsUpdate;
};

template <>
struct ItemTexts<DialledCallItem> {
    static constexpr const char* kTable = CallListDatabaseAdapterHelper::DAS_CALLLOGDIALLEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLDialledCallItemBody;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLDialledCallItem;
    static constexpr auto kParseList = &JournalServiceHelper::parseXMLDialledCallList;
    static constexpr auto kListAnswer = &JournalServiceHelper::respGetDialledCallList;
    static constexpr auto kObserver = &JournalServiceHelper::obsReqDialledCallsUpdate;
};

template <>
struct ItemTexts<ReceivedCallItem> {
    static constexpr const char* kTable = CallListDatabaseAdapterHelper::DAS_CALLLOGRECEIVEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLReceivedCallItemBody;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLReceivedCallItem;
    static constexpr auto kParseList = &JournalServiceHelper::parseXMLReceivedCallList;
    static constexpr auto kListAnswer = &JournalServiceHelper::respGetReceivedCallList;
    static constexpr auto kObserver = &JournalServiceHelper::obsReqReceivedCallsUpdate;
};

template <>
struct ItemTexts<ForwardedCallItem> {
    static constexpr const char* kTable = CallListDatabaseAdapterHelper::DAS_CALLLOGFORWARDEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLForwardedCallItemBody;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLForwardedCallItem;
    static constexpr auto kParseList = &JournalServiceHelper::parseXMLForwardedCallList;
    static constexpr auto kListAnswer = &JournalServiceHelper::respGetForwardedCallList;
    static constexpr auto kObserver = &JournalServiceHelper::obsReqForwardedCallsUpdate;
};

template <>
struct ItemTexts<CallBackItem> {
    static constexpr const char* kTable = CallListDatabaseAdapterHelper::DAS_CALLLOGCALLBACKS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLCallBackItemBody;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLCallBackItem;
    static constexpr auto kParseList = &JournalServiceHelper::parseXMLCallBackList;
    static constexpr auto kListAnswer = &JournalServiceHelper::respGetCallBackList;
    static constexpr auto kObserver = &JournalServiceHelper::obsReqCallBacksUpdate;
};

}  // namespace journaltest
