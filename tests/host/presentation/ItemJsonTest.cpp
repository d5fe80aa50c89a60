#include "host/presentation/ItemJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/presentation/ItemCsv.h"
#include "host/presentation/ListName.h"
#include "tests/support/RandomItems.h"

namespace host {
namespace {

using journaltest::counted;

TEST(ItemJson, AnItemIsWrittenWithEveryFieldAndItsNewestCallFirst) {
    auto missed = counted<MissedCallItem>();
    missed.setSurname("M\xfcller \"x\"\n");
    missed.addCallInfoToList(MissedCallItem::MissedCallInfo());
    EXPECT_EQ(
        jsonText(itemJson(missed)),
        R"({"entryId":"t1","uniqueId":"t4","list":"missed","firstName":"t2",)"
        "\"surname\":\"M\xef\xbf\xbdller \\\"x\\\"\\n\","
        "\"displayName\":\"t2 M\xef\xbf\xbdller \\\"x\\\"\\n\","
        R"("picture":"t5","number":"","numberText":"","time":"","viewed":true,"calls":2,)"
        R"("occurrences":[{"number":"","connectedNumber":"","time":"","redirectingNumber":"",)"
        R"("redirectingName":"","endApproximate":false,"lineKey":"","completedElsewhere":false},)"
        R"({"number":"t7","connectedNumber":"t8","time":"t11","redirectingNumber":"t17",)"
        R"("redirectingName":"t18","endApproximate":false,"lineKey":"t24","completedElsewhere":true}]})");
    auto one = counted<DialledCallItem>();
    auto calls = one.getDialledCallInfoList();
    calls.front().setDuration("75:11");
    one.setDialledCallInfoList(calls);
    const auto dialled = itemJson(one);
    EXPECT_EQ(jsonText(dialled.at("occurrences").at(0)),
              R"({"number":"t7","connectedNumber":"t8","time":"t11","redirectingNumber":"t17",)"
              R"("redirectingName":"t18","endApproximate":false,"duration":"75:11","durationSeconds":4511,)"
              R"("substituteNumber":"t24","featureAccessCode":true})");
    EXPECT_EQ(dialled.at("groupBy"), "t26");
    EXPECT_EQ(jsonText(itemJson(ReceivedCallItem()).at("occurrences")), "[]");
}

TEST(ItemJson, ACallbackNamesItsKinds) {
    CallBackItem item("id", "Ann", "Müller", "4711", NumberType::NT::eMobile, "2026-11-21T05:22:05Z",
                      CallBackItem::CallBackType::eOnNoReply, CallBackItem::CallBackState::eRinging, "2001");
    EXPECT_EQ(jsonText(itemJson(item)),
              R"({"entryId":"id","firstName":"Ann","surname":"Müller","displayName":"Ann Müller",)"
              R"("number":"4711","numberText":"4711","numberType":"mobile",)"
              R"("time":"2026-11-21T05:22:05Z","type":"onNoReply","state":"ringing","deviceId":"2001"})");
    item.setCallBackState(static_cast<CallBackItem::CallBackState>(-7));
    EXPECT_EQ(itemJson(item)["state"], "unknown");
}

TEST(ItemCsv, QuotesCellsAndDefusesFormulas) {
    CallBackItem item("a, \"b\"", "two\r\nlines", "=1+1", "@SUM", {}, "-\"x\"", {}, {}, "\t=1");
    EXPECT_EQ(csvRows(ListName::eCallbacks, itemJson(item)),
              "\"a, "
              "\"\"b\"\"\",\"two\r\nlines\",'=1+1,\"two\r\nlines "
              "=1+1\",'@SUM,unknown,\"'-\"\"x\"\"\",unknown,unknown,\"'\t=1\"\r\n");
    item = CallBackItem("\uFF1D1", "\uFF0B", "\uFF0D", "\uFF20", {}, "", {}, {}, "");
    EXPECT_THAT(csvRows(ListName::eCallbacks, itemJson(item)),
                testing::StartsWith("'\uFF1D1,'\uFF0B,'\uFF0D,'\uFF0B \uFF0D,'\uFF20,"));
    item = CallBackItem("'tis", "a=b", "M\xfcller\x1b", "+49", {}, "", {}, {}, "");
    EXPECT_EQ(csvRows(ListName::eCallbacks, itemJson(item)),
              "''tis,a=b,M\uFFFDller\uFFFD,a=b M\uFFFDller\uFFFD,'+49,unknown,,unknown,unknown,\r\n");
}

}  // namespace
}  // namespace host
