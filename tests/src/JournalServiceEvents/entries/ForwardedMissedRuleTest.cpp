// One call that the switch reports as missed and as forwarded stands in one list only. Five seconds apart it
// is the same call, six seconds apart it is not.

#include <string>

#include <gtest/gtest.h>

#include "journal-items/Occurrences.h"
#include "tests/support/EntriesFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

// "missed" and "forwarded" are calls from that party that end so, now; the number is that of seconds until
// the next.
TEST(ForwardedMissedRule, KeepsOneCallInOneList) {
    for (const auto& row : table(2, R"(
forwarded 4711, 5, missed 4711             | forwarded 4711
forwarded 4711, -60, missed 4711           | forwarded 4711
forwarded 4711, 6, missed 4711             | missed 4711, forwarded 4711
forwarded 4711, 1, missed 4712             | missed 4712, forwarded 4711
missed 4711, 5, forwarded 4711             | forwarded 4711
missed 4711, -60, forwarded 4711           | forwarded 4711
missed 4711, deleted, forwarded 4711       | forwarded 4711
clockless, missed 4711, forwarded 4711     | missed 4711, forwarded 4711
clockless, forwarded 4711, missed 4711     | missed 4711, forwarded 4711
missed 4711, 6, forwarded 4711             | missed 4711, forwarded 4711
missed 4711, 1, forwarded 4712             | missed 4711, forwarded 4712
missed 4711, 99, missed 4711, 5, forwarded 4711  | missed 4711, forwarded 4711
missed 4711, 99, missed 4711, 6, forwarded 4711  | missed 4711, missed 4711, forwarded 4711
missed 4711, 0, missed 4712, 0, forwarded 4711   | missed 4712, missed 4711, forwarded 4711
forwarded 4711, 0, forwarded 4712, 1, missed 4711 | missed 4711, forwarded 4712, forwarded 4711
missed 4711, 3, forwarded 4712, 0, missed 4712, 0, forwarded 4711 | missed 4711, forwarded 4711, forwarded 4712
)")) {
        EntriesFixture fixture;
        fixture.settings.change([](auto& values) { values.m_serverBasedFeatures = true; });
        for (const std::string& step : split(row[0], ',')) {
            const std::string party = step.substr(step.find(' ') + 1);
            if (step.rfind("missed", 0) == 0) {
                fixture.files<MissedCallItem>(party);
            } else if (step.rfind("forwarded", 0) == 0) {
                fixture.files<ForwardedCallItem>(party);
            } else if (step == "deleted") {
                fixture.deletion.deleteMissedCallList();
            } else if (step == "clockless") {
                fixture.clock.setClock(nullptr);
            } else {
                fixture.time.advance(std::stol(step));
            }
        }
        std::string journal;
        const auto add = [&journal](const char* name, const auto& items) {
            for (const auto& item : items) {
                for (const auto& info : occurrencesOf(item)) {
                    journal += (journal.empty() ? "" : ", ") + (name + (" " + info.getNumber()));
                }
            }
        };
        add("missed", fixture.items<MissedCallItem>());
        add("forwarded", fixture.items<ForwardedCallItem>());
        EXPECT_EQ(journal, row[1]) << row[0];
    }
}

TEST(ForwardedMissedRule, TellsOfTheCallThatItTakesBackAndRemembersTheViewedMarkOnASipPhone) {
    for (const char* type : {softwaretypes::qorvex, softwaretypes::sip}) {
        EntriesFixture fixture;
        fixture.phoneIs(type);
        fixture.settings.change(
            [](journal::SettingsSnapshot& values) { values.m_serverBasedFeatures = true; });
        fixture.files<MissedCallItem>("4711");
        fixture.missedCallUpdates.ageMissedCall(fixture.entryIds());
        fixture.time.advance(3600);
        fixture.files<MissedCallItem>("4711");
        fixture.forget();
        fixture.files<ForwardedCallItem>("4711");
        const bool viewed = type == softwaretypes::sip;
        EXPECT_EQ(fixture.items<MissedCallItem>().front().getViewed(), viewed) << type;
        const std::string count = viewed ? "missedCount(0)" : "missedCount(1)";
        EXPECT_EQ(fixture.heard().rfind(count + "; missed(-, -, 3); forwarded(", 0), 0U) << fixture.heard();
        EXPECT_EQ(fixture.written().rfind("write MissedCalls 1; write ForwardedCalls ", 0), 0U)
            << fixture.written();
        EXPECT_EQ(fixture.listContents(), fixture.databaseContents());

        fixture.time.advance(3600);
        fixture.files<MissedCallItem>("4712");
        fixture.forget();
        fixture.files<ForwardedCallItem>("4712");
        EXPECT_EQ(fixture.heard().rfind(count + "; missed(-, -, 3); forwarded(", 0), 0U) << fixture.heard();
        EXPECT_EQ(fixture.written().rfind("delete MissedCalls ", 0), 0U) << fixture.written();
        EXPECT_EQ(fixture.listContents(), fixture.databaseContents());
    }
}

}  // namespace
}  // namespace journaltest
