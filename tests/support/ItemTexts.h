#pragma once

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace journaltest {

template <const char* const& table, auto body, auto parseItem, auto parseList, auto listResponse,
          auto observer>
struct TextsOf {
    static constexpr const char* kTable = table;
    static constexpr auto kBody = body;
    static constexpr auto kParseItem = parseItem;
    static constexpr auto kParseList = parseList;
    static constexpr auto kListResponse = listResponse;
    static constexpr auto kObserver = observer;
};

using Requests = CallListDatabaseAdapterHelper;
using Answers = JournalServiceHelper;

/// What each list's items are called in requests, answers and messages, for tests that treat the lists alike.
template <typename Item>
struct ItemTexts;

template <>
struct ItemTexts<MissedCallItem>
    : TextsOf<Requests::DAS_CALLLOGMISSEDCALLS, &Requests::createXMLMissedCallItemBody,
              &Answers::parseXMLMissedCallItem, &Answers::parseXMLMissedCallList,
              &Answers::respGetMissedCallList, &Answers::obsReqMissedCallsUpdate> {};
template <>
struct ItemTexts<DialledCallItem>
    : TextsOf<Requests::DAS_CALLLOGDIALLEDCALLS, &Requests::createXMLDialledCallItemBody,
              &Answers::parseXMLDialledCallItem, &Answers::parseXMLDialledCallList,
              &Answers::respGetDialledCallList, &Answers::obsReqDialledCallsUpdate> {};
template <>
struct ItemTexts<ReceivedCallItem>
    : TextsOf<Requests::DAS_CALLLOGRECEIVEDCALLS, &Requests::createXMLReceivedCallItemBody,
              &Answers::parseXMLReceivedCallItem, &Answers::parseXMLReceivedCallList,
              &Answers::respGetReceivedCallList, &Answers::obsReqReceivedCallsUpdate> {};
template <>
struct ItemTexts<ForwardedCallItem>
    : TextsOf<Requests::DAS_CALLLOGFORWARDEDCALLS, &Requests::createXMLForwardedCallItemBody,
              &Answers::parseXMLForwardedCallItem, &Answers::parseXMLForwardedCallList,
              &Answers::respGetForwardedCallList, &Answers::obsReqForwardedCallsUpdate> {};
template <>
struct ItemTexts<CallBackItem> : TextsOf<Requests::DAS_CALLLOGCALLBACKS, &Requests::createXMLCallBackItemBody,
                                         &Answers::parseXMLCallBackItem, &Answers::parseXMLCallBackList,
                                         &Answers::respGetCallBackList, &Answers::obsReqCallBacksUpdate> {};

}  // namespace journaltest
