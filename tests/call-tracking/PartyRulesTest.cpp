// How the parties of an event go into a call's record, by each flavour's rules. A row says what is known before, the event
// as "in|out STATE REMOTE [DIVERTED]", and what is known afterwards.

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalServiceEvents/EventParties.h"
#include "src/JournalServiceEvents/PartyRulesQorvex.h"
#include "src/JournalServiceEvents/PartyRulesSip.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/Table.h"

namespace {

using journal::Call;
using journal::EventParties;
using journaltest::partiesText;
using journaltest::split;

/// The record whose `partiesText` this is.
void setParties(Call& call, const std::string& text) {
    static const std::regex kParty("(\\w+)\\[([^ \\]]*) ?([^\\]]*)\\]");
    for (std::sregex_iterator it(text.begin(), text.end(), kParty), end; it != end; ++it) {
        const auto set = [&it](const char* role, std::string& number, std::string& name) {
            if ((*it)[1] == role) {
                number = (*it)[2];
                name = (*it)[3];
            }
        };
        set("dialled", call.m_sDialledParty, call.m_sDialledPartyName);
        set("called", call.m_sCalledParty, call.m_sCalledPartyName);
        set("remote", call.m_sRemoteParty, call.m_sRemotePartyName);
        set("connected", call.m_sConnectedParty, call.m_sConnectedPartyName);
        set("redirecting", call.m_sRedirectingParty, call.m_sRedirectingPartyName);
    }
}

struct Event {
    explicit Event(const std::string& text) {
        const auto words = split(text, ' ');
        direction = words.at(0) == "in" ? Call::eIncoming : Call::eOutgoing;
        state = static_cast<Call::states_t>(std::stoi(words.at(1)));
        if (words.size() > 2) {
            setParty(words[2], parties.remoteParty, parties.remotePartyName);
        }
        if (words.size() > 3) {
            setParty(words[3], parties.divertedParty, parties.divertedPartyName);
        }
    }
    static void setParty(const std::string& word, std::string& number, std::string& name) {
        const auto colon = word.find(':');
        number = word.substr(0, colon);
        name = colon == std::string::npos ? "" : word.substr(colon + 1);
    }

    Call::directions_t direction;
    Call::states_t state;
    EventParties parties;
};

TEST(PartyRulesQorvex, KeepWhatIsKnownAndLetADivertedPartyWin) {
    for (const auto& row : journaltest::table(4, R"(
the first number becomes remote | | in 2 4711:Ann | remote[4711 Ann]
an anonymous caller's name      | | in 2 :Anonymous | remote[ Anonymous]
a later number does not replace | remote[4711 Ann] | in 2 4712:Bob | remote[4711 Ann]
a later name fills in           | remote[4711] | in 2 4711:Ann | remote[4711 Ann]
another party's name does not   | remote[4711] | in 2 4712:Bob | remote[4711]
a name that is there stays      | remote[4711 Ann] | in 2 4711:A.Smith | remote[4711 Ann]
no parties change nothing       | remote[4711 Ann] | in 5 | remote[4711 Ann]
answered, connected             | remote[4711 Ann] | in 3 4712:Bob | remote[4711 Ann] connected[4712 Bob]
answered by nobody named        | remote[4711 Ann] | in 3 | remote[4711 Ann] connected[4711]
diverted                        | | in 4 4712:Bob 4711:Ann | remote[4711 Ann] connected[4712 Bob]
diverted replaces another       | remote[4711] | in 4 4712:Bob 4713:Cyd | remote[4713 Cyd] connected[4712 Bob]
diverted keeps its name         | remote[4711 Ann] | in 4 4712:Bob 4711:A.S. | remote[4711 Ann] connected[4712 Bob]
nameless one takes a name away  | remote[4711 Ann] | in 4 4712 4713 | remote[4713] connected[4712]
)")) {
        Call call(Call::eIncoming, "7", 0);
        setParties(call, row[1]);
        const Event event(row[2]);
        journal::mergeQorvexParties(call, event.state, event.parties);
        EXPECT_EQ(partiesText(call), row[3]) << row[0];
    }
    Call talking(Call::eIncoming, "7", 0);
    talking.m_State = Call::eEstablished;
    setParties(talking, "remote[4711 Ann] connected[4711]");
    journal::mergeQorvexParties(talking, Call::eEstablished, {"4712", "Bob", "", ""});
    EXPECT_EQ(partiesText(talking), "remote[4711 Ann] connected[4711]") << "answered a second time";
}

TEST(PartyRulesQorvex, LetOnlyABluetoothCallWithoutANumberTakeALaterNumber) {
    const std::string none = communicationsServiceTexts::noNumberProvided;
    const char* const bluetooth = communicationsServiceTexts::content_bluetoothDeviceId;
    const struct {
        const char* callId;
        std::string known;
        std::string later;
        std::string after;
    } rows[] = {
        {bluetooth, none, "4711", "4711"},
        {bluetooth, none, "", none},
        {bluetooth, "4712", "4711", "4712"},
        {"7", none, "4711", none},
    };
    for (const auto& row : rows) {
        Call call(Call::eIncoming, row.callId, 0);
        call.m_sRemoteParty = row.known;
        journal::mergeQorvexParties(call, Call::eDelivered, {row.later, "", "", ""});
        EXPECT_EQ(call.m_sRemoteParty, row.after) << row.callId << " knows " << row.known;
    }
}

TEST(PartyRulesSip, FollowTheCallStepByStep) {
    const std::string ringsAtAnn = "dialled[4711] called[4711 Ann] remote[4711 Ann]";
    const std::string talks = ringsAtAnn + " connected[4711 Ann]";
    const std::string sentHere =
        "called[600 Sales] remote[4711 Ann] connected[600 Sales] redirecting[600 Sales]";
    const std::string onBluetooth = "dialled[bluetoothDeviceID] called[bluetoothDeviceID]";
    const std::string differ = "called[4712 Bob] remote[4711 Ann]";
    const auto expand = [&](const std::string& cell) {
        return cell == "rings at Ann"   ? ringsAtAnn
               : cell == "talks to Ann" ? talks
               : cell == "sent here"    ? sentHere
               : cell == "on Bluetooth" ? onBluetooth
               : cell == "two parties"  ? differ
                                        : cell;
    };
    for (const auto& row : journaltest::table(4, R"(
sent here: who sent it is called, connected and redirecting | | in 2 4711:Ann 600:Sales | sent here
sent on: the new party is connected only | rings at Ann | out 2 4711:Ann 4712:Bob
+ | dialled[4711] called[4711 Ann] remote[4711 Ann] connected[4712 Bob]
sent here without names: known names stay, the redirecting one does not | sent here | in 3 4711 601
+ | called[601 Sales] remote[4711 Ann] connected[601 Sales] redirecting[601]
sent here by another: a known caller stays | sent here | in 3 4713:Cyd 600:Sales | sent here
forwarded: the reported party becomes remote | rings at Ann | out 4 4713:Cyd 4712:Bob
+ | dialled[4711] called[4711 Ann] remote[4713 Cyd] connected[4712 Bob]
forwarded without names: the names stay | talks to Ann | out 4 4713 4712
+ | dialled[4711] called[4711 Ann] remote[4713 Ann] connected[4712 Ann]
forwarded to the remote party itself | rings at Ann | out 4 4713:Cyd 4711:A.S.
+ | dialled[4711] called[4711 Ann] remote[4711 Ann] connected[4711 A.S.]
failed goes the same way | rings at Ann | out 6 4713:Cyd 4712:Bob
+ | dialled[4711] called[4711 Ann] remote[4713 Cyd] connected[4712 Bob]
dialling fills the dialled party alone | | out 0 4711:Ann | dialled[4711]
dialling again is as any other event | dialled[4711] | out 0 4712:Bob | dialled[4711] called[4712 Bob] remote[4712 Bob]
ringing fills called and remote party | | in 2 4711:Ann | called[4711 Ann] remote[4711 Ann]
another party while both are the same | rings at Ann | out 2 4712:Bob | rings at Ann
a changed name of the same party | rings at Ann | out 2 4711:A.S. | dialled[4711] called[4711 A.S.] remote[4711 A.S.]
the same party without a name | rings at Ann | out 2 4711 | rings at Ann
called and remote differ: replaced | two parties | out 2 4713:Cyd | called[4713 Cyd] remote[4713 Cyd]
called and remote differ: the remote party again | two parties | out 2 4711:Ann | called[4711 Ann] remote[4711 Ann]
no parties change nothing | two parties | out 5 | two parties
no parties leave an anonymous name | called[4720 Cyd] remote[ Anonymous] | in 5 | called[4720 Cyd] remote[ Anonymous]
a Bluetooth call keeps its called party | on Bluetooth | out 2 4711:Ann
+ | dialled[bluetoothDeviceID] called[bluetoothDeviceID] remote[4711 Ann]
a connected remote party whose name goes | talks to Ann | out 7 4711
+ | dialled[4711] called[4711] remote[4711 Ann] connected[4711 Ann]
answered: connected and dialled | rings at Ann | out 3 4711:Ann | talks to Ann
answered without a party | rings at Ann | out 3 | called[4711 Ann] remote[4711 Ann] connected[4711]
answered again by another | talks to Ann | out 3 4712:Bob
+ | dialled[4712] called[4711 Ann] remote[4711 Ann] connected[4712 Bob]
answered again without a name | talks to Ann | out 3 4712
+ | dialled[4712] called[4711 Ann] remote[4711 Ann] connected[4712]
answered after it was sent here | sent here | in 3 4711:Ann
+ | dialled[4711] called[4711 Ann] remote[4711 Ann] connected[4711 Ann] redirecting[600 Sales]
answered on Bluetooth: what was dialled stays | on Bluetooth | out 3 4711:Ann
+ | dialled[bluetoothDeviceID] called[bluetoothDeviceID] remote[4711 Ann] connected[4711 Ann]
forwarded, nobody knows where | dialled[4711] | out 4 4712:Bob | dialled[4711] called[4712 Bob] remote[4712 Bob]
)")) {
        const Event event(row[2]);
        Call call(event.direction, "7", 0);
        setParties(call, expand(row[1]));
        journal::mergeSipParties(call, event.state, event.direction, event.parties);
        EXPECT_EQ(partiesText(call), expand(row[3])) << row[0];
        EXPECT_FALSE(call.m_ctiAssisted) << row[0];
    }
}

TEST(PartyRulesSip, TakeCtiAssistedForAMarkAndNotForAName) {
    for (const std::string name : {"CTI Assisted", "CTI assisted"}) {
        Call call(Call::eIncoming, "7", 0);
        journal::mergeSipParties(call, Call::eDelivered, Call::eIncoming, {"4711", name, "", ""});
        const bool marked = name == "CTI Assisted";
        EXPECT_EQ(call.m_ctiAssisted, marked);
        EXPECT_EQ(call.m_sRemotePartyName, marked ? "" : name);
        EXPECT_EQ(call.m_sRemoteParty, "4711");
    }
}

}  // namespace
