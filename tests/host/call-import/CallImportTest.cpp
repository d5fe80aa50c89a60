#include "host/call-import/CallImport.h"
#include "host/call-import/ImportSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <string>
#include <vector>

#include "tests/support/CapturedLog.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using host::Call;
using std::chrono::seconds;
using std::chrono::sys_seconds;
using testing::ElementsAre;

class CallImport : public testing::Test {
protected:
    static Call call(const std::string& callId, int start, const std::string& number = "4711",
                     ListName list = ListName::eMissed) {
        Call call;
        call.callId = callId;
        call.start = sys_seconds(seconds(start));
        call.party = {number, "Ada"};
        call.list = list;
        call.viewed = list != ListName::eMissed;
        return call;
    }
    static Call withId(Call call, std::int64_t id) {
        call.id = id;
        return call;
    }

    /// Imports the calls of one file; returns "imported known".
    std::string imports(const std::vector<Call>& calls, bool unviewed = false) {
        const auto counts = m_import.add(calls, unviewed);
        m_import.finish();
        return counts ? std::to_string(counts->imported) + " " + std::to_string(counts->known) : "failed";
    }
    std::int64_t number(const std::string& sql) { return m_database.number("SELECT " + sql); }

    journaltest::TemporaryDatabase m_database;
    journaltest::FakeJournalService m_journal;
    host::StoredEntries m_entries{{m_journal, *m_database, "2001", nullptr, {}}};
    host::CallImport m_import{m_entries};
};

TEST_F(CallImport, StoresNoCallTwice) {
    auto longer = call("", 100);
    longer.duration = seconds(5);
    const std::vector<Call> calls{call("a", 100), call("a", 101), call("", 100, "4712"), longer,
                                  call("", 100, "4712", ListName::eDialled)};
    EXPECT_EQ(imports(calls), "5 0");
    EXPECT_EQ(imports(calls), "0 5");
    EXPECT_EQ(imports({call("a", 100, "4799")}), "1 0") << "another party of a conference";
    EXPECT_EQ(imports({call("a", 100, "4799", ListName::eReceived)}), "0 1") << "one call id is one call";
    EXPECT_EQ(imports({call("", 100, "4712", ListName::eReceived)}), "0 1") << "the direction is the same";
    EXPECT_EQ(imports({call("c", 100, "1"), call("c", 100, "2"), call("c", 100, "2")}), "2 1")
        << "a conference";
    EXPECT_EQ(imports({withId(call("", 7), 900), withId(call("", 7), 901), withId(call("", 7), 901)}), "2 1");
}

TEST_F(CallImport, GivesBackTheIdOfADeletedCallAndNoneThatAnotherCallHas) {
    EXPECT_EQ(imports({call("a", 1), call("b", 2)}), "2 0");
    ASSERT_EQ(m_database.otherConnection().exec("DELETE FROM call WHERE call_id = 'a'"), 1);
    EXPECT_EQ(imports({withId(call("a", 1), 1), withId(call("c", 3), 2), withId(call("d", 4), INT64_MAX)}),
              "3 0");
    EXPECT_EQ(number("id FROM call WHERE call_id = 'a'"), 1);
    EXPECT_EQ(number("id FROM call WHERE call_id = 'c'"), 3);
    EXPECT_EQ(number("id FROM call WHERE call_id = 'd'"), 4);
}

TEST_F(CallImport, MakesEntriesByTheRulesOfTheListsWithTheTenNewestCalls) {
    std::vector<Call> calls;
    for (int start = 30; start > 0; --start) {
        calls.push_back(call("c" + std::to_string(start), start, start % 2 == 0 ? "4711" : "4712"));
    }
    calls.push_back(call("d", 40, "4711", ListName::eDialled));
    auto shared = call("s", 41);
    shared.lineKey = "9";
    auto back = call("b", 42);
    back.calledBackAt = sys_seconds(seconds(43));
    EXPECT_EQ(imports({shared, back}), "2 0");
    ASSERT_TRUE(m_import.add({calls.begin() + 10, calls.end()}, false));
    EXPECT_EQ(imports({calls.begin(), calls.begin() + 10}), "10 0") << "newer ones in a second request";
    EXPECT_EQ(number("count(*) FROM call_item"), 4);
    EXPECT_EQ(number("count(*) FROM call WHERE item IS NULL"), 1);
    EXPECT_EQ(number("calls FROM call_item WHERE sort_key = '1970-01-01T00:00:30Z'"), 15);
    EXPECT_EQ(
        number(
            "min(start) FROM call JOIN party ON party.id = party WHERE listed AND list = 0 AND line_key = '' "
            "AND number = '4711'"),
        12);
    EXPECT_EQ(number("count(*) FROM call AS a JOIN call AS b ON a.item = b.item AND a.start < b.start AND "
                     "a.item_order >= b.item_order"),
              0);
    EXPECT_EQ(number("count(*) FROM call_item WHERE list = 0 AND NOT viewed"), 0);
    EXPECT_THAT(m_journal.calls(), ElementsAre("refreshCallLists()", "refreshCallLists()"));
}

TEST_F(CallImport, LeavesTheCallsOfAnEntryThatTheJournalHasToTheJournal) {
    EXPECT_EQ(imports({call("a", 5)}), "1 0");
    EXPECT_EQ(imports({call("b", 9), call("c", 1)}, true), "2 0");
    EXPECT_EQ(number("count(*) FROM call WHERE listed"), 1);
    EXPECT_EQ(
        number("group_concat(start, '') FROM (SELECT start FROM call WHERE item = 1 ORDER BY item_order)"),
        159);
    ASSERT_EQ(m_journal.calls().size(), 3U);
    EXPECT_THAT(m_journal.calls()[2], testing::StartsWith("replaceEntry("));
}

TEST_F(CallImport, RunsOneImportAtATimeAndEndsAnAbandonedOne) {
    using Outcome = host::ImportSession::Outcome;
    host::ImportSession session(m_entries, std::chrono::milliseconds(300));
    const auto first = session.add({"", false, false, {call("a", 5)}});
    EXPECT_EQ(session.add({"", true, false, {call("x", 6)}}).outcome, Outcome::eOtherImport);
    EXPECT_EQ(session.add({first.import, false, false, {call("b", 9)}}).import, first.import);
    EXPECT_THAT(m_journal.calls(), ElementsAre("refreshCallLists()")) << "the journal knows the new entry";
    std::promise<void> ended;
    m_journal.setDuring([&] {
        if (testing::Matches(testing::StartsWith("replaceEntry("))(m_journal.calls().back())) {
            ended.set_value();
        }
    });
    EXPECT_EQ(ended.get_future().wait_for(seconds(10)), std::future_status::ready);
    EXPECT_EQ(session.add({"", true, false, {}}).outcome, Outcome::eDone);
}

TEST_F(CallImport, CountsMissedCallsAsNewOnlyIfAskedOrIfTheyWereBefore) {
    EXPECT_EQ(imports({call("a", 1, "1")}, true), "1 0");
    EXPECT_EQ(imports({call("b", 2, "2"), call("r", 3, "3", ListName::eReceived)}), "2 0");
    EXPECT_EQ(number("count(*) FROM call_item WHERE list = 0 AND NOT viewed"), 1);
    ASSERT_EQ(m_database.otherConnection().exec("DELETE FROM call WHERE call_id = 'a'"), 1);
    ASSERT_EQ(m_database.otherConnection().exec("DELETE FROM call_item WHERE calls = 0"), 1);
    EXPECT_EQ(imports({withId(call("a", 1, "1"), 1), withId(call("n", 1, "9"), 99)}), "2 0");
    EXPECT_EQ(number("viewed FROM call_item JOIN call ON item = call_item.id WHERE call_id = 'a'"), 0);
    EXPECT_EQ(number("viewed FROM call_item JOIN call ON item = call_item.id WHERE call_id = 'n'"), 1);
}

TEST_F(CallImport, FailsAsAWholeBatchWhileTheDatabaseIsLocked) {
    {
        auto other = m_database.otherConnection();
        const SQLite::Transaction lock(other, SQLite::TransactionBehavior::EXCLUSIVE);
        EXPECT_EQ(imports({call("a", 1)}), "failed");
    }
    EXPECT_EQ(journaltest::CapturedLog::lines("Database").size(), 1U);
    EXPECT_EQ(imports({call("a", 1)}), "1 0");
}

TEST_F(CallImport, KeepsTheThousandNewestEntries) {
    std::vector<Call> calls;
    for (int start = 1; start <= 1500; ++start) {
        calls.push_back(call("", start, "4" + std::to_string(start)));
    }
    EXPECT_EQ(imports(calls), "1500 0");
    EXPECT_EQ(number("count(*) FROM call_item"), 1000);
    EXPECT_EQ(number("min(start) FROM call WHERE item IS NOT NULL"), 501);
}

}  // namespace
