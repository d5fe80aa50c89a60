#pragma once

#include "journal-items/ListTraits.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

/// The XML builders and parsers of one list, beside the constants of `ListTraits`: one specialisation for
/// each list.
///
///     kBody           builds the content of an `ENTRY` of a database request
///     kParse          reads the items of a list document or of a response
///     kParseItem      reads one item
template <typename Item>
struct ListXml;

template <>
struct ListXml<MissedCallItem> : ListTraits<MissedCallItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLMissedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLMissedCallList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLMissedCallItem;
};

template <>
struct ListXml<DialledCallItem> : ListTraits<DialledCallItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLDialledCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLDialledCallList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLDialledCallItem;
};

template <>
struct ListXml<ReceivedCallItem> : ListTraits<ReceivedCallItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLReceivedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLReceivedCallList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLReceivedCallItem;
};

template <>
struct ListXml<ForwardedCallItem> : ListTraits<ForwardedCallItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLForwardedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLForwardedCallList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLForwardedCallItem;
};

template <>
struct ListXml<CallBackItem> : ListTraits<CallBackItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLCallBackItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLCallBackList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLCallBackItem;
};
