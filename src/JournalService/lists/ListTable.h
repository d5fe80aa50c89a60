#pragma once

#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace journal {

/// Which table an item lives in, its form in a request, and how an answer is read; one specialisation for each list.
template <typename Item>
struct ListTable;

template <>
struct ListTable<MissedCallItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLMissedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLMissedCallList;
};

template <>
struct ListTable<DialledCallItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGDIALLEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLDialledCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLDialledCallList;
};

template <>
struct ListTable<ReceivedCallItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGRECEIVEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLReceivedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLReceivedCallList;
};

template <>
struct ListTable<ForwardedCallItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGFORWARDEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLForwardedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLForwardedCallList;
};

template <>
struct ListTable<CallBackItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGCALLBACKS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLCallBackItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLCallBackList;
};

}  // namespace journal
