#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/call-tracking/CallSequence.h"

namespace {

using journaltest::CallSequence;
using journaltest::from;
using journaltest::here;
using journaltest::Line;
using journaltest::nobody;
using journaltest::to;
using With = Line::With;
using Journal = std::vector<std::string>;

const std::vector<CallSequence> kSequences = {
    {"missed",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.hangsUp("1");
     },
     {"missed 4711 Ann"},
     {"missed 4711 Ann"}},
    {"offered first",
     [](Line& line) {
         line.offers("1");
         line.rings("1", from("4711", "Ann"));
         line.hangsUp("1");
     },
     {"missed 4711 Ann"},
     {"missed 4711 Ann"}},
    {"anonymous",
     [](Line& line) {
         line.rings("1", nobody());
         line.hangsUp("1");
     },
     {"missed"},
     {"missed"}},
    {"anonymous with a name",
     [](Line& line) {
         line.rings("1", from("", "Anonymous"));
         line.hangsUp("1");
     },
     {"missed Anonymous"},
     {"missed Anonymous"}},
    {"only offered, never rung",
     [](Line& line) {
         line.offers("1");
         line.hangsUp("1");
     },
     {},
     {}},
    {"answered",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.passes(10);
         line.answers("1", from("4711", "Ann"));
         line.passes(65);
         line.hangsUp("1");
     },
     {"received 4711 Ann 01:05"},
     {"received 4711 Ann 01:05"}},
    {"answered, and the caller's name comes with the answer only",
     [](Line& line) {
         line.rings("1", from("4711"));
         line.answers("1", from("4711", "Ann"));
         line.passes(1);
         line.hangsUp("1");
     },
     {"received 4711 Ann 00:01"},
     {"received 4711 Ann 00:01"}},
    {"answered, and the answer does not name the caller again",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.isEstablished("1", nobody(), here(), here());
         line.passes(1);
         line.hangsUp("1");
     },
     {"received 4711 Ann 00:01"},
     {"received 4711 Ann 00:01"}},
    {"answered without any device: the record knows the direction",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.isEstablished("1", nobody(), nobody(), nobody());
         line.passes(1);
         line.hangsUp("1");
     },
     {"received 4711 Ann 00:01"},
     {"received 4711 Ann 00:01"}},
    {"answered, held and retrieved",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.answers("1", from("4711", "Ann"));
         line.holds("1");
         line.passes(30);
         line.retrieves("1", false);
         line.passes(30);
         line.hangsUp("1");
     },
     {"received 4711 Ann 01:00"},
     {"received 4711 Ann 01:00"}},
    {"first seen when it is answered",
     [](Line& line) {
         line.answers("1", from("4711", "Ann"));
         line.passes(3);
         line.hangsUp("1");
     },
     {"received 4711 Ann 00:03"},
     {"received 4711 Ann 00:03"}},
    {"sent here by a group",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"), With{CSTA_EC_Redirected, from("600", "Sales")});
         line.hangsUp("1");
     },
     {"missed 4711 Ann by 600"},
     {"missed 4711 Ann by 600"}},
    {"sent here by a group and answered",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"), With{CSTA_EC_RedirectedByDistribution, from("600", "Sales")});
         line.answers("1", from("4711", "Ann"), from("600", "Sales"));
         line.passes(2);
         line.hangsUp("1");
     },
     {"received 4711 Ann 00:02 by 600"},
     {"received 4711 Ann 00:02 by 600"}},
    {"waiting in a queue counts as ringing",
     [](Line& line) {
         line.queues("1", from("4711", "Ann"), here());
         line.hangsUp("1");
     },
     {"missed 4711 Ann"},
     {"missed 4711 Ann"}},
    {"waiting in a group's queue",
     [](Line& line) {
         line.queues("1", from("4711", "Ann"), to("600", "Sales"));
         line.hangsUp("1");
     },
     {"missed 4711 Ann"},
     {"missed 4711 Ann by 600"}},
    {"answered elsewhere",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.hangsUp("1", CSTA_EC_CompletedElsewhere);
     },
     {"missed 4711 Ann elsewhere"},
     {"missed 4711 Ann elsewhere"}},
    {"answered elsewhere, but only missed calls are logged",
     [](Line& line) {
         line.configure([](auto& values) { values.m_missedLogging = false; });
         line.rings("1", from("4711", "Ann"));
         line.hangsUp("1", CSTA_EC_CompletedElsewhere);
         line.rings("2", from("4712", "Bob"));
         line.hangsUp("2");
     },
     {"missed 4712 Bob"},
     {"missed 4712 Bob"}},
    {"diverted before it was answered",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.diverts("1", from("4711", "Ann"), here(), to("4712", "Bob"));
         line.hangsUp("1");
     },
     {"forwarded 4711 Ann to 4712"},
     {}},
    {"diverted, an anonymous caller",
     [](Line& line) {
         line.rings("1", nobody());
         line.diverts("1", nobody(), here(), to("4712", "Bob"));
     },
     {"forwarded to 4712"},
     {}},
    {"diverted without ringing",
     [](Line& line) { line.diverts("1", from("4711", "Ann"), here(), to("4712", "Bob")); },
     {"forwarded 4711 Ann to 4712"},
     {}},
    {"could not be put through",
     [](Line& line) {
         line.offers("1");
         line.fails("1", from("4711", "Ann"), here(), CSTA_EC_Busy);
     },
     {"missed 4711 Ann"},
     {"missed 4711 Ann"}},
    {"twice the same caller: one item, two occurrences",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.hangsUp("1");
         line.passes(60);
         line.rings("2", from("4711", "Ann"));
         line.hangsUp("2");
     },
     {"missed 4711 Ann", "missed 4711 Ann"},
     {"missed 4711 Ann", "missed 4711 Ann"}},
    {"two calls at once, the second one missed",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.answers("1", from("4711", "Ann"));
         line.rings("2", from("4712", "Bob"));
         line.passes(5);
         line.hangsUp("2");
         line.hangsUp("1");
     },
     {"missed 4712 Bob", "received 4711 Ann 00:05"},
     {"missed 4712 Bob", "received 4711 Ann 00:05"}},

};

TEST(IncomingCalls, EndInTheListThatTheFlavourSays) {
    for (const CallSequence& sequence : kSequences) {
        journaltest::expectJournals(sequence);
    }
}

TEST(IncomingCalls, TakeTheNamesOfThePhonebookWhereItKnowsThem) {
    for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
        Line line(type);
        line.phonebook.add("4711", "Ann", "Smith");
        line.rings("1", from("4711", "A.S."));
        line.hangsUp("1");
        EXPECT_EQ(line.journal(), Journal{"missed 4711 Ann Smith"}) << type;
    }
}

TEST(IncomingCalls, CarryTheTimesOfTheCall) {
    Line line;
    line.rings("1", from("4711"));
    line.passes(20);
    line.hangsUp("1");
    line.rings("2", from("4712"));
    line.passes(5);
    line.answers("2", from("4712"));
    line.hangsUp("2");
    EXPECT_EQ(line.list<MissedCallItem>().front().getMissedCallInfoList().front().getTimeAndDate(),
              line.clock.formatTimeDate(journaltest::FakeClock::kStart));
    EXPECT_EQ(line.list<ReceivedCallItem>().front().getReceivedCallInfoList().front().getTimeAndDate(),
              line.clock.formatTimeDate(journaltest::FakeClock::kStart + 20));
}

}  // namespace
