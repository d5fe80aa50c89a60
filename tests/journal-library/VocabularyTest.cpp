#include <string>

#include <gtest/gtest.h>

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

/// The texts themselves, as docs/messages.md shows them: programs in other languages and stored documents
/// rely on every name.
namespace {

using Helper = CallListDatabaseAdapterHelper;

void fillCommon(CallInfo& info, Redirecting& redirecting) {
    info.setCallId("c1");
    info.setNumber("4711");
    info.setConnectedNumber("4712");
    info.setTextC("C");
    info.setTextD("D");
    info.setTimeAndDate("2026-11-21T05:22:05Z");
    info.setLogTarget(1);
    info.setPresentationA(2);
    info.setPresentationB(3);
    info.setPresentationC(4);
    info.setPresentationD(-5);
    redirecting.setRedirectingNumber("99");
    redirecting.setRedirectingName("Reception");
    redirecting.setRedirectingNumberPresentation(6);
    redirecting.setRedirectingNamePresentation(7);
    redirecting.setTransferNumberType(8);
    redirecting.setRedirectingReason(9);
}

constexpr const char* kCommonCallInfo =
    "<CallId>c1</CallId><Number>4711</Number><ConnectedNumber>4712</ConnectedNumber><TextC>C</TextC>"
    "<TextD>D</TextD><TimeAndDate>2026-11-21T05:22:05Z</TimeAndDate><LogTarget>1</LogTarget>"
    "<PresentationA>2</PresentationA><PresentationB>3</PresentationB><PresentationC>4</PresentationC>"
    "<PresentationD>-5</PresentationD>";
constexpr const char* kCommonRedirecting =
    "<RedirectingNumber>99</RedirectingNumber><RedirectingName>Reception</RedirectingName>"
    "<RedirectingNumberPresentation>6</RedirectingNumberPresentation>"
    "<RedirectingNamePresentation>7</RedirectingNamePresentation><TransferNumberType>8</TransferNumberType>"
    "<RedirectingReason>9</RedirectingReason>";
constexpr const char* kCommonItem =
    "<EntryId>id</EntryId><Firstname>Ada</Firstname><Surname>Miller</Surname><UniqueId>17</UniqueId>"
    "<PictureClip>ada.png</PictureClip>";

template <typename Item>
void fillCommon(Item& item) {
    item.setUniqueId("17");
    item.setPictureClip("ada.png");
}

TEST(Vocabulary, HasTheMissedCall) {
    MissedCallItem::MissedCallInfo info;
    fillCommon(info, info);
    info.setTimeFormat(10);
    info.setCompletedElsewhere(true);
    info.setGroupText("group");
    info.setLineKey("2");
    MissedCallItem item("id", "Ada", "Miller", {info}, true);
    fillCommon(item);
    EXPECT_EQ(Helper::createXMLMissedCallItemBody(item, Helper::WRITEREQUEST),
              std::string("<Type>missed</Type>") + kCommonItem + "<Viewed>true</Viewed><Occurrence>" +
                  kCommonCallInfo + "<TimeFormat>10</TimeFormat>" + kCommonRedirecting +
                  "<GroupText>group</GroupText><LineKey>2</LineKey>"
                  "<CompletedElsewhere>true</CompletedElsewhere></Occurrence>");
}

TEST(Vocabulary, HasTheDialledCall) {
    DialledCallItem::DialledCallInfo info;
    fillCommon(info, info);
    info.setDuration("01:01");
    info.setTimeFormat(10);
    info.setSubstituteNumber("4713");
    info.setFeatureAccessCode(true);
    DialledCallItem item("id", "Ada", "Miller", {info});
    fillCommon(item);
    item.setJournalSeviceGroupBy("4711");
    EXPECT_EQ(Helper::createXMLDialledCallItemBody(item, Helper::WRITEREQUEST),
              std::string("<Type>dialled</Type>") + kCommonItem + "<GroupBy>4711</GroupBy><Occurrence>" +
                  kCommonCallInfo + "<Duration>01:01</Duration><TimeFormat>10</TimeFormat>" +
                  kCommonRedirecting +
                  "<SubstituteNumber>4713</SubstituteNumber><FeatureAccessCode>true</FeatureAccessCode>"
                  "</Occurrence>");
}

TEST(Vocabulary, HasTheReceivedCall) {
    ReceivedCallItem::ReceivedCallInfo info;
    fillCommon(info, info);
    info.setDuration("01:01");
    info.setTimeFormat(10);
    ReceivedCallItem item("id", "Ada", "Miller", {info});
    fillCommon(item);
    EXPECT_EQ(Helper::createXMLReceivedCallItemBody(item, Helper::WRITEREQUEST),
              std::string("<Type>received</Type>") + kCommonItem + "<Occurrence>" + kCommonCallInfo +
                  "<Duration>01:01</Duration><TimeFormat>10</TimeFormat>" + kCommonRedirecting +
                  "</Occurrence>");
}

TEST(Vocabulary, HasTheForwardedCall) {
    ForwardedCallItem::ForwardedCallInfo info;
    fillCommon(info, info);
    info.setDuration("01:01");
    info.setForwardedToNumber("2002");
    info.setForwardingTarget(11);
    info.setForwardingReason(12);
    ForwardedCallItem item("id", "Ada", "Miller", {info});
    fillCommon(item);
    EXPECT_EQ(Helper::createXMLForwardedCallItemBody(item, Helper::WRITEREQUEST),
              std::string("<Type>forwarded</Type>") + kCommonItem + "<Occurrence>" + kCommonCallInfo +
                  "<Duration>01:01</Duration>" + kCommonRedirecting +
                  "<ForwardedToNumber>2002</ForwardedToNumber><ForwardingTarget>11</ForwardingTarget>"
                  "<ForwardingReason>12</ForwardingReason></Occurrence>");
}

TEST(Vocabulary, HasTheCallBack) {
    const CallBackItem item("id", "Ada", "Miller", "4711", NumberType::NT::eOffice2, "2026-11-21T05:22:05Z",
                            CallBackItem::CallBackType::eOnBusy, CallBackItem::CallBackState::eDone, "2001");
    EXPECT_EQ(Helper::createXMLCallBackItemBody(item, Helper::WRITEREQUEST),
              "<Type>callback</Type><EntryId>id</EntryId><Firstname>Ada</Firstname><Surname>Miller</Surname>"
              "<Number>4711</Number><TimeDate>2026-11-21T05:22:05Z</TimeDate><DeviceId>2001</DeviceId>"
              "<NumberType>4</NumberType><CallBackType>1</CallBackType><CallBackState>3</CallBackState>");
}

TEST(Vocabulary, LeavesOutWhatHasItsDefault) {
    EXPECT_EQ(Helper::createXMLMissedCallItemBody(MissedCallItem(), Helper::WRITEREQUEST),
              "<Type>missed</Type>");
}

TEST(Vocabulary, NamesARowByItsIdsInADelete) {
    MissedCallItem item("id", "Ada", "Miller", {MissedCallItem::MissedCallInfo()}, true);
    item.setUniqueId("17");
    EXPECT_EQ(Helper::createXMLMissedCallItemBody(item, Helper::DELETEREQUEST),
              "<UniqueId>17</UniqueId><EntryId>id</EntryId>");
    const CallBackItem callBack("id", "Ada", "Miller", "4711", NumberType::NT::eUnknown, "",
                                CallBackItem::CallBackType::eUnknown, CallBackItem::CallBackState::eUnknown,
                                "");
    EXPECT_EQ(Helper::createXMLCallBackItemBody(callBack, Helper::DELETEREQUEST), "<EntryId>id</EntryId>");
}

TEST(Vocabulary, HasTheReadRequests) {
    const auto request = [](const std::string& table, const std::string& rows) {
        return "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"" + table +
               "\"><ReasonForMessage>read_request</ReasonForMessage><Offset>0</Offset><RowLimit>" + rows +
               "</RowLimit></Schema>";
    };
    EXPECT_EQ(Helper::readMissedCallList(), request("CallLogMissedCalls", "1000"));
    EXPECT_EQ(JournalServiceHelper::readDialledCallList(), request("CallLogDialledCalls", "1000"));
    EXPECT_EQ(JournalServiceHelper::readReceivedCallList(), request("CallLogReceivedCalls", "1000"));
    EXPECT_EQ(JournalServiceHelper::readForwardedCallList(), request("CallLogForwardedCalls", "1000"));
    EXPECT_EQ(JournalServiceHelper::readCallBackList(20), request("CallLogCallBacks", "20"));
    EXPECT_EQ(JournalServiceHelper::readSettings(),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"JournalSettings\">"
              "<ReasonForMessage>read_request</ReasonForMessage></Schema>");
}

TEST(Vocabulary, HasTheAnswersAndObserverMessages) {
    EXPECT_EQ(JournalServiceHelper::respBool(false),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><JournalResponse><Result>false</Result>"
              "</JournalResponse>");
    EXPECT_EQ(
        JournalServiceHelper::respGetReceivedCall(ReceivedCallItem()),
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><JournalResponse><ENTRY><Type>received</Type></ENTRY>"
        "</JournalResponse>");
    EXPECT_EQ(JournalServiceHelper::obsReqMissedCallsCountUpdate(3),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><JournalNotification>"
              "<Event>missedCallsCountUpdate</Event><Count>3</Count></JournalNotification>");
    EXPECT_EQ(JournalServiceHelper::obsReqDialledCallsUpdate(DialledCallItem(), "17", 2),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><JournalNotification>"
              "<Event>dialledCallsUpdate</Event><Action>2</Action><EntryId>17</EntryId>"
              "<ENTRY><Type>dialled</Type></ENTRY></JournalNotification>");
}

TEST(Vocabulary, HasAWordForEverySource) {
    using Source = Contact::eOrderedContactSource;
    for (const Source source : {Source::eUnknown, Source::ePersonal, Source::eCompany, Source::eLdap,
                                Source::eExchange, Source::eCallLog}) {
        EXPECT_EQ(Helper::getOrderedContactSourceFromString(Helper::getOrderedContactSourceToString(source)),
                  source);
    }
    EXPECT_EQ(Helper::getOrderedContactSourceToString(Source::ePersonal), "personal");
    EXPECT_EQ(Helper::getOrderedContactSourceToString(static_cast<Source>(99)), "unknown");
    EXPECT_EQ(Helper::getOrderedContactSourceFromString("nonsense"), Source::eUnknown);
}

}  // namespace
