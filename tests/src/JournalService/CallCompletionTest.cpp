// The parts of a finished call's entry that whole calls do not show.

#include "src/JournalServiceEvents/calls/CallCompletion.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "journal-items/Occurrences.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/SimulatedPhone.h"
#include "tests/support/Table.h"

namespace {

using journal::Call;
using journaltest::CapturedLog;
using journaltest::SimulatedPhone;

TEST(CallCompletion, ShowsTheLastOrTheFirstForwardedPartyAsConfigured) {
    for (const auto& row : journaltest::table(4, R"(
4730 | on  | by hand       | shows 4712
4730 | off | by hand       | shows 4730
4730 | off | automatically | shows 4712
     | off | by hand       | shows 4712
firstForwardedParty_seq_done | on | by hand | is filed already
)")) {
        CapturedLog::reset();
        SimulatedPhone phone(softwaretypes::sip);
        phone.plays("set displayLast " + row[1]);
        auto call = std::make_unique<Call>(Call::eOutgoing, "7", 0);
        call->m_sDialledParty = "4711";
        call->m_sConnectedParty = "4712";
        call->m_sFirstForwardedParty = row[0];
        call->mAutoAnswerForwardedCall = row[2] == "automatically";
        call->m_establishedTimeSec = 10;
        const Call* const held = phone.components().calls.insertEntryToCallMap("7", std::move(call));
        EXPECT_TRUE(phone.components().completion.createCallEntryAndRemoveCall(held, Call::eForwarded));
        EXPECT_EQ(phone.outcome(), row[3] == "is filed already" ? "" : "dialled 4711 sent on");
        // No list of a SIP phone shows the connected party; the entry's making says it.
        const bool shows = CapturedLog::contains("sConnectedParty: " + row[3].substr(6) + ",") &&
                           CapturedLog::contains("startSec: -1, endSec: -1");
        EXPECT_EQ(shows, row[3] != "is filed already") << row[0] << " " << row[1] << " " << row[2];
    }
}

// When the call began, the list's number at the switch, and which of the four presentations apply.
TEST(CallCompletion, TimesAndMarksTheEntriesForTheSwitchsLog) {
    for (const auto& row : journaltest::table(3, R"(
rings 1 4711; passes 5; clears 1   | 05:22:05Z 1 0011 | 05:22:05Z 1 0000
fails 1 4711 here                  | 05:22:05Z 1 0000 | 05:22:05Z 1 0000
rings 1 4711; passes 5; answers 1 4711; passes 5; clears 1 | 05:22:05Z 0 1111 | 05:22:05Z 0 1111
passes 2; dials 1 4711; passes 5; clears 1 | 05:22:07Z 4 1100 | 05:22:07Z 4 1100
)")) {
        for (const std::string type : {softwaretypes::qorvex, softwaretypes::sip}) {
            SimulatedPhone phone(type);
            phone.plays(row[0]);
            std::string marks;
            const auto note = [&marks](const auto& items) {
                for (const auto& item : items) {
                    const CallInfo& info = occurrencesOf(item).front();
                    marks +=
                        info.getTimeAndDate().substr(11) + " " + std::to_string(info.getLogTarget()) + " ";
                    for (const int shown : {info.getPresentationA(), info.getPresentationB(),
                                            info.getPresentationC(), info.getPresentationD()}) {
                        marks += std::to_string(shown);
                    }
                }
            };
            note(phone.list<MissedCallItem>());
            note(phone.list<DialledCallItem>());
            note(phone.list<ReceivedCallItem>());
            EXPECT_EQ(marks, row[type == softwaretypes::sip ? 2 : 1]) << row[0] << " on " << type;
        }
    }
}

}  // namespace
