#include "host/line/LiveCalls.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "tests/support/Table.h"

namespace {

/// Builds an event from "rings a in": the event, its call, and "in" or "out" for the own device after the
/// event. Two more words are the calls that the event ends: "joined c a b", "transferred c in a b".
std::unique_ptr<CSTAEvent> eventOf(const std::string& text) {
    const auto words = journaltest::split(text, ' ');
    const auto about = [&words](auto event) {
        event.setConnection(words[1], "2001");
        event.setLocalConnectionInfo(words[2] == "out" ? CSTA_LCS_Null : CSTA_LCS_Connected);
        return event.clone();
    };
    if (words[0] == "joined") {
        CSTAConferencedEvent event;
        event.setConferenceCallID(words[1]);
        event.setPrimaryOldCall(words[2], "2001");
        event.setSecondaryOldCall(words[3], "2001");
        return event.clone();
    }
    if (words[0] == "transferred") {
        CSTATransferredEvent event;
        event.setOldCalls(words[3], words[4]);
        return about(event);
    }
    return words[0] == "leaves"     ? about(CSTAConnectionClearedEvent())
           : words[0] == "diverted" ? about(CSTADivertedEvent())
           : words[0] == "named"    ? about(CSTACallInformationEvent())
                                    : about(CSTADeliveredEvent());
}

TEST(LiveCalls, CountsTheCallsOfTheLine) {
    for (const auto& row : journaltest::table(2, R"(
        rings a in, rings b in, leaves a in, leaves a out, leaves b out                   | 1 2 2 1 0
        rings a in, diverted a out, leaves a out, named a out                             | 1 0 0 0
        rings a in, rings b in, transferred a out a b, leaves b in, leaves a out          | 1 2 0 0 0
        rings a in, transferred a out a 0                                                 | 1 0
        rings a in, transferred c in a 0, rings c in, leaves c out                        | 1 1 1 0
        rings b in, transferred a in a b, leaves b out, leaves a out                      | 1 1 1 0
        rings a in, rings b in, joined c a b, leaves a in, leaves c in, leaves c out      | 1 2 1 1 1 0
        rings a in, rings b in, joined a a b, leaves a out, leaves a in                   | 1 2 1 0 0
    )")) {
        host::LiveCalls calls;
        std::string counts;
        for (const std::string& text : journaltest::split(row[0], ',')) {
            calls.update(*eventOf(text));
            counts += (counts.empty() ? "" : " ") + std::to_string(calls.count());
        }
        EXPECT_EQ(counts, row[1]) << row[0];
    }
}

}  // namespace
