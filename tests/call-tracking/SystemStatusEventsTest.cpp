#include "src/JournalServiceEvents/SystemStatusEvents.h"

#include <gtest/gtest.h>

#include "tests/call-tracking/Line.h"

namespace {

using journaltest::CapturedLog;
using journaltest::from;
using journaltest::Line;

TEST(SystemStatusEvents, ForgetCallsAndConferencesWhenTheSwitchHasLostThem) {
    struct Row {
        const char* status;
        bool resynchronises;
        int errors;
    };
    const Row rows[] = {
        {"cleanup", true, 2}, {"disabled", true, 0}, {"partiallyDisabled", true, 0}, {"reset", true, 0},
        {"stopped", true, 0}, {"enabled", false, 0}, {"normal", false, 0},           {"", false, 0},
    };
    for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
        for (const Row& row : rows) {
            SCOPED_TRACE(std::string(type) + ", " + row.status);
            CapturedLog::reset();
            Line line(type);
            line.rings("1", from("4711"));
            line.conferences.addConference(1, "9");
            line.parts.readiness.m_callLogEventsReady = true;
            line.reports(row.status);
            EXPECT_EQ(line.liveCalls(), row.resynchronises ? 0U : 1U);
            EXPECT_EQ(line.conferences.getNumberOfConferences(), row.resynchronises ? 0 : 1);
            EXPECT_EQ(line.parts.readiness.m_callLogEventsReady, !row.resynchronises);
            EXPECT_EQ(CapturedLog::count("are out of sync. with PBX, release all existing"), row.errors);
            EXPECT_TRUE(line.journal().empty());
        }
    }
}

TEST(SystemStatusEvents, SayNothingAtLevelTwoWhenNothingIsTracked) {
    Line line;
    line.reports("cleanup");
    EXPECT_FALSE(CapturedLog::contains("out of sync"));
    EXPECT_TRUE(CapturedLog::contains("removeAllCalls():"));
    EXPECT_TRUE(CapturedLog::contains("          systemStatus = cleanup\n")) << CapturedLog::dump();
}

TEST(SystemStatusEvents, LeaveTheSwitchsLogEventsReadyWhereItKeepsTheLog) {
    Line line;
    line.configure([](auto& values) { values.m_useCSTACallControlEvents = false; });
    line.parts.readiness.m_callLogEventsReady = true;
    line.reports("reset");
    EXPECT_TRUE(line.parts.readiness.m_callLogEventsReady);
}

TEST(SystemStatusEvents, AreIgnoredWhileTheJournalIsNotKept) {
    Line off(softwareTypes::sip);
    off.rings("1", from("4711"));
    off.configure([](auto& values) { values.m_callLogEnabled = false; });
    off.reports("reset");
    EXPECT_EQ(off.liveCalls(), 1U);

    Line elsewhere;
    elsewhere.rings("1", from("4711"));
    elsewhere.configure([](auto& values) { values.m_ringCentralSyncCallLog = true; });
    elsewhere.reports("reset");
    EXPECT_EQ(elsewhere.liveCalls(), 1U);
}

}  // namespace
