#include "apps/calljournal/ListAnswer.h"

#include <gtest/gtest.h>

#include <deque>
#include <nlohmann/json.hpp>
#include <string>

#include "host/log/Log.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace host {
namespace {

using Json = nlohmann::json;

template <typename Item, typename Info>
Item itemOf(const std::string& entryId, const std::string& surname, const std::string& number, Info info) {
    Item item;
    item.setEntryId(entryId);
    item.setSurname(surname);
    info.setNumber(number);
    info.setTimeAndDate("2026-11-21T05:22:05Z");
    item.addCallInfoToList(info);
    return item;
}

std::string threeMissed() {
    using Info = MissedCallItem::MissedCallInfo;
    std::deque<MissedCallItem> list{itemOf<MissedCallItem>("e3", "Müller", "4711", Info()),
                                    itemOf<MissedCallItem>("e2", "Fischer", "4712", Info()),
                                    itemOf<MissedCallItem>("e1", "Müllerson", "4713", Info())};
    list[2].setViewed(true);
    return JournalServiceHelper::respGetMissedCallList(list);
}

class ListAnswerTest : public ::testing::Test {
protected:
    // What cannot be read leaves lines that nobody needs to see here.
    static void SetUpTestSuite() { Log::configure("error", ""); }
};

TEST_F(ListAnswerTest, KeepsOrderAndCountsWhatWasNotViewed) {
    const auto answer = readListAnswer(ListName::eMissed, threeMissed(), {});
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->total, 3U);
    EXPECT_EQ(answer->unviewed, 2U);
    ASSERT_EQ(answer->rows.size(), 3U);
    EXPECT_EQ(answer->rows[0].name, "Müller");
    EXPECT_TRUE(answer->rows[0].marked);
    EXPECT_EQ(answer->rows[0].count, "1");
    EXPECT_FALSE(answer->rows[2].marked);
    const Json json = Json::parse(answer->json);
    EXPECT_EQ(json["list"], "missed");
    EXPECT_EQ(json["items"].size(), 3U);
    EXPECT_EQ(json["items"][1]["entryId"], "e2");
}

TEST_F(ListAnswerTest, SearchesFirstAndLimitsThen) {
    const auto answer = readListAnswer(ListName::eMissed, threeMissed(), {.limit = 1, .search = "MÜLLER"});
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->total, 2U);
    EXPECT_EQ(answer->unviewed, 1U);
    ASSERT_EQ(answer->rows.size(), 1U);
    EXPECT_EQ(answer->rows[0].number, "4711");
    EXPECT_EQ(Json::parse(answer->json)["items"].size(), 1U);
}

TEST_F(ListAnswerTest, ShowsTheDurationOfTheNewestCallWhereTheListHasOne) {
    ReceivedCallItem::ReceivedCallInfo received;
    received.setDuration("01:01");
    const auto receivedAnswer = readListAnswer(
        ListName::eReceived,
        JournalServiceHelper::respGetReceivedCallList({itemOf<ReceivedCallItem>("e", "A", "1", received)}),
        {});
    ASSERT_TRUE(receivedAnswer);
    EXPECT_EQ(receivedAnswer->rows.at(0).duration, "01:01");

    DialledCallItem::DialledCallInfo dialled;
    dialled.setDuration("00:07");
    const auto dialledAnswer = readListAnswer(
        ListName::eDialled,
        JournalServiceHelper::respGetDialledCallList({itemOf<DialledCallItem>("e", "A", "1", dialled)}), {});
    ASSERT_TRUE(dialledAnswer);
    EXPECT_EQ(dialledAnswer->rows.at(0).duration, "00:07");
    EXPECT_FALSE(dialledAnswer->rows.at(0).marked);
}

TEST_F(ListAnswerTest, ReadsForwardedCallsAndCallbacksToo) {
    const auto forwarded = readListAnswer(
        ListName::eForwarded,
        JournalServiceHelper::respGetForwardedCallList(
            {itemOf<ForwardedCallItem>("e", "A", "4711", ForwardedCallItem::ForwardedCallInfo())}),
        {});
    ASSERT_TRUE(forwarded);
    EXPECT_EQ(forwarded->rows.at(0).number, "4711");

    CallBackItem callback;
    callback.setEntryId("e");
    callback.setNumber("4712");
    const auto callbacks =
        readListAnswer(ListName::eCallbacks, JournalServiceHelper::respGetCallBackList({callback}), {});
    ASSERT_TRUE(callbacks);
    EXPECT_EQ(callbacks->rows.at(0).number, "4712");
    EXPECT_EQ(Json::parse(callbacks->json)["items"][0]["number"], "4712");
}

TEST_F(ListAnswerTest, AnEmptyListIsAnAnswerAndAFailureIsNone) {
    const auto empty =
        readListAnswer(ListName::eDialled, JournalServiceHelper::respGetDialledCallList({}), {});
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->json, R"({"list":"dialled","total":0,"unviewed":0,"items":[]})");
    for (const std::string& text :
         {std::string(JournalServiceHelper::FAILURE), std::string("<broken"), std::string()}) {
        EXPECT_FALSE(readListAnswer(ListName::eMissed, text, {})) << text;
    }
}

}  // namespace
}  // namespace host
