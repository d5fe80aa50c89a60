#pragma once

#include <optional>

#include "journal-items/ListTraits.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/MethodId.h"

/// The XML builders and parsers of one list and its methods of the remote interface, beside the constants of
/// `ListTraits`: one specialisation for each list.
///
///     kBody           builds the content of an `ENTRY` of a database request
///     kParse          reads the items of a list document or of a response
///     kParseItem      reads one item
///     kGet            the method that gets one item; std::nullopt for the callbacks, which have none
///     kGetList        the method that gets the list
template <typename Item>
struct ListXml;

template <>
struct ListXml<MissedCallItem> : ListTraits<MissedCallItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLMissedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLMissedCallList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLMissedCallItem;
    static constexpr std::optional<journalxml::MethodId> kGet = journalxml::MethodId::eGetMissedCall;
    static constexpr journalxml::MethodId kGetList = journalxml::MethodId::eGetMissedCallList;
};

template <>
struct ListXml<DialledCallItem> : ListTraits<DialledCallItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLDialledCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLDialledCallList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLDialledCallItem;
    static constexpr std::optional<journalxml::MethodId> kGet = journalxml::MethodId::eGetDialledCall;
    static constexpr journalxml::MethodId kGetList = journalxml::MethodId::eGetDialledCallList;
};

template <>
struct ListXml<ReceivedCallItem> : ListTraits<ReceivedCallItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLReceivedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLReceivedCallList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLReceivedCallItem;
    static constexpr std::optional<journalxml::MethodId> kGet = journalxml::MethodId::eGetReceivedCall;
    static constexpr journalxml::MethodId kGetList = journalxml::MethodId::eGetReceivedCallList;
};

template <>
struct ListXml<ForwardedCallItem> : ListTraits<ForwardedCallItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLForwardedCallItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLForwardedCallList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLForwardedCallItem;
    static constexpr std::optional<journalxml::MethodId> kGet = journalxml::MethodId::eGetForwardedCall;
    static constexpr journalxml::MethodId kGetList = journalxml::MethodId::eGetForwardedCallList;
};

template <>
struct ListXml<CallBackItem> : ListTraits<CallBackItem> {
    static constexpr auto kBody = &CallListDatabaseAdapterHelper::createXMLCallBackItemBody;
    static constexpr auto kParse = &JournalServiceHelper::parseXMLCallBackList;
    static constexpr auto kParseItem = &JournalServiceHelper::parseXMLCallBackItem;
    static constexpr std::optional<journalxml::MethodId> kGet = std::nullopt;
    static constexpr journalxml::MethodId kGetList = journalxml::MethodId::eGetCallBackList;
};
