#include "host/journal-events/JournalEvent.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

#include "tests/support/Table.h"

namespace {

using host::PhoneCall;
using host::PhoneRole;

/// A call by words: "ringing", "offered", "calling", "connected", "elsewhere", "conference", "transferred".
std::optional<PhoneCall> callOf(const std::string& words) {
    PhoneCall call;
    call.device = "localDeviceID";
    call.calling = {"4711", "Ann"};
    for (const std::string& word : journaltest::split(words, ' ')) {
        if (word == "none") {
            return std::nullopt;
        }
        call.offered = call.offered || word == "offered";
        call.elsewhere = call.elsewhere || word == "elsewhere";
        call.transferred = call.transferred || word == "transferred";
        if (word == "calling") {
            call.outgoing = true;
            call.role = PhoneRole::eCalling;
        } else if (word == "connected") {
            call.role = PhoneRole::eConnected;
            call.established = PhoneCall::Time(std::chrono::seconds(1));
        } else if (word == "conference") {
            call.conference = true;
            call.calling = {};
        }
    }
    return call;
}

TEST(JournalEvent, FollowsFromTwoStatesOfACall) {
    for (const auto& row : journaltest::table(3, R"(
        none         | ringing                | call.ringing
        ringing      | ringing                |
        none         | offered                |
        offered      | ringing                | call.ringing
        none         | ringing elsewhere      |
        ringing      | ringing elsewhere      |
        ringing      | connected              | call.answered
        connected    | connected              |
        none         | connected              | call.answered
        none         | calling                |
        calling      | calling connected      | call.answered
        none         | conference connected   |
        none         | transferred connected  |
        none         | transferred ringing    | call.ringing
        ringing      | transferred connected  | call.answered)")) {
        SCOPED_TRACE(row[0] + " -> " + row[1]);
        const auto before = callOf(row[0]);
        const auto kind = host::eventBetween(before ? &*before : nullptr, *callOf(row[1]));
        EXPECT_EQ(kind ? std::string(wordOf(*kind)) : "", row[2]);
    }
}

}  // namespace
