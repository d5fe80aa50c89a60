// What the handlers of Failed and ConnectionCleared do beyond whole calls.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/call-tracking/Line.h"

namespace {

using journaltest::CapturedLog;
using journaltest::from;
using journaltest::here;
using journaltest::Line;
using journaltest::nobody;
using journaltest::to;
using Journal = std::vector<std::string>;

const std::vector<const char*> kBoth = {softwareTypes::qorvex, softwareTypes::sip};

// ---- Failed -----------------------------------------------------------------------------------------------------

TEST(CallEndEvents, FileAFailureThatBelongsToNoCallOnItsOwn) {
    const struct {
        const char* name;
        std::function<void(Line&)> script;
        Journal journal;
    } rows[] = {
        {"call id 0",
         [](Line& line) { line.fails("0", from("4711", "Ann"), here(), CSTA_EC_Busy); },
         {"missed 4711 Ann"}},
        {"no cause",
         [](Line& line) { line.fails("1", from("4711", "Ann"), here(), CSTA_EC_None); },
         {"missed 4711 Ann"}},
        {"unknown cause",
         [](Line& line) { line.fails("1", from("4711", "Ann"), here(), CSTA_EC_Unknown); },
         {"missed 4711 Ann"}},
        {"no cause, the call was ringing",
         [](Line& line) {
             line.rings("1", from("4711", "Ann"));
             line.fails("1", nobody(), here(), CSTA_EC_None);
             line.hangsUp("1");
         },
         {"missed 4711 Ann"}},
        {"no cause, the call was answered by now",
         [](Line& line) {
             line.answers("1", from("4712", "Bob"));
             line.fails("1", from("4711", "Ann"), here(), CSTA_EC_None);
             line.hangsUp("1");
         },
         {"missed 4711 Ann"}},
        {"no cause, the call was placed here",
         [](Line& line) {
             line.dials("1", to("4711", "Ann"));
             line.fails("1", from("4712", "Bob"), here(), CSTA_EC_None);
             line.hangsUp("1");
         },
         {"missed 4712 Bob", "dialled 4711 Ann"}},
        {"no call id", [](Line& line) { line.fails("", from("4711", "Ann"), here(), CSTA_EC_None); }, {}},
    };
    for (const auto& row : rows) {
        Line line;
        row.script(line);
        EXPECT_EQ(line.journal(), row.journal) << row.name;
        EXPECT_EQ(line.liveCalls(), 0U) << row.name;
    }
}

TEST(CallEndEvents, FileAFailureOfAnUnknownCallByItsDevices) {
    for (const char* type : kBoth) {
        Line line(type);
        line.fails("1", from("4711"), here(), CSTA_EC_Busy);
        line.fails("2", here(), to("4712"), CSTA_EC_Busy);
        line.fails("3", from("4713"), to("4714"), CSTA_EC_Busy);
        EXPECT_EQ(line.journal(), (Journal{"missed 4711", "dialled 4712"})) << type;
        EXPECT_EQ(line.liveCalls(), 0U) << type;
    }
    EXPECT_TRUE(CapturedLog::contains(
        "handleCSTAFailedEvent():{1} Calling: (4711 Name: ), Called: localDeviceID Cause: "
        "16 Forwarding: ( Name: )"));
    EXPECT_TRUE(CapturedLog::contains(
        "handleCSTAFailedEvent():{1} Calling: 4711, Name: , Called: localDeviceID, Name: "));
}

// ---- ConnectionCleared ------------------------------------------------------------------------------------------

TEST(CallEndEvents, MakeNothingOfTheClearOfAnUnknownCall) {
    for (const char* type : kBoth) {
        Line line(type);
        line.hangsUp("1");
        line.hangsUp("");
        EXPECT_EQ(line.liveCalls(), 0U) << type;
        EXPECT_TRUE(line.journal().empty()) << type;
    }
}

TEST(CallEndEvents, EndTheCallOfAConferenceMemberThatLeaves) {
    Line line;
    line.answers("1", from("4711", "Ann"));
    line.answers("2", from("4712", "Bob"));
    line.conferences.addConference(0, "9");
    line.conferences.members(0) = {{"1", "4711"}, {"2", "4712"}};
    line.passes(4);

    line.hangsUp("9", CSTA_EC_NormalClearing, "4712");
    EXPECT_EQ(line.journal(), Journal{"received 4712 Bob 00:04"});
    EXPECT_NE(line.call("1"), nullptr);
    line.hangsUp("9", CSTA_EC_NormalClearing, "4713");
    EXPECT_EQ(line.liveCalls(), 1U);
    line.hangsUp("9", CSTA_EC_NormalClearing, "4711");
    EXPECT_EQ(line.journal(), (Journal{"received 4711 Ann 00:04", "received 4712 Bob 00:04"}));
    EXPECT_EQ(line.conferences.getNumberOfConferences(), 0);
    EXPECT_TRUE(
        CapturedLog::contains("handleCSTAConnectionClearedEvent: the dropped call belongs to a conference"));
}

TEST(CallEndEvents, LinkNothingWhenTheHeldCallIsTheClearedOneOrIsGone) {
    Line line;
    line.answers("1", from("4711", "Ann"));
    line.holds("1", CSTA_EC_HeldForTransfer);
    line.retrieves("1", false);
    line.hangsUp("1", CSTA_EC_Transfer);
    line.answers("2", from("4712", "Bob"));
    line.hangsUp("2", CSTA_EC_Transfer);
    EXPECT_EQ(line.journal(), (Journal{"received 4712 Bob", "received 4711 Ann transferred"}));
}

}  // namespace
