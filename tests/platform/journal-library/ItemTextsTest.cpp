#include <algorithm>
#include <deque>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/client-utils/Utf8.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/DataResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ObserverMessage.h"
#include "tests/support/ItemTexts.h"
#include "tests/support/RandomItems.h"

/// Items and messages as texts. Every text is read back equal for any bytes in the fields, and has the names
/// of docs/messages.md, which other programs and stored documents rely on.
namespace {

using journaltest::some;
using journalxml::MethodId;
using Helper = CallListDatabaseAdapterHelper;
using Messages = JournalServiceHelper;

template <typename Item>
class ItemRoundTrip : public ::testing::Test {};

using Items =
    ::testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem, CallBackItem>;
TYPED_TEST_SUITE(ItemRoundTrip, Items, );

TYPED_TEST(ItemRoundTrip, IsReadBackFromAListAResponseAndAnObserverMessage) {
    using Texts = journaltest::ItemTexts<TypeParam>;
    EXPECT_TRUE(rc::check([] {
        const std::deque<TypeParam> written{some<TypeParam>(), some<TypeParam>()};
        journalxml::ListDocument document(Texts::kTable);
        RC_ASSERT(document.add(written.front()) && document.add(written.back()));
        RC_ASSERT(document.text().find(Messages::FAILURE) == std::string::npos);
        for (const std::string& text : {document.text(), Texts::kListResponse(written)}) {
            std::deque<TypeParam> read;
            RC_ASSERT(utf8::isXmlText(text) && Texts::kParseList(text, read));
            RC_ASSERT(std::equal(read.begin(), read.end(), written.begin(), written.end(),
                                 [](const auto& a, const auto& b) { return a.sameContent(b); }));
            auto first = some<TypeParam>();
            RC_ASSERT(Texts::kParseItem(text, first) && first.sameContent(written.front()));
        }
        const std::string entryId = journaltest::someText();
        const int action = journaltest::someNumber();
        const auto read =
            journalxml::parseObserverMessage(Texts::kObserver(written.front(), entryId, action));
        RC_ASSERT(read && read->entryId == entryId && read->action == action);
        RC_ASSERT(std::get<TypeParam>(read->item).sameContent(written.front()));
    }));
}

/// Elements without inner elements as " Name=text", the others unchanged.
std::string shown(const std::string& xml) {
    return std::regex_replace(xml, std::regex("<(\\w+)>([^<]*)</\\1>"), " $1=$2");
}

/// The document of an item whose fields are counted in the order in which `fill` sets them.
template <typename Item>
std::string entry() {
    journalxml::ListDocument document("s");
    EXPECT_TRUE(document.add(journaltest::counted<Item>()));
    return shown(document.text());
}

std::string entryOf(const std::string& type, const std::string& fields) {
    return R"(<?xml version="1.0" encoding="utf-8"?><Schema name="s"><ENTRY> Type=)" + type + fields +
           "</ENTRY></Schema>";
}

TEST(Vocabulary, HasAnElementForEveryField) {
    const std::string item = " EntryId=t1 Firstname=t2 Surname=t3 UniqueId=t4 PictureClip=t5";
    const std::string occurrence =
        "<Occurrence> CallId=t6 Number=t7 ConnectedNumber=t8 TextC=t9 TextD=t10 TimeAndDate=t11 LogTarget=12"
        " PresentationA=13 PresentationB=14 PresentationC=15 PresentationD=16";
    const std::string redirecting =
        " RedirectingNumber=t17 RedirectingName=t18 RedirectingNumberPresentation=19"
        " RedirectingNamePresentation=20 TransferNumberType=21 RedirectingReason=22";
    EXPECT_EQ(entry<MissedCallItem>(),
              entryOf("missed", item + " Viewed=true" + occurrence + " TimeFormat=25" + redirecting +
                                    " GroupText=t23 LineKey=t24 CompletedElsewhere=true</Occurrence>"));
    EXPECT_EQ(
        entry<DialledCallItem>(),
        entryOf("dialled", item + " GroupBy=t26" + occurrence + " Duration=t23 TimeFormat=25" + redirecting +
                               " SubstituteNumber=t24 FeatureAccessCode=true</Occurrence>"));
    EXPECT_EQ(entry<ReceivedCallItem>(),
              entryOf("received",
                      item + occurrence + " Duration=t23 TimeFormat=24" + redirecting + "</Occurrence>"));
    EXPECT_EQ(entry<ForwardedCallItem>(),
              entryOf("forwarded",
                      item + occurrence + " Duration=t23" + redirecting +
                          " ForwardedToNumber=t24 ForwardingTarget=25 ForwardingReason=26</Occurrence>"));
    EXPECT_EQ(entry<CallBackItem>(),
              entryOf("callback",
                      " EntryId=t1 Firstname=t2 Surname=t3 Number=t4 TimeDate=t5 DeviceId=t6"
                      " NumberType=7 CallBackType=8 CallBackState=9"));
    EXPECT_EQ(entry<Contact>(),
              entryOf("contact",
                      " UniqueId=t1 Surname=t2 Firstname=t3 Office=t4 Mobile=t5 Private=t6 Email=t7 Group=t8"
                      " Company=t9 Office2=t10 Address=t11 Address2=t12 JobFunction=t13 Picture=t14"
                      " VoiceDial=t15 ExternalId=t16 SearchNumber=t17 DefaultNumber=18 MatchedKind=19"
                      " ContactSource=personal<CallRecords><CallRecord> UniqueId=t20 Type=t21"
                      "</CallRecord></CallRecords>"));
}

TEST(Vocabulary, HasTheRequestsTheResponsesAndTheObserverMessages) {
    std::string texts;
    for (const std::string& text :
         {Messages::readCallBackList(20), Messages::readSettings(),
          journalxml::buildRequest(MethodId::eDeleteCalls, {"a", "b"}, std::nullopt, true),
          journalxml::buildRequest(MethodId::eSetJournalServiceCallLogEventsDisabling, {}, "true"),
          Messages::respBool(false), Messages::obsReqMissedCallsCountUpdate(3),
          Messages::obsReqCallBacksCountUpdate(0), Messages::obsReqMissedCallsUpdate({}, "17", 1),
          Messages::obsReqDialledCallsUpdate({}, "", 2), Messages::obsReqReceivedCallsUpdate({}, "", 3),
          Messages::obsReqForwardedCallsUpdate({}, "", 4), Messages::obsReqCallBacksUpdate({}, "", 5)}) {
        const std::string declaration = R"(<?xml version="1.0" encoding="utf-8"?>)";
        EXPECT_EQ(text.substr(0, declaration.size()), declaration);
        texts += "\n" + shown(text.substr(declaration.size(), text.rfind("</") - declaration.size()));
    }
    EXPECT_EQ(texts, R"(
<Schema name="CallLogCallBacks"> ReasonForMessage=read_request Offset=0 RowLimit=20
<Schema name="JournalSettings"> ReasonForMessage=read_request
<JournalRequest> Method=36 EntryId=a EntryId=b SendDeleteMissedCallRequest=true
<JournalRequest> Method=38 Value=true
<JournalResponse> Result=false
<JournalNotification> Event=missedCallsCountUpdate Count=3
<JournalNotification> Event=callBacksCountUpdate Count=0
<JournalNotification> Event=missedCallsUpdate Action=1 EntryId=17<ENTRY> Type=missed</ENTRY>
<JournalNotification> Event=dialledCallsUpdate Action=2 EntryId=<ENTRY> Type=dialled</ENTRY>
<JournalNotification> Event=receivedCallsUpdate Action=3 EntryId=<ENTRY> Type=received</ENTRY>
<JournalNotification> Event=forwardedCallsUpdate Action=4 EntryId=<ENTRY> Type=forwarded</ENTRY>
<JournalNotification> Event=callBacksUpdate Action=5 EntryId=<ENTRY> Type=callback</ENTRY>)");
}

TEST(Vocabulary, HasANameForEverySource) {
    std::string words;
    for (int source = 0; source < 7; ++source) {
        words +=
            Helper::getOrderedContactSourceToString(static_cast<Contact::eOrderedContactSource>(source)) +
            " ";
    }
    EXPECT_EQ(words, "unknown personal company ldap exchange calllog unknown ");
    EXPECT_EQ(Helper::getOrderedContactSourceFromString("nonsense"),
              Contact::eOrderedContactSource::eUnknown);
}

}  // namespace
