#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/call-tracking/CallSequence.h"
#include "tests/support/FakeHardware.h"

namespace {

using journaltest::CallSequence;
using journaltest::FakeHardware;
using journaltest::from;
using journaltest::here;
using journaltest::Line;
using journaltest::nobody;
using journaltest::to;
using Journal = std::vector<std::string>;

const std::vector<CallSequence> kSequences = {
    {"dialled and answered",
     [](Line& line) {
         line.dials("1", to("4711", "Ann"));
         line.ringsAt("1", to("4711", "Ann"), to("4711", "Ann"));
         line.passes(4);
         line.isAnsweredBy("1", to("4711", "Ann"), to("4711", "Ann"));
         line.passes(75);
         line.hangsUp("1");
     },
     {"dialled 4711 Ann 01:15"},
     {"dialled 4711 Ann 01:15"}},
    {"dialled, nobody answered",
     [](Line& line) {
         line.dials("1", to("4711"));
         line.ringsAt("1", to("4711"), to("4711", "Ann"));
         line.passes(20);
         line.hangsUp("1");
     },
     {"dialled 4711 Ann"},
     {"dialled 4711 Ann"}},
    {"dialled and hung up before it rang",
     [](Line& line) {
         line.dials("1", to("4711"));
         line.hangsUp("1");
     },
     {"dialled 4711"},
     {"dialled 4711"}},
    {"dialled and busy",
     [](Line& line) {
         line.dials("1", to("4711"));
         line.fails("1", here(), to("4711"), CSTA_EC_Busy);
         line.hangsUp("1");
     },
     {"dialled 4711"},
     {"dialled 4711"}},
    {"dialled, first seen when it rings",
     [](Line& line) {
         line.ringsAt("1", to("4711", "Ann"), to("4711", "Ann"));
         line.hangsUp("1");
     },
     {"dialled 4711 Ann"},
     {"dialled 4711 Ann"}},
    {"dialled into a group's queue",
     [](Line& line) {
         line.dials("1", to("600", "Sales"));
         line.queues("1", here(), to("600", "Sales"));
         line.isAnsweredBy("1", to("600", "Sales"), to("600", "Sales"));
         line.passes(7);
         line.hangsUp("1");
     },
     {"dialled 600 Sales 00:07"},
     {"dialled 600 Sales 00:07"}},
    {"dialled into a group's queue and hung up",
     [](Line& line) {
         line.dials("1", to("600", "Sales"));
         line.queues("1", here(), to("600", "Sales"));
         line.hangsUp("1");
     },
     {"dialled 600 Sales"},
     {"dialled 600 Sales"}},
    {"dialled, and another party answered",
     [](Line& line) {
         line.dials("1", to("4711", "Ann"));
         line.ringsAt("1", to("4711", "Ann"), to("4711", "Ann"));
         line.isAnsweredBy("1", to("4711", "Ann"), to("4712", "Bob"));
         line.passes(2);
         line.hangsUp("1");
     },
     {"dialled 4711 Ann 00:02"},
     {"dialled 4711 Ann 00:02"}},
    {"dialled, answered, and no device is named any more",
     [](Line& line) {
         line.dials("1", to("4711"));
         line.isEstablished("1", here(), nobody(), nobody());
         line.passes(2);
         line.hangsUp("1");
     },
     {"dialled 4711 00:02"},
     {"dialled 4711 00:02"}},
    {"dialled, and the called party diverts",
     [](Line& line) {
         line.dials("1", to("4711", "Ann"));
         line.ringsAt("1", to("4711", "Ann"), to("4711", "Ann"));
         line.diverts("1", here(), to("4711", "Ann"), to("4712", "Bob"));
         line.hangsUp("1");
     },
     {"dialled 4711 Ann"},
     {"dialled 4711 Ann"}},
    {"dialled to pick another call up",
     [](Line& line) {
         line.dials("1", to("*59"), CSTA_EC_DirectedPickup);
         line.isEstablished("1", here(), to("4711", "Ann"), nobody());
         line.passes(9);
         line.hangsUp("1");
     },
     {"dialled *59 00:09"},
     {"received 4711 Ann 00:09"}},
    {"picked up from a group",
     [](Line& line) {
         line.dials("1", to("4711", "Ann"));
         line.isAnsweredBy("1", to("4711", "Ann"), to("4711", "Ann"), CSTA_EC_GroupPickupNotify);
         line.passes(9);
         line.hangsUp("1");
     },
     {"dialled 4711 Ann 00:09"},
     {"received 4711 Ann 00:09"}},

    // ---- transfers
    {"a clear for a transfer links the two calls",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.answers("1", from("4711", "Ann"));
         line.holds("1", CSTA_EC_HeldForTransfer);
         line.rings("2", from("4712", "Bob"));
         line.answers("2", from("4712", "Bob"));
         line.passes(1);
         line.hangsUp("2", CSTA_EC_Transfer);
         line.hangsUp("1");
     },
     {"received 4711 Ann 00:01 by 4712 transferred", "received 4712 Bob 00:01 by 4711 transferred"},
     {"received 4711 Ann 00:01 by 4712 transferred", "received 4712 Bob 00:01 by 4711 transferred"}},
    {"a blind transfer is filed a second later",
     [](Line& line) {
         line.rings("1", from("4711", "Ann"));
         line.answers("1", from("4711", "Ann"));
         line.passes(8);
         line.holds("1", CSTA_EC_HeldForTransfer);
         line.hangsUp("1");
         EXPECT_TRUE(line.journal().empty());
         line.context.advance(std::chrono::milliseconds(1000));
     },
     {"received 4711 Ann 00:08"},
     {"received 4711 Ann 00:08"}},
};

TEST(OutgoingCalls, AndTransfersEndInTheListThatTheFlavourSays) {
    for (const CallSequence& sequence : kSequences) {
        journaltest::expectJournals(sequence);
    }
}

TEST(OutgoingCalls, ShowWhoReallyAnsweredAFeatureAccessCode) {
    Line line;
    line.digits.addFeatureAccessCode("*61");
    line.dials("1", to("*61"));
    line.isAnsweredBy("1", to("*61"), to("4712", "Bob"));
    line.hangsUp("1");
    EXPECT_EQ(line.journal(), Journal{"dialled *61 to 4712"});
}

TEST(OutgoingCalls, FileAnOutgoingCallThatIsSentOnAtOnceUnderTheCrestInterface) {
    FakeHardware::setSubPlatformVariant(4);
    const auto sentOn = [](const char* type) {
        Line line(type);
        line.dials("1", to("4711", "Ann"));
        line.ringsAt("1", to("4711", "Ann"), to("4711", "Ann"));
        line.diverts("1", here(), to("4711", "Ann"), to("4712", "Bob"));
        return line.journal();
    };
    EXPECT_EQ(sentOn(softwareTypes::qorvex), Journal{"dialled 4711 Ann sent on"});
    EXPECT_EQ(sentOn(softwareTypes::sip), Journal{"dialled 4711 Ann sent on"});
}

TEST(OutgoingCalls, LeaveNoRecordBehindAfterManyCalls) {
    journaltest::CapturedLog::switchOff();
    Line line;
    line.parts.adapter.init(
        nullptr);  // the records are what is looked at, and a database would take most of the time
    const std::vector<std::string> callers = {"4711", "4712", "4713"};
    for (int call = 0; call < 20'000; ++call) {
        const std::string callId = std::to_string(call);
        const CSTADevice caller = from(callers[static_cast<std::size_t>(call) % callers.size()]);
        switch (call % 5) {
            case 0:
                line.rings(callId, caller);
                line.hangsUp(callId);
                break;
            case 1:
                line.rings(callId, caller);
                line.answers(callId, caller);
                line.hangsUp(callId);
                break;
            case 2:
                line.dials(callId, caller);
                line.fails(callId, here(), caller, CSTA_EC_Busy);
                break;
            case 3: line.fails("0", caller, here(), CSTA_EC_Busy); break;
            default:
                line.offers(callId);
                line.fails(callId, caller, here(), CSTA_EC_None);
                break;
        }
        line.passes(1);
        ASSERT_EQ(line.liveCalls(), 0U) << "call " << call;
    }
}

}  // namespace
