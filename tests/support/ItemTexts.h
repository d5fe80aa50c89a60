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
using Helper = JournalServiceHelper;

/// The names of each list's items in requests, responses and messages, for tests that treat the lists alike.
template <typename Item>
struct ItemTexts;

template <>
struct ItemTexts<MissedCallItem>
    : TextsOf<Requests::DAS_CALLLOGMISSEDCALLS, &Requests::createXMLMissedCallItemBody,
              &Helper::parseXMLMissedCallItem, &Helper::parseXMLMissedCallList,
              &Helper::respGetMissedCallList, &Helper::obsReqMissedCallsUpdate> {};
template <>
struct ItemTexts<DialledCallItem>
    : TextsOf<Requests::DAS_CALLLOGDIALLEDCALLS, &Requests::createXMLDialledCallItemBody,
              &Helper::parseXMLDialledCallItem, &Helper::parseXMLDialledCallList,
              &Helper::respGetDialledCallList, &Helper::obsReqDialledCallsUpdate> {};
template <>
struct ItemTexts<ReceivedCallItem>
    : TextsOf<Requests::DAS_CALLLOGRECEIVEDCALLS, &Requests::createXMLReceivedCallItemBody,
              &Helper::parseXMLReceivedCallItem, &Helper::parseXMLReceivedCallList,
              &Helper::respGetReceivedCallList, &Helper::obsReqReceivedCallsUpdate> {};
template <>
struct ItemTexts<ForwardedCallItem>
    : TextsOf<Requests::DAS_CALLLOGFORWARDEDCALLS, &Requests::createXMLForwardedCallItemBody,
              &Helper::parseXMLForwardedCallItem, &Helper::parseXMLForwardedCallList,
              &Helper::respGetForwardedCallList, &Helper::obsReqForwardedCallsUpdate> {};
template <>
struct ItemTexts<CallBackItem> : TextsOf<Requests::DAS_CALLLOGCALLBACKS, &Requests::createXMLCallBackItemBody,
                                         &Helper::parseXMLCallBackItem, &Helper::parseXMLCallBackList,
                                         &Helper::respGetCallBackList, &Helper::obsReqCallBacksUpdate> {};

}  // namespace journaltest
