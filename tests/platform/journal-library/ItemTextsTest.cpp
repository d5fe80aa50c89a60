#include <algorithm>
#include <deque>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/client-utils/Utf8.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/ClientResponse.h"
#include "platform/journal-library/DataRequest.h"
#include "platform/journal-library/DataResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ObserverMessage.h"
#include "tests/support/ItemTexts.h"
#include "tests/support/RandomItems.h"
#include "tests/support/Table.h"

/// Items and messages as texts. Every text is read back equal for any bytes in the fields, and has the names
/// of docs/messages.md, which other programs and stored documents rely on.
namespace {

using journaltest::some;
using journalxml::MethodId;
using Helper = CallListDatabaseAdapterHelper;
using Messages = JournalServiceHelper;

template <typename Item>
class ItemRoundTrip : public ::testing::Test {
protected:
    /// The request for the item as the database reads it.
    static journalxml::DataRequest requested(const Item& item, const char* reason) {
        using Texts = journaltest::ItemTexts<Item>;
        const std::string request = Helper::addXMLHeaderFooter(
            Helper::createXMLField(Helper::REASONFORMESSAGE, reason) +
                Helper::createXMLElement(Helper::ENTRY, Texts::kBody(item, reason)),
            Texts::kTable);
        RC_ASSERT(utf8::isXmlText(request));
        const auto read = journalxml::parseDataRequest(request);
        RC_ASSERT(read.has_value());
        RC_ASSERT(read->schema == std::string(Texts::kTable));
        return *read;
    }
};

using Items =
    ::testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem, CallBackItem>;
TYPED_TEST_SUITE(ItemRoundTrip, Items, );

TYPED_TEST(ItemRoundTrip, ReachesTheDatabaseUnchanged) {
    EXPECT_TRUE(rc::check([] {
        auto item = some<TypeParam>();
        const auto write = TestFixture::requested(item, Helper::WRITEREQUEST);
        RC_ASSERT(write.items.size() == 1U);
        RC_ASSERT(std::get<TypeParam>(write.items.front()).sameContent(item));

        item.setEntryId("id" + item.getEntryId());
        const auto removal = TestFixture::requested(item, Helper::DELETEREQUEST);
        RC_ASSERT(removal.keys.size() == 1U && removal.items.empty() && !removal.allEntries);
        RC_ASSERT(removal.keys.front().entryId == item.getEntryId());
        if constexpr (std::is_base_of_v<CallItemWithPicture, TypeParam>) {
            RC_ASSERT(removal.keys.front().uniqueId == item.getUniqueId());
        }
    }));
}

TYPED_TEST(ItemRoundTrip, IsReadBackFromAListDocumentAndAResponse) {
    using Texts = journaltest::ItemTexts<TypeParam>;
    EXPECT_TRUE(rc::check([] {
        const std::deque<TypeParam> written{some<TypeParam>(), some<TypeParam>()};
        journalxml::ListDocument document(Texts::kTable);
        RC_ASSERT(document.add(written.front()) && document.add(written.back()));
        RC_ASSERT(document.text().find(Messages::FAILURE) == std::string::npos);
        for (const std::string& text : {document.text(), Texts::kListResponse(written)}) {
            std::deque<TypeParam> read;
            RC_ASSERT(Texts::kParseList(text, read));
            RC_ASSERT(std::equal(read.begin(), read.end(), written.begin(), written.end(),
                                 [](const auto& a, const auto& b) { return a.sameContent(b); }));
            auto first = some<TypeParam>();
            RC_ASSERT(Texts::kParseItem(text, first));
            RC_ASSERT(first.sameContent(written.front()));
        }
    }));
}

TYPED_TEST(ItemRoundTrip, IsReadBackFromAnObserverMessage) {
    using Texts = journaltest::ItemTexts<TypeParam>;
    EXPECT_TRUE(rc::check([] {
        const auto item = some<TypeParam>();
        const std::string entryId = journaltest::someText();
        const int action = journaltest::someNumber();

        const auto read = journalxml::parseObserverMessage(Texts::kObserver(item, entryId, action));
        RC_ASSERT(read.has_value());
        RC_ASSERT(read->entryId == entryId && read->action == action);
        RC_ASSERT(std::get<TypeParam>(read->item).sameContent(item));
    }));
}

RC_GTEST_PROP(ClientRequest, IsReadBack, ()) {
    const std::vector<std::string> entryIds{journaltest::someText(), journaltest::someText()};
    const std::string value = journaltest::someText();
    const std::string request = journalxml::buildRequest(journalxml::MethodId::eDeleteCalls, entryIds, value);
    RC_ASSERT(Messages::getMethodFromXMLMsg(request) == 36);
    std::string readValue;
    RC_ASSERT(Messages::getXMLValue(request, Messages::VALUE, readValue));
    RC_ASSERT(readValue == value);
    RC_ASSERT(Messages::getXMLValues(request, Helper::ENTRYID) == entryIds);
}

TEST(MixedResponse, IsReadIntoItsFiveContainers) {
    std::tuple<std::deque<MissedCallItem>, std::deque<DialledCallItem>, std::deque<ReceivedCallItem>,
               std::deque<ForwardedCallItem>, std::vector<Contact>>
        lists;
    std::string text;
    for (const char* type :
         {"received", "", "dialled", "callback", "contact", "missed", "forwarded", "missed"}) {
        text += std::string("<ENTRY><Type>") + type + "</Type><UniqueId>" + type + "</UniqueId></ENTRY>";
    }
    std::string read;
    std::apply(
        [&](auto&... list) {
            ASSERT_TRUE(Messages::parseXMLdata("<Schema>" + text + "</Schema>", list...));
            read = ((std::to_string(list.size()) + list.at(0).getUniqueId() + " ") + ...);
        },
        lists);
    EXPECT_EQ(read, "2missed 1dialled 1received 1forwarded 1contact ");
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
    const std::string texts[] = {
        Messages::readCallBackList(20),
        Messages::readSettings(),
        journalxml::buildRequest(MethodId::eDeleteCalls, {"a", "b"}, std::nullopt, true),
        journalxml::buildRequest(MethodId::eSetJournalServiceCallLogEventsDisabling, {}, "true"),
        Messages::respBool(false),
        Messages::obsReqMissedCallsCountUpdate(3),
        Messages::obsReqCallBacksCountUpdate(0),
        Messages::obsReqMissedCallsUpdate({}, "17", 1),
        Messages::obsReqDialledCallsUpdate({}, "", 2),
        Messages::obsReqReceivedCallsUpdate({}, "", 3),
        Messages::obsReqForwardedCallsUpdate({}, "", 4),
        Messages::obsReqCallBacksUpdate({}, "", 5)};
    const auto rows = journaltest::table(2, R"(
        Schema name="CallLogCallBacks" | ReasonForMessage=read_request Offset=0 RowLimit=20
        Schema name="JournalSettings"  | ReasonForMessage=read_request
        JournalRequest      | Method=36 EntryId=a EntryId=b SendDeleteMissedCallRequest=true
        JournalRequest      | Method=38 Value=true
        JournalResponse     | Result=false
        JournalNotification | Event=missedCallsCountUpdate Count=3
        JournalNotification | Event=callBacksCountUpdate Count=0
        JournalNotification | Event=missedCallsUpdate Action=1 EntryId=17<ENTRY> Type=missed</ENTRY>
        JournalNotification | Event=dialledCallsUpdate Action=2 EntryId=<ENTRY> Type=dialled</ENTRY>
        JournalNotification | Event=receivedCallsUpdate Action=3 EntryId=<ENTRY> Type=received</ENTRY>
        JournalNotification | Event=forwardedCallsUpdate Action=4 EntryId=<ENTRY> Type=forwarded</ENTRY>
        JournalNotification | Event=callBacksUpdate Action=5 EntryId=<ENTRY> Type=callback</ENTRY>
        )");
    ASSERT_EQ(rows.size(), std::size(texts));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string& root = rows[i][0];
        EXPECT_EQ(shown(texts[i]), R"(<?xml version="1.0" encoding="utf-8"?><)" + root + "> " + rows[i][1] +
                                       "</" + root.substr(0, root.find(' ')) + ">");
    }
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
