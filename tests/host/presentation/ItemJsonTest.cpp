#include "host/presentation/ItemJson.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/presentation/ItemCsv.h"
#include "host/presentation/ListName.h"

namespace host {
namespace {

template <typename Info>
Info call(const std::string& number, const std::string& time = "") {
    Info info;
    info.setNumber(number);
    info.setTimeAndDate(time);
    return info;
}

TEST(ItemJson, AMissedItemIsWrittenWithEveryFieldAndItsNewestCallFirst) {
    MissedCallItem item;
    item.setEntryId("2026-11-21T05:22:05Z0000002A");
    item.setFirstname("Ann");
    item.setSurname("M\xfcller \"x\"\n");
    item.setUniqueId("17");
    item.setPictureClip("ann.png");
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
        "\"surname\":\"M\xef\xbf\xbdller \\\"x\\\"\\n\","
        R"("picture":"ann.png","number":"4711","time":"2026-11-21T05:22:05Z","viewed":false,)"
        R"("occurrences":[{"number":"4711","connectedNumber":"4712","time":"2026-11-21T05:22:05Z",)"
        R"("redirectingNumber":"2009","redirectingName":"Desk","lineKey":"3","completedElsewhere":true},)"
        R"({"number":"4710","connectedNumber":"","time":"2026-11-20T05:00:00Z","redirectingNumber":"",)"
        R"("redirectingName":"","lineKey":"","completedElsewhere":false}]})");
}

TEST(ItemJson, ADialledItemHasItsOwnMembersAndAnItemWithoutCallsIsAnObject) {
    DialledCallItem dialled;
    dialled.setJournalSeviceGroupBy("4711");
    auto info = call<DialledCallItem::DialledCallInfo>("*61");
    info.setDuration("00:07");
    info.setSubstituteNumber("4711");
    info.setFeatureAccessCode(true);
    dialled.addCallInfoToList(info);
    EXPECT_EQ(jsonText(itemJson(dialled).at("occurrences").at(0)),
              R"({"number":"*61","connectedNumber":"","time":"","redirectingNumber":"","redirectingName":"",)"
              R"("duration":"00:07","substituteNumber":"4711","featureAccessCode":true})");
    EXPECT_EQ(itemJson(dialled).at("groupBy"), "4711");
    EXPECT_EQ(jsonText(itemJson(ReceivedCallItem()).at("occurrences")), "[]");
}

TEST(ItemJson, ACallbackNamesItsKinds) {
    CallBackItem item("id", "Ann", "Müller", "4711", NumberType::NT::eMobile, "2026-11-21T05:22:05Z",
                      CallBackItem::CallBackType::eOnNoReply, CallBackItem::CallBackState::eRinging, "2001");
    EXPECT_EQ(jsonText(itemJson(item)),
              R"({"entryId":"id","firstName":"Ann","surname":"Müller","number":"4711","numberType":"mobile",)"
              R"("time":"2026-11-21T05:22:05Z","type":"onNoReply","state":"ringing","deviceId":"2001"})");
    item.setCallBackState(static_cast<CallBackItem::CallBackState>(-7));
    EXPECT_EQ(itemJson(item)["state"], "unknown");
}

TEST(ItemCsv, QuotesCellsAndDefusesFormulas) {
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
        EXPECT_EQ(csvRows(ListName::eCallbacks, itemJson(item)),
                  ",," + cell + ",'+49,unknown,,unknown,unknown,\r\n");
    }
}

}  // namespace
}  // namespace host
