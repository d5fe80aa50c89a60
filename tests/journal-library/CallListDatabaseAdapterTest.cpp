#include "platform/journal-library/CallListDatabaseAdapter.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/data/DataAccessServiceIfc.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataAnswer.h"
#include "platform/journal-library/DataRequest.h"
#include "tests/support/CapturedLog.h"

namespace {

using Helper = CallListDatabaseAdapterHelper;
using journaltest::CapturedLog;

class ScriptedDatabase : public DataAccessServiceIfc {
public:
    std::string processRequest(const std::string& request) override {
        requests.push_back(request);
        return answer();
    }
    std::vector<std::string> requests;
    std::function<std::string()> answer = [] { return std::string("answer"); };
};

MissedCallItem call(const std::string& entryId, const std::vector<std::string>& times) {
    MissedCallItem item;
    item.setEntryId(entryId);
    std::list<MissedCallItem::MissedCallInfo> infos;
    for (const std::string& time : times) {
        infos.emplace_back().setTimeAndDate(time);
    }
    item.setMissedCallInfoList(infos);
    return item;
}

std::vector<std::string> entryIds(const std::deque<MissedCallItem>& list) {
    std::vector<std::string> ids;
    for (const auto& item : list) {
        ids.push_back(item.getEntryId());
    }
    return ids;
}

class CallListDatabaseAdapterTest : public ::testing::Test {
protected:
    CallListDatabaseAdapterTest() { adapter.init(&database); }

    ScriptedDatabase database;
    CallListDatabaseAdapter adapter;
};

TEST_F(CallListDatabaseAdapterTest, HandsRequestAndAnswerThroughUnchanged) {
    database.answer = [] { return std::string("any \xFF answer"); };
    EXPECT_EQ(adapter.processRequest("a request"), "any \xFF answer");
    EXPECT_EQ(database.requests, std::vector<std::string>{"a request"});
}

TEST_F(CallListDatabaseAdapterTest, FailsWithoutAService) {
    adapter.init(nullptr);
    EXPECT_EQ(adapter.processRequest("a request"), "failed");
    EXPECT_TRUE(CapturedLog::contains("No data access service"));
}

TEST_F(CallListDatabaseAdapterTest, FailsWhenTheServiceThrows) {
    database.answer = []() -> std::string { throw std::runtime_error("disk is gone"); };
    EXPECT_EQ(adapter.processRequest("a request"), "failed");
    EXPECT_TRUE(CapturedLog::contains("disk is gone"));
    database.answer = []() -> std::string { throw 7; };
    EXPECT_EQ(adapter.processRequest("a request"), "failed");
}

TEST_F(CallListDatabaseAdapterTest, WrapsEntriesIntoARequestForTheirTable) {
    const std::string entry = Helper::createXMLElement(
        Helper::ENTRY, Helper::createXMLMissedCallItemBody(call("id", {"now"}), Helper::WRITEREQUEST));
    EXPECT_EQ(adapter.updateEntries(entry, Helper::WRITEREQUEST, Helper::DAS_CALLLOGMISSEDCALLS), "answer");

    ASSERT_EQ(database.requests.size(), 1U);
    const auto sent = journalxml::parseDataRequest(database.requests.front());
    ASSERT_TRUE(sent);
    EXPECT_EQ(sent->reason, journalxml::DataRequest::Reason::eWrite);
    EXPECT_EQ(sent->schema, Helper::DAS_CALLLOGMISSEDCALLS);
    ASSERT_EQ(sent->items.size(), 1U);
    EXPECT_EQ(std::get<MissedCallItem>(sent->items.front()).getEntryId(), "id");
}

TEST_F(CallListDatabaseAdapterTest, NeverEmptiesATableByAccident) {
    EXPECT_EQ(adapter.updateEntries("", Helper::DELETEREQUEST, Helper::DAS_CALLLOGMISSEDCALLS), "failed");
    EXPECT_TRUE(database.requests.empty());
    EXPECT_TRUE(CapturedLog::contains("names no entries"));

    EXPECT_EQ(
        adapter.updateEntries(Helper::allEntries(), Helper::DELETEREQUEST, Helper::DAS_CALLLOGMISSEDCALLS),
        "answer");
    ASSERT_EQ(database.requests.size(), 1U);
    const auto sent = journalxml::parseDataRequest(database.requests.front());
    ASSERT_TRUE(sent);
    EXPECT_TRUE(sent->allEntries);
}

TEST_F(CallListDatabaseAdapterTest, ReplacesTheListByTheDocumentNewestFirst) {
    journalxml::ListDocument document(Helper::DAS_CALLLOGMISSEDCALLS);
    ASSERT_TRUE(document.add(call("older", {"2026-11-20T08:00:00Z"})));
    ASSERT_TRUE(document.add(call("newer", {"2026-11-21T08:00:00Z", "2026-11-01T08:00:00Z"})));
    std::deque<MissedCallItem> list{call("gone", {"2026-11-22T08:00:00Z"})};
    adapter.processMissedCallDbXml(document.text(), list);
    EXPECT_EQ(entryIds(list), (std::vector<std::string>{"newer", "older"}));
    EXPECT_TRUE(database.requests.empty());
}

TEST_F(CallListDatabaseAdapterTest, EmptiesTheListForADocumentThatIsBroken) {
    std::deque<MissedCallItem> list{call("gone", {"2026-11-22T08:00:00Z"})};
    adapter.processMissedCallDbXml("<Schema><ENTRY>", list);
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(CapturedLog::contains("not readable"));
}

TEST_F(CallListDatabaseAdapterTest, SortsByBytesAndKeepsTheOrderOfEqualTimes) {
    std::deque<MissedCallItem> list{call("a", {"2026-11-20"}), call("b", {"2026-11-20T08"}), call("c", {""}),
                                    call("d", {"2026-11-20"}), call("e", {"\xFF"})};
    adapter.normalizeMissedCallList(list);
    EXPECT_EQ(entryIds(list), (std::vector<std::string>{"e", "b", "a", "d", "c"}));
}

TEST_F(CallListDatabaseAdapterTest, DropsItemsWithoutCallsFromListAndDatabaseInOneRequest) {
    std::deque<MissedCallItem> list{call("9 empty", {}), call("a", {"2026-11-20"}), call("1 empty", {})};
    list.front().setUniqueId("17");
    adapter.normalizeMissedCallList(list);
    EXPECT_EQ(entryIds(list), std::vector<std::string>{"a"});

    ASSERT_EQ(database.requests.size(), 1U);
    const auto sent = journalxml::parseDataRequest(database.requests.front());
    ASSERT_TRUE(sent);
    EXPECT_EQ(sent->reason, journalxml::DataRequest::Reason::eDelete);
    EXPECT_EQ(sent->keys, (std::vector<journalxml::DataRequest::Key>{{"17", "9 empty"}, {"", "1 empty"}}));
}

TEST_F(CallListDatabaseAdapterTest, NormalisesWithoutADatabaseToo) {
    adapter.init(nullptr);
    std::deque<MissedCallItem> list{call("empty", {}), call("a", {"2026-11-20"})};
    adapter.normalizeMissedCallList(list);
    EXPECT_EQ(entryIds(list), std::vector<std::string>{"a"});
}

}  // namespace
