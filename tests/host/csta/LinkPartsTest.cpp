#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <asio/io_context.hpp>

#include "host/csta-events/OtherDeviceEvents.h"
#include "host/csta-wire/InvokeIds.h"
#include "host/csta/CallLogEchoes.h"
#include "host/csta/CallLogRequester.h"
#include "host/csta/association/EarlyMessages.h"
#include "host/log/PrivateText.h"
#include "tests/host/csta/SilentChannel.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/Table.h"

namespace {

using host::EarlyMessages;
using host::InvokeIds;
using host::WireDocument;
using std::chrono::milliseconds;

WireDocument parsed(const std::string& xml) {
    std::string fault;
    return WireDocument::parse(xml, fault).value();
}

struct TimedEvent {
    CallLogEntryEvent event;
    std::chrono::seconds after;
};

std::string wordOf(const std::vector<std::string>& words, std::size_t index) {
    return words.size() > index && words[index] != "-" ? words[index] : "";
}

/// "ACTION LOG NUMBER TIME GROUP SECONDS"; "-" and missing words are empty.
TimedEvent logEventOf(const std::string& text) {
    const auto words = journaltest::split(text, ' ');
    TimedEvent result{{}, std::chrono::seconds(words.size() > 5 ? std::stoi(words[5]) : 0)};
    result.event.action = words[0] == "add"      ? CallLogEntryEvent::eAdd
                          : words[0] == "delete" ? CallLogEntryEvent::eDelete
                                                 : CallLogEntryEvent::eDeleteAll;
    result.event.logTarget = static_cast<CallLogEntryEvent::_LogTarget>(std::stoi(words[1]));
    result.event.subscriberNumber = wordOf(words, 2);
    result.event.entryTime = wordOf(words, 3);
    result.event.textF = wordOf(words, 4);
    return result;
}

CallLogEntryRequest logRequestOf(const std::string& text) {
    const CallLogEntryEvent event = logEventOf(text).event;
    CallLogEntryRequest request;
    request.action = event.action;
    request.logTarget = event.logTarget;
    request.subscriberNumber = event.subscriberNumber;
    request.entryTime = event.entryTime;
    request.further.back().text = event.textF;
    return request;
}

TEST(InvokeIds, WrapAroundAndSkipWaitingOnes) {
    InvokeIds ids;
    for (int expected = InvokeIds::kFirst; expected <= InvokeIds::kLast; ++expected) {
        ASSERT_EQ(ids.next([](int) { return false; }), expected);
    }
    EXPECT_EQ(ids.next([](int id) { return id < 3; }), 3);
    EXPECT_FALSE(ids.next([](int) { return true; }));
}

TEST(CallLogRequester, LogsNoNumberOfARefusedRequest) {
    for (const auto& row : journaltest::table(2, R"(
        shown  | refuses a request about its call log: no entry of 4712 (delete of log 1, number +49891234567)
        masked | refuses a request about its call log: no entry of **12 (delete of log 1, number **67)
        )")) {
        host::setLoggedParties(row[0] == "shown" ? host::Parties::eShown : host::Parties::eMasked);
        asio::io_context io;
        linktest::SilentChannel channel;
        const host::LinkMessages messages("5");
        host::CallLogRequester requester(io, channel, messages, milliseconds(1000));
        requester.request(logRequestOf("delete 1 +49891234567"), [](const host::RequestOutcome&) {});
        channel.handlers.at(0)({.kind = host::SwitchResponse::Kind::eRefused,
                                .category = "operation",
                                .value = "no entry of 4712"});
        EXPECT_TRUE(journaltest::CapturedLog::contains(row[1])) << journaltest::CapturedLog::dump();
    }
    host::setLoggedParties(host::Parties::eShown);
}

TEST(EarlyMessages, AreLimitedInAgeAndNumber) {
    constexpr auto kMonitor = host::ReferenceKind::eMonitor;
    const EarlyMessages::Clock::time_point start;
    EarlyMessages early;
    early.keep(kMonitor, "1", parsed("<Old/>"), start);
    const auto later = start + milliseconds(1000);
    for (std::size_t i = 0; i <= EarlyMessages::kMaxMessages; ++i) {
        early.keep(kMonitor, "1", parsed(i == 0 ? "<First/>" : "<X/>"), later);
    }
    const auto end = start + EarlyMessages::kMaxAge + milliseconds(1);
    EXPECT_TRUE(early.take(host::ReferenceKind::eService, "1", end).empty());
    EXPECT_TRUE(early.take(kMonitor, "2", end).empty());
    std::string names;
    for (const WireDocument& event : early.take(kMonitor, "1", end)) {
        names += event.name();
    }
    EXPECT_EQ(names, std::string(EarlyMessages::kMaxMessages, 'X'));
}

TEST(OtherDeviceEvents, GiveOneCallOfTheBluetoothTelephoneThePlatformsId) {
    const std::string device = "bluetoothDeviceID";
    const auto events = host::OtherDeviceEvents::of(device, "2001");
    const auto idIn = [&](auto event, const std::string& callId) {
        event.setConnection(callId, device);
        const auto adapted = events->adapt(event.clone());
        return dynamic_cast<CSTACallControlEvent&>(*adapted).getConnectionCallID();
    };
    EXPECT_EQ(idIn(CSTACallInformationEvent(), "-1"), "-1");
    EXPECT_EQ(idIn(CSTAConnectionClearedEvent(), "6"), "6");
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "7"), device);
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "8"), "8");
    CSTAEstablishedEvent established;
    established.setAnsweringDevice({device, ""});
    EXPECT_EQ(idIn(established, "7"), device);
    const auto adapted = events->adapt(established.clone());
    EXPECT_TRUE(dynamic_cast<CSTAEstablishedEvent&>(*adapted).getAnsweringDevice().isLocal());
    EXPECT_EQ(idIn(CSTAFailedEvent(), "7"), device);
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "9"), device) << "the call before has ended";
    EXPECT_EQ(idIn(CSTAConnectionClearedEvent(), "8"), "8");
    CSTATransferredEvent transferred;
    transferred.setOldCalls("9", "");
    EXPECT_EQ(idIn(transferred, "10"), device);
    EXPECT_EQ(idIn(CSTAConnectionClearedEvent(), "10"), device);
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "11"), device);
    events->forgetCalls();
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "12"), device);
}

// The phone requests a deletion (log, number, time, group), after the switch has added a missed call of
// 4711 at time 2 and one of 4712 at time 5. The events: action, log, number, time, group, seconds since the
// request.
TEST(CallLogEchoes, AreTheDeletionsThatThePhoneRequested) {
    using Clock = host::CallLogEchoes::Clock;
    for (const auto& row : journaltest::table(3, R"(
delete 1 4711 2       | delete 1 4711 2, delete 2 4711 1, delete 1 4711 2 - 9   | echo
delete 1 4711 2       | delete 1 4711 3, delete 1 4712 2, delete 0 4711 2       | no
delete 1 4711 2       | delete 1 4711 2 - 11, delete 1 4711 12, deleteAll 1     | no
delete 1 4711 2       | deleteAll 7 4711 2, delete 7 4711 2, add 1 4711 2       | no
delete 1 4711 3       | deleteAll 7 4711 9 Help, delete 7 4711 9                | echo
delete 4 4711 2       | delete 4 4711 2, delete 5 4711 2, delete 6 4711 1       | echo
delete 4 4711 2       | delete 1 4711 2, deleteAll 7 4711 2, deleteAll 4        | no
deleteAll 3 4711 - Help | deleteAll 7 4711 9 Help, deleteAll 7 4711 9           | echo
deleteAll 3 4711 - Help | deleteAll 7 4711 9 Sales, deleteAll 7 4712 9 Help     | no
deleteAll 1           | deleteAll 1, delete 1 4711 2                            | no
)")) {
        for (const std::string& text : journaltest::split(row[1], ',')) {
            SCOPED_TRACE(row[0] + ", then " + text);
            const Clock::time_point start;
            host::CallLogEchoes echoes;
            for (const char* const added : {"add 1 4711 2", "add 2 4712 5"}) {
                EXPECT_FALSE(echoes.isEcho(logEventOf(added).event, start));
            }
            echoes.requested(logRequestOf(row[0]), start);
            const TimedEvent event = logEventOf(text);
            EXPECT_EQ(echoes.isEcho(event.event, start + event.after), row[2] == "echo");
        }
    }
}

TEST(CallLogPatience, WaitsOnceForASwitchThatDoesNotRespond) {
    using Clock = host::CallLogPatience::Clock;
    host::CallLogPatience patience{milliseconds(1000)};
    Clock::time_point now(milliseconds(5000));
    std::vector<long> waits;
    const auto request = [&](milliseconds responseAfter) {
        const Clock::duration limit = patience.next(now);
        const Clock::duration waited = std::min<Clock::duration>(limit, responseAfter);
        waits.push_back(std::chrono::duration_cast<milliseconds>(waited).count());
        patience.ended(now, now + waited, waited == responseAfter);
        now += waited;
    };
    constexpr milliseconds kNever = std::chrono::hours(1);
    for (const milliseconds response :
         {milliseconds(10), kNever, milliseconds(10), kNever, kNever, kNever, kNever}) {
        request(response);
    }
    EXPECT_THAT(waits, testing::ElementsAre(10, 1000, 10, 50, 50, 50, 30));
    request(kNever);
    EXPECT_EQ(waits.back(), 0);
    patience.respondedLate(now - milliseconds(51), now);
    request(milliseconds(10));
    EXPECT_EQ(waits.back(), 0);
    patience.respondedLate(now - milliseconds(10), now);
    request(milliseconds(10));
    EXPECT_EQ(waits.back(), 10);
    now += milliseconds(1001);
    request(kNever);
    EXPECT_EQ(waits.back(), 1000);
    waits.clear();
    for (const milliseconds response : {kNever, milliseconds(51), milliseconds(10)}) {
        now += milliseconds(1001);
        request(response);
    }
    // The switch has responded in time, but not to every request.
    request(kNever);
    EXPECT_THAT(waits, testing::ElementsAre(50, 50, 10, 50));
    now += milliseconds(1001);
    patience.respondedLate(now - milliseconds(10), now);
    request(kNever);
    EXPECT_EQ(waits.back(), 1000);
}

}  // namespace
