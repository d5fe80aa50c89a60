#include "host/faces/ItemJson.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/faces/ItemCsv.h"
#include "host/faces/ListName.h"

namespace host {
namespace {

template <typename Item>
void nameAndKeys(Item& item) {
    item.setEntryId("2026-11-21T05:22:05Z0000002A");
    item.setFirstname("Ann");
    item.setSurname("Müller");
    item.setUniqueId("17");
    item.setPictureClip("ann.png");
}

template <typename Info>
Info call(const std::string& number, const std::string& time) {
    Info info;
    info.setNumber(number);
    info.setTimeAndDate(time);
    return info;
}

TEST(ItemJson, AMissedItemIsWrittenWithEveryField) {
    MissedCallItem item;
    nameAndKeys(item);
    item.addCallInfoToList(call<MissedCallItem::MissedCallInfo>("4710", "2026-11-20T05:00:00Z"));
    auto newest = call<MissedCallItem::MissedCallInfo>("4711", "2026-11-21T05:22:05Z");
    newest.setConnectedNumber("4712");
    newest.setRedirectingNumber("2009");
    newest.setRedirectingName("Desk");
    newest.setLineKey("3");
    newest.setCompletedElsewhere(true);
    item.addCallInfoToList(newest);
    EXPECT_EQ(
        jsonText(itemJson(item)),
        R"({"entryId":"2026-11-21T05:22:05Z0000002A","uniqueId":"17","list":"missed","firstName":"Ann",)"
        R"("surname":"Müller","picture":"ann.png","number":"4711","time":"2026-11-21T05:22:05Z","viewed":false,)"
        R"("occurrences":[{"number":"4711","connectedNumber":"4712","time":"2026-11-21T05:22:05Z",)"
        R"("redirectingNumber":"2009","redirectingName":"Desk","lineKey":"3","completedElsewhere":true},)"
        R"({"number":"4710","connectedNumber":"","time":"2026-11-20T05:00:00Z","redirectingNumber":"",)"
        R"("redirectingName":"","lineKey":"","completedElsewhere":false}]})");
}

TEST(ItemJson, EachListAddsWhatIsItsOwn) {
    DialledCallItem dialled;
    dialled.setJournalSeviceGroupBy("4711");
    auto info = call<DialledCallItem::DialledCallInfo>("*61", "");
    info.setDuration("00:07");
    info.setSubstituteNumber("4711");
    info.setFeatureAccessCode(true);
    dialled.addCallInfoToList(info);
    const auto dialledJson = itemJson(dialled);
    EXPECT_EQ(dialledJson["list"], "dialled");
    EXPECT_EQ(dialledJson["groupBy"], "4711");
    EXPECT_FALSE(dialledJson.contains("viewed"));
    EXPECT_EQ(dialledJson["occurrences"][0]["duration"], "00:07");
    EXPECT_EQ(dialledJson["occurrences"][0]["substituteNumber"], "4711");
    EXPECT_EQ(dialledJson["occurrences"][0]["featureAccessCode"], true);

    ReceivedCallItem received;
    auto answered = call<ReceivedCallItem::ReceivedCallInfo>("4711", "");
    answered.setDuration("01:01");
    received.addCallInfoToList(answered);
    EXPECT_EQ(itemJson(received)["list"], "received");
    EXPECT_EQ(itemJson(received)["occurrences"][0]["duration"], "01:01");

    ForwardedCallItem forwarded;
    auto away = call<ForwardedCallItem::ForwardedCallInfo>("4711", "");
    away.setForwardedToNumber("2002");
    forwarded.addCallInfoToList(away);
    EXPECT_EQ(itemJson(forwarded)["list"], "forwarded");
    EXPECT_EQ(itemJson(forwarded)["occurrences"][0]["forwardedToNumber"], "2002");
}

TEST(ItemJson, ACallbackSaysItsKindsInWords) {
    const CallBackItem item("id", "Ann", "Müller", "4711", NumberType::NT::eMobile, "2026-11-21T05:22:05Z",
                            CallBackItem::CallBackType::eOnNoReply, CallBackItem::CallBackState::eRinging,
                            "2001");
    EXPECT_EQ(jsonText(itemJson(item)),
              R"({"entryId":"id","firstName":"Ann","surname":"Müller","number":"4711","numberType":"mobile",)"
              R"("time":"2026-11-21T05:22:05Z","type":"onNoReply","state":"ringing","deviceId":"2001"})");
    CallBackItem odd;
    odd.setCallBackState(static_cast<CallBackItem::CallBackState>(-7));
    EXPECT_EQ(itemJson(odd)["state"], "unknown");
}

TEST(ItemJson, AnItemWithoutOccurrencesIsStillAnObject) {
    const auto json = itemJson(ReceivedCallItem());
    EXPECT_EQ(json["number"], "");
    EXPECT_TRUE(json["occurrences"].is_array());
    EXPECT_TRUE(json["occurrences"].empty());
}

TEST(ItemJson, BytesThatAreNoUtf8AreReplacedAndQuotesEscaped) {
    ReceivedCallItem item;
    item.setSurname("M\xfcller \"x\"\n");
    EXPECT_NE(jsonText(itemJson(item)).find("\"surname\":\"M\xef\xbf\xbdller \\\"x\\\"\\n\""),
              std::string::npos);
}

TEST(ListName, HasAWordForEachListAndReadsItBack) {
    for (const ListName list : {ListName::eMissed, ListName::eDialled, ListName::eReceived,
                                ListName::eForwarded, ListName::eCallbacks}) {
        EXPECT_EQ(listNamed(wordOf(list)), list);
    }
    EXPECT_EQ(wordOf(ListName::eDialled), "dialled");
    EXPECT_EQ(listNamed("Missed"), std::nullopt);
    EXPECT_EQ(listNamed("dialed"), std::nullopt);
}

TEST(ItemCsv, QuotesAndDefusesCells) {
    const std::pair<std::string, std::string> rows[] = {
        {"a, \"b\"", "\"a, \"\"b\"\"\""},
        {"two\r\nlines", "\"two\r\nlines\""},
        {"=1+1", "'=1+1"},
        {"@SUM", "'@SUM"},
        {"-\"x\"", "\"'-\"\"x\"\"\""},
        {"\t=1", "\"'\t=1\""},
        {"'tis", "''tis"},
        {"a=b", "a=b"},
        {"M\xfcller\x1b", "M\uFFFDller\uFFFD"},
    };
    for (const auto& [name, cell] : rows) {
        CallBackItem item;
        item.setSurname(name);
        item.setNumber("+49");
        EXPECT_EQ(csvLines(ListName::eCallbacks, itemJson(item)),
                  ",," + cell + ",'+49,unknown,,unknown,unknown,\r\n");
    }
}

}  // namespace
}  // namespace host
