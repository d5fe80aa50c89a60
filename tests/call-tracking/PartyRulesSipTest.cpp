#include "src/JournalServiceEvents/PartyRulesSip.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalServiceEvents/EventParties.h"
#include "tests/call-tracking/PartiesText.h"
#include "tests/support/CapturedLog.h"

namespace {

using journal::Call;
using journal::EventParties;
using journaltest::CapturedLog;
using journaltest::partiesText;

struct Row {
    const char* name;
    std::function<void(Call&)> before;
    Call::states_t state;
    Call::directions_t direction;
    EventParties parties;
    const char* after;
};

constexpr auto kIn = Call::eIncoming;
constexpr auto kOut = Call::eOutgoing;

void fresh(Call&) {}

void dialled(Call& call) {
    call.m_sDialledParty = "4711";
}

void ringsAtAnn(Call& call) {
    dialled(call);
    call.m_sCalledParty = "4711";
    call.m_sCalledPartyName = "Ann";
    call.m_sRemoteParty = "4711";
    call.m_sRemotePartyName = "Ann";
}

void talksToAnn(Call& call) {
    ringsAtAnn(call);
    call.m_sConnectedParty = "4711";
    call.m_sConnectedPartyName = "Ann";
}

void sentHereByGroup(Call& call) {
    call.m_sCalledParty = "600";
    call.m_sCalledPartyName = "Sales";
    call.m_sRemoteParty = "4711";
    call.m_sRemotePartyName = "Ann";
    call.m_sConnectedParty = "600";
    call.m_sConnectedPartyName = "Sales";
    call.m_sRedirectingParty = "600";
    call.m_sRedirectingPartyName = "Sales";
}

void calledElsewhereThanRemote(Call& call) {
    call.m_sCalledParty = "4712";
    call.m_sCalledPartyName = "Bob";
    call.m_sRemoteParty = "4711";
    call.m_sRemotePartyName = "Ann";
}

void anonymousForCyd(Call& call) {
    call.m_sCalledParty = "4720";
    call.m_sCalledPartyName = "Cyd";
    call.m_sRemotePartyName = "Anonymous";
}

void onBluetooth(Call& call) {
    call.m_sCalledParty = communicationsServiceTexts::content_bluetoothDeviceId;
    call.m_sDialledParty = communicationsServiceTexts::content_bluetoothDeviceId;
}

const std::vector<Row> kRows = {
    // A diverted party, and a state that does not end the call.
    {"sent here: the sender is called, connected and redirecting",
     fresh,
     Call::eDelivered,
     kIn,
     {"4711", "Ann", "600", "Sales"},
     "called[600 Sales] remote[4711 Ann] connected[600 Sales] redirecting[600 Sales]"},
    {"sent on: the new party is connected only",
     ringsAtAnn,
     Call::eDelivered,
     kOut,
     {"4711", "Ann", "4712", "Bob"},
     "dialled[4711] called[4711 Ann] remote[4711 Ann] connected[4712 Bob]"},
    {"sent here without names: known names stay, the redirecting one does not",
     sentHereByGroup,
     Call::eEstablished,
     kIn,
     {"4711", "", "601", ""},
     "called[601 Sales] remote[4711 Ann] connected[601 Sales] redirecting[601]"},
    {"sent here by another: a known caller stays",
     sentHereByGroup,
     Call::eEstablished,
     kIn,
     {"4713", "Cyd", "600", "Sales"},
     "called[600 Sales] remote[4711 Ann] connected[600 Sales] redirecting[600 Sales]"},

    // A diverted party, and a call that leaves.
    {"forwarded: the reported party becomes remote, not the diverted one",
     ringsAtAnn,
     Call::eForwarded,
     kOut,
     {"4713", "Cyd", "4712", "Bob"},
     "dialled[4711] called[4711 Ann] remote[4713 Cyd] connected[4712 Bob]"},
    {"forwarded without names: the names stay",
     talksToAnn,
     Call::eForwarded,
     kOut,
     {"4713", "", "4712", ""},
     "dialled[4711] called[4711 Ann] remote[4713 Ann] connected[4712 Ann]"},
    {"forwarded to the remote party itself: it stays",
     ringsAtAnn,
     Call::eForwarded,
     kOut,
     {"4713", "Cyd", "4711", "A. Smith"},
     "dialled[4711] called[4711 Ann] remote[4711 Ann] connected[4711 A. Smith]"},
    {"failed goes the same way",
     ringsAtAnn,
     Call::eFailed,
     kOut,
     {"4713", "Cyd", "4712", "Bob"},
     "dialled[4711] called[4711 Ann] remote[4713 Cyd] connected[4712 Bob]"},

    // The dialled digits.
    {"dialling fills the dialled party alone",
     fresh,
     Call::eOriginated,
     kOut,
     {"4711", "Ann", "", ""},
     "dialled[4711]"},
    {"dialling again goes on as any other event",
     dialled,
     Call::eOriginated,
     kOut,
     {"4712", "Bob", "", ""},
     "dialled[4711] called[4712 Bob] remote[4712 Bob]"},

    // Called and remote party.
    {"ringing fills called and remote party",
     fresh,
     Call::eDelivered,
     kIn,
     {"4711", "Ann", "", ""},
     "called[4711 Ann] remote[4711 Ann]"},
    {"another party while both are the same: both stay",
     ringsAtAnn,
     Call::eDelivered,
     kOut,
     {"4712", "Bob", "", ""},
     "dialled[4711] called[4711 Ann] remote[4711 Ann]"},
    {"a changed name of the same party: both follow",
     ringsAtAnn,
     Call::eDelivered,
     kOut,
     {"4711", "A. Smith", "", ""},
     "dialled[4711] called[4711 A. Smith] remote[4711 A. Smith]"},
    {"the same party without a name: the name stays",
     ringsAtAnn,
     Call::eDelivered,
     kOut,
     {"4711", "", "", ""},
     "dialled[4711] called[4711 Ann] remote[4711 Ann]"},
    {"called and remote differ: the event replaces both",
     calledElsewhereThanRemote,
     Call::eDelivered,
     kOut,
     {"4713", "Cyd", "", ""},
     "called[4713 Cyd] remote[4713 Cyd]"},
    {"called and remote differ: the remote party reported again is called too",
     calledElsewhereThanRemote,
     Call::eDelivered,
     kOut,
     {"4711", "Ann", "", ""},
     "called[4711 Ann] remote[4711 Ann]"},
    {"an event without parties changes nothing",
     calledElsewhereThanRemote,
     Call::eCleared,
     kOut,
     {},
     "called[4712 Bob] remote[4711 Ann]"},
    {"an event without parties leaves an anonymous caller's name",
     anonymousForCyd,
     Call::eCleared,
     kIn,
     {},
     "called[4720 Cyd] remote[ Anonymous]"},
    {"a Bluetooth call keeps its called party",
     onBluetooth,
     Call::eDelivered,
     kOut,
     {"4711", "Ann", "", ""},
     "dialled[bluetoothDeviceID] called[bluetoothDeviceID] remote[4711 Ann]"},
    {"a connected remote party whose name goes: the called name goes too",
     talksToAnn,
     Call::eCallInformation,
     kOut,
     {"4711", "", "", ""},
     "dialled[4711] called[4711] remote[4711 Ann] connected[4711 Ann]"},

    // Established without a diverted party.
    {"answered: the event's party is connected and dialled",
     ringsAtAnn,
     Call::eEstablished,
     kOut,
     {"4711", "Ann", "", ""},
     "dialled[4711] called[4711 Ann] remote[4711 Ann] connected[4711 Ann]"},
    {"answered without a party: the remote party is connected, nothing is dialled",
     ringsAtAnn,
     Call::eEstablished,
     kOut,
     {},
     "called[4711 Ann] remote[4711 Ann] connected[4711]"},
    {"answered again by another: the connected party follows",
     talksToAnn,
     Call::eEstablished,
     kOut,
     {"4712", "Bob", "", ""},
     "dialled[4712] called[4711 Ann] remote[4711 Ann] connected[4712 Bob]"},
    {"answered again without a name: the connected name goes",
     talksToAnn,
     Call::eEstablished,
     kOut,
     {"4712", "", "", ""},
     "dialled[4712] called[4711 Ann] remote[4711 Ann] connected[4712]"},
    {"answered after it was sent here: the sender stays redirecting",
     sentHereByGroup,
     Call::eEstablished,
     kIn,
     {"4711", "Ann", "", ""},
     "dialled[4711] called[4711 Ann] remote[4711 Ann] connected[4711 Ann] redirecting[600 Sales]"},
    {"answered on Bluetooth: what was dialled stays",
     onBluetooth,
     Call::eEstablished,
     kOut,
     {"4711", "Ann", "", ""},
     "dialled[bluetoothDeviceID] called[bluetoothDeviceID] remote[4711 Ann] connected[4711 Ann]"},

    // Forwarded without a diverted party: nobody knows where to.
    {"forwarded to nobody knows where: the called party fills in",
     dialled,
     Call::eForwarded,
     kOut,
     {"4712", "Bob", "", ""},
     "dialled[4711] called[4712 Bob] remote[4712 Bob]"},
};

TEST(PartyRulesSip, FollowTheCallStepByStep) {
    for (const Row& row : kRows) {
        Call call(row.direction, "7", 0);
        row.before(call);
        journal::mergeSipParties(call, row.state, row.direction, row.parties);
        EXPECT_EQ(partiesText(call), row.after) << row.name;
        EXPECT_FALSE(call.m_ctiAssisted) << row.name;
    }
}

TEST(PartyRulesSip, TakeCtiAssistedForAMarkAndNotForAName) {
    Call call(kIn, "7", 0);
    journal::mergeSipParties(call, Call::eDelivered, kIn, {"4711", "CTI Assisted", "", ""});
    EXPECT_TRUE(call.m_ctiAssisted);
    EXPECT_EQ(call.m_sRemotePartyName, "");
    EXPECT_EQ(call.m_sRemoteParty, "4711");

    Call other(kIn, "8", 0);
    journal::mergeSipParties(other, Call::eDelivered, kIn, {"4711", "CTI assisted", "", ""});
    EXPECT_FALSE(other.m_ctiAssisted);
    EXPECT_EQ(other.m_sRemotePartyName, "CTI assisted");
}

TEST(PartyRulesSip, SayInTheLogWhatTheyReplace) {
    Call call(kOut, "7", 0);
    ringsAtAnn(call);
    journal::mergeSipParties(call, Call::eForwarded, kOut, {"4713", "Cyd", "4712", "Bob"});
    for (const char* line : {
             "onCallEvent():sDivertedParty[4712]",
             "onCallEvent():m_sRemoteParty[4711]->[4713]",
             "onCallEvent():m_sRemotePartyName[Ann]->[Cyd]",
             "onCallEvent():m_sConnectedParty[]->[4712]",
             "onCallEvent():m_sConnectedPartyName[]->[Bob]",
             "onCallEvent():remoteParty[4713]",
         }) {
        EXPECT_TRUE(CapturedLog::contains(line)) << line << "\n" << CapturedLog::dump();
    }
}

}  // namespace
