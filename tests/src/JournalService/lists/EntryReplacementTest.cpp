// Replacing the calls of an entry, loaded or not: the updates for the observers, the requests to the database
// and to a switch that keeps the log, and the order of the list.

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "journal-items/ListTraits.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/ListsFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

/// "4711@23" is a call from 4711 on the 23rd. A missed one is a call of the group "sales".
std::vector<Occurrence> callsOf(const std::string& texts) {
    std::vector<Occurrence> calls;
    for (const std::string& text : split(texts, ' ')) {
        const auto at = text.find('@');
        calls.push_back({text.substr(0, at), "2026-11-" + text.substr(at + 1), "line 1", "sales"});
    }
    return calls;
}

/// In each list x1 with three calls of two numbers and x2 with one call, and x3, which is older and not
/// loaded.
void start(ListsFixture& fixture, int systemIdentifier) {
    fixture.phoneIs("", systemIdentifier);
    const auto two = []<typename Item>(const std::string& letter, const std::string& decade) {
        return std::vector{itemOf<Item>(letter + "1", decade + "1", callsOf("4711@23 @22 4711@21")),
                           itemOf<Item>(letter + "2", decade + "2", callsOf("4712@22"))};
    };
    fixture.startWith(two.operator()<MissedCallItem>("m", "1"), two.operator()<DialledCallItem>("d", "2"),
                      two.operator()<ReceivedCallItem>("r", "3"),
                      two.operator()<ForwardedCallItem>("f", "4"));
    const auto older = callsOf("4713@20 4713@19");
    fixture.database.addRow(ListTraits<MissedCallItem>::kTable, itemOf<MissedCallItem>("m3", "13", older));
    fixture.database.addRow(ListTraits<DialledCallItem>::kTable, itemOf<DialledCallItem>("d3", "23", older));
}

bool replace(ListsFixture& fixture, const std::string& list, const std::string& uniqueId,
             const std::string& calls, bool reportsRemoved) {
    const auto perform = [&]<typename Item>() {
        if constexpr (std::is_same_v<Item, CallBackItem>) {
            return false;
        } else {
            auto item = itemOf<Item>("", uniqueId, callsOf(calls));
            item.setSurname("Renamed");
            return fixture.replacement.replaceEntry(item, reportsRemoved);
        }
    };
    return withItemOf(listNamed(list).value(), perform);
}

// list | unique id | calls | heard | written | sent to a switch that keeps the log | order of that list
TEST(EntryReplacement, WritesNotifiesAndReportsWhatIsLost) {
    for (const auto& row : table(7, R"(
missed    | 11 | 4711@23 @22 4711@21 | missedCount(2); missed(m1, 11, 1) | write MissedCalls 11 | | m1 m2
missed    | 11 | 4711@23 4711@21 | missedCount(2); missed(m1, 11, 1) | write MissedCalls 11 | one 1  2026-11-22 | m1 m2
missed    | 11 | 4711@21         | missedCount(2); missed(m1, 11, 1) | write MissedCalls 11
+ | one 1 4711 2026-11-23; one 1  2026-11-22 | m2 m1
missed    | 11 |                 | missedCount(1); missed(-, 11, 2)  | delete MissedCalls 11
+ | one 1 4711 2026-11-23; one 1  2026-11-22 | m2
missed    | 13 | 4713@20         | missedCount(3); missed(m3, 13, 1) | write MissedCalls 13 | one 1 4713 2026-11-19 | m1 m2 m3
dialled   | 23 |                 | dialled(d1, 23, 2)   | delete DialledCalls 23  | one 4 4713 2026-11-20 | d1 d2
dialled   | 22 | 4712@24 4712@22 | dialled(d2, 22, 1)   | write DialledCalls 22   | | d2 d1
received  | 32 | 4712@21         | received(r2, 32, 1)  | write ReceivedCalls 32  | one 0 4712 2026-11-22 | r1 r2
forwarded | 41 | @22             | forwarded(f1, 41, 1) | write ForwardedCalls 41 | | f2 f1
forwarded | 42 |                 | forwarded(-, 42, 2)  | delete ForwardedCalls 42 | | f1
received  | 11 | 4711@23         | | | | r1 r2
missed    |    | 4711@23         | | | | m1 m2
)")) {
        for (const bool reports : {true, false}) {
            SCOPED_TRACE(row[0] + " " + row[1] + ": " + row[2]);
            ListsFixture fixture;
            start(fixture, 2);
            EXPECT_EQ(replace(fixture, row[0], row[1], row[2], reports), !row[3].empty());
            EXPECT_EQ(fixture.heard(), row[3]);
            EXPECT_EQ(fixture.written(), row[4]);
            EXPECT_EQ(fixture.sent(), reports ? row[5] : "");
            EXPECT_NE((" " + fixture.entryIds() + " ").find(" " + row[6] + " "), std::string::npos)
                << fixture.entryIds();
            const Texts rows = fixture.databaseContents();
            const Texts items = fixture.listContents();
            EXPECT_TRUE(std::includes(rows.begin(), rows.end(), items.begin(), items.end()));
        }
    }
}

// The request about a group's call deletes all of its number, so it waits for the last one.
TEST(EntryReplacement, ReportsAGroupWithItsLastCall) {
    ListsFixture fixture;
    start(fixture, 1);
    EXPECT_TRUE(replace(fixture, "missed", "11", "4711@21", true));
    EXPECT_EQ(fixture.sent(), "");
    EXPECT_TRUE(replace(fixture, "missed", "11", "", true));
    EXPECT_EQ(fixture.sent(), "group 3 4711 1 sales");
}

TEST(EntryReplacement, TakesOverTheRestAndSurvivesARefusal) {
    ListsFixture fixture;
    start(fixture, 0);
    auto item = itemOf<MissedCallItem>("another", "11", std::vector<Occurrence>(12, {"4711", "2026-11-23"}));
    item.setFirstname("Ada");
    item.setPictureClip("ada.png");
    item.setViewed(true);
    EXPECT_FALSE(fixture.replacement.replaceEntry(item, true)) << "the entry has changed meanwhile";
    item.setEntryId("m1");
    fixture.database.setFailing(true);
    EXPECT_TRUE(fixture.replacement.replaceEntry(item, true));
    EXPECT_TRUE(CapturedLog::contains("the database refused"));
    auto expected = itemOf<MissedCallItem>("m1", "11", std::vector<Occurrence>(10, {"4711", "2026-11-23"}));
    expected.setFirstname("Ada");
    expected.setPictureClip("ada.png");
    expected.setViewed(true);
    EXPECT_TRUE(fixture.items<MissedCallItem>().front().sameContent(expected));
    fixture.database.setFailing(false);
    fixture.load();
    EXPECT_TRUE(fixture.items<MissedCallItem>().front().sameContent(expected)) << "the write is repeated";
}

}  // namespace
}  // namespace journaltest
