#include "host/history/CallHistory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "host/history/CallSelection.h"
#include "host/history/CallStatistics.h"
#include "host/history/FilterText.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/StoredCalls.h"
#include "tests/support/Table.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using host::CallQuery;
using journaltest::store;
using journaltest::StoredCall;
using std::chrono::seconds;
using std::chrono::sys_seconds;
using Parameters = host::FilterText::Parameters;

/// "list=missed limit=2", with "_" for a blank in a value.
Parameters parametersIn(const std::string& text) {
    Parameters parameters;
    for (const std::string& word : journaltest::split(text, ' ')) {
        std::string value = word.substr(word.find('=') + 1);
        std::replace(value.begin(), value.end(), '_', ' ');
        parameters[word.substr(0, word.find('='))] = value;
    }
    return parameters;
}

class CallHistoryTest : public testing::Test {
protected:
    /// The ids of all pages.
    std::vector<std::int64_t> pages(CallQuery query) {
        std::vector<std::int64_t> ids;
        do {
            const host::CallPage page = m_history.page(query).value();
            EXPECT_LE(page.calls.size(), query.limit);
            std::transform(page.calls.begin(), page.calls.end(), std::back_inserter(ids),
                           [](const host::Call& call) { return call.id; });
            query.cursor = page.next;
        } while (!query.cursor.empty());
        return ids;
    }
    /// The same by one statement.
    std::vector<std::int64_t> selected(const CallQuery& query) {
        std::vector<std::int64_t> ids;
        const host::CallSelection selection("2001", query.filter, &m_digits);
        EXPECT_TRUE(m_database->read("selecting", [&](host::Database::Session& session) {
            host::Query rows = session.query(
                ("SELECT id FROM call WHERE " + selection.condition() + " ORDER BY start, id").c_str());
            selection.bind(rows);
            while (rows.next()) {
                ids.push_back(rows.number());
            }
        }));
        if (!query.oldestFirst) {
            std::reverse(ids.begin(), ids.end());
        }
        return ids;
    }
    CallQuery queryOf(const std::string& parameters) {
        return host::FilterText(sys_seconds(seconds(5000)), host::Zone::named("UTC").value())
            .query(parametersIn(parameters));
    }

    journaltest::TemporaryDatabase m_database;
    journaltest::FakeDigits m_digits;
    host::CallHistory m_history{*m_database, "2001", &m_digits};
    host::CallStatistics m_statistics{*m_database, "2001", &m_digits};
};

TEST_F(CallHistoryTest, SelectsCallsByEachFilter) {
    m_digits.spellings["(211) 55"] = "+4921155";
    store(*m_database, {ListName::eMissed, 1000, "4711", "Ann Müller", 0, 0, true});
    store(*m_database, {ListName::eMissed, 2000, "4711", "Ann Müller"});
    store(*m_database, {ListName::eDialled, 3000, "+4921155", "Bob", 90});
    store(*m_database, {ListName::eReceived, 3000, "+4921155", "21155 Ltd", 91});
    store(*m_database, {ListName::eForwarded, 4000, "", ""});
    for (const auto& row : journaltest::table(2, R"(
        limit=1                                     | 5 4 3 2 1
        limit=2 sort=start                          | 1 2 3 4 5
        since=1970-01-01T00:33:20Z until=1970-01-01T01:06:40Z | 4 3 2
        since=50m                                   | 5 4 3 2
        number=(211)_55                             | 4 3
        number=47                                   |
        search=muller                               | 2 1
        search=211/55                               | 4 3
        search=55_ltd                               | 4
        search=2.1155_l                             |
        list=missed                                 | 2 1
        direction=outgoing                          | 3
        direction=incoming limit=3                  | 5 4 2 1
        viewed=false                                | 1
        viewed=true list=missed                     | 2
        min-duration=1m31s                          | 4
        search=_müll_ until=1970-01-01T00:33:20Z    | 1
        )")) {
        std::string ids;
        for (const std::int64_t id : pages(queryOf(row[0]))) {
            ids += (ids.empty() ? "" : " ") + std::to_string(id);
        }
        EXPECT_EQ(ids, row[1]) << row[0];
    }
}

TEST_F(CallHistoryTest, PagesAreTheSelectionCutIntoPieces) {
    std::mt19937 dice(1);
    const auto draw = [&dice](int end) { return static_cast<int>(dice() % static_cast<unsigned>(end)); };
    const std::int64_t first = store(*m_database, {ListName::eMissed, 1, "first", "", 0, 0, true});
    const std::string item = "(SELECT item FROM call WHERE id = " + std::to_string(first) + ")";
    SQLite::Database batch = m_database.otherConnection();
    SQLite::Transaction transaction(batch);
    // More parties than one stream each is made for.
    for (int party = 0; party < 1200; ++party) {
        batch.exec("INSERT INTO party (line, number, name, lookup, search) VALUES ('2001', '" +
                   std::to_string(party) + "', '', '" + std::to_string(party % 1100) + "', 'p" +
                   std::to_string(party) + "')");
    }
    batch.exec("CREATE TEMP TABLE made AS SELECT * FROM call");
    for (int id = 2; id <= 4000; ++id) {
        const bool popular = draw(2) == 0;
        batch.exec("UPDATE made SET id = " + std::to_string(id) + ", list = " + std::to_string(draw(4)) +
                   ", start = " + std::to_string(draw(4000)) + ", duration = " + std::to_string(draw(200)) +
                   ", item = " + (draw(5) == 0 ? item : "NULL") +
                   ", party = " + std::to_string(popular ? 1 + draw(3) : 1 + draw(1200)));
        batch.exec("INSERT INTO call SELECT * FROM made");
    }
    transaction.commit();
    const auto maybe = [&draw](const std::string& text) { return draw(3) == 0 ? ' ' + text : std::string(); };
    for (int round = 0; round < 100; ++round) {
        const std::vector<std::string> searches{"p", "p1", "p11", "no"};
        const std::vector<std::string> lists{"missed", "dialled", "received", "forwarded"};
        const std::string parameters =
            "limit=" + std::to_string(40 + draw(500)) + maybe("sort=start") +
            maybe("search=" + searches[static_cast<std::size_t>(draw(4))]) + maybe("number=2") +
            maybe("list=" + lists[static_cast<std::size_t>(draw(4))]) +
            maybe(draw(2) == 0 ? "direction=incoming" : "direction=outgoing") +
            maybe(draw(2) == 0 ? "viewed=true" : "viewed=false") + maybe("min-duration=100") +
            maybe("since=" + std::to_string(draw(80)) + 'm') +
            maybe("until=" + std::to_string(draw(80)) + 'm');
        const CallQuery query = queryOf(parameters);
        ASSERT_EQ(pages(query), selected(query)) << parameters;
    }
}

TEST_F(CallHistoryTest, ReportsADatabaseThatFails) {
    m_database.otherConnection().exec("DROP TABLE call");
    std::optional<host::Call> call;
    EXPECT_FALSE(m_history.page({}) || m_history.find(1, call));
    EXPECT_FALSE(m_statistics.of({{}, {}, host::Zone::ofMachine()}, {}));
    EXPECT_EQ(journaltest::CapturedLog::count("no such table: call"), 3);
}

TEST_F(CallHistoryTest, CountsInTheZoneAcrossTheChangesOfItsClocks) {
    const auto at = [](const char* text) {
        const auto time = host::timeOfText(text, {}, host::Zone::named("Europe/Berlin").value());
        return std::int64_t{time.value().time_since_epoch().count()};
    };
    // The clocks go back on the 25th of October, a Sunday; the two calls at half past two are an hour apart.
    store(*m_database, {ListName::eMissed, at("2026-10-24T23:30"), "1", "Ann"});
    store(*m_database, {ListName::eDialled, at("2026-10-24T23:40"), "1", "Ann (mobile)", 60});
    store(*m_database, {ListName::eReceived, at("2026-10-25T02:30"), "2", "Bob", 30});
    store(*m_database, {ListName::eReceived, at("2026-10-25T02:30") + 3600, "2", "Bob", 40});
    store(*m_database, {ListName::eMissed, at("2026-10-25T23:30"), "1", "Ann"});
    store(*m_database, {ListName::eMissed, at("2026-10-25T23:31"), "1", "Ann", 0, 6});
    store(*m_database, {ListName::eDialled, at("2026-10-25T23:50"), "1", "Ann", 5});
    const auto counted = [&](std::optional<host::CallGrouping> by, const std::string& parameters) {
        const auto filter = queryOf(parameters).filter;
        const host::StatisticsQuery query{filter, by, host::Zone::named("Europe/Berlin").value()};
        const auto result = m_statistics.of(query, sys_seconds(seconds(at("2026-11-01")))).value();
        std::string text;
        const auto add = [&text](const std::string& key, const host::CallCounts& counts) {
            text += (text.empty() ? "" : ", ") + key + ':' + std::to_string(counts.calls);
            text += ' ' + std::to_string(counts.missed) + ' ' + std::to_string(counts.completedElsewhere);
            text +=
                ' ' + std::to_string(counts.talkTime.count()) + ' ' + std::to_string(counts.longest.count());
            text += ' ' + (counts.callBackTime ? std::to_string(counts.callBackTime->count()) : "-");
        };
        add("all", result.totals);
        for (const host::CallGroup& group : result.groups) {
            add(group.number.empty() ? std::to_string(group.key) : group.displayName, group.counts);
        }
        return text;
    };
    using enum host::CallGrouping;
    const std::string all = "all:7 2 1 135 60 900";
    EXPECT_EQ(counted(std::nullopt, ""), all + ", Ann:5 2 1 65 60 900, Bob:2 0 0 70 40 -");
    EXPECT_EQ(counted(eDay, ""), all + ", 20750:2 1 0 60 60 600, 20751:5 1 1 75 40 1200");
    EXPECT_EQ(counted(eWeekday, ""), all + ", 6:2 1 0 60 60 600, 7:5 1 1 75 40 1200");
    EXPECT_EQ(counted(eHour, ""), all + ", 2:2 0 0 70 40 -, 23:5 2 1 65 60 900");
    EXPECT_EQ(counted(eParty, "number=1 list=missed"), "all:3 2 1 0 0 900, Ann:3 2 1 0 0 900");
    store(*m_database, {ListName::eMissed, at("2026-10-27T12:00"), "", ""});
    store(*m_database, {ListName::eReceived, at("2026-10-28"), "", "Eve", 7});
    EXPECT_EQ(counted(eParty, "since=2026-10-27"), "all:2 1 0 7 7 -, 0:2 1 0 7 7 -") << "without a number";
}

TEST(FilterTextTest, ReadsTimesOfTheZone) {
    const sys_seconds now =
        host::timeOfText("2026-03-29T12:00Z", {}, host::Zone::named("UTC").value()).value();
    const host::Zone berlin = host::Zone::named("Europe/Berlin").value();
    for (const auto& row : journaltest::table(2, R"(
        2026-11-21                    | 2026-11-20T23:00:00Z
        2026-07-01T10:00              | 2026-07-01T08:00:00Z
        2026-07-01T10:00:30.5Z        |
        2026-07-01T10:00:30Z          | 2026-07-01T10:00:30Z
        2026-07-01T10:00-05:30        | 2026-07-01T15:30:00Z
        2026-07-01 10:00 0100         | 2026-07-01T09:00:00Z
        2026-03-29T02:30              | 2026-03-29T01:30:00Z
        today                         | 2026-03-28T23:00:00Z
        yesterday                     | 2026-03-27T23:00:00Z
        90m                           | 2026-03-29T10:30:00Z
        2w                            | 2026-03-15T12:00:00Z
        7                             |
        7x                            |
        2026-02-30                    |
        2026-07-01T24:00              |
        2026-07-01T10:00+1            |
        21.11.2026                    |
        )")) {
        const auto expected = host::timeOfText(row[1], now, berlin);
        EXPECT_EQ(host::timeOfText(row[0], now, berlin), expected) << row[0];
        EXPECT_EQ(expected.has_value(), !row[1].empty());
    }
}

TEST(FilterTextTest, RefusesWhatItCannotRead) {
    for (const char* const text :
         {"since=soon", "until=", "number=", "search=_", "search=\x1f", "list=callbacks", "direction=in",
          "viewed=yes", "min-duration=1h5", "min-duration=s", "limit=0", "limit=1001", "limit=1e3",
          "sort=name", "cursor=5", "cursor=5.x", "tz=Mars", "tz=Etc/Unknown"}) {
        try {
            static_cast<void>(
                host::FilterText({}, host::Zone::named("UTC").value()).query(parametersIn(text)));
            ADD_FAILURE() << text;
        } catch (const host::FilterError& error) {
            EXPECT_EQ(error.parameter(), std::string(text).substr(0, std::string(text).find('=')));
        }
    }
}

}  // namespace
