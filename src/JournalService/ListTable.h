#pragma once

#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"

namespace journal {

/// Which table an item lives in, and its form in a request; one specialisation for each list.
template <typename Item>
struct ListTable;

template <>
struct ListTable<MissedCallItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLMissedCallItemBody;
};

template <>
struct ListTable<DialledCallItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGDIALLEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLDialledCallItemBody;
};

template <>
struct ListTable<ReceivedCallItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGRECEIVEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLReceivedCallItemBody;
};

template <>
struct ListTable<ForwardedCallItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGFORWARDEDCALLS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLForwardedCallItemBody;
};

template <>
struct ListTable<CallBackItem> {
    static constexpr const char* kName = CallListDatabaseAdapterHelper::DAS_CALLLOGCALLBACKS;
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLCallBackItemBody;
};

}  // namespace journal
