#include "host/csta/CallSynchronisation.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/csta/CSTACallControlEvents.h"
#include "tests/host/csta/SilentChannel.h"
#include "tests/support/Table.h"

namespace {

using host::CallSynchronisation;
using host::PhoneCall;
using host::PhoneEvent;
using std::chrono::minutes;

/// The calls of the phone 2001, whose monitor is on. A call is a text, "ringing 4711", "talking 4711",
/// "calling 4711" or "called 4711" (an outgoing one that is established), and began ten minutes ago.
class Synchronisation : public testing::Test {
protected:
    Synchronisation() {
        monitors.add("localDeviceID", {}, nullptr, host::ExponentialBackoff(minutes(1), minutes(1)))
            .switchId = "7";
    }
    void TearDown() override { synchronisation.close(); }

    void know(const std::string& text, const std::string& callId = "25",
              PhoneCall::Time began = tenMinutesAgo()) {
        const std::vector<std::string> words = journaltest::split(text, ' ');
        if (words.empty()) {
            return;
        }
        PhoneCall call;
        call.callId = callId;
        call.device = CSTADevice::kLocalDevice;
        call.outgoing = words[0] == "calling" || words[0] == "called";
        (call.outgoing ? call.called : call.calling).number = words.at(1);
        call.role = words[0] == "ringing" ? host::PhoneRole::eRinging : host::PhoneRole::eCalling;
        call.firstEvent = call.lastEvent = began;
        if (words[0] == "talking" || words[0] == "called") {
            call.role = host::PhoneRole::eConnected;
            call.established = call.lastEvent = began + minutes(1);
        }
        calls.store(call);
    }
    /// "Delivered 4711"; with the minutes since the first event if it lies back, "~" for an approximate end.
    void record(const std::vector<PhoneEvent>& given) {
        for (const PhoneEvent& each : given) {
            const auto& event = dynamic_cast<const CSTACallControlEvent&>(*each.event);
            static const std::map<CSTAEventCode, std::string> names = {
                {CSTAEventCode::eOriginated, "Originated"},
                {CSTAEventCode::eDelivered, "Delivered"},
                {CSTAEventCode::eEstablished, "Established"},
                {CSTAEventCode::eConnectionCleared, "Cleared"}};
            const CSTADevice& far =
                event.getCallingDevice().isLocal() ? event.getCalledDevice() : event.getCallingDevice();
            events += (events.empty() ? "" : ", ") + names.at(event.getType()) + ' ' + far.number;
            if (each.time < std::chrono::system_clock::now() - std::chrono::seconds(30)) {
                events +=
                    " +" + std::to_string(std::chrono::round<minutes>(*each.time - tenMinutesAgo()).count());
            }
            events += each.endApproximate ? "~" : "";
        }
    }
    static PhoneCall::Time tenMinutesAgo() { return std::chrono::system_clock::now() - minutes(10); }

    host::CstaLinkConfig config;
    asio::io_context io;
    linktest::SilentChannel channel;
    const host::LinkMessages messages{"ed4"};
    host::SnapshotRequests snapshots{io, std::chrono::seconds(5), channel, messages};
    host::MonitorTable monitors;
    host::PhoneCalls calls;
    CallSynchronisation synchronisation{config,
                                        io,
                                        snapshots,
                                        monitors,
                                        calls,
                                        [this](const host::WantedMonitor& /*monitor*/,
                                               const std::vector<PhoneEvent>& given) { record(given); }};
    std::string events;
};

TEST_F(Synchronisation, FollowsTheSnapshot) {
    // The known call 25; its state in the snapshot, own and other; calling and called party, and one that
    // rings; the events.
    const std::string rows = R"(
ringing 4711 |                      |           | Cleared 4711 +0~
talking 4711 |                      |           | Cleared 4711 +1~
calling 4711 |                      |           | Cleared 4711 +0~
talking 4711 | connected connected  | 4711 2001 |
ringing 4711 | alerting connected   | 4711 2001 |
talking 4711 | hold connected       | 4799 2001 | Cleared 4711 +1~, Delivered 4799, Established 4799
ringing 4711 | connected connected  | 4711 2001 | Established 4711
calling 4711 | connected hold       | 2001 4711 | Established 4711
calling 4711 | connected alerting   | 2001 4711 |
ringing 4711 | alerting connected   | 4712 2001 | Cleared 4711 +0~, Delivered 4712
ringing 2006 | alerting connected   | 4711 2000 2006 | Cleared 2006 +0~, Delivered 4711
talking 2006 | connected hold       | 2006 2000 2006 |
talking 4711 | alerting connected   | 4711 2001 | Cleared 4711 +1~, Delivered 4711
called 4711  | alerting connected   | 4712 2001 | Cleared 4711 +1~, Delivered 4712
ringing 4711 | connected connected  | 4712 4711 | Cleared 4711 +0~, Delivered 4712, Established 4712
ringing 4711 | connected connected  | 2001 4712 | Cleared 4711 +0~, Originated 4712, Established 4712
talking 4711 | connected connected  | 2001 4711 | Cleared 4711 +1~, Originated 4711, Established 4711
called 4711  | connected connected  | 2001 4712 | Cleared 4711 +1~, Originated 4712, Established 4712
calling 4711 | connected connected  | 4712 2001 | Cleared 4711 +0~, Delivered 4712, Established 4712
calling *8   | connected connected  | 4712 2005 | Established 4712
talking 4711 | null connected       | 4711 2001 | Cleared 4711 +1~
talking 4711 | unknown connected    | 4711 2001 |
             | alerting connected   | 4711 2001 | Delivered 4711
             | connected connected  | 4711 2001 | Delivered 4711, Established 4711
             | hold connected       | 2001 4712 | Originated 4712, Established 4712
             | connected alerting   | 2001 4712 | Originated 4712
             | initiated null       | 2001 4712 |
ringing 4711 | refused              |           |
talking 4711 | alerting connected   | refused   |
)";
    for (const std::vector<std::string>& row : journaltest::table(4, rows)) {
        SCOPED_TRACE(row[0] + " | " + row[1] + " | " + row[2]);
        calls.clear();
        events.clear();
        channel.handlers.clear();
        know(row[0]);
        synchronisation.monitorStarted(*monitors.find("M1"));
        const std::vector<std::string> states = journaltest::split(row[1], ' ');
        if (row[1] == "refused") {
            channel.handlers.at(0)({});
        } else {
            const std::string info =
                states.empty() ? ""
                               : "<snapshotDeviceResponseInfo><connectionIdentifier><callID>25</callID></"
                                 "connectionIdentifier>"
                                 "<localCallState><compoundCallState><s>" +
                                     states[0] + "</s><s>" + states[1] +
                                     "</s></compoundCallState></localCallState></snapshotDeviceResponseInfo>";
            channel.respond(0, "<SnapshotDeviceResponse><snapshotData>" + info +
                                   "</snapshotData></SnapshotDeviceResponse>");
        }
        const std::vector<std::string> parties = journaltest::split(row[2], ' ');
        if (row[2] == "refused") {
            channel.handlers.at(1)({});
        } else if (channel.handlers.size() > 1) {
            const std::string ringing = parties.size() < 3
                                            ? ""
                                            : "<snapshotCallResponseInfo><deviceOnCall>" + parties[2] +
                                                  "</deviceOnCall><localConnectionInfo>alerting"
                                                  "</localConnectionInfo></snapshotCallResponseInfo>";
            channel.respond(1, "<SnapshotCallResponse><snapshotData>" + ringing +
                                   "</snapshotData><callingDevice>" + parties.at(0) +
                                   "</callingDevice><calledDevice>" + parties.at(1) +
                                   "</calledDevice></SnapshotCallResponse>");
        }
        EXPECT_EQ(events, row[3]);
    }
}

TEST_F(Synchronisation, LeavesACallWithALaterEventAlone) {
    know("ringing 4711", "25");
    synchronisation.monitorStarted(*monitors.find("M1"));
    know("talking 4711", "25", std::chrono::system_clock::now());
    channel.respond(0, "<SnapshotDeviceResponse><snapshotData/></SnapshotDeviceResponse>");
    EXPECT_EQ(events, "");
}

TEST_F(Synchronisation, KeepsTheCallOfASwitchThatSendsNoCallIds) {
    know("talking 4711", "call-M1");
    synchronisation.monitorStarted(*monitors.find("M1"));
    channel.respond(0,
                    "<SnapshotDeviceResponse><snapshotData><snapshotDeviceResponseInfo><connectionIdentifier>"
                    "<deviceID>2001</deviceID></connectionIdentifier><localCallState><simpleCallState>"
                    "callEstablished</simpleCallState></localCallState></snapshotDeviceResponseInfo>"
                    "</snapshotData></SnapshotDeviceResponse>");
    EXPECT_EQ(events, "");
}

TEST_F(Synchronisation, GivesTheKnownCallsAgainAndEndsThemInTime) {
    know("talking 4711", "1");
    know("called 4712", "2");
    synchronisation.callsForgotten();
    EXPECT_EQ(events, "Delivered 4711 +0, Established 4711 +1, Originated 4712 +0, Established 4712 +1");
    events.clear();
    synchronisation.monitorAccepted(*monitors.find("M1"));
    EXPECT_EQ(events, "Delivered 4711 +0, Established 4711 +1, Originated 4712 +0, Established 4712 +1");

    // The end of a call that the switch never reports; a gap after its last event is its end.
    events.clear();
    know("ringing 4713", "3", std::chrono::system_clock::now() - config.callMaxAge - minutes(1));
    synchronisation.endSilentCalls();
    EXPECT_EQ(events, "") << "the switch is asked first";
    channel.handlers.back()({});
    EXPECT_EQ(events, "Cleared 4713 +-711~");
    synchronisation.gapBegins(*monitors.find("M1"));
    events.clear();
    for (std::size_t call = 0; call < CallSynchronisation::kMaxCalls - 1; ++call) {
        know("ringing 4714", "n" + std::to_string(call), tenMinutesAgo() + minutes(2));
    }
    know("ringing 4715", "oldest", tenMinutesAgo() - minutes(1));
    know("talking 4716", "lost", tenMinutesAgo() - CallSynchronisation::kTalkBonus - minutes(5));
    synchronisation.limitCalls();
    EXPECT_EQ(events, "Cleared 4716~, Cleared 4715~, Cleared 4714~") << "no talk that may be up";
    EXPECT_EQ(calls.count(), CallSynchronisation::kMaxCalls);
}

}  // namespace
