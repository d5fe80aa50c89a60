#include "host/data/CallTimes.h"

#include <gtest/gtest.h>

#include "tests/support/Table.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using journaltest::split;
constexpr std::chrono::sys_seconds kDay = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21);

// Rows: entries as line/list and their calls, "~" before one that a switch wrote in its local time; the
// minute of the day where the count begins; each quarter, by its minute, with its missed, dialled, received,
// forwarded calls.
TEST(CallTimes, CountsTheCallsOfEachListByTheQuarterInWhichTheyBegan) {
    for (const auto& row : journaltest::table(3, R"(
        2001/0 10:30:00Z 10:29:59Z 10:15:00Z 10:14:59Z                      | 0   | 600 1000 615 2000 630 1000
        2001/0 10:20:00Z 10:19:59Z                                          | 620 | 615 1000
        2001/0 10:00:00Z; 2001/1 10:01:00Z; 2001/2 10:02:00Z; 2001/3 10:03:00Z; 2001/0 10:04:00Z; 3001/0 10:05:00Z
          +                                                                 | 0   | 600 2111
        2001/0 10:14:59.9Z 12:10:00+02:00 10:12:00; 2001/2 ~12:10:00 ~10:10:00Z ~09:10:00-01:00 | 0 | 600 3030
        2001/0 10:00:00Z; 2001/1 now 2460000.5 99:00:00Z 2026-11-21 -       | 0   | 600 1000
    )")) {
        SCOPED_TRACE(row[0]);
        const journaltest::TemporaryDatabase database;
        std::string found;
        EXPECT_TRUE(database->write("test", [&](host::Database::Session& session) {
            for (const std::string& entry : split(row[0], ';')) {
                const auto words = split(entry, ' ');
                MissedCallItem item;
                std::list<MissedCallItem::MissedCallInfo> calls;
                for (std::size_t at = 1; at < words.size(); ++at) {
                    const int local = words[at].front() == '~' ? 1 : 0;
                    const std::string time = words[at].substr(local == 1 ? 1 : 0);
                    calls.emplace_back().setTimeAndDate((time.find(':') == 2 ? "2026-11-21T" : "") + time);
                    calls.back().setTimeFormat(local);
                }
                item.setMissedCallInfoList(calls);
                const std::string line = words[0].substr(0, 4);
                const host::HistoryRows::Context context{line, nullptr, std::chrono::hours(2)};
                const std::string id = host::CallRows(session, context).write(item);
                session.query("UPDATE call SET list = ? WHERE item = ?")
                    .bind(std::stoi(words[0].substr(5)))
                    .bind(id)
                    .run();
            }
            const auto from = kDay + std::chrono::minutes(std::stoi(row[1]));
            for (const auto& [begin, counts] : host::CallTimes(session, "2001").since(from)) {
                found += (found.empty() ? "" : " ") + std::to_string((begin - kDay).count() / 60) + ' ';
                for (const auto count : counts) {
                    found += std::to_string(count);
                }
            }
        }));
        EXPECT_EQ(found, row[2]);
    }
}

}  // namespace
