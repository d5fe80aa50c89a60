#include "src/JournalServiceEvents/PartyRulesQorvex.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalServiceEvents/EventParties.h"
#include "tests/call-tracking/PartiesText.h"

namespace {

using journal::Call;
using journal::EventParties;
using journaltest::partiesText;

struct Row {
    const char* name;
    std::function<void(Call&)> before;
    Call::states_t state;
    EventParties parties;
    const char* after;
};

void fresh(Call&) {}

void rungByAnn(Call& call) {
    call.m_State = Call::eDelivered;
    call.m_sRemoteParty = "4711";
    call.m_sRemotePartyName = "Ann";
}

void namelessCaller(Call& call) {
    call.m_sRemoteParty = "4711";
}

void talkingToAnn(Call& call) {
    rungByAnn(call);
    call.m_State = Call::eEstablished;
    call.m_sConnectedParty = "4711";
}

const std::vector<Row> kRows = {
    {"the first number becomes the remote party",
     fresh,
     Call::eDelivered,
     {"4711", "Ann", "", ""},
     "remote[4711 Ann]"},
    {"an anonymous caller keeps the name alone",
     fresh,
     Call::eDelivered,
     {"", "Anonymous", "", ""},
     "remote[ Anonymous]"},
    {"a later number does not replace the first",
     rungByAnn,
     Call::eDelivered,
     {"4712", "Bob", "", ""},
     "remote[4711 Ann]"},
    {"a name that comes later fills in",
     namelessCaller,
     Call::eDelivered,
     {"4711", "Ann", "", ""},
     "remote[4711 Ann]"},
    {"another party's name does not fill in",
     namelessCaller,
     Call::eDelivered,
     {"4712", "Bob", "", ""},
     "remote[4711]"},
    {"a name that is there stays",
     rungByAnn,
     Call::eDelivered,
     {"4711", "A. Smith", "", ""},
     "remote[4711 Ann]"},
    {"an event without parties changes nothing", rungByAnn, Call::eCleared, {}, "remote[4711 Ann]"},

    {"answered, the event's party is connected",
     rungByAnn,
     Call::eEstablished,
     {"4712", "Bob", "", ""},
     "remote[4711 Ann] connected[4712 Bob]"},
    {"answered without a party, the remote party is connected",
     rungByAnn,
     Call::eEstablished,
     {},
     "remote[4711 Ann] connected[4711]"},
    {"answered a second time, the connected party stays",
     talkingToAnn,
     Call::eEstablished,
     {"4712", "Bob", "", ""},
     "remote[4711 Ann] connected[4711]"},
    {"ringing connects nobody", fresh, Call::eDelivered, {"4711", "", "", ""}, "remote[4711]"},

    {"a diverted party becomes the remote party",
     fresh,
     Call::eForwarded,
     {"4712", "Bob", "4711", "Ann"},
     "remote[4711 Ann] connected[4712 Bob]"},
    {"a diverted party replaces another remote party",
     namelessCaller,
     Call::eForwarded,
     {"4712", "Bob", "4713", "Cyd"},
     "remote[4713 Cyd] connected[4712 Bob]"},
    {"a diverted party that is the remote party keeps its name",
     rungByAnn,
     Call::eForwarded,
     {"4712", "Bob", "4711", "A. Smith"},
     "remote[4711 Ann] connected[4712 Bob]"},
    {"a nameless diverted party takes the replaced party's name away",
     rungByAnn,
     Call::eForwarded,
     {"4712", "", "4713", ""},
     "remote[4713] connected[4712]"},
};

TEST(PartyRulesQorvex, KeepWhatIsKnownAndLetADivertedPartyWin) {
    for (const Row& row : kRows) {
        Call call(Call::eIncoming, "7", 0);
        row.before(call);
        const auto stateBefore = call.m_State;
        journal::mergeQorvexParties(call, row.state, row.parties);
        EXPECT_EQ(partiesText(call), row.after) << row.name;
        EXPECT_EQ(call.m_State, stateBefore) << row.name;
    }
}

TEST(PartyRulesQorvex, LetOnlyABluetoothCallWithoutANumberTakeALaterNumber) {
    const struct {
        const char* callId;
        const char* known;
        const char* later;
        const char* after;
    } rows[] = {
        {communicationsServiceTexts::content_bluetoothDeviceId, communicationsServiceTexts::noNumberProvided,
         "4711", "4711"},
        {communicationsServiceTexts::content_bluetoothDeviceId, communicationsServiceTexts::noNumberProvided,
         "", communicationsServiceTexts::noNumberProvided},
        {communicationsServiceTexts::content_bluetoothDeviceId, "4712", "4711", "4712"},
        {"7", communicationsServiceTexts::noNumberProvided, "4711",
         communicationsServiceTexts::noNumberProvided},
    };
    for (const auto& row : rows) {
        Call call(Call::eIncoming, row.callId, 0);
        call.m_sRemoteParty = row.known;
        journal::mergeQorvexParties(call, Call::eDelivered, {row.later, "", "", ""});
        EXPECT_EQ(call.m_sRemoteParty, row.after) << row.callId << " knows " << row.known;
    }
}

}  // namespace
